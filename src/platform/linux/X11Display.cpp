#include "platform/linux/X11Display.h"

#include <poll.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>
#include <xcb/xcbext.h> // xcb_poll_for_reply: a reply awaited with a limit

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using Steady = std::chrono::steady_clock;
constexpr auto answerWithin = std::chrono::seconds(1);

bool local(const std::string& display) {
    char* host = nullptr;
    int number = 0, screen = 0;
    if (!xcb_parse_display(display.c_str(), &host, &number, &screen)) return false;
    const bool here = !host || !*host || std::string_view(host) == "unix";
    std::free(host);
    return here;
}

} // namespace

struct X11Display::Link {
    xcb_connection_t* c = nullptr;
    xcb_ewmh_connection_t ewmh{};
    bool atoms = false;
    int screen = 0;
    bool stalled = false; // a reply did not come in time

    Link() = default;
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link() {
        if (atoms) xcb_ewmh_connection_wipe(&ewmh);
        if (c) xcb_disconnect(c);
    }

    // Connects and learns the EWMH atoms; waits on the server without a limit.
    static std::unique_ptr<Link> open(const std::string& display) {
        auto l = std::make_unique<Link>();
        l->c = xcb_connect(display.c_str(), &l->screen);
        if (xcb_connection_has_error(l->c)) return nullptr;
        xcb_intern_atom_cookie_t* cookies = xcb_ewmh_init_atoms(l->c, &l->ewmh);
        if (!cookies || !xcb_ewmh_init_atoms_replies(&l->ewmh, cookies, nullptr)) return nullptr;
        l->atoms = true;
        if (l->screen < 0 || l->screen >= l->ewmh.nb_screens) return nullptr;
        return l;
    }

    bool usable() const { return !stalled && !xcb_connection_has_error(c); }

    // The property reply to the request `sequence`, or null: the server answered with an
    // error, or not before the deadline, and then the connection is given up on.
    xcb_get_property_reply_t* await(unsigned sequence, Steady::time_point deadline) {
        for (;;) {
            void* reply = nullptr;
            xcb_generic_error_t* error = nullptr;
            if (xcb_poll_for_reply(c, sequence, &reply, &error)) {
                std::free(error);
                return static_cast<xcb_get_property_reply_t*>(reply);
            }
            if (xcb_connection_has_error(c)) return nullptr;
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Steady::now()).count();
            if (left <= 0) {
                stalled = true;
                return nullptr;
            }
            pollfd p{xcb_get_file_descriptor(c), POLLIN, 0};
            (void)poll(&p, 1, static_cast<int>(left));
        }
    }

    std::optional<uint32_t> pidOf(unsigned sequence, Steady::time_point deadline) {
        xcb_get_property_reply_t* r = await(sequence, deadline);
        uint32_t pid = 0;
        const bool ok = r && xcb_ewmh_get_wm_pid_from_reply(&pid, r);
        std::free(r);
        if (!ok || pid == 0 || pid > INT32_MAX) return std::nullopt;
        return pid;
    }
};

// One connection attempt, made on a thread of its own: a server that accepts the connection but
// never greets it would otherwise hold the reading forever. The reading that starts an attempt
// waits for it up to its deadline; later readings only look whether it has ended.
struct X11Display::Attempt {
    std::mutex m;
    std::condition_variable ended;
    bool finished = false;
    std::unique_ptr<Link> link;
};

X11Display::X11Display(std::optional<std::string> at) {
    if (at && local(*at)) display = std::move(at);
}

X11Display::~X11Display() = default;

int X11Display::connections() const {
    std::lock_guard lock(mutex);
    return opened;
}

