#pragma once
// How fast the disk fills: net bytes the user's own activity consumed per day. Space given back
// by cleaning is added back, and swap, which comes and goes with memory, is counted as free.
#include "foundation/Time.h"

#include <optional>

struct HistoryData;

struct Pace {
    double bytesPerDay = 0; // negative when free space grew
    double days = 1;        // the span measured, never below 1
    TimePoint since{};      // the sample the measurement starts from

    // Filling means more than 50 MB a day; below that the disk counts as steady, whatever the sign.
    [[nodiscard]] bool filling() const { return bytesPerDay > 5e7; }
    friend bool operator==(const Pace&, const Pace&) = default;

    // The slope of the chord from the first sample of the last 14 days to now. Absent with no
    // such sample, or when it is less than a day old.
    [[nodiscard]] static std::optional<Pace> measure(const HistoryData& data, int64_t free, int64_t swap, TimePoint now);
};
