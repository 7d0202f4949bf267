#pragma once
// A clean as the screens follow it: its progress while it runs, its report and the summary
// its sheet shows afterwards.
#include "foundation/CleanItem.h"
#include "foundation/Time.h"

#include <cstdint>
#include <string>
#include <vector>

struct CleanProgress {
    int done = 0;
    int total = 0;
    std::string label;           // the item at work
    std::vector<CleanItem> items; // all items of this clean, in removal order
    std::string source = "window"; // "window", "home", "projects" or "menu"

    // A clean started from the window or a project card shows on a sheet; others in place.
    [[nodiscard]] bool showsSheet() const { return source == "window" || source == "projects"; }
    friend bool operator==(const CleanProgress&, const CleanProgress&) = default;
};

struct CleanReport {
    int64_t freed = 0;   // what the volume really gained, never below 0
    int removedCount = 0;
    int64_t trashed = 0; // bytes that wait in the Trash after this clean
    std::vector<std::string> failures;
    int64_t availableAfter = 0;
    TimePoint date{};
    std::string source;
    friend bool operator==(const CleanReport&, const CleanReport&) = default;
};

struct CleanSummary {
    CleanReport report;
    int64_t before = 0; // free bytes before the clean
    std::vector<CleanItem> items;
    friend bool operator==(const CleanSummary&, const CleanSummary&) = default;
};
