#pragma once
// What grew in the last 14 days: new files by day, in four buckets, with the places behind them.
// Kept in the history file.
#include "foundation/Time.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

enum class GrowthBucket : int { projects = 0, appData = 1, tools = 2, files = 3 };

namespace GrowthBuckets {
inline constexpr std::array<GrowthBucket, 4> allCases{GrowthBucket::projects, GrowthBucket::appData,
                                                      GrowthBucket::tools, GrowthBucket::files};
[[nodiscard]] constexpr int raw(GrowthBucket b) { return static_cast<int>(b); }
[[nodiscard]] constexpr std::optional<GrowthBucket> fromRaw(int64_t raw) {
    if (raw < 0 || raw > 3) return std::nullopt;
    return static_cast<GrowthBucket>(raw);
}
} // namespace GrowthBuckets

struct GrowthPlace {
    std::string name;
    std::string location; // a short path for display
    int64_t bytes = 0;
    GrowthBucket bucket = GrowthBucket::files;
    friend bool operator==(const GrowthPlace&, const GrowthPlace&) = default;
};

struct GrowthDay {
    TimePoint date{};                 // the start of the day
    std::array<int64_t, 4> buckets{}; // one figure per bucket, in bucket order
    std::vector<GrowthPlace> top;     // at most 5, biggest first

    [[nodiscard]] int64_t total() const { return buckets[0] + buckets[1] + buckets[2] + buckets[3]; }
    friend bool operator==(const GrowthDay&, const GrowthDay&) = default;
};

struct GrowthReport {
    TimePoint made{};
    std::vector<GrowthDay> days;      // 14, oldest first
    std::vector<GrowthPlace> biggest; // at most 6, biggest first, over all days

    [[nodiscard]] int64_t total() const {
        int64_t sum = 0;
        for (const auto& d : days) sum += d.total();
        return sum;
    }
    friend bool operator==(const GrowthReport&, const GrowthReport&) = default;
};
