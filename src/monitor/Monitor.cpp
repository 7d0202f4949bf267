#include "monitor/Monitor.h"

#include "advice/Browsers.h"
#include "monitor/Leftovers.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <thread>

namespace {

bool startsWithAny(const std::string& s, const std::vector<std::string>& prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& p) { return s.starts_with(p); });
}

// What a sample's background work hands back.
struct Taken {
    Snapshot snapshot;
    RunningApps apps;
    GroupKeys keys;
    std::optional<std::vector<Leftover>> leftovers;
};

} // namespace

Monitor::Monitor(Host* host, const ProbeSource& probe, Layout layout, const AppBundles& bundles)
    : host(host), probe(probe), layout(std::move(layout)), bundles(bundles) {}

void Monitor::start() {
    reschedule();
    sample(0);
}

void Monitor::reschedule() {
    if (!host) return;
    const double interval = liveViews.empty() ? 60 : 3;
    host->repeat(interval, interval * 0.2, [this] { sample(0); });
}

void Monitor::setLive(const std::string& key, bool on) {
    const bool wasEmpty = liveViews.empty();
    if (on) liveViews.insert(key);
    else liveViews.erase(key);
    if (wasEmpty != liveViews.empty()) reschedule();
    // A view that opens gets fresh figures at once, not after the next tick.
    if (on) sample(0);
}

void Monitor::sample(double soon) {
    if (!host) return;
    if (soon > 0) {
        host->after(soon, [this] { sample(0); });
        return;
    }
    if (sampling) return; // the sample under way absorbs the request
    sampling = true;
    auto taken = std::make_shared<Taken>();
    taken->apps = probe.runningApps(); // on the owner thread
    const bool sweep = !lastLeftoverScan || secondsBetween(*lastLeftoverScan, clock()) > sweepSeconds;
    // The background part reads only what it is handed and touches no field of the monitor.
    host->work(
        [taken, sweep, &probe = probe, &layout = layout, &bundles = bundles] {
            taken->snapshot = probe.snapshot();
            if (sweep)
                taken->leftovers = Leftovers::find(taken->snapshot, taken->apps, probe.launchdJobs(), 3600, probe, layout, bundles);
            taken->keys = Grouping::keys(taken->snapshot, taken->apps, layout.monitor);
        },
        [this, taken] { apply(std::move(taken->snapshot), std::move(taken->apps), taken->keys, std::move(taken->leftovers)); });
}

void Monitor::sampleForTools(double gap) {
    RunningApps apps = probe.runningApps();
    Snapshot first = probe.snapshot();
    GroupKeys keys = Grouping::keys(first, apps, layout.monitor);
    auto found = Leftovers::find(first, apps, probe.launchdJobs(), 3600, probe, layout, bundles);
    apply(std::move(first), apps, keys, std::move(found));
    std::this_thread::sleep_for(std::chrono::duration<double>(gap));
    Snapshot second = probe.snapshot();
    GroupKeys secondKeys = Grouping::keys(second, apps, layout.monitor);
    apply(std::move(second), std::move(apps), secondKeys, std::nullopt);
}

void Monitor::apply(Snapshot taken, RunningApps appsNow, const GroupKeys& keys, std::optional<std::vector<Leftover>> found) {
    sampling = false;
    std::optional<Snapshot> previous = std::move(snapshot);
    snapshot = std::move(taken);
    const Snapshot& now = *snapshot;
    runningApps = std::move(appsNow);

    if (found) {
        leftovers = std::move(*found);
        lastLeftoverScan = now.date;
    }
    // A leftover's processes are in no app row.
    std::set<int32_t> skip;
    for (const auto& left : leftovers) skip.insert(left.pids.begin(), left.pids.end());

    const Snapshot* before = previous ? &*previous : nullptr;
    auto rows = Grouping::usage(now, before, runningApps, keys, skip, layout.monitor, bundles);

    // A time constant rather than a fixed weight, so that smoothing doesn't depend on the
    // sampling rate: about 0.78 at 3 seconds, nearly a fresh reading after a minute.
    const double interval = before ? secondsBetween(before->date, now.date) : 0;
    const double keep = std::exp(interval / -smoothingSeconds);
    if (before) {
        std::map<std::string, double> next;
        for (auto& row : rows) {
            auto old = smooth.find(row.id);
            double value = old != smooth.end() ? keep * old->second + (1 - keep) * row.cores : row.cores;
            row.cores = value;
            next[row.id] = value;
        }
        smooth = std::move(next); // rows that vanished are forgotten
    }
    std::stable_sort(rows.begin(), rows.end(), [](const AppUsage& a, const AppUsage& b) { return a.cores > b.cores; });
    apps = std::move(rows);

    Vitals v = vitals;
    if (auto busy = Grouping::machineBusy(now, before)) {
        if (v.cpu && before) v.cpu = (1 - keep) * *busy + keep * *v.cpu;
        else v.cpu = *busy;
    }
    const SystemReading& s = now.system;
    v.pressure = s.pressureLevel;
    v.freePercent = s.freePercent;
    v.compressed = s.compressed;
    v.swapUsed = s.swapUsed;
    v.swapTotal = s.swapTotal;
    v.swappedOut = s.swappedOut;
    v.boot = s.bootDate;
    v.thermal = s.thermal;
    vitals = v;
    measuredAt = now.date;

    bool closed = false;
    if (!minuteBase) {
        minuteBase = now;
    } else if (secondsBetween(minuteBase->date, now.date) >= minuteSeconds) {
        // The real average of the minute, free of smoothing.
        auto minuteRows = Grouping::usage(now, &*minuteBase, runningApps, keys, skip, layout.monitor, bundles);
        std::optional<std::string> frontBundle;
        for (const auto& [pid, app] : runningApps)
            if (app.active) {
                frontBundle = app.bundlePath;
                break;
            }
        std::set<std::string> present;
        for (const auto& row : minuteRows) {
            present.insert(row.id);
            auto& line = minutes[row.id];
            line.push_back({row.cores, frontBundle && row.id == *frontBundle, now.date});
            while (line.size() > minutesKept) line.pop_front();
        }
        std::erase_if(minutes, [&](const auto& entry) { return !present.contains(entry.first); }); // quit apps lose their history
        pressureMinutes.push_back(s.pressureLevel);
        while (pressureMinutes.size() > pressureKept) pressureMinutes.pop_front();
        minuteBase = now;
        closed = true;
    }
    if (changed) changed();
    if (closed && minuteClosed) minuteClosed(*this);
}

