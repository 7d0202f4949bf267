#include "platform/linux/ProcReader.h"

#include "foundation/FS.h"
#include "platform/linux/AppUnits.h"
#include "platform/linux/ProcText.h"

#include <dirent.h>
#include <time.h>
#include <unistd.h>

#include <map>
#include <optional>
#include <tuple>

namespace ProcReader {

namespace {

std::optional<int32_t> pidName(const char* name) {
    if (!*name) return std::nullopt;
    int64_t v = 0;
    for (const char* c = name; *c; ++c) {
        if (*c < '0' || *c > '9') return std::nullopt;
        v = v * 10 + (*c - '0');
        if (v > INT32_MAX) return std::nullopt;
    }
    if (v <= 0) return std::nullopt;
    return static_cast<int32_t>(v);
}

std::optional<uint64_t> liveCpuNanos(int32_t pid) {
    clockid_t clock{};
    if (clock_getcpuclockid(pid, &clock) != 0) return std::nullopt;
    timespec ts{};
    if (clock_gettime(clock, &ts) != 0) return std::nullopt;
    return static_cast<uint64_t>(ts.tv_sec) * 1'000'000'000ULL + static_cast<uint64_t>(ts.tv_nsec);
}

} // namespace

std::vector<Entry> read(const std::string& procRoot, const Options& options) {
    std::vector<Entry> out;
    DIR* dir = opendir(procRoot.c_str());
    if (!dir) return out;
    const long ticks = options.ticksPerSecond > 0 ? options.ticksPerSecond : 100;
    while (dirent* e = readdir(dir)) {
        auto pid = pidName(e->d_name);
        if (!pid || *pid == options.self) continue;
        const std::string base = procRoot + "/" + e->d_name;

        // The owner first: most of a foreign process costs nothing more.
        auto statusText = FS::readText(base + "/status", 1 << 16);
        if (!statusText) continue;
        auto status = ProcText::status(*statusText);
        if (!status.uid || *status.uid != options.uid) continue;

        auto statText = FS::readText(base + "/stat", 4096);
        if (!statText) continue;
        auto stat = ProcText::stat(*statText);
        if (!stat || (stat->flags & ProcText::kernelThreadFlag)) continue;

        Entry entry;
        ProcRecord& r = entry.record;
        r.pid = *pid;
        r.ppid = stat->ppid;
        r.name = stat->name;
        if (auto exe = FS::readLink(base + "/exe")) {
            ProcText::dropDeletedMark(*exe);
            r.exe = std::move(*exe);
        }
        // Start ticks and btime are both whole numbers, so the same process gives the same
        // start in every snapshot: that is what tells a re-used pid apart.
        r.start = addSeconds(Clock::from_time_t(static_cast<std::time_t>(options.bootSeconds)),
                             static_cast<double>(stat->startTicks) / static_cast<double>(ticks));
        std::optional<uint64_t> nanos = options.liveClock ? liveCpuNanos(*pid) : std::nullopt;
        r.cpuNanos = nanos ? *nanos : (stat->utime + stat->stime) * (1'000'000'000ULL / static_cast<uint64_t>(ticks));
        r.footprint = status.rssAnon + status.vmSwap;
        r.responsible = *pid;
        if (auto cg = FS::readText(base + "/cgroup", 1 << 16))
            if (auto path = ProcText::cgroupPath(*cg)) entry.cgroup = std::move(*path);
        out.push_back(std::move(entry));
    }
    closedir(dir);
    return out;
}

RunningApps attachApps(std::vector<Entry>& entries, const AppBundles& bundles) {
    // Processes of one launch share their unit and usually their program: decide each pair once.
    std::map<std::pair<std::string, std::string>, std::optional<AppUnits::Membership>> decided;
    std::map<std::string, std::vector<std::size_t>> groups;
    std::map<std::string, AppUnits::Membership> memberships;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        auto& e = entries[i];
        auto key = std::make_pair(e.cgroup, e.record.exe);
        auto it = decided.find(key);
        if (it == decided.end()) it = decided.emplace(key, AppUnits::membership(e.cgroup, e.record.exe, bundles)).first;
        if (!it->second) continue;
        groups[it->second->group].push_back(i);
        memberships.emplace(it->second->group, *it->second);
    }

    RunningApps apps;
    for (const auto& [group, members] : groups) {
        const auto& m = memberships.at(group);
        // The app is the oldest of the members that can be the app itself; with none, the app
        // has ended and its unit holds only what it left behind, which belongs to no app.
        std::optional<std::size_t> lead;
        for (std::size_t i : members) {
            const auto& r = entries[i].record;
            if (!AppUnits::isAppProcess(m, r.pid, entries[i].cgroup, r.exe, bundles)) continue;
            if (!lead || std::tie(r.start, r.pid) < std::tie(entries[*lead].record.start, entries[*lead].record.pid))
                lead = i;
        }
        if (!lead) continue;
        const int32_t leadPid = entries[*lead].record.pid;
        for (std::size_t i : members) {
            entries[i].record.responsible = leadPid;
            entries[i].record.group = m.entry.path;
        }
        RunningApp app;
        app.pid = leadPid;
        app.bundlePath = m.entry.path;
        app.bundleID = m.entry.id;
        app.name = RunningApp::trimName(m.entry.displayName());
        app.accessory = m.entry.noDisplay || m.autostart;
        apps.emplace(leadPid, std::move(app));
    }
    return apps;
}

void markFront(RunningApps& apps, const std::vector<Entry>& entries, int32_t frontPid) {
    std::map<int32_t, const ProcRecord*> byPid;
    for (const auto& e : entries) byPid.emplace(e.record.pid, &e.record);
    int32_t pid = frontPid;
    for (int step = 0; step < 40 && pid > 1; ++step) {
        auto it = byPid.find(pid);
        if (it == byPid.end()) return;
        const ProcRecord& r = *it->second;
        if (!r.group.empty()) {
            if (auto app = apps.find(r.responsible); app != apps.end()) app->second.active = true;
            return;
        }
        pid = r.ppid;
    }
}

} // namespace ProcReader
