#pragma once
// What every data-file fuzz target holds its loader to. Built by scripts/fuzz only.
#include "foundation/Time.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

// Stops the run loudly, so that libFuzzer keeps the input.
#define FUZZ_REQUIRE(condition)                                                                   \
    do {                                                                                         \
        if (!(condition)) {                                                                      \
            std::fprintf(stderr, "%s:%d: property broken: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                        \
        }                                                                                        \
    } while (0)

namespace FuzzCheck {

// A date the loader kept lies in the years it may hold.
inline bool inRange(TimePoint t) {
    return t >= TimePoint{} && t <= Clock::from_time_t(lastStoredSecond);
}

// A date written and read back is the same point in time. Seconds in a double hold whole
// microseconds only up to 2^52 of them (the year 2112); past that they may move by a few.
inline bool same(TimePoint a, TimePoint b) {
    auto gap = a > b ? a - b : b - a;
    return gap <= std::chrono::microseconds(64);
}

} // namespace FuzzCheck
