#include "ui/speed/WhoPanel.h"

#include "foundation/Fmt.h"
#include "foundation/PlatformWords.h"
#include "ui/speed/AppTint.h"

#include <algorithm>
#include <cmath>

namespace WhoPanel {

namespace {

std::string processes(std::size_t n, bool singular) {
    return std::to_string(n) + (singular && n == 1 ? " process" : " processes");
}

std::string subLine(const AppUsage& a, TimePoint now) {
    if (!a.started) return processes(a.pids.size(), false);
    if (secondsBetween(*a.started, now) < 86400) return processes(a.pids.size(), true);
    return "Open since " + Fmt::dayMonth(*a.started);
}

} // namespace

std::string tint(const AppUsage& app, const std::string& systemKey) {
    return app.id == systemKey ? "slate" : AppTint::name(app.id);
}

double share(double cores, int allCores) {
    if (!std::isfinite(cores) || cores <= 0 || allCores < 1) return 0;
    return cores / allCores * 100;
}

std::vector<Row> rows(const Input& in) {
    static const std::vector<AppUsage> noApps;
    static const std::vector<Leftover> noLeftovers;
    const auto& apps = in.apps ? *in.apps : noApps;
    const auto& leftovers = in.leftovers ? *in.leftovers : noLeftovers;

    std::vector<const AppUsage*> order;
    for (const auto& a : apps) order.push_back(&a);
    std::stable_sort(order.begin(), order.end(), [&](const AppUsage* a, const AppUsage* b) {
        return in.memoryMode ? a->memory > b->memory : a->cores > b->cores;
    });
    const std::size_t known = order.size();
    if (order.size() > shown) order.resize(shown);

    std::vector<Row> out;
    double sum = 0;
    for (const AppUsage* a : order) {
        Row r;
        r.id = a->id;
        const bool claude = !in.claudeId.empty() && a->bundleID == in.claudeId;
        r.name = claude ? "Claude and what it runs" : a->name;
        r.sub = claude ? "Includes this session" : subLine(*a, in.now);
        r.symbol = a->id == in.systemKey ? "apple.logo" : a->bundlePath ? "app" : "terminal";
        r.tint = tint(*a, in.systemKey);
        r.appPath = a->bundlePath;
        if (in.memoryMode) {
            r.value = static_cast<double>(std::max<int64_t>(0, a->memory));
            r.label = Fmt::bytes(a->memory);
        } else {
            r.value = share(a->cores, in.cores);
            r.label = Fmt::percent(r.value);
        }
        sum += r.value;
        out.push_back(std::move(r));
    }

    if (!leftovers.empty()) {
        Row r;
        r.id = "leftovers";
        r.name = "Leftover processes";
        r.sub = std::to_string(leftovers.size()) + (leftovers.size() == 1 ? " process with no session" : " processes with no session");
        r.symbol = "custom.ghost";
        r.tint = "amber";
        if (in.memoryMode) {
            int64_t memory = 0;
            for (const auto& l : leftovers) memory += std::max<int64_t>(0, l.memory);
            r.value = static_cast<double>(memory);
            r.label = Fmt::bytes(memory);
        } else {
            // Their load isn't measured.
            r.label = "0%";
        }
        sum += r.value;
        out.push_back(std::move(r));
    }

    Row rest;
    rest.id = "rest";
    rest.name = "Everything else";
    rest.symbol = "square.grid.2x2";
    rest.tint = "rest";
    if (in.memoryMode) {
        rest.value = std::max(0.0, static_cast<double>(in.memoryCounted) - sum);
        rest.label = Fmt::bytes(static_cast<int64_t>(rest.value));
    } else {
        const double cpu = in.cpu && std::isfinite(*in.cpu) ? *in.cpu : 0;
        // The bars are smoothed per app and the total on its own; the rest takes up the slack.
        rest.value = std::max(0.0, cpu - sum);
        rest.label = Fmt::percent(rest.value);
    }
    if (known > shown) {
        const std::string more = std::to_string(known - shown);
        rest.sub = PlatformWords::say(in.memoryMode ? "macOS and " + more + " more apps and tools" : "macOS and " + more + " more");
    }
    out.push_back(std::move(rest));
    return out;
}

} // namespace WhoPanel
