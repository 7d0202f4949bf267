#pragma once
// One reading of the user's processes and the machine, taken together.
#include "platform/ProcRecord.h"
#include "platform/SystemReading.h"

#include <cstdint>
#include <map>

struct Snapshot {
    TimePoint date{};
    std::map<int32_t, ProcRecord> procs;
    SystemReading system;
};
