#pragma once
#include <chrono>
#include <cstdint>
#include <ctime>
#include <optional>

struct statx_timestamp;

// The wall clock at microsecond grain. Sixty-four bits of microseconds span ±292,000 years, so
// every date the program keeps (1970 to 9999) is a point in time; nanoseconds would wrap after
// 2262 and turn a far date into one in 1677.
struct Clock : std::chrono::system_clock {
    using duration = std::chrono::microseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::sys_time<duration>;
    [[nodiscard]] static time_point now() noexcept {
        return std::chrono::time_point_cast<duration>(std::chrono::system_clock::now());
    }
    // Truncates towards zero, as the standard clock does.
    [[nodiscard]] static std::time_t to_time_t(time_point t) noexcept {
        return static_cast<std::time_t>(std::chrono::duration_cast<std::chrono::seconds>(t.time_since_epoch()).count());
    }
    [[nodiscard]] static time_point from_time_t(std::time_t t) noexcept {
        return time_point(std::chrono::seconds(t));
    }
};
using TimePoint = Clock::time_point;

// Seconds since 1970, as the data files store them.
[[nodiscard]] inline double secondsSince1970(TimePoint t) {
    return std::chrono::duration<double>(t.time_since_epoch()).count();
}
[[nodiscard]] inline TimePoint fromSeconds(double s) {
    return TimePoint(std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(s)));
}
// Seconds from `a` to `b` (positive when b is later).
[[nodiscard]] inline double secondsBetween(TimePoint a, TimePoint b) {
    return std::chrono::duration<double>(b - a).count();
}
[[nodiscard]] inline TimePoint addSeconds(TimePoint t, double s) {
    return t + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(s));
}

// Every date from outside the program comes in through one of these two doors.
//
// A file's own date (modified, accessed, changed, born). A date ahead of `now` counts as `now`:
// a clock gone wrong or an archive unpacked with dates of 2400 makes a file recent, never old,
// and never wraps it into the past. One before 1970 counts as 1970.
[[nodiscard]] TimePoint fileDate(int64_t seconds, int64_t nanoseconds, TimePoint now);
[[nodiscard]] TimePoint fileDate(const struct timespec& t, TimePoint now);
[[nodiscard]] TimePoint fileDate(const struct statx_timestamp& t, TimePoint now);
// A date as a file stores it, in seconds since 1970: absent (a bad field, dropped by the reader)
// unless it is a finite number within the years 1970 to 9999.
[[nodiscard]] std::optional<TimePoint> storedDate(double seconds);
// The same for a whole second count, such as mktime gives.
[[nodiscard]] std::optional<TimePoint> storedDate(std::time_t seconds);

// The last second of the year 9999, UTC.
constexpr int64_t lastStoredSecond = 253'402'300'799;

constexpr int64_t GB = 1'000'000'000;
constexpr int64_t MB = 1'000'000;
constexpr double monthSeconds = 2'592'000;
constexpr double weekSeconds = 604'800;
