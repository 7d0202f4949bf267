#pragma once
// The forecast the screens build on a pace: whether the disk fills, the days left, the date.
#include "foundation/Time.h"
#include "history/Pace.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace Forecast {

enum class State {
    learning,   // no pace yet
    notFilling, // a pace that is not filling
    filling,
};

[[nodiscard]] State state(const std::optional<Pace>& pace);
// Whole days until `free` is gone at this pace, truncated towards zero; absent unless filling.
[[nodiscard]] std::optional<int64_t> daysLeft(const Pace& pace, int64_t free);
// The days left as a runway shows them: at least 1.
[[nodiscard]] int64_t runway(int64_t daysLeft);
// Palette colour of a runway: red up to 7 days, amber up to 14, green above.
[[nodiscard]] std::string_view colour(int64_t days);
// The moment named by "Disk full around".
[[nodiscard]] TimePoint fullAround(TimePoint now, int64_t daysLeft);

} // namespace Forecast
