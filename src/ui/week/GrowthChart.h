#pragma once
// The chart of new files a day over the last 14 days: its scale, its labels and tips, and how a
// place is drawn in the day and biggest panels.
#include "foundation/Time.h"
#include "history/GrowthReport.h"

#include <cstdint>
#include <string>

namespace GrowthChart {

// The top of the scale in bytes for the largest day: the first of 0.5, 1, 2, 4, 8, 12, 16, 20,
// 30, 40, 60, 80 and 100 GB that the peak fills to at most 98%; beyond, the peak rounded up to
// 50 GB.
[[nodiscard]] int64_t top(int64_t peak);
// A grid line's label: "250 MB", "2 GB", "1.5 GB".
[[nodiscard]] std::string gridLabel(int64_t bytes);

// Under a bar: "Today", the date on the first bar and on the first of a month, else the day.
[[nodiscard]] std::string barLabel(TimePoint date, int index, bool today);
// "Today, Mar 4" or "Tue, Mar 4".
[[nodiscard]] std::string dayTitle(TimePoint date, bool today);
[[nodiscard]] std::string barTip(const GrowthDay& day, bool today);
[[nodiscard]] std::string accessibleLabel(const GrowthDay& day);

struct Look {
    std::string symbol;
    std::string tint; // a palette name
    friend bool operator==(const Look&, const Look&) = default;
};
// The first rule whose words the name contains, else the bucket's look.
[[nodiscard]] Look look(const std::string& name, GrowthBucket bucket);

} // namespace GrowthChart
