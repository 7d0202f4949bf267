#pragma once
// Running and starting desktop apps: ask one to quit the way its own menu would or close its
// windows, and start one apart from this program without bringing it forward. Which means to
// try, and the polite signal behind them, are the caller's: the signal needs its start-time check.
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

class AppControl {
public:
    virtual ~AppControl() = default;
    // Asks the app of this desktop entry for its own Quit, the action its entry offers on the
    // session bus, where it offers one and runs now. False when it could not be asked.
    [[nodiscard]] virtual bool quitAction(const std::optional<std::string>& entryPath) const = 0;
    // Asks the window manager to close every window of these processes, as their close buttons
    // would; gives how many windows were asked.
    [[nodiscard]] virtual int closeWindows(const std::set<int32_t>& pids) const = 0;
    // Starts the app of an installed entry with `arguments` after its own, detached and not
    // raised. A sentence when it could not be started.
    [[nodiscard]] virtual std::optional<std::string> open(const std::string& entryPath,
                                                          const std::vector<std::string>& arguments) const = 0;

    // This desktop.
    [[nodiscard]] static const AppControl& live();
};
