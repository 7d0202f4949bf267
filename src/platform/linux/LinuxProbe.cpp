// The live machine: /proc, /sys and the desktop entries.
#include "platform/Probe.h"

#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/AppBundles.h"
#include "platform/linux/ProcPorts.h"
#include "platform/linux/ProcReader.h"
#include "platform/linux/ProcStart.h"
#include "platform/linux/ProcText.h"
#include "platform/linux/SystemReader.h"
#include "platform/linux/X11Display.h"

#include <unistd.h>

namespace {

// Boot time is read once: a clock adjustment moves btime, and with it every start date,
// which would make every process look new in the next snapshot.
int64_t bootSeconds() {
    static const int64_t value = [] {
        auto text = FS::readText("/proc/stat", 1 << 20);
        auto boot = text ? ProcText::bootTime(*text) : std::nullopt;
        return boot.value_or(static_cast<int64_t>(Clock::to_time_t(Clock::now())));
    }();
    return value;
}

ProcReader::Options readOptions(bool liveClock) {
    ProcReader::Options o;
    o.uid = getuid();
    o.self = getpid();
    o.bootSeconds = bootSeconds();
    static const long ticks = sysconf(_SC_CLK_TCK);
    o.ticksPerSecond = ticks > 0 ? ticks : 100;
    o.liveClock = liveClock;
    return o;
}

class LiveProbe final : public ProbeSource {
public:
    Snapshot snapshot() const override { return Probe::snapshot(); }
    SystemReading system() const override { return Probe::system(); }
    std::optional<std::string> cwd(int32_t pid) const override { return Probe::cwd(pid); }
    std::vector<int> listeningPorts(int32_t pid) const override { return Probe::listeningPorts(pid); }
    std::set<int32_t> launchdJobs() const override { return Probe::launchdJobs(); }
    std::vector<std::string> arguments(int32_t pid) const override { return FS::arguments(pid); }
    RunningApps runningApps() const override { return RunningApp::current(); }
};

} // namespace

const ProbeSource& ProbeSource::live() {
    static const LiveProbe probe;
    return probe;
}

RunningApps RunningApp::current() {
    auto entries = ProcReader::read("/proc", readOptions(false));
    auto apps = ProcReader::attachApps(entries, AppBundles::system());
    if (auto front = X11Display::session().activePid()) ProcReader::markFront(apps, entries, *front);
    return apps;
}

namespace Probe {

int64_t pageSize() {
    static const int64_t value = [] {
        long v = sysconf(_SC_PAGESIZE);
        return static_cast<int64_t>(v > 0 ? v : 4096);
    }();
    return value;
}

int cores() {
    static const int value = [] {
        long v = sysconf(_SC_NPROCESSORS_ONLN);
        return static_cast<int>(v > 0 ? v : 1);
    }();
    return value;
}

int64_t physicalMemory() {
    static const int64_t value = [] {
        if (auto text = FS::readText("/proc/meminfo", 1 << 16)) {
            auto mem = ProcText::meminfo(*text);
            if (auto it = mem.find("MemTotal"); it != mem.end()) return it->second;
        }
        long pages = sysconf(_SC_PHYS_PAGES);
        return pages > 0 ? static_cast<int64_t>(pages) * pageSize() : int64_t{0};
    }();
    return value;
}

std::vector<int32_t> allPids() {
    std::vector<int32_t> pids;
    for (const auto& name : FS::children("/proc")) {
        if (name.empty() || name.find_first_not_of("0123456789") != std::string::npos) continue;
        if (auto n = ProcText::number(name); n && *n > 0 && *n <= INT32_MAX) pids.push_back(static_cast<int32_t>(*n));
    }
    return pids;
}

Snapshot snapshot() {
    auto entries = ProcReader::read("/proc", readOptions(true));
    ProcReader::attachApps(entries, AppBundles::system());
    Snapshot s;
    for (auto& e : entries) s.procs.emplace(e.record.pid, std::move(e.record));
    s.date = Clock::now();
    s.system = system();
    return s;
}

SystemReading system() { return SystemReader::read("/proc", "/sys", pageSize()); }

std::string name(int32_t pid) {
    auto text = FS::readText("/proc/" + std::to_string(pid) + "/comm", 256);
    if (!text) return {};
    if (!text->empty() && text->back() == '\n') text->pop_back();
    return Text::repairUtf8(*text);
}

std::string path(int32_t pid) {
    auto exe = FS::readLink("/proc/" + std::to_string(pid) + "/exe");
    if (!exe) return {};
    ProcText::dropDeletedMark(*exe);
    return *exe;
}

std::optional<std::string> cwd(int32_t pid) { return ProcPorts::cwd("/proc", pid); }

std::optional<TimePoint> startTime(int32_t pid) {
    const ProcReader::Options o = readOptions(false);
    return ProcStart::read("/proc", pid, o.uid, o.bootSeconds, o.ticksPerSecond);
}

std::vector<int> listeningPorts(int32_t pid) { return ProcPorts::listening("/proc", pid); }

std::set<int32_t> launchdJobs() { return ProcPorts::managedServices("/proc", getuid()); }

} // namespace Probe
