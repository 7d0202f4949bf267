#pragma once
#include <cstdint>
#include <string>

struct ScanProgress {
    enum class Stage { finding = 0, measuring = 1 };

    Stage stage = Stage::finding;
    int checked = 0;  // folders looked at by the build-folder walk
    int done = 0;     // candidates measured
    int total = 0;    // candidates to measure
    std::string label = "Looking for caches and build folders";
    int64_t found = 0; // bytes found so far

    friend bool operator==(const ScanProgress&, const ScanProgress&) = default;
};
