#include "history/Pace.h"

#include "history/History.h"

std::optional<Pace> Pace::measure(const HistoryData& data, int64_t free, int64_t swap, TimePoint now) {
    const TimePoint opens = addSeconds(now, -1'209'600);
    const FreeSample* first = nullptr;
    for (const auto& s : data.samples)
        if (s.date >= opens) {
            first = &s;
            break;
        }
    if (!first) return std::nullopt;
    double days = secondsBetween(first->date, now) / 86400.0;
    if (days < 1.0) return std::nullopt;
    // What cleaning gave back in the span would otherwise read as a slower pace.
    int64_t cleaned = 0;
    for (const auto& c : data.cleans)
        if (c.date > first->date && c.date <= now) cleaned += c.freed;
    double consumed = static_cast<double>((first->free + first->swap) - (free + swap) + cleaned);
    return Pace{consumed / days, days, first->date};
}
