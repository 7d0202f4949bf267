#pragma once
// How long the free space lasts, in words and colours: the panel's state and the strip of 30
// days under it.
#include "foundation/Time.h"
#include "history/Pace.h"

#include <cstdint>
#include <optional>
#include <string>

namespace RunwayView {

struct Panel {
    std::string state;    // "learning", "steady" or "filling"
    std::string symbol;
    std::string tint;     // palette name of the symbol and the large figure
    std::string headline; // "Learning your pace", "Not filling up", "Disk full around …"
    std::string big;      // the free bytes, or the days left
    std::string line;     // the sentence under the figure
    std::string tip;      // where the rate comes from (filling only)
    std::string chip;     // how far cleaning moved the date (filling only, may be empty)
    std::optional<double> rate; // bytes a day, only while filling
    friend bool operator==(const Panel&, const Panel&) = default;
};

struct Cell {
    std::string tint; // "green", "amber", "red"
    bool hatched = false;
    double opacity = 1;
    std::string tip;
    friend bool operator==(const Cell&, const Cell&) = default;
};

inline constexpr int cells = 30;

// Whole days until the disk is full at this pace: truncated, never below 1.
[[nodiscard]] int daysLeft(int64_t free, double bytesPerDay);
// Red at up to 7 days, amber at up to 14, green beyond.
[[nodiscard]] std::string daysTint(int days);

// `hours` is how long the history reaches back; `movedDays` what cleaning gained (RunwayPanel::moved).
[[nodiscard]] Panel panel(const std::optional<Pace>& pace, int64_t free, int hours, std::optional<int64_t> movedDays,
                          TimePoint now);

// Day `day` of the strip (0 is today); `rate` only while filling.
[[nodiscard]] Cell cell(int day, int64_t free, std::optional<double> rate, TimePoint now);

} // namespace RunwayView
