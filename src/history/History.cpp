#include "history/History.h"

#include "foundation/AtomicFile.h"
#include "foundation/FS.h"
#include "foundation/Rendering.h"
#include "foundation/Support.h"
#include "foundation/Text.h"
#include "history/Calendar.h"
#include "history/HistoryFile.h"

#include <algorithm>
#include <cmath>

History& History::shared() {
    // There is no earlier name of the support folder on this platform to move from.
    static History instance(Support::dir());
    return instance;
}

History::History(const std::string& folder) : url(folder + "/history.json") {
    (void)AtomicFile::makeFolders(folder);
    // One byte past the limit, so that a larger file is seen as such and refused.
    if (auto content = FS::readText(url, HistoryFile::readLimit + 1))
        if (auto decoded = HistoryFile::decode(*content)) data = std::move(*decoded);
}

void History::save() {
    if (Tools::rendering) return;
    // Memory keeps what the file keeps.
    data = HistoryFile::bounded(std::move(data));
    (void)AtomicFile::write(url, HistoryFile::encode(data));
}

void History::recordFree(int64_t free, int64_t swap, TimePoint now) {
    // A clock set backwards gives a negative gap, which is also too soon.
    if (!data.samples.empty() && secondsBetween(data.samples.back().date, now) < sampleSpacing) return;
    data.samples.push_back(FreeSample{now, free, swap});
    const TimePoint oldest = addSeconds(now, -sampleAge);
    std::erase_if(data.samples, [&](const FreeSample& s) { return s.date < oldest; });
    save();
}

void History::recordClean(int64_t freed, const std::string& label) { recordClean(freed, label, Clock::now()); }

void History::recordClean(int64_t freed, const std::string& label, TimePoint now) {
    if (freed < 1) return;
    data.cleans.push_back(CleanRecord{now, freed, label});
    const TimePoint oldest = addSeconds(now, -cleanAge);
    std::erase_if(data.cleans, [&](const CleanRecord& c) { return c.date < oldest; });
    save();
}

void History::recordCacheClears(const std::vector<CleanItem>& items, TimePoint now) {
    std::map<std::string, CacheClear> clears = data.cacheClears.value_or(std::map<std::string, CacheClear>{});
    for (const auto& item : items)
        if (item.tracksRefill()) clears[item.id] = CacheClear{now, item.size};
    std::erase_if(clears, [&](const auto& e) { return !(secondsBetween(e.second.date, now) < refillAge); });
    data.cacheClears = std::move(clears);
    save();
}

void History::noteRefills(const std::vector<CleanItem>& items, TimePoint now) {
    const auto clears = data.cacheClears.value_or(std::map<std::string, CacheClear>{});
    const auto stored = data.fastRefill.value_or(std::map<std::string, TimePoint>{});
    auto result = stored;
    for (const auto& item : items) {
        if (!item.tracksRefill()) continue;
        auto it = clears.find(item.id);
        if (it == clears.end()) continue;
        const CacheClear& clear = it->second;
        if (clear.size < 1) continue;
        double elapsed = secondsBetween(clear.date, now);
        bool fast = elapsed > 3'600 && elapsed <= 172'800 &&
                    static_cast<double>(item.size) >= static_cast<double>(clear.size) / 2.0;
        if (fast) result[item.id] = now;
    }
    std::erase_if(result, [&](const auto& e) { return !(secondsBetween(e.second, now) < refillAge); });
    // Keys alone decide: an item already listed keeps its first date and falls off 30 days
    // after it, even though this scan found it again.
    bool sameKeys = result.size() == stored.size();
    for (const auto& [id, d] : result)
        if (!stored.contains(id)) sameKeys = false;
    if (sameKeys) return;
    data.fastRefill = std::move(result);
    save();
}

bool History::refillsFast(const std::string& id) const { return data.fastRefill && data.fastRefill->contains(id); }

std::optional<std::string> History::refillNote(const CleanItem& item, TimePoint now) const {
    if (!refillsFast(item.id) || !data.cacheClears) return std::nullopt;
    auto it = data.cacheClears->find(item.id);
    if (it == data.cacheClears->end() || it->second.size < 1) return std::nullopt;
    const CacheClear& clear = it->second;
    double ratio = static_cast<double>(item.size) / static_cast<double>(clear.size) * 100.0;
    long percent = std::min(100L, std::lround(ratio));
    double hours = secondsBetween(clear.date, now) / 3'600.0;
    if (hours < 30) return Text::format("Back to %ld%% within a day of the last clear", percent);
    return Text::format("Back to %ld%% within two days of the last clear", percent);
}

int64_t History::freedToday(TimePoint now) const {
    int64_t sum = 0;
    for (const auto& c : data.cleans)
        if (Calendar::sameDay(c.date, now)) sum += c.freed;
    return sum;
}

std::optional<Pace> History::pace(int64_t free, int64_t swap, TimePoint now) const {
    return Pace::measure(data, free, swap, now);
}

void History::snooze(const std::string& id, TimePoint until) {
    data.snoozed[id] = until;
    save();
}

bool History::isSnoozed(const std::string& id, TimePoint now) const {
    auto it = data.snoozed.find(id);
    return it != data.snoozed.end() && it->second > now;
}

bool History::alertedRecently(const std::string& key, TimePoint now) const {
    auto it = data.alerted.find(key);
    return it != data.alerted.end() && secondsBetween(it->second, now) < alertQuiet;
}

void History::markAlerted(const std::string& key) { markAlerted(key, Clock::now()); }

void History::markAlerted(const std::string& key, TimePoint now) {
    data.alerted[key] = now;
    save();
}

void History::setGrowth(const GrowthReport& report) {
    data.growth = report;
    save();
}

void History::setRestartReminder(std::optional<TimePoint> date) {
    data.restartReminder = date;
    save();
}

TimePoint tomorrowMorning(TimePoint now) {
    if (auto start = Calendar::startOfDay(now)) return addSeconds(*start, 30 * 3'600.0);
    return addSeconds(now, 86'400);
}
