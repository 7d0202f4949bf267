#pragma once
// Which app a process belongs to, from its control group and its program. Desktops start each
// app in a unit of its own whose name carries the desktop app id:
//   GNOME and Flatpak  app-<launcher>-<id>-<n>.scope   (the id escaped: "\x2d" is "-")
//   KDE                app-<id>@<random>.service, app-<id>-<random>.scope
//   autostart          app-<id>@autostart.service
//   D-Bus activation   dbus-:<bus>-<id>@<n>.service, in app-dbus\x2d...slice
//   Snap               snap.<name>.<app>-<uuid>.scope
// Other desktops leave no trace there; then the entry whose program is the process's own
// executable stands in.
#include "platform/AppBundles.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace AppUnits {

// The ids a unit name may carry, most likely first; absent for a unit that names no app.
struct UnitIds {
    std::vector<std::string> ids;
    bool autostart = false;           // started by the session's autostart, not by the person
    std::optional<int32_t> launchPid; // the process a scope was made for, where its name says
};
[[nodiscard]] std::optional<UnitIds> parse(std::string_view unit);

// Undoes the unit-name escaping: "\xNN" becomes the byte NN.
[[nodiscard]] std::string unescape(std::string_view s);

// The app a process belongs to and the group it shares with the other processes of the same launch.
struct Membership {
    enum class Kind { service, scope, slice, program };
    std::string group;  // the unit's control-group path, or "exe:" and the entry path
    DesktopEntry entry;
    bool autostart = false;
    Kind kind = Kind::program;
    std::optional<int32_t> launchPid;
};
// In order: the process's own unit, the entry whose program is `exe` (entries run in a
// terminal or hidden from menus don't count: a shell tool or a session helper is no app), and
// then the enclosing app units.
[[nodiscard]] std::optional<Membership> membership(std::string_view cgroup, const std::string& exe,
                                                   const AppBundles& bundles);

// Whether a member of an app group can be the app itself rather than something left in its
// unit: a scope outlives the app it was made for as long as any process stays in it, so an
// orphaned dev server would otherwise pass for the app. A service's processes end with it.
[[nodiscard]] bool isAppProcess(const Membership& m, int32_t pid, std::string_view cgroup, const std::string& exe,
                                const AppBundles& bundles);

// True for a process in a service the user's service manager runs: a "*.service" unit below
// "user@<uid>.service/" whose name does not begin with "app-".
[[nodiscard]] bool isManagedService(std::string_view cgroup, uint32_t uid);

} // namespace AppUnits
