#pragma once
// How far the cleans of the last seven days pushed the disk-full date out.
#include "foundation/Time.h"

#include <cstdint>
#include <optional>
#include <vector>

struct CleanRecord;

namespace RunwayPanel {

// Days gained: what was freed in the last 7 days divided by the pace in bytes a day,
// truncated. Absent with nothing freed, or with a pace that is not above 0.
[[nodiscard]] std::optional<int64_t> moved(const std::vector<CleanRecord>& cleans, TimePoint now, double rate);

} // namespace RunwayPanel
