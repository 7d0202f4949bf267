#pragma once
// The program's thinking: from the live monitor, the latest cleaning scan and the history, the
// list of things worth doing, each with its words. One rule per kind of problem, run in a fixed
// order that is the ranking: what is urgent first, then what can wait. Advice that helps only
// for a moment is never given; memory is never "cleaned", only what holds it is named.
//
// The advice is a plain function of a `Situation`: a copy of exactly what it reads, taken on the
// thread that owns the monitor, so that the window and the command line run the same code.
#include "advice/Browsers.h"
#include "advice/Rec.h"
#include "foundation/CleanItem.h"
#include "foundation/DiskInfo.h"
#include "foundation/Time.h"
#include "monitor/AppUsage.h"
#include "monitor/Leftover.h"
#include "monitor/Vitals.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

class History;
class Monitor;

namespace Advisor {

// What the advice reads of the application model: the disk and the last cleaning scan.
struct ModelFacts {
    DiskInfo disk;                      // its available bytes are "free"
    int64_t safeTotal = 0;              // bytes of the unlocked items of the safe tier
    int64_t cleanable = 0;              // bytes of all unlocked items
    std::optional<TimePoint> lastScan;  // absent before the first scan
    std::vector<CleanItem> items;
    int64_t warnBelow = 10 * GB;        // free space below this is low

    // The figures of a scan as the model sums them: a locked item counts for nothing.
    [[nodiscard]] static ModelFacts of(DiskInfo disk, std::vector<CleanItem> items, std::optional<TimePoint> lastScan);
};

// What it reads of the live monitor, with the monitor's judgements already made.
struct MonitorFacts {
    Vitals vitals;
    std::vector<AppUsage> apps;
    std::vector<Leftover> leftovers;
    std::vector<AppUsage> slowApps;                  // heaviest first
    std::map<std::string, int> busyMinutes;          // by key, for the slow apps
    std::set<std::string> quittable;                 // keys of the apps that may be quit
    std::set<std::string> nothingToSave;             // keys of the apps that hold no open work
    std::set<std::string> browsers;                  // keys of the browser rows
    std::map<std::string, Browsers::Update> updates; // updates waiting for a browser's restart, by key

    // Reads a monitor, on the thread that owns it. Asks each running browser for a waiting update.
    [[nodiscard]] static MonitorFacts of(const Monitor& monitor, TimePoint now);
};

// What it reads of the history.
struct HistoryFacts {
    std::set<std::string> snoozed;            // advice ids whose snooze has not ended
    std::optional<TimePoint> restartReminder; // the evening reminder to restart, when one is set

    [[nodiscard]] static HistoryFacts of(const History& history, TimePoint now);
};

struct Situation {
    ModelFacts model;
    MonitorFacts monitor;
    HistoryFacts history;
    int cores = 1; // processors online
    TimePoint now{};
};

// The advice, all that is worth doing now first, then all that can wait. A snoozed piece keeps
// its place and turns into one that can wait. Nothing is read but the situation.
[[nodiscard]] std::vector<Rec> recommendations(const Situation& situation);

} // namespace Advisor
