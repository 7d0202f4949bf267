#pragma once
// Safety class of a cleaning item.
#include <array>
#include <optional>
#include <string_view>

enum class Tier : int { safe = 0, rebuildable = 1, yourCall = 2 };

namespace Tiers {

inline constexpr std::array<Tier, 3> allCases{Tier::safe, Tier::rebuildable, Tier::yourCall};

[[nodiscard]] constexpr int id(Tier t) { return static_cast<int>(t); }
[[nodiscard]] constexpr std::optional<Tier> fromRaw(int raw) {
    if (raw < 0 || raw > 2) return std::nullopt;
    return static_cast<Tier>(raw);
}

[[nodiscard]] constexpr std::string_view title(Tier t) {
    switch (t) {
    case Tier::safe: return "Safe to clear";
    case Tier::rebuildable: return "Rebuildable";
    case Tier::yourCall: return "Your call";
    }
    return {};
}
[[nodiscard]] constexpr std::string_view blurb(Tier t) {
    switch (t) {
    case Tier::safe: return "caches that refill on their own";
    case Tier::rebuildable: return "build folders a reinstall brings back";
    case Tier::yourCall: return "big, and only you know if you still need it";
    }
    return {};
}
[[nodiscard]] constexpr std::string_view shortName(Tier t) {
    switch (t) {
    case Tier::safe: return "safe";
    case Tier::rebuildable: return "rebuild";
    case Tier::yourCall: return "yours";
    }
    return {};
}
// Symbol names of the design language; the window maps them to the host's icons.
[[nodiscard]] constexpr std::string_view symbol(Tier t) {
    switch (t) {
    case Tier::safe: return "bubbles.and.sparkles";
    case Tier::rebuildable: return "hammer";
    case Tier::yourCall: return "questionmark.circle";
    }
    return {};
}
// Palette colour names.
[[nodiscard]] constexpr std::string_view color(Tier t) {
    switch (t) {
    case Tier::safe: return "amber";
    case Tier::rebuildable: return "blue";
    case Tier::yourCall: return "purple";
    }
    return {};
}

} // namespace Tiers
