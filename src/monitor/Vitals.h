#pragma once
// The machine's figures as they are shown.
#include "foundation/Time.h"

#include <cstdint>
#include <optional>

struct Vitals {
    std::optional<double> cpu; // whole-machine busy percent, 0...100, smoothed
    int pressure = 1;
    int freePercent = 100;
    int64_t compressed = 0;
    int64_t swapUsed = 0;
    int64_t swapTotal = 0;
    int64_t swappedOut = 0;
    TimePoint boot = Clock::now();
    int thermal = 0;
};
