#include "ui/week/GrowthChart.h"

#include "foundation/Fmt.h"
#include "foundation/Text.h"

#include <array>
#include <cmath>
#include <ctime>

namespace GrowthChart {

namespace {

std::tm localParts(TimePoint t) {
    const std::time_t s = Clock::to_time_t(t);
    std::tm parts{};
    localtime_r(&s, &parts);
    return parts;
}

} // namespace

int64_t top(int64_t peak) {
    // Steps in MB, so that the comparison is exact in integers.
    static constexpr std::array<int64_t, 13> steps{500, 1000, 2000, 4000, 8000, 12000, 16000, 20000, 30000, 40000, 60000, 80000, 100000};
    const int64_t p = std::max<int64_t>(0, peak);
    if (p <= 100 * GB)
        for (int64_t step : steps)
            if (p * 100 <= step * MB * 98) return step * MB;
    const int64_t fifty = 50 * GB;
    return (p / fifty + (p % fifty != 0 ? 1 : 0)) * fifty;
}

std::string gridLabel(int64_t bytes) {
    if (bytes < GB) return Text::format("%lld MB", std::llround(static_cast<double>(bytes) / 1e6));
    if (bytes % GB == 0) return Text::format("%lld GB", static_cast<long long>(bytes / GB));
    return Text::format("%.1f GB", static_cast<double>(bytes) / 1e9);
}

std::string barLabel(TimePoint date, int index, bool today) {
    if (today) return "Today";
    const std::tm p = localParts(date);
    if (index == 0 || p.tm_mday == 1) return Fmt::dayMonth(date);
    return std::to_string(p.tm_mday);
}

std::string dayTitle(TimePoint date, bool today) {
    if (today) return "Today, " + Fmt::dayMonth(date);
    static constexpr std::array<const char*, 7> weekdays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr std::array<const char*, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::tm p = localParts(date);
    return Text::format("%s, %s %d", weekdays[static_cast<std::size_t>(p.tm_wday % 7)], months[static_cast<std::size_t>(p.tm_mon % 12)],
                        p.tm_mday);
}

std::string barTip(const GrowthDay& day, bool today) {
    std::string tip = dayTitle(day.date, today);
    if (day.top.empty()) return tip + ": nothing new";
    return tip + ": " + Fmt::bytes(day.total()) + ". Most of it: " + day.top.front().name + ", " + Fmt::bytes(day.top.front().bytes) + ".";
}

std::string accessibleLabel(const GrowthDay& day) { return Fmt::dayMonth(day.date) + ", " + Fmt::bytes(day.total()) + " of new files"; }

Look look(const std::string& name, GrowthBucket bucket) {
    struct Rule {
        std::vector<const char*> words;
        Look look;
    };
    static const std::vector<Rule> rules{
        {{"Chrome", "Edge", "Brave"}, {"globe", "browser"}},
        {{"transcript"}, {"doc.text", "purple"}},
        {{"Claude", "Codex", "ChatGPT"}, {"sparkle", "claude"}},
        {{"Video", "Movies"}, {"film", "green"}},
        {{"Downloads"}, {"arrow.down.to.line", "green"}},
        {{"VS Code", "Cursor", "extensions"}, {"chevron.left.forwardslash.chevron.right", "purple"}},
        {{"packages"}, {"shippingbox", "blue"}},
        {{"build output"}, {"hammer", "blue"}},
        {{"project files"}, {"folder", "blue"}},
        {{"cache", "update files"}, {"custom.broom", "amber"}},
    };
    for (const Rule& r : rules)
        for (const char* w : r.words)
            if (Text::contains(name, w)) return r.look;
    switch (bucket) {
    case GrowthBucket::appData: return {"square.stack.3d.up", "amber"};
    case GrowthBucket::projects: return {"folder", "blue"};
    case GrowthBucket::tools: return {"wrench.and.screwdriver", "purple"};
    case GrowthBucket::files: return {"doc", "green"};
    }
    return {"doc", "green"};
}

} // namespace GrowthChart
