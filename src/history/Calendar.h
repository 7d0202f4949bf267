#pragma once
// Days of the local calendar and time zone: where one begins, and the same moment some days on.
#include "foundation/Time.h"

#include <optional>

namespace Calendar {

// The start (midnight) of the local day that holds `t`; absent if the calendar cannot tell.
[[nodiscard]] std::optional<TimePoint> startOfDay(TimePoint t);
// The start of the local day `days` days after the one that holds `t` (before it when negative).
// A day with a clock change keeps its true length.
[[nodiscard]] std::optional<TimePoint> dayStart(TimePoint t, int days);
// Whether both lie on the same local calendar day.
[[nodiscard]] bool sameDay(TimePoint a, TimePoint b);

} // namespace Calendar
