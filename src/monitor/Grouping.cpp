#include "monitor/Grouping.h"

#include "foundation/FS.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

namespace Grouping {

namespace {

// Both caches grow for the life of the process: one entry per app path ever seen. One lock
// covers lookup, read and store, so an entry is read from disk once.
std::mutex cacheLock;
std::unordered_map<std::string, std::string> nameCache;
std::unordered_map<std::string, std::optional<std::string>> idCache;

bool startsWithAny(const std::string& s, const std::vector<std::string>& prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& p) { return s.starts_with(p); });
}

bool containsAny(const std::string& s, const std::vector<std::string>& pieces) {
    return std::any_of(pieces.begin(), pieces.end(), [&](const std::string& p) { return s.find(p) != std::string::npos; });
}

class Resolver {
public:
    Resolver(const Snapshot& snapshot, const RunningApps& apps, const MonitorTables& tables)
        : snapshot(snapshot), apps(apps), tables(tables) {
        for (const auto& [pid, app] : apps)
            if (!tables.settingsPath.empty() && app.bundlePath == tables.settingsPath) settingsOpen = true;
        claudePath = tables.claudePath;
        if (!tables.claudeId.empty())
            for (const auto& [pid, app] : apps)
                if (app.bundleID == tables.claudeId && app.bundlePath) {
                    claudePath = *app.bundlePath;
                    break;
                }
    }

    std::optional<std::string> resolve(int32_t pid, int depth) {
        if (auto it = memo.find(pid); it != memo.end()) return it->second;
        if (depth > 39) return std::nullopt; // also ends any cycle
        auto found = snapshot.procs.find(pid);
        if (found == snapshot.procs.end()) return std::nullopt;
        const ProcRecord& r = found->second;

        std::optional<std::string> key;
        if (auto app = apps.find(pid); app != apps.end() && app->second.bundlePath) {
            key = app->second.bundlePath;
        } else if (!r.group.empty()) {
            key = r.group;
        } else if (auto b = bundle(r.exe, tables.bundleSuffix)) {
            key = (!tables.claudeSupportPiece.empty() && b->find(tables.claudeSupportPiece) != std::string::npos) ? claudePath : *b;
        } else {
            if (settingsOpen && containsAny(r.exe, tables.settingsHelpers)) key = tables.settingsPath;
            if (!key && r.responsible != pid && r.responsible >= 2) key = resolve(r.responsible, depth + 1);
            if (!key) {
                if (r.ppid < 2) return std::nullopt;
                key = resolve(r.ppid, depth + 1);
                if (!key) return std::nullopt;
            }
        }
        memo.emplace(pid, *key);
        return key;
    }

private:
    const Snapshot& snapshot;
    const RunningApps& apps;
    const MonitorTables& tables;
    bool settingsOpen = false;
    std::string claudePath;
    std::unordered_map<int32_t, std::string> memo;
};

// The load of one process in cores over `interval`, when it can be told.
std::optional<double> coreFigure(const ProcRecord& r, const Snapshot& snapshot, const Snapshot& previous, double interval) {
    if (auto before = previous.procs.find(r.pid); before != previous.procs.end()) {
        const ProcRecord& p = before->second;
        // The same process only: a re-used pid or a counter that went back gives nothing.
        if (p.cpuNanos <= r.cpuNanos && p.start == r.start)
            return static_cast<double>(r.cpuNanos - p.cpuNanos) / (interval * 1e9);
        return std::nullopt;
    }
    // Born inside the interval: measured over its own life, not the whole interval.
    double age = secondsBetween(r.start, snapshot.date);
    if (age > 0 && age < interval) return static_cast<double>(r.cpuNanos) / (age * 1e9);
    return std::nullopt;
}

} // namespace

std::optional<std::string> bundle(const std::string& exe, const std::string& suffix) {
    if (suffix.empty()) return std::nullopt;
    auto at = exe.find(suffix + "/");
    if (at == std::string::npos) return std::nullopt;
    return exe.substr(0, at) + suffix;
}

GroupKeys keys(const Snapshot& snapshot, const RunningApps& apps, const MonitorTables& tables) {
    Resolver resolver(snapshot, apps, tables);
    GroupKeys out;
    for (const auto& [pid, r] : snapshot.procs) {
        if (auto key = resolver.resolve(pid, 0)) {
            out.emplace(pid, std::move(*key));
        } else if (startsWithAny(r.exe, tables.systemPrefixes) && !startsWithAny(r.exe, tables.systemExceptions)) {
            out.emplace(pid, "proc:" + tables.systemLabel);
        } else {
            out.emplace(pid, "proc:" + r.name);
        }
    }
    return out;
}

