#include "platform/linux/ProcStart.h"

#include "foundation/FS.h"
#include "platform/linux/ProcText.h"

namespace ProcStart {

std::optional<TimePoint> read(const std::string& procRoot, int32_t pid, uint32_t uid, int64_t bootSeconds,
                              long ticksPerSecond) {
    if (pid <= 0) return std::nullopt;
    const std::string base = procRoot + "/" + std::to_string(pid);
    auto statusText = FS::readText(base + "/status", 1 << 16);
    if (!statusText) return std::nullopt;
    auto status = ProcText::status(*statusText);
    if (!status.uid || *status.uid != uid) return std::nullopt;
    auto statText = FS::readText(base + "/stat", 4096);
    auto stat = statText ? ProcText::stat(*statText) : std::nullopt;
    // A zombie has ended: what is left of it is its exit status, which no signal reaches.
    if (!stat || stat->state == 'Z' || stat->state == 'X' || stat->state == 'x') return std::nullopt;
    const long ticks = ticksPerSecond > 0 ? ticksPerSecond : 100;
    return addSeconds(Clock::from_time_t(static_cast<std::time_t>(bootSeconds)),
                      static_cast<double>(stat->startTicks) / static_cast<double>(ticks));
}

} // namespace ProcStart
