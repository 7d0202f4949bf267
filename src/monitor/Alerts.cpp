#include "monitor/Alerts.h"

#include "foundation/Fmt.h"
#include "foundation/PlatformWords.h"
#include "foundation/Rendering.h"
#include "history/History.h"
#include "monitor/Monitor.h"

#include <algorithm>
#include <cmath>

namespace Alerts {

namespace {

constexpr int64_t gigabyte = 1'000'000'000;

std::string slowKey(const AppUsage& app) { return "slow:" + app.id; }

} // namespace

Alert slow(const std::vector<AppUsage>& apps, const Monitor& monitor, int cores) {
    Alert a;
    a.title = PlatformWords::title("Your Mac is slowing down");
    a.id = "slow";
    const bool two = apps.size() == 2;
    a.category = two ? "slow2" : "slow1";
    if (apps.empty()) return a;
    // Names go in after the words are settled, so an app called "Mac Mail" keeps its name.
    a.body = two ? apps[0].name + " and " + apps[1].name + " are" : apps[0].name + " is";
    a.body += " keeping the processor busy in the background.";
    const bool nothingToSave =
        std::all_of(apps.begin(), apps.end(), [&](const AppUsage& app) { return monitor.nothingToSave(app); });
    if (nothingToSave) {
        a.body += two ? " Neither has anything to save." : " It has nothing to save.";
    } else {
        double sum = 0;
        for (const auto& app : apps) sum += app.cores;
        const int percent = std::max(1, static_cast<int>(std::trunc(sum / std::max(cores, 1) * 100)));
        a.body += " Quitting gives back about " + std::to_string(percent) + "% of the processor.";
    }
    for (const auto& app : apps) a.apps.push_back(app.id);
    return a;
}

Alert memory(const std::optional<AppUsage>& biggest, int64_t swap) {
    Alert a;
    a.title = "Memory is tight";
    a.id = "memory";
    a.category = "memory";
    a.body = PlatformWords::say("Your Mac is moving memory to the disk");
    if (swap >= gigabyte) a.body += " (" + Fmt::bytes(swap) + " so far)";
    a.body += ", which makes switching apps slow.";
    if (biggest && biggest->memory >= gigabyte) a.body += " " + biggest->name + " holds " + Fmt::bytes(biggest->memory) + ".";
    return a;
}

void evaluate(const Monitor& monitor, History& history, Poster& poster, TimePoint now, int cores) {
    if (Tools::rendering) return;
    std::vector<AppUsage> fresh;
    for (const auto& app : monitor.sustainedSlow())
        if (!history.alertedRecently(slowKey(app), now)) fresh.push_back(app);
    if (!fresh.empty()) {
        const std::vector<AppUsage> named(fresh.begin(), fresh.begin() + std::min<std::size_t>(2, fresh.size()));
        poster.post(slow(named, monitor, cores));
        // Every fresh app is marked, a third one too: it is passed over without being named.
        for (const auto& app : fresh) history.markAlerted(slowKey(app), now);
        // The memory alert waits for a later minute; the pressure readings go on.
        return;
    }
    if (!monitor.memoryTightTenMinutes() || history.alertedRecently("memory", now)) return;
    std::optional<AppUsage> biggest;
    for (const auto& app : monitor.apps) {
        if (monitor.isKept(app)) continue;
        if (!biggest || app.memory > biggest->memory) biggest = app;
    }
    poster.post(memory(biggest, monitor.vitals.swapUsed));
    history.markAlerted("memory", now);
}

} // namespace Alerts
