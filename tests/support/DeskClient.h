#pragma once
// An X client of the test's own that plays the parts of apps and of their window manager on a
// private display: windows with the pid their app gives, the root's list of managed windows and
// its active window, and the close requests a pager sends. Plain xcb, so that it shares no code
// with the reader it checks.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct xcb_connection_t;

class DeskClient {
public:
    // Connects to `display`, with the cookie of XAUTHORITY when the server asks for one.
    explicit DeskClient(const std::string& display);
    ~DeskClient();
    DeskClient(const DeskClient&) = delete;
    DeskClient& operator=(const DeskClient&) = delete;

    [[nodiscard]] bool connected() const;

    // A new top-level window, with _NET_WM_PID when `pid` is given.
    uint32_t window(std::optional<uint32_t> pid);
    void destroy(uint32_t window);
    // Sets a property of 32-bit values; `type` is an atom's name ("CARDINAL", "WINDOW").
    void set(uint32_t window, const std::string& property, const std::string& type, const std::vector<uint32_t>& values);
    // The same with 8-bit text, for a property of the wrong kind.
    void setText(uint32_t window, const std::string& property, const std::string& text);
    void remove(uint32_t window, const std::string& property);

    // What a window manager keeps on the root: the window with the keyboard and the list of
    // windows it manages.
    void setActive(uint32_t window);
    void setClients(const std::vector<uint32_t>& windows);

    // Takes the window manager's place: requests sent to the root come to this client.
    [[nodiscard]] bool manage();
    // The windows whose close was asked by a pager on the user's behalf, in order, once
    // `count` such requests have come or `seconds` have passed.
    [[nodiscard]] std::vector<uint32_t> closeRequests(std::size_t count, double seconds);

    // Waits until the server has done everything asked so far.
    void sync();

    [[nodiscard]] uint32_t root() const { return rootWindow; }

private:
    uint32_t atom(const std::string& name);

    xcb_connection_t* c = nullptr;
    uint32_t rootWindow = 0;
    std::vector<uint32_t> closes;
};
