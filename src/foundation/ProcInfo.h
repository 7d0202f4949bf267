#pragma once
#include <cstdint>
#include <string>

// The facts of one process that a scan starts from.
struct ProcInfo {
    int32_t pid = 0;
    std::string name; // short process name
    std::string cwd;  // current folder, may be empty
    std::string exe;  // full path of its program, may be empty
    friend bool operator==(const ProcInfo&, const ProcInfo&) = default;
};
