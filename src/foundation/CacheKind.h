#pragma once
// How stale a cache is: decides what starts ticked and how a row reads.
#include <array>
#include <optional>
#include <string_view>

enum class CacheKind { leftover, orphan, idle, active };

namespace CacheKinds {

inline constexpr std::array<CacheKind, 4> allCases{CacheKind::leftover, CacheKind::orphan, CacheKind::idle,
                                                   CacheKind::active};

[[nodiscard]] constexpr std::string_view rawValue(CacheKind k) {
    switch (k) {
    case CacheKind::leftover: return "leftover";
    case CacheKind::orphan: return "orphan";
    case CacheKind::idle: return "idle";
    case CacheKind::active: return "active";
    }
    return {};
}
[[nodiscard]] constexpr std::optional<CacheKind> fromRaw(std::string_view raw) {
    for (CacheKind k : allCases)
        if (rawValue(k) == raw) return k;
    return std::nullopt;
}
[[nodiscard]] constexpr bool isStale(CacheKind k) { return k != CacheKind::active; }

} // namespace CacheKinds
