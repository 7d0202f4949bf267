#pragma once
// What "history.json" holds, in memory.
#include "foundation/Time.h"
#include "history/GrowthReport.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

struct FreeSample {
    TimePoint date{};
    int64_t free = 0; // bytes free on the home volume
    int64_t swap = 0; // bytes of swap in use then
    friend bool operator==(const FreeSample&, const FreeSample&) = default;
};

struct CleanRecord {
    TimePoint date{};
    int64_t freed = 0;
    std::string label;
    friend bool operator==(const CleanRecord&, const CleanRecord&) = default;
};

struct CacheClear {
    TimePoint date{};
    int64_t size = 0; // the item's bytes when it was cleared
    friend bool operator==(const CacheClear&, const CacheClear&) = default;
};

struct HistoryData {
    std::vector<FreeSample> samples;             // oldest first
    std::vector<CleanRecord> cleans;             // oldest first
    std::map<std::string, TimePoint> snoozed;    // recommendation id to the end of its snooze
    std::map<std::string, TimePoint> alerted;    // alert key to when it was last sent
    std::optional<GrowthReport> growth;
    std::optional<TimePoint> restartReminder;
    std::optional<std::map<std::string, CacheClear>> cacheClears; // absent until first written
    std::optional<std::map<std::string, TimePoint>> fastRefill;   // absent until first written
    friend bool operator==(const HistoryData&, const HistoryData&) = default;
};