void Monitor::forgetLeftovers(const std::set<int32_t>& ids) {
    std::erase_if(leftovers, [&](const Leftover& left) { return ids.contains(left.id); });
    if (changed) changed();
}

bool Monitor::keptId(const AppUsage& app) const {
    if (!app.bundleID) return false;
    const MonitorTables& t = layout.monitor;
    return t.kept.contains(*app.bundleID) || startsWithAny(*app.bundleID, t.keptPrefixes);
}

bool Monitor::systemBundle(const AppUsage& app) const {
    return app.bundlePath && startsWithAny(*app.bundlePath, layout.monitor.systemBundlePrefixes);
}

bool Monitor::isKept(const AppUsage& app) const { return keptId(app) || !app.bundlePath || systemBundle(app); }

bool Monitor::canQuit(const AppUsage& app) const { return !isKept(app) && app.mainPID.has_value(); }

bool Monitor::nothingToSave(const AppUsage& app) const {
    return app.accessory || (app.bundleID && layout.monitor.nothingToSave.contains(*app.bundleID));
}

int Monitor::busyMinutes(const std::string& key) const {
    auto it = minutes.find(key);
    if (it == minutes.end()) return 0;
    int count = 0;
    for (auto s = it->second.rbegin(); s != it->second.rend(); ++s) {
        if (s->cores < 0.4 || s->front) break;
        ++count;
    }
    return count;
}

bool Monitor::mayBeSlow(const AppUsage& app) const {
    return !keptId(app) && app.bundlePath && !systemBundle(app) && app.mainPID &&
           !Browsers::isBrowser(app, layout.monitor);
}

std::vector<AppUsage> Monitor::slowApps() const {
    std::vector<AppUsage> out;
    for (const auto& app : apps) {
        if (!mayBeSlow(app) || app.isFront || app.cores < 0.5) continue;
        // Two minutes' grace for an app the person has just left.
        if (auto it = minutes.find(app.id); it != minutes.end() && it->second.size() >= 2) {
            const auto& line = it->second;
            if (line[line.size() - 1].front || line[line.size() - 2].front) continue;
        }
        out.push_back(app);
    }
    return out;
}

std::vector<AppUsage> Monitor::sustainedSlow() const {
    std::vector<AppUsage> out;
    const TimePoint now = clock();
    for (const auto& app : apps) {
        if (!mayBeSlow(app)) continue;
        auto it = minutes.find(app.id);
        if (it == minutes.end() || it->second.size() < 10) continue;
        const auto& line = it->second;
        const auto first = line.end() - 10;
        // Ten minutes that lie close together: a machine that slept in between doesn't count.
        if (secondsBetween(first->date, now) > 720) continue;
        double sum = 0;
        bool front = false;
        for (auto s = first; s != line.end(); ++s) {
            sum += s->cores;
            front = front || s->front;
        }
        if (front || sum / 10 < 0.5) continue;
        out.push_back(app);
    }
    return out;
}

bool Monitor::memoryTightTenMinutes() const {
    if (pressureMinutes.size() < 10) return false;
    return std::all_of(pressureMinutes.end() - 10, pressureMinutes.end(), [](int level) { return level >= 2; });
}

const AppUsage* Monitor::app(const std::string& key) const {
    for (const auto& row : apps)
        if (row.id == key) return &row;
    return nullptr;
}

int64_t Monitor::memoryCounted() const {
    int64_t sum = 0;
    for (const auto& row : apps) sum += row.memory;
    for (const auto& left : leftovers) sum += left.memory;
    return sum;
}
