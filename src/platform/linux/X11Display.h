#pragma once
// The session's X server through xcb and its EWMH helpers: which process owns the window with
// the keyboard, and closing an app's windows the way their close buttons would. Only an X11
// session can tell either: under Wayland no app is front and no window is closed from outside.
//
// One connection serves every reading for the life of the object; a server that went away or
// stopped answering is given up on, and the next reading connects anew. No reading waits on the
// server for more than a second: xcb itself would wait without a limit, for its greeting as for
// a reply, so the greeting is awaited apart (see X11Display.cpp) and replies are polled.
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

class X11Display {
public:
    // The server at `display` (DISPLAY's form: ":0", ":1.0"). Without one, or for a display on
    // another machine, whose pids are not this machine's, every answer is the neutral one.
    explicit X11Display(std::optional<std::string> display);
    ~X11Display();
    X11Display(const X11Display&) = delete;
    X11Display& operator=(const X11Display&) = delete;

    // The pid behind _NET_ACTIVE_WINDOW, when the window manager names one and the window
    // carries _NET_WM_PID; absent otherwise.
    [[nodiscard]] std::optional<int32_t> activePid();

    // Asks the window manager to close every managed window of these processes
    // (_NET_CLOSE_WINDOW, as a pager would), so that each app may ask about unsaved work first.
    // Gives how many windows were asked.
    [[nodiscard]] int closeWindows(const std::set<int32_t>& pids);

    // How many times a connection has been opened, the first included.
    [[nodiscard]] int connections() const;

    // The display of the session from its environment: DISPLAY, unless the session is Wayland,
    // whose X server sees only its own clients' windows and so cannot tell which app is front.
    [[nodiscard]] static std::optional<std::string> sessionDisplay(const char* sessionType, const char* waylandDisplay,
                                                                   const char* display);

    // The session's display, kept for the life of the process.
    [[nodiscard]] static X11Display& session();

private:
    struct Link;
    struct Attempt;
    Link* acquire();

    std::optional<std::string> display;
    mutable std::mutex mutex;
    std::unique_ptr<Link> link;
    std::shared_ptr<Attempt> pending;
    int opened = 0;
};
