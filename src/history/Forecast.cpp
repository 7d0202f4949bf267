#include "history/Forecast.h"

#include <algorithm>
#include <cmath>

namespace Forecast {

State state(const std::optional<Pace>& pace) {
    if (!pace) return State::learning;
    return pace->filling() ? State::filling : State::notFilling;
}

std::optional<int64_t> daysLeft(const Pace& pace, int64_t free) {
    if (!pace.filling()) return std::nullopt;
    return static_cast<int64_t>(std::trunc(static_cast<double>(free) / pace.bytesPerDay));
}

int64_t runway(int64_t days) { return std::max<int64_t>(1, days); }

std::string_view colour(int64_t days) {
    if (days <= 7) return "red";
    if (days <= 14) return "amber";
    return "green";
}

TimePoint fullAround(TimePoint now, int64_t days) { return addSeconds(now, static_cast<double>(days) * 86400.0); }

} // namespace Forecast