X11Display::Link* X11Display::acquire() {
    if (link && !link->usable()) link.reset();
    if (link || !display) return link.get();

    const bool fresh = !pending;
    if (fresh) {
        pending = std::make_shared<Attempt>();
        ++opened;
        std::thread([attempt = pending, name = *display] {
            auto made = Link::open(name);
            std::lock_guard lock(attempt->m);
            attempt->link = std::move(made);
            attempt->finished = true;
            attempt->ended.notify_all();
        }).detach();
    }
    std::unique_ptr<Link> made;
    {
        std::unique_lock lock(pending->m);
        if (fresh) pending->ended.wait_for(lock, answerWithin, [&] { return pending->finished; });
        if (!pending->finished) return nullptr;
        made = std::move(pending->link);
    }
    pending.reset();
    link = std::move(made);
    if (link)
        // Errors of requests that have no reply wait in the event queue, which nothing else reads.
        while (xcb_generic_event_t* e = xcb_poll_for_queued_event(link->c)) std::free(e);
    return link.get();
}

std::optional<int32_t> X11Display::activePid() {
    std::lock_guard lock(mutex);
    Link* l = acquire();
    if (!l) return std::nullopt;
    const auto deadline = Steady::now() + answerWithin;
    const unsigned asked = xcb_ewmh_get_active_window(&l->ewmh, l->screen).sequence;
    xcb_flush(l->c);
    xcb_get_property_reply_t* r = l->await(asked, deadline);
    xcb_window_t window = XCB_NONE;
    const bool named = r && xcb_ewmh_get_active_window_from_reply(&window, r);
    std::free(r);
    if (!named || window == XCB_NONE) return std::nullopt;

    const unsigned pidAsked = xcb_ewmh_get_wm_pid(&l->ewmh, window).sequence;
    xcb_flush(l->c);
    auto pid = l->pidOf(pidAsked, deadline);
    if (!pid) return std::nullopt;
    return static_cast<int32_t>(*pid);
}

int X11Display::closeWindows(const std::set<int32_t>& pids) {
    if (pids.empty()) return 0;
    std::lock_guard lock(mutex);
    Link* l = acquire();
    if (!l) return 0;
    const auto deadline = Steady::now() + answerWithin;
    const unsigned listAsked = xcb_ewmh_get_client_list(&l->ewmh, l->screen).sequence;
    xcb_flush(l->c);
    xcb_get_property_reply_t* r = l->await(listAsked, deadline);
    std::vector<xcb_window_t> windows;
    xcb_ewmh_get_windows_reply_t list{};
    if (r && xcb_ewmh_get_client_list_from_reply(&list, r)) windows.assign(list.windows, list.windows + list.windows_len);
    std::free(r);

    // Every window's pid asked at once, then the answers read in turn: one round trip.
    std::vector<unsigned> asked;
    for (xcb_window_t w : windows) asked.push_back(xcb_ewmh_get_wm_pid(&l->ewmh, w).sequence);
    xcb_flush(l->c);
    int closing = 0;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (!l->usable()) {
            xcb_discard_reply(l->c, asked[i]);
            continue;
        }
        auto pid = l->pidOf(asked[i], deadline);
        if (!pid || !pids.contains(static_cast<int32_t>(*pid))) continue;
        // The window manager closes it as its own close button would, so that the app may ask
        // about unsaved work: sent by a pager, on behalf of the user.
        xcb_ewmh_request_close_window(&l->ewmh, l->screen, windows[i], XCB_CURRENT_TIME,
                                      XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
        ++closing;
    }
    return xcb_flush(l->c) > 0 ? closing : 0;
}

std::optional<std::string> X11Display::sessionDisplay(const char* type, const char* wayland, const char* display) {
    if (!display || !*display) return std::nullopt;
    const std::string_view session = type ? type : "";
    if (session == "wayland") return std::nullopt;
    // A session of another type (an X server started from a console reads "tty") is X11 unless a
    // Wayland compositor is named.
    if (session != "x11" && wayland && *wayland) return std::nullopt;
    return std::string(display);
}

X11Display& X11Display::session() {
    static X11Display display(sessionDisplay(std::getenv("XDG_SESSION_TYPE"), std::getenv("WAYLAND_DISPLAY"),
                                             std::getenv("DISPLAY")));
    return display;
}
