#pragma once
// Hand-made processes, snapshots and a probe for the live monitor's tests.
#include "platform/Probe.h"

#include <map>
#include <set>

namespace fixtures {

inline const TimePoint t0 = Clock::from_time_t(1'800'000'000);

struct Proc {
    int32_t pid = 0;
    int32_t ppid = 1;
    std::string name = "proc";
    std::string exe = "";
    double startedAgo = 7200; // seconds before t0
    uint64_t cpuNanos = 0;
    int64_t footprint = 0;
    int32_t responsible = 0; // 0: itself
    std::string group = "";
};

inline ProcRecord record(const Proc& p) {
    ProcRecord r;
    r.pid = p.pid;
    r.ppid = p.ppid;
    r.name = p.name;
    r.exe = p.exe;
    r.start = addSeconds(t0, -p.startedAgo);
    r.cpuNanos = p.cpuNanos;
    r.footprint = p.footprint;
    r.responsible = p.responsible ? p.responsible : p.pid;
    r.group = p.group;
    return r;
}

inline Snapshot snapshot(std::vector<Proc> procs, double at = 0) {
    Snapshot s;
    s.date = addSeconds(t0, at);
    for (const auto& p : procs) s.procs.emplace(p.pid, record(p));
    return s;
}

inline RunningApp app(int32_t pid, const std::string& path, const std::string& id, const std::string& name = "") {
    RunningApp a;
    a.pid = pid;
    a.bundlePath = path;
    a.bundleID = id;
    a.name = name;
    return a;
}

// A probe that answers from maps and counts the reads of the dear facts.
class FakeProbe final : public ProbeSource {
public:
    std::vector<Snapshot> snapshots; // handed out in turn; the last one repeats
    mutable std::size_t taken = 0;
    std::map<int32_t, std::string> cwds;
    std::map<int32_t, std::vector<int>> ports;
    std::map<int32_t, std::vector<std::string>> args;
    std::set<int32_t> services;
    RunningApps apps;
    mutable std::set<int32_t> portReads;
    mutable int cwdReads = 0;

    Snapshot snapshot() const override {
        if (snapshots.empty()) return {};
        return snapshots[std::min(taken++, snapshots.size() - 1)];
    }
    SystemReading system() const override { return {}; }
    std::optional<std::string> cwd(int32_t pid) const override {
        ++cwdReads;
        auto it = cwds.find(pid);
        if (it == cwds.end()) return std::nullopt;
        return it->second;
    }
    std::vector<int> listeningPorts(int32_t pid) const override {
        portReads.insert(pid);
        auto it = ports.find(pid);
        return it == ports.end() ? std::vector<int>{} : it->second;
    }
    std::set<int32_t> launchdJobs() const override { return services; }
    std::vector<std::string> arguments(int32_t pid) const override {
        auto it = args.find(pid);
        return it == args.end() ? std::vector<std::string>{} : it->second;
    }
    RunningApps runningApps() const override { return apps; }
};

} // namespace fixtures
