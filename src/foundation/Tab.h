#pragma once
// The tabs of the main window, in their order. Advice that sends the user somewhere names one,
// so the core knows them as well as the window does.
#include <array>
#include <optional>
#include <string_view>

enum class Tab : int { home = 0, storage = 1, clean = 2, projects = 3, speed = 4, week = 5 };

namespace Tabs {

inline constexpr std::array<Tab, 6> allCases{Tab::home, Tab::storage, Tab::clean, Tab::projects, Tab::speed, Tab::week};

[[nodiscard]] constexpr int id(Tab t) { return static_cast<int>(t); }
[[nodiscard]] constexpr std::optional<Tab> fromRaw(int raw) {
    if (raw < 0 || raw > 5) return std::nullopt;
    return static_cast<Tab>(raw);
}

[[nodiscard]] constexpr std::string_view title(Tab t) {
    switch (t) {
    case Tab::home: return "Home";
    case Tab::storage: return "Storage";
    case Tab::clean: return "Clean";
    case Tab::projects: return "Projects";
    case Tab::speed: return "Speed";
    case Tab::week: return "Week";
    }
    return {};
}

} // namespace Tabs
