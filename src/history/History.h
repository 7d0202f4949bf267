#pragma once
// The program's long memory: readings of free space, what was cleaned, snoozed advice, when
// alerts went out, the last growth report, a pending restart reminder and what it takes to
// notice caches that refill fast. One object, one JSON file, rewritten whole at each change.
// All callers are on the main thread; there is no lock.
#include "foundation/CleanItem.h"
#include "foundation/Time.h"
#include "history/HistoryData.h"
#include "history/Pace.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

class History {
public:
    // Age limits and spacing, in seconds.
    static constexpr double sampleAge = 5'184'000;    // 60 days
    static constexpr double sampleSpacing = 1'800;
    static constexpr double cleanAge = 7'776'000;     // 90 days
    static constexpr double refillAge = 2'592'000;    // 30 days
    static constexpr double alertQuiet = 72'000;      // 20 hours

    // The one instance of the program, over "history.json" in the support folder.
    [[nodiscard]] static History& shared();
    // A history over "history.json" in `folder`, loaded at once. The folder is made if needed.
    explicit History(const std::string& folder);

    HistoryData data;
    std::string url;

    void recordFree(int64_t free, int64_t swap, TimePoint now);
    void recordClean(int64_t freed, const std::string& label);
    void recordClean(int64_t freed, const std::string& label, TimePoint now);
    void recordCacheClears(const std::vector<CleanItem>& items, TimePoint now);
    void noteRefills(const std::vector<CleanItem>& items, TimePoint now);
    [[nodiscard]] bool refillsFast(const std::string& id) const;
    [[nodiscard]] std::optional<std::string> refillNote(const CleanItem& item, TimePoint now) const;
    [[nodiscard]] int64_t freedToday(TimePoint now) const;
    [[nodiscard]] std::optional<Pace> pace(int64_t free, int64_t swap, TimePoint now) const;
    void snooze(const std::string& id, TimePoint until);
    [[nodiscard]] bool isSnoozed(const std::string& id, TimePoint now) const;
    [[nodiscard]] bool alertedRecently(const std::string& key, TimePoint now) const;
    void markAlerted(const std::string& key);
    void markAlerted(const std::string& key, TimePoint now);
    void setGrowth(const GrowthReport& report);
    void setRestartReminder(std::optional<TimePoint> date);
    // Cuts `data` to the file's caps and writes the whole file atomically; nothing while
    // screens are rendered. Failures are dropped.
    void save();
};

// When a snooze ends: 06:00 of the next day on an ordinary day (the start of today plus 30
// hours), or a day from now if the calendar cannot tell.
[[nodiscard]] TimePoint tomorrowMorning(TimePoint now);
