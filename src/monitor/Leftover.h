#pragma once
// A developer's process that has outlived what started it, with its descendants.
#include "foundation/Time.h"

#include <cstdint>
#include <string>
#include <vector>

struct Leftover {
    int32_t id = 0;             // pid of the root process
    std::vector<int32_t> pids;  // the root first, then its descendants
    std::string label;          // what the user sees
    std::string cwd;            // working folder of the root
    std::string project;        // the project that folder belongs to
    TimePoint started{};        // start of the root
    int64_t memory = 0;         // bytes, over the pids still present
};
