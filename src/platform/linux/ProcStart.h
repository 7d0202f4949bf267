#pragma once
// When a process of the user's own started, read again right before it is signalled: the start
// tells a process apart from a later one that was given the same pid.
#include "foundation/Time.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ProcStart {

// The start of process `pid` under `procRoot`, the same figure a snapshot holds for it (boot
// time plus field 22 of its stat, in clock ticks). Absent for a process that has gone, that has
// ended and waits only to be reaped, or that belongs to someone other than `uid`.
[[nodiscard]] std::optional<TimePoint> read(const std::string& procRoot, int32_t pid, uint32_t uid, int64_t bootSeconds,
                                            long ticksPerSecond);

} // namespace ProcStart
