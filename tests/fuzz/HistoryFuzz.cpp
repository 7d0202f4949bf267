// Fuzz target for the history file's reader: whatever it accepts, it holds within the caps and
// the years 1970 to 9999, and what the writer then makes of it the reader takes back whole,
// within the derived size bound.
// Built and run by scripts/fuzz (clang's libFuzzer); not part of the gcc build.
#include "fuzz/FuzzCheck.h"
#include "history/HistoryFile.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

using FuzzCheck::inRange;
using FuzzCheck::same;

template <typename V, typename Same>
bool sameMap(const std::map<std::string, V>& a, const std::map<std::string, V>& b, Same sameValue) {
    if (a.size() != b.size()) return false;
    for (auto i = a.begin(), j = b.begin(); i != a.end(); ++i, ++j)
        if (i->first != j->first || !sameValue(i->second, j->second)) return false;
    return true;
}

bool samePlace(const GrowthPlace& a, const GrowthPlace& b) { return a == b; }

bool sameGrowth(const GrowthReport& a, const GrowthReport& b) {
    if (!same(a.made, b.made) || a.days.size() != b.days.size() || a.biggest != b.biggest) return false;
    for (std::size_t i = 0; i < a.days.size(); ++i)
        if (!same(a.days[i].date, b.days[i].date) || a.days[i].buckets != b.days[i].buckets ||
            !std::equal(a.days[i].top.begin(), a.days[i].top.end(), b.days[i].top.begin(), b.days[i].top.end(), samePlace))
            return false;
    return true;
}

bool sameData(const HistoryData& a, const HistoryData& b) {
    auto sameDate = [](TimePoint x, TimePoint y) { return same(x, y); };
    auto sameClear = [](const CacheClear& x, const CacheClear& y) { return same(x.date, y.date) && x.size == y.size; };
    if (a.samples.size() != b.samples.size() || a.cleans.size() != b.cleans.size()) return false;
    for (std::size_t i = 0; i < a.samples.size(); ++i)
        if (!same(a.samples[i].date, b.samples[i].date) || a.samples[i].free != b.samples[i].free ||
            a.samples[i].swap != b.samples[i].swap)
            return false;
    for (std::size_t i = 0; i < a.cleans.size(); ++i)
        if (!same(a.cleans[i].date, b.cleans[i].date) || a.cleans[i].freed != b.cleans[i].freed ||
            a.cleans[i].label != b.cleans[i].label)
            return false;
    if (!sameMap(a.snoozed, b.snoozed, sameDate) || !sameMap(a.alerted, b.alerted, sameDate)) return false;
    if (a.growth.has_value() != b.growth.has_value() || (a.growth && !sameGrowth(*a.growth, *b.growth))) return false;
    if (a.restartReminder.has_value() != b.restartReminder.has_value() ||
        (a.restartReminder && !same(*a.restartReminder, *b.restartReminder)))
        return false;
    if (a.cacheClears.has_value() != b.cacheClears.has_value() ||
        (a.cacheClears && !sameMap(*a.cacheClears, *b.cacheClears, sameClear)))
        return false;
    if (a.fastRefill.has_value() != b.fastRefill.has_value() ||
        (a.fastRefill && !sameMap(*a.fastRefill, *b.fastRefill, sameDate)))
        return false;
    return true;
}

bool datesInRange(const HistoryData& d) {
    for (const auto& s : d.samples)
        if (!inRange(s.date)) return false;
    for (const auto& c : d.cleans)
        if (!inRange(c.date)) return false;
    for (const auto* m : {&d.snoozed, &d.alerted})
        for (const auto& [k, t] : *m)
            if (!inRange(t)) return false;
    if (d.fastRefill)
        for (const auto& [k, t] : *d.fastRefill)
            if (!inRange(t)) return false;
    if (d.cacheClears)
        for (const auto& [k, c] : *d.cacheClears)
            if (!inRange(c.date)) return false;
    if (d.restartReminder && !inRange(*d.restartReminder)) return false;
    if (d.growth) {
        if (!inRange(d.growth->made)) return false;
        for (const auto& day : d.growth->days)
            if (!inRange(day.date)) return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    auto loaded = HistoryFile::decode(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!loaded) return 0;
    FUZZ_REQUIRE(datesInRange(*loaded));
    const HistoryData kept = HistoryFile::bounded(*loaded);
    FUZZ_REQUIRE(kept.samples.size() <= HistoryFile::maxSamples && kept.snoozed.size() <= HistoryFile::maxSnoozed);
    const std::string written = HistoryFile::encode(*loaded);
    FUZZ_REQUIRE(written.size() <= HistoryFile::largestFile);
    auto reread = HistoryFile::decode(written);
    FUZZ_REQUIRE(reread.has_value());
    FUZZ_REQUIRE(sameData(*reread, kept));
    return 0;
}
