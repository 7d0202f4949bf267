#include "history/Calendar.h"

#include <ctime>

namespace Calendar {

namespace {

bool localParts(TimePoint t, std::tm& parts) {
    std::time_t tt = Clock::to_time_t(t);
    if (t < Clock::from_time_t(tt)) --tt; // to_time_t truncates towards zero
    return localtime_r(&tt, &parts) != nullptr;
}

} // namespace

std::optional<TimePoint> dayStart(TimePoint t, int days) {
    std::tm p{};
    if (!localParts(t, p)) return std::nullopt;
    p.tm_mday += days;
    p.tm_hour = 0;
    p.tm_min = 0;
    p.tm_sec = 0;
    p.tm_isdst = -1; // let the time zone say whether that midnight is in summer time
    std::time_t made = mktime(&p);
    if (made == static_cast<std::time_t>(-1)) return std::nullopt;
    return Clock::from_time_t(made);
}

std::optional<TimePoint> startOfDay(TimePoint t) { return dayStart(t, 0); }

bool sameDay(TimePoint a, TimePoint b) {
    std::tm x{}, y{};
    if (!localParts(a, x) || !localParts(b, y)) return false;
    return x.tm_year == y.tm_year && x.tm_yday == y.tm_yday;
}

} // namespace Calendar
