#include "ui/week/RunwayView.h"

#include "foundation/Fmt.h"

#include <algorithm>
#include <cmath>

namespace RunwayView {

namespace {

TimePoint inDays(TimePoint now, double days) { return addSeconds(now, days * 86400); }

} // namespace

int daysLeft(int64_t free, double bytesPerDay) {
    if (!(bytesPerDay > 0)) return 1;
    const double d = std::floor(static_cast<double>(std::max<int64_t>(0, free)) / bytesPerDay);
    return static_cast<int>(std::clamp(d, 1.0, 1e6));
}

std::string daysTint(int days) { return days <= 7 ? "red" : days <= 14 ? "amber" : "green"; }

Panel panel(const std::optional<Pace>& pace, int64_t free, int hours, std::optional<int64_t> movedDays, TimePoint now) {
    Panel p;
    if (!pace) {
        p.state = "learning";
        p.symbol = "hourglass";
        p.tint = "text2";
        p.headline = "Learning your pace";
        p.big = Fmt::bytes(free);
        const int n = std::max(0, hours);
        p.line = "Sorrelin needs a day of free space readings to forecast. It has " + std::to_string(n) +
                 (n == 1 ? " hour" : " hours") + " so far.";
        return p;
    }
    if (!pace->filling()) {
        p.state = "steady";
        p.symbol = "checkmark.circle";
        p.tint = "green";
        p.headline = "Not filling up";
        p.big = Fmt::bytes(free);
        p.line = "Free space has not dropped since " + Fmt::dayMonth(pace->since) + ".";
        return p;
    }
    const int days = daysLeft(free, pace->bytesPerDay);
    p.state = "filling";
    p.symbol = "calendar";
    p.tint = daysTint(days);
    p.headline = "Disk full around " + Fmt::dayMonth(inDays(now, days));
    p.big = days == 1 ? "1 day" : std::to_string(days) + " days";
    p.line = "at about " + Fmt::bytes(static_cast<int64_t>(pace->bytesPerDay)) + " a day";
    p.tip = "From free space readings since " + Fmt::dayMonth(pace->since) +
            ", adding back what Sorrelin cleaned in between and leaving out swap, which comes and goes with memory.";
    if (movedDays && *movedDays >= 1)
        p.chip = "Cleaning this week moved it out by " + std::to_string(*movedDays) + (*movedDays == 1 ? " day" : " days");
    p.rate = pace->bytesPerDay;
    return p;
}

Cell cell(int day, int64_t free, std::optional<double> rate, TimePoint now) {
    Cell c;
    const double f = static_cast<double>(free);
    const double projected = f - rate.value_or(0) * day;
    if (projected <= 0) {
        c.tint = "red";
        c.hatched = true;
    } else {
        c.tint = projected < 5e9 ? "red" : projected < 1e10 ? "amber" : "green";
    }
    if (!rate) {
        c.opacity = 0.75;
    } else {
        // The cells fade as the disk fills.
        const double part = f < 2 ? projected / f : std::min(1.0, projected / f);
        c.opacity = 0.35 + 0.65 * (std::isfinite(part) ? part : 0);
    }
    const std::string label = day == 0 ? "Today" : Fmt::dayMonth(inDays(now, day));
    if (!rate) c.tip = label + ": about " + Fmt::bytes(free) + " free, if nothing changes";
    else if (projected > 0) c.tip = label + ": about " + Fmt::bytes(static_cast<int64_t>(projected)) + " free";
    else c.tip = label + ": disk full";
    return c;
}

} // namespace RunwayView
