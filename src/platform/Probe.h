#pragma once
// The live facts of the machine that the monitor reads: the user's processes, the system
// reading, the running apps and the few per-process facts read only for candidates. Logic
// above takes a `ProbeSource`, so that hand-made snapshots drive it in tests.
#include "platform/RunningApp.h"
#include "platform/Snapshot.h"
#include "platform/SystemReading.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

class ProbeSource {
public:
    virtual ~ProbeSource() = default;

    // Every process of the user but this program, and a system reading. Slow: off the main thread.
    [[nodiscard]] virtual Snapshot snapshot() const = 0;
    [[nodiscard]] virtual SystemReading system() const = 0;
    // The working folder of a process; absent when unreadable or empty.
    [[nodiscard]] virtual std::optional<std::string> cwd(int32_t pid) const = 0;
    // Local TCP ports the process listens on, ascending, each once.
    [[nodiscard]] virtual std::vector<int> listeningPorts(int32_t pid) const = 0;
    // The processes of the user's managed services: started and watched by the service
    // manager, so never abandoned.
    [[nodiscard]] virtual std::set<int32_t> launchdJobs() const = 0;
    // The command line of a process, its program first; empty when unreadable.
    [[nodiscard]] virtual std::vector<std::string> arguments(int32_t pid) const = 0;
    [[nodiscard]] virtual RunningApps runningApps() const = 0;

    // This machine.
    [[nodiscard]] static const ProbeSource& live();
};

// The live machine, read directly. Each call is free of shared state and may run on any thread.
namespace Probe {

[[nodiscard]] int64_t pageSize();
[[nodiscard]] int cores();              // processors online
[[nodiscard]] int64_t physicalMemory(); // bytes

[[nodiscard]] std::vector<int32_t> allPids();
[[nodiscard]] Snapshot snapshot();
[[nodiscard]] SystemReading system();
[[nodiscard]] std::string name(int32_t pid); // empty on failure
[[nodiscard]] std::string path(int32_t pid); // empty on failure
[[nodiscard]] std::optional<std::string> cwd(int32_t pid);
// When a process of the user's own started, as a snapshot gives it; absent once it has ended
// (a zombie included) and for anyone else's process.
[[nodiscard]] std::optional<TimePoint> startTime(int32_t pid);
[[nodiscard]] std::vector<int> listeningPorts(int32_t pid);
[[nodiscard]] std::set<int32_t> launchdJobs();

} // namespace Probe