std::vector<AppUsage> usage(const Snapshot& snapshot, const Snapshot* previous, const RunningApps& apps,
                            const GroupKeys& keys, const std::set<int32_t>& skip, const MonitorTables& tables,
                            const AppBundles& bundles) {
    std::map<std::string, const RunningApp*> byPath;
    for (const auto& [pid, app] : apps)
        if (app.bundlePath) byPath.emplace(*app.bundlePath, &app); // the first met stays

    const double interval = previous ? secondsBetween(previous->date, snapshot.date) : 0;
    std::map<std::string, AppUsage> rows;

    auto newRow = [&](const std::string& key) {
        AppUsage row;
        row.id = key;
        if (key.starts_with("proc:")) {
            row.name = key.substr(5);
            return row;
        }
        auto running = byPath.find(key);
        const RunningApp* app = running == byPath.end() ? nullptr : running->second;
        row.bundlePath = key;
        row.bundleID = app && app->bundleID ? app->bundleID : bundleIdentifier(key, bundles);
        if (row.bundleID)
            if (auto f = tables.friendly.find(*row.bundleID); f != tables.friendly.end()) row.name = f->second;
        if (row.name.empty() && app && !app->name.empty()) row.name = app->name;
        if (row.name.empty()) row.name = displayName(key, bundles);
        if (app) {
            row.mainPID = app->pid;
            row.accessory = app->accessory;
            row.isFront = app->active;
        }
        return row;
    };

    for (const auto& [pid, r] : snapshot.procs) {
        if (skip.contains(pid)) continue;
        auto k = keys.find(pid);
        std::string key = k != keys.end() ? k->second : "proc:" + r.name;
        auto it = rows.find(key);
        if (it == rows.end()) it = rows.emplace(key, newRow(key)).first;
        AppUsage& row = it->second;
        row.pids.push_back(pid);
        row.memory += r.footprint;
        row.cpuNanos += r.cpuNanos;
        if (row.mainPID) {
            auto main = snapshot.procs.find(*row.mainPID);
            row.started = main != snapshot.procs.end() ? std::optional(main->second.start) : std::nullopt;
        } else if (!row.started || r.start < *row.started) {
            row.started = r.start;
        }
        if (previous && interval > 0.2)
            if (auto figure = coreFigure(r, snapshot, *previous, interval)) row.cores += *figure;
    }

    std::vector<AppUsage> out;
    out.reserve(rows.size());
    for (auto& [key, row] : rows) out.push_back(std::move(row));
    return out;
}

std::optional<double> machineBusy(const Snapshot& snapshot, const Snapshot* previous) {
    if (!previous) return std::nullopt;
    // Counters only go forward; a step back means a failed read, not a measurement.
    if (snapshot.system.cpuTotal <= previous->system.cpuTotal) return std::nullopt;
    double total = static_cast<double>(snapshot.system.cpuTotal - previous->system.cpuTotal);
    double busy = static_cast<double>(snapshot.system.cpuBusy) - static_cast<double>(previous->system.cpuBusy);
    return std::clamp(100.0 * busy / total, 0.0, 100.0);
}

std::string displayName(const std::string& bundlePath, const AppBundles& bundles) {
    std::lock_guard guard(cacheLock);
    if (auto it = nameCache.find(bundlePath); it != nameCache.end()) return it->second;
    std::string name;
    if (auto entry = bundles.entryAt(bundlePath)) name = entry->name;
    if (name.empty()) {
        name = FS::lastComponent(bundlePath);
        if (auto dot = name.rfind('.'); dot != std::string::npos && dot > 0) name.resize(dot);
    }
    nameCache.emplace(bundlePath, name);
    return name;
}

std::optional<std::string> bundleIdentifier(const std::string& bundlePath, const AppBundles& bundles) {
    std::lock_guard guard(cacheLock);
    if (auto it = idCache.find(bundlePath); it != idCache.end()) return it->second;
    std::optional<std::string> id;
    if (auto entry = bundles.entryAt(bundlePath); entry && !entry->id.empty()) id = entry->id;
    idCache.emplace(bundlePath, id);
    return id;
}

} // namespace Grouping
