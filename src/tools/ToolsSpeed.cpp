// The --speed report: what the live monitor sees now, as text.
#include "advice/AdviceText.h"
#include "advice/Advisor.h"
#include "advice/Browsers.h"
#include "foundation/DiskInfo.h"
#include "foundation/Fmt.h"
#include "foundation/Text.h"
#include "tools/Tools.h"
#include "history/History.h"
#include "monitor/Monitor.h"
#include "platform/Probe.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr std::size_t nameWidth = 30;

void line(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}

std::string right(const std::string& text, std::size_t width) {
    return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

} // namespace

void Tools::speedReport() {
    Monitor monitor;
    monitor.sampleForTools();
    const Vitals& v = monitor.vitals;
    const TimePoint now = monitor.measuredAt.value_or(Clock::now());
    const int upDays = static_cast<int>(std::max(0.0, secondsBetween(v.boot, now)) / 86400);

    line(Text::format("Processor %.0f%% busy · memory %d%% free, pressure %d · compressed %s · swap %s of %s · "
                      "written %s · up %d days · thermal %d",
                      v.cpu.value_or(0), v.freePercent, v.pressure, Fmt::bytes(v.compressed).c_str(),
                      Fmt::bytes(v.swapUsed).c_str(), Fmt::bytes(v.swapTotal).c_str(),
                      Fmt::bytes(v.swappedOut).c_str(), upDays, v.thermal));
    const std::size_t processes = monitor.latest() ? monitor.latest()->procs.size() : 0;
    line(Text::format("%zu processes of yours, %s of memory in them", processes,
                      Fmt::bytes(monitor.memoryCounted()).c_str()));

    line("\n== By processor ==");
    for (const auto& app : monitor.apps) {
        std::string text = Text::fit(app.name, nameWidth) + right(Fmt::percent(app.cores * 100), 10) +
                           right(Fmt::bytes(app.memory), 10);
        if (monitor.isKept(app)) text += "  kept";
        if (app.isFront) text += "  front";
        line(text);
    }

    line("\n== By memory ==");
    auto byMemory = monitor.apps;
    std::stable_sort(byMemory.begin(), byMemory.end(), [](const AppUsage& a, const AppUsage& b) { return a.memory > b.memory; });
    const bool debug = std::getenv("FB_DEBUG") != nullptr;
    for (const auto& app : byMemory) {
        std::string text = Text::fit(app.name, nameWidth) + right(Fmt::bytes(app.memory), 10);
        if (app.started) text += " started " + Fmt::day(*app.started, now);
        line(text);
        if (!debug || !monitor.latest()) continue;
        for (int32_t pid : app.pids) {
            auto it = monitor.latest()->procs.find(pid);
            if (it == monitor.latest()->procs.end()) continue;
            const ProcRecord& r = it->second;
            line(Text::format("    %d %s ppid %d resp %d %s", pid, Text::visible(r.name).c_str(), r.ppid,
                              r.responsible, Fmt::bytes(r.footprint).c_str()));
        }
    }

    line("\n== Leftovers ==");
    for (const auto& left : monitor.leftovers)
        line(Text::fit(left.label, nameWidth) + right(Fmt::age(left.started, now), 12) +
             right(Fmt::bytes(left.memory), 10) + Text::format(" pids %zu", left.pids.size()));

    line("\n== Slow in the background ==");
    for (const auto& app : monitor.slowApps())
        line(Text::fit(app.name, nameWidth) + right(Fmt::percent(app.cores * 100), 10));

    const Snapshot* snap = monitor.latest() ? &*monitor.latest() : nullptr;
    for (const auto& app : monitor.apps) {
        if (!Browsers::isBrowser(app)) continue;
        auto update = Browsers::pendingUpdate(app, snap);
        if (!update) continue;
        std::string text = Text::visible(app.name) + ": update " + Text::visible(update->version) + " waiting";
        if (update->since) text += " since " + Fmt::day(*update->since, now);
        line(text);
    }

    // The advice as it would stand before any disk scan: no disk rule can apply yet.
    line("\n== Suggestions (no disk scan) ==");
    Advisor::Situation situation;
    situation.model = Advisor::ModelFacts::of(DiskInfo::current(), {}, std::nullopt);
    situation.monitor = Advisor::MonitorFacts::of(monitor, now);
    situation.history = Advisor::HistoryFacts::of(History::shared(), now);
    situation.cores = Probe::cores();
    situation.now = now;
    for (const auto& text : AdviceText::lines(Advisor::recommendations(situation))) line(text);
    std::fflush(stdout);
}
