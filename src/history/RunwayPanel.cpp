#include "history/RunwayPanel.h"

#include "history/History.h"

#include <cmath>

namespace RunwayPanel {

std::optional<int64_t> moved(const std::vector<CleanRecord>& cleans, TimePoint now, double rate) {
    const TimePoint since = addSeconds(now, -weekSeconds);
    int64_t freed = 0;
    bool any = false;
    for (const auto& c : cleans)
        if (c.date > since) {
            freed += c.freed;
            any = true;
        }
    if (!any || freed < 1 || !(rate > 0)) return std::nullopt;
    return static_cast<int64_t>(std::trunc(static_cast<double>(freed) / rate));
}

} // namespace RunwayPanel
