#pragma once
// Running and starting desktop apps: ask one to quit the way its own menu would, and start one
// apart from this program without bringing it forward. The polite signal that stands behind a
// request no means reached is the caller's, since it needs the caller's start-time check.
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

class AppControl {
public:
    enum class Asked {
        none,    // nothing reached the app; a signal is left
        action,  // its Quit action, over the session bus
        windows, // its windows, closed through the window manager
    };

    virtual ~AppControl() = default;
    // Asks the app of this desktop entry, running as `pids`, to quit: its entry's Quit action on
    // the session bus where it offers one and runs, else closing its windows. Never forces it.
    [[nodiscard]] virtual Asked askToQuit(const std::optional<std::string>& entryPath, const std::set<int32_t>& pids) const = 0;
    // Starts the app of an installed entry with `arguments` after its own, detached and not
    // raised. A sentence when it could not be started.
    [[nodiscard]] virtual std::optional<std::string> open(const std::string& entryPath,
                                                          const std::vector<std::string>& arguments) const = 0;

    // This desktop.
    [[nodiscard]] static const AppControl& live();
};
