#pragma once
// The machine's figures from /proc and /sys. Both roots are arguments so that saved trees
// drive the tests; each figure that cannot be read keeps its neutral value.
#include "platform/SystemReading.h"

#include <cstdint>
#include <string>

namespace SystemReader {

// `procRoot` is "/proc", `sysRoot` is "/sys" on the live machine.
[[nodiscard]] SystemReading read(const std::string& procRoot, const std::string& sysRoot, int64_t pageSize);

// Memory pressure from the PSI averages, or from the free share where the kernel has no PSI.
[[nodiscard]] int pressureLevel(const std::string& psiText, bool havePsi, int freePercent);

// The hottest state of the thermal zones below `thermalRoot` (/sys/class/thermal): 3 at or
// above a critical or hot trip point, 2 at or above a passive one or with a processor cooling
// device at work, 1 within 10 °C of a passive trip point, else 0.
[[nodiscard]] int thermal(const std::string& thermalRoot);

} // namespace SystemReader
