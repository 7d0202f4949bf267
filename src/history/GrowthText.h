#pragma once
// The growth report as text, the way the --growth option prints it.
#include "history/GrowthReport.h"

#include <string>

namespace GrowthText {

// One line per day with its total and its four buckets, the day's top places under it, then
// the biggest places of the whole period.
[[nodiscard]] std::string text(const GrowthReport& report, double seconds);

} // namespace GrowthText
