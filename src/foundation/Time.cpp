#include "foundation/Time.h"

#include <sys/stat.h>

#include <cmath>

TimePoint fileDate(int64_t seconds, int64_t nanoseconds, TimePoint now) {
    // Compared in whole seconds first: a second count of the year 2400 must not be turned into
    // microseconds before it is known to fit.
    const int64_t nowSeconds = std::chrono::floor<std::chrono::seconds>(now).time_since_epoch().count();
    if (seconds > nowSeconds) return now;
    if (seconds < 0) return TimePoint{};
    TimePoint t = Clock::from_time_t(static_cast<std::time_t>(seconds));
    if (nanoseconds > 0 && nanoseconds < 1'000'000'000) t += std::chrono::microseconds(nanoseconds / 1000);
    return t < now ? t : now;
}

TimePoint fileDate(const struct timespec& t, TimePoint now) {
    return fileDate(static_cast<int64_t>(t.tv_sec), static_cast<int64_t>(t.tv_nsec), now);
}

TimePoint fileDate(const struct statx_timestamp& t, TimePoint now) {
    return fileDate(static_cast<int64_t>(t.tv_sec), static_cast<int64_t>(t.tv_nsec), now);
}

std::optional<TimePoint> storedDate(double seconds) {
    // Written as a negation so that NaN fails too.
    if (!(seconds >= 0 && seconds < static_cast<double>(lastStoredSecond + 1))) return std::nullopt;
    return TimePoint(Clock::duration(std::llround(seconds * 1e6)));
}

std::optional<TimePoint> storedDate(std::time_t seconds) {
    if (seconds < 0 || seconds > lastStoredSecond) return std::nullopt;
    return Clock::from_time_t(seconds);
}
