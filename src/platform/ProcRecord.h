#pragma once
// One process of the user as a snapshot holds it.
#include "foundation/Time.h"

#include <cstdint>
#include <string>

struct ProcRecord {
    int32_t pid = 0;
    int32_t ppid = 0;
    std::string name;       // short name (the kernel's command name); empty if unreadable
    std::string exe;        // absolute path of the program; empty if unreadable
    TimePoint start{};      // when the process started
    uint64_t cpuNanos = 0;  // processor time since start, user plus system
    int64_t footprint = 0;  // private memory in bytes, the part swapped out included
    int32_t responsible = 0; // the process held responsible for this one: the oldest of its app group, else itself
    // The desktop entry of the app this process belongs to (by its unit or its program); empty
    // when it belongs to none. It plays the part of the app bundle the process lives in.
    std::string group;

    friend bool operator==(const ProcRecord&, const ProcRecord&) = default;
};
