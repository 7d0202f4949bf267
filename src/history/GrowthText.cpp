#include "history/GrowthText.h"

#include "foundation/Fmt.h"
#include "foundation/Text.h"

namespace GrowthText {

namespace {
constexpr const char* bucketNames[] = {"projects", "app data", "tools", "files"};
}

std::string text(const GrowthReport& report, double seconds) {
    std::string out;
    for (const auto& day : report.days) {
        std::string line = Text::fit(Fmt::dayMonth(day.date), 8) + Text::fit(Fmt::bytes(day.total()), 10);
        for (std::size_t b = 0; b < day.buckets.size(); ++b)
            line += std::string("  ") + bucketNames[b] + " " + Fmt::bytes(day.buckets[b]);
        out += line + "\n";
        for (std::size_t i = 0; i < day.top.size() && i < 3; ++i)
            out += "        " + Text::fit(Fmt::bytes(day.top[i].bytes), 10) + Text::visible(day.top[i].name) +
                   "  · " + Text::visible(day.top[i].location) + "\n";
    }
    out += "\nBiggest in 14 days (" + Fmt::bytes(report.total()) + " in all):\n";
    for (const auto& place : report.biggest)
        out += Text::fit(Fmt::bytes(place.bytes), 10) + Text::visible(place.name) + "  · " +
               Text::visible(place.location) + "\n";
    out += Text::format("\ntook %.1f s\n", seconds);
    return out;
}

} // namespace GrowthText
