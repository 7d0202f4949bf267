#pragma once
// One reading of the whole machine. Every field starts at the value a failed read leaves, so
// that a missing reading can never raise an alarm.
#include "foundation/Time.h"

#include <cstdint>

struct SystemReading {
    uint64_t cpuBusy = 0;    // processor ticks since boot spent working, all processors
    uint64_t cpuTotal = 0;   // cpuBusy plus the idle ticks
    int pressureLevel = 1;   // memory pressure: 1 normal, 2 warning, 4 critical
    int freePercent = 100;   // share of memory the kernel can hand out without swapping
    int64_t compressed = 0;  // bytes held compressed in memory (zram, zswap)
    int64_t swapUsed = 0;    // bytes in swap on disk
    int64_t swapTotal = 0;   // size of the swap on disk
    int64_t swappedOut = 0;  // bytes ever written out to swap since boot
    TimePoint bootDate = Clock::now();
    int thermal = 0;         // 0 nominal, 1 fair, 2 serious, 3 critical

    friend bool operator==(const SystemReading&, const SystemReading&) = default;
};
