#include "platform/linux/X11Front.h"

#include "foundation/FS.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <set>
#include <vector>

namespace X11Front {

namespace {

constexpr int timeoutMs = 1000;
const std::string cookieName = "MIT-MAGIC-COOKIE-1";

std::size_t pad4(std::size_t n) { return (4 - n % 4) % 4; }

void put16(std::vector<uint8_t>& b, uint16_t v) {
    b.push_back(static_cast<uint8_t>(v));
    b.push_back(static_cast<uint8_t>(v >> 8));
}
void put32(std::vector<uint8_t>& b, uint32_t v) {
    put16(b, static_cast<uint16_t>(v));
    put16(b, static_cast<uint16_t>(v >> 16));
}
uint16_t get16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | p[1] << 8); }
uint32_t get32(const uint8_t* p) { return get16(p) | static_cast<uint32_t>(get16(p + 2)) << 16; }

void putString(std::vector<uint8_t>& b, std::string_view s) {
    b.insert(b.end(), s.begin(), s.end());
    b.insert(b.end(), pad4(s.size()), 0);
}

bool sendAll(int fd, const std::vector<uint8_t>& b) {
    std::size_t done = 0;
    while (done < b.size()) {
        ssize_t n = send(fd, b.data() + done, b.size() - done, MSG_NOSIGNAL);
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

bool readExactly(int fd, uint8_t* into, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        pollfd p{fd, POLLIN, 0};
        if (poll(&p, 1, timeoutMs) <= 0) return false;
        ssize_t n = recv(fd, into + done, size - done, 0);
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

// The next reply, skipping events; absent on an error or a broken connection.
std::optional<std::vector<uint8_t>> reply(int fd) {
    for (int skipped = 0; skipped < 64; ++skipped) {
        std::vector<uint8_t> head(32);
        if (!readExactly(fd, head.data(), 32)) return std::nullopt;
        if (head[0] == 0) return std::nullopt; // an error
        if (head[0] != 1) continue;           // an event
        std::size_t extra = static_cast<std::size_t>(get32(&head[4])) * 4;
        if (extra > (1u << 20)) return std::nullopt;
        head.resize(32 + extra);
        if (extra && !readExactly(fd, head.data() + 32, extra)) return std::nullopt;
        return head;
    }
    return std::nullopt;
}

std::optional<uint32_t> internAtom(int fd, std::string_view name) {
    std::vector<uint8_t> b = {16, 1}; // InternAtom, only if it exists
    put16(b, static_cast<uint16_t>(2 + (name.size() + pad4(name.size())) / 4));
    put16(b, static_cast<uint16_t>(name.size()));
    put16(b, 0);
    putString(b, name);
    if (!sendAll(fd, b)) return std::nullopt;
    auto r = reply(fd);
    if (!r) return std::nullopt;
    uint32_t atom = get32(&(*r)[8]);
    if (atom == 0) return std::nullopt;
    return atom;
}

// Up to `count` 32-bit values of a window property.
std::optional<std::vector<uint32_t>> property32s(int fd, uint32_t window, uint32_t atom, uint32_t count) {
    std::vector<uint8_t> b = {20, 0}; // GetProperty, don't delete
    put16(b, 6);
    put32(b, window);
    put32(b, atom);
    put32(b, 0); // any type
    put32(b, 0); // offset
    put32(b, count);
    if (!sendAll(fd, b)) return std::nullopt;
    auto r = reply(fd);
    if (!r || (*r)[1] != 32) return std::nullopt;
    const std::size_t n = get32(&(*r)[16]);
    if (r->size() < 32 + 4 * n) return std::nullopt;
    std::vector<uint32_t> values;
    for (std::size_t i = 0; i < n; ++i) values.push_back(get32(&(*r)[32 + 4 * i]));
    return values;
}

// The first 32-bit value of a window property.
std::optional<uint32_t> property32(int fd, uint32_t window, uint32_t atom) {
    auto values = property32s(fd, window, atom, 1);
    if (!values || values->empty()) return std::nullopt;
    return values->front();
}

// The connection set-up; gives the first screen's root window.
std::optional<uint32_t> setUp(int fd, const std::string& authName, const std::string& authData) {
    std::vector<uint8_t> setup = {'l', 0};
    put16(setup, 11);
    put16(setup, 0);
    put16(setup, static_cast<uint16_t>(authName.size()));
    put16(setup, static_cast<uint16_t>(authData.size()));
    put16(setup, 0);
    putString(setup, authName);
    putString(setup, authData);
    if (!sendAll(fd, setup)) return std::nullopt;

    uint8_t head[8];
    if (!readExactly(fd, head, 8) || head[0] != 1) return std::nullopt;
    std::size_t size = static_cast<std::size_t>(get16(head + 6)) * 4;
    if (size < 40 || size > (1u << 20)) return std::nullopt;
    std::vector<uint8_t> info(size);
    if (!readExactly(fd, info.data(), size)) return std::nullopt;
    const std::size_t vendor = get16(&info[16]);
    const std::size_t formats = info[21];
    const std::size_t rootAt = 32 + vendor + pad4(vendor) + 8 * formats;
    if (info[20] == 0 || rootAt + 4 > info.size()) return std::nullopt;
    return get32(&info[rootAt]);
}

// Opens the session's display with its cookie and runs `talk` over it; absent where the
// session is not X11 or the display does not answer.
template <typename T, typename Talk>
std::optional<T> overDisplay(const Talk& talk) {
    const char* type = std::getenv("XDG_SESSION_TYPE");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    const char* display = std::getenv("DISPLAY");
    // Under Wayland the X server sees only its own clients' windows: it can't tell.
    if (!display || (type && std::string_view(type) != "x11") || (!type && wayland && *wayland)) return std::nullopt;
    auto number = displayNumber(display);
    if (!number) return std::nullopt;

    std::string name, data;
    const char* xauth = std::getenv("XAUTHORITY");
    std::string file = xauth && *xauth ? xauth : FS::home() + "/.Xauthority";
    char host[256] = {};
    gethostname(host, sizeof host - 1);
    if (auto text = FS::readText(file, 1 << 20))
        if (auto c = cookie(*text, host, *number)) {
            name = cookieName;
            data = *c;
        }

    int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return std::nullopt;
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    std::string path = "/tmp/.X11-unix/X" + *number;
    std::strncpy(addr.sun_path, path.c_str(), sizeof addr.sun_path - 1);
    std::optional<T> out;
    if (connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0) out = talk(fd, name, data);
    close(fd);
    return out;
}

std::optional<uint16_t> be16(std::string_view s, std::size_t& at) {
    if (at + 2 > s.size()) return std::nullopt;
    uint16_t v = static_cast<uint16_t>(static_cast<uint8_t>(s[at]) << 8 | static_cast<uint8_t>(s[at + 1]));
    at += 2;
    return v;
}

std::optional<std::string_view> counted(std::string_view s, std::size_t& at) {
    auto n = be16(s, at);
    if (!n || at + *n > s.size()) return std::nullopt;
    auto v = s.substr(at, *n);
    at += *n;
    return v;
}

} // namespace

std::optional<std::string> displayNumber(std::string_view display) {
    if (display.starts_with("unix:")) display.remove_prefix(4);
    if (display.empty() || display.front() != ':') return std::nullopt; // a remote display
    display.remove_prefix(1);
    auto dot = display.find('.');
    std::string_view number = display.substr(0, dot);
    if (number.empty() || number.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
    return std::string(number);
}

std::optional<std::string> cookie(std::string_view xauthority, std::string_view host, std::string_view number) {
    std::size_t at = 0;
    while (at < xauthority.size()) {
        auto family = be16(xauthority, at);
        auto address = counted(xauthority, at);
        auto display = counted(xauthority, at);
        auto name = counted(xauthority, at);
        auto data = counted(xauthority, at);
        if (!family || !address || !display || !name || !data) return std::nullopt;
        const bool local = *family == 256 && *address == host; // FamilyLocal
        const bool wild = *family == 65535;
        if ((local || wild) && (display->empty() || *display == number) && *name == cookieName) return std::string(*data);
    }
    return std::nullopt;
}

std::optional<int32_t> activePid(int fd, const std::string& authName, const std::string& authData) {
    auto root = setUp(fd, authName, authData);
    if (!root) return std::nullopt;

    auto activeAtom = internAtom(fd, "_NET_ACTIVE_WINDOW");
    if (!activeAtom) return std::nullopt;
    auto pidAtom = internAtom(fd, "_NET_WM_PID");
    if (!pidAtom) return std::nullopt;
    auto window = property32(fd, *root, *activeAtom);
    if (!window || *window == 0) return std::nullopt;
    auto pid = property32(fd, *window, *pidAtom);
    if (!pid || *pid == 0 || *pid > INT32_MAX) return std::nullopt;
    return static_cast<int32_t>(*pid);
}

std::optional<int32_t> activePid() {
    return overDisplay<int32_t>([](int fd, const std::string& name, const std::string& data) {
        return activePid(fd, name, data);
    });
}

int closeWindows(int fd, const std::string& authName, const std::string& authData, const std::set<int32_t>& pids) {
    auto root = setUp(fd, authName, authData);
    if (!root || pids.empty()) return 0;
    auto listAtom = internAtom(fd, "_NET_CLIENT_LIST");
    auto pidAtom = internAtom(fd, "_NET_WM_PID");
    auto closeAtom = internAtom(fd, "_NET_CLOSE_WINDOW");
    if (!listAtom || !pidAtom || !closeAtom) return 0;
    auto windows = property32s(fd, *root, *listAtom, 4096);
    if (!windows) return 0;

    int asked = 0;
    for (uint32_t window : *windows) {
        auto pid = property32(fd, window, *pidAtom);
        if (!pid || *pid > INT32_MAX || !pids.contains(static_cast<int32_t>(*pid))) continue;
        // The window manager closes the window as its own close button would, so that the app
        // may ask about unsaved work: a ClientMessage to the root, as a pager sends it.
        std::vector<uint8_t> b = {25, 0}; // SendEvent, no propagation
        put16(b, 11);
        put32(b, *root);
        put32(b, (1u << 19) | (1u << 20)); // SubstructureNotify | SubstructureRedirect
        b.push_back(33);                    // ClientMessage
        b.push_back(32);                    // format
        put16(b, 0);
        put32(b, window);
        put32(b, *closeAtom);
        put32(b, 0); // the current time
        put32(b, 2); // sent by a pager, on behalf of the user
        put32(b, 0);
        put32(b, 0);
        put32(b, 0);
        if (!sendAll(fd, b)) return asked;
        ++asked;
    }
    // A round trip, so that the events are with the server before the connection closes.
    std::vector<uint8_t> sync = {43, 0}; // GetInputFocus
    put16(sync, 1);
    if (sendAll(fd, sync)) (void)reply(fd);
    return asked;
}

int closeWindows(const std::set<int32_t>& pids) {
    if (pids.empty()) return 0;
    return overDisplay<int>([&](int fd, const std::string& name, const std::string& data) {
               return closeWindows(fd, name, data, pids);
           }).value_or(0);
}

} // namespace X11Front
