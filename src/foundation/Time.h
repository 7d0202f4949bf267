#pragma once
#include <chrono>
#include <cstdint>

using Clock = std::chrono::system_clock;
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

constexpr int64_t GB = 1'000'000'000;
constexpr int64_t MB = 1'000'000;
constexpr double monthSeconds = 2'592'000;
constexpr double weekSeconds = 604'800;
