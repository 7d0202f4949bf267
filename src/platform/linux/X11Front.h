#pragma once
// What the program asks of an X11 server, in its own wire protocol (a handful of requests), so
// that the core links no X library: which process owns the window with the keyboard, and
// closing an app's windows the way their close buttons would. Only an X11 session can do
// either: under Wayland no app is front and no window is closed from outside.
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace X11Front {

// The pid behind _NET_ACTIVE_WINDOW on the session's display, when the session is X11 and
// the window manager says; absent otherwise. Gives up after a second.
[[nodiscard]] std::optional<int32_t> activePid();

// The same over an open connection to a server, with its authorisation (may be empty).
[[nodiscard]] std::optional<int32_t> activePid(int fd, const std::string& authName, const std::string& authData);

// Asks the window manager to close every managed window of these processes (_NET_CLOSE_WINDOW,
// as a pager would), so that each app may ask about unsaved work first. Gives how many windows
// were asked; 0 outside an X11 session.
[[nodiscard]] int closeWindows(const std::set<int32_t>& pids);
[[nodiscard]] int closeWindows(int fd, const std::string& authName, const std::string& authData,
                               const std::set<int32_t>& pids);

// The display number of a local DISPLAY value (":0", ":1.0", "unix:0"); absent for a remote one.
[[nodiscard]] std::optional<std::string> displayNumber(std::string_view display);

// The MIT-MAGIC-COOKIE-1 for a local display in the bytes of an Xauthority file.
[[nodiscard]] std::optional<std::string> cookie(std::string_view xauthority, std::string_view host, std::string_view number);

} // namespace X11Front
