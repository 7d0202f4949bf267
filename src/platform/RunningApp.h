#pragma once
// One application as the desktop knows it: the oldest process of an app group whose desktop
// entry is installed.
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

struct RunningApp {
    int32_t pid = 0;
    std::optional<std::string> bundlePath; // the desktop entry file
    std::optional<std::string> bundleID;   // the desktop app id
    std::string name;                      // display name, direction marks and blanks trimmed
    bool accessory = false;                // no menu entry (NoDisplay) or started only by autostart
    bool active = false;                   // the app with the keyboard, where the session can tell

    friend bool operator==(const RunningApp&, const RunningApp&) = default;

    // The apps running now, by pid. Read on the thread that owns the monitor.
    [[nodiscard]] static std::map<int32_t, RunningApp> current();
    // A name as it is shown: left-to-right and right-to-left marks, embedding marks and blanks
    // trimmed from both ends.
    [[nodiscard]] static std::string trimName(std::string_view name);
};

using RunningApps = std::map<int32_t, RunningApp>;
