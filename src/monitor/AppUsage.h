#pragma once
// One app with all its processes, as the monitor shows it.
#include "foundation/Time.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct AppUsage {
    std::string id;   // the group key: an app's entry path, or "proc:" and a name
    std::string name; // what the user sees
    std::optional<std::string> bundlePath; // the key when it is an entry path
    std::optional<std::string> bundleID;
    std::optional<int32_t> mainPID; // the running app's process, when the desktop lists one
    std::vector<int32_t> pids;
    double cores = 0;       // load in processor cores: 1.0 is one core fully busy
    int64_t memory = 0;     // bytes, the sum of the processes' footprints
    uint64_t cpuNanos = 0;
    std::optional<TimePoint> started;
    bool accessory = false;
    bool isFront = false;

    // True for a row of "proc:" key: a program that belongs to no app.
    [[nodiscard]] bool isLoose() const { return id.starts_with("proc:"); }
};
