#include "foundation/FS.h"
#include "foundation/Rendering.h"
#include "history/History.h"
#include "history/HistoryFile.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

const TimePoint t0 = fromSeconds(1'750'000'000);

CleanItem item(std::string id, int64_t size, Tier tier = Tier::safe) {
    CleanItem i;
    i.id = std::move(id);
    i.size = size;
    i.tier = tier;
    return i;
}

std::string fileOf(const History& h) { return FS::readText(h.url).value_or(""); }

// Sets the time zone for one test and puts the old one back.
class ZoneGuard {
public:
    explicit ZoneGuard(const char* zone) {
        if (const char* old = std::getenv("TZ")) saved = old;
        setenv("TZ", zone, 1);
        tzset();
    }
    ~ZoneGuard() {
        if (saved) setenv("TZ", saved->c_str(), 1);
        else unsetenv("TZ");
        tzset();
    }

private:
    std::optional<std::string> saved;
};

} // namespace

TEST(History, RequiredKeysFailTheWholeFileOptionalOnesMayBeMissing) {
    TempTree dir;
    HistoryData d;
    d.samples = {{t0, 100, 5}};
    d.cleans = {{t0, 50, "Caches"}};
    d.snoozed["disk-low"] = t0;
    d.alerted["memory"] = t0;
    d.growth = GrowthReport{t0, {GrowthDay{t0, {1, 2, 3, 4}, {GrowthPlace{"npm cache", "~/.npm", 2, GrowthBucket::tools}}}}, {}};
    d.restartReminder = t0;
    d.cacheClears = std::map<std::string, CacheClear>{{"npm", {t0, 10}}};
    d.fastRefill = std::map<std::string, TimePoint>{{"npm", t0}};
    auto full = nlohmann::json::parse(HistoryFile::encode(d));
    ASSERT_EQ(HistoryFile::decode(full.dump()), d);

    auto noSwap = full;
    noSwap["samples"][0].erase("swap");
    EXPECT_FALSE(HistoryFile::decode(noSwap.dump()));
    auto noAlerted = full;
    noAlerted.erase("alerted");
    EXPECT_FALSE(HistoryFile::decode(noAlerted.dump()));
    auto badGrowth = full;
    badGrowth["growth"]["days"][0]["top"][0].erase("bucket");
    EXPECT_FALSE(HistoryFile::decode(badGrowth.dump()));
    auto badClear = full;
    badClear["cacheClears"]["npm"].erase("size");
    EXPECT_FALSE(HistoryFile::decode(badClear.dump()));

    auto lean = full;
    for (const char* key : {"growth", "restartReminder", "cacheClears", "fastRefill"}) lean.erase(key);
    auto decoded = HistoryFile::decode(lean.dump());
    ASSERT_TRUE(decoded);
    EXPECT_FALSE(decoded->growth);
    EXPECT_FALSE(decoded->cacheClears);
    EXPECT_EQ(decoded->samples, d.samples);

    // On disk: a broken file means an empty history, and the file stays until the next save.
    dir.text("history.json", noSwap.dump());
    History h(dir.root());
    EXPECT_TRUE(h.data.samples.empty());
    EXPECT_EQ(fileOf(h), noSwap.dump());
    h.recordFree(1, 2, t0);
    EXPECT_EQ(History(dir.root()).data.samples.size(), 1u);
}

TEST(History, AbsentOptionalsStayOutOfTheFile) {
    TempTree dir;
    History h(dir.root());
    h.save();
    auto j = nlohmann::json::parse(fileOf(h));
    EXPECT_EQ(j.size(), 4u);
    EXPECT_TRUE(j["snoozed"].is_object());
    EXPECT_TRUE(j["samples"].is_array());
}

TEST(History, FreeReadingsAreSpacedByHalfAnHourAndKeptSixtyDays) {
    TempTree dir;
    History h(dir.root());
    h.recordFree(100, 0, t0);
    h.recordFree(90, 0, addSeconds(t0, 1799));
    EXPECT_EQ(h.data.samples.size(), 1u);
    h.recordFree(90, 0, addSeconds(t0, 1800));
    EXPECT_EQ(h.data.samples.size(), 2u);
    // A clock set backwards changes nothing.
    h.recordFree(80, 0, addSeconds(t0, -10'000));
    EXPECT_EQ(h.data.samples.size(), 2u);
    // Sixty days on, the first reading has gone; the second is exactly at the limit and stays.
    h.recordFree(70, 3, addSeconds(t0, 1800 + 5'184'000));
    ASSERT_EQ(h.data.samples.size(), 2u);
    EXPECT_EQ(h.data.samples[0].date, addSeconds(t0, 1800));
    EXPECT_EQ(h.data.samples[1].swap, 3);
    EXPECT_EQ(History(dir.root()).data.samples, h.data.samples);
}

TEST(History, CleansBelowOneByteChangeNothingAndOldOnesGo) {
    TempTree dir;
    History h(dir.root());
    h.recordClean(0, "Nothing", t0);
    h.recordClean(-5, "Trash", t0);
    EXPECT_TRUE(h.data.cleans.empty());
    EXPECT_FALSE(FS::exists(h.url)); // nothing written either
    h.recordClean(10, "Caches", t0);
    h.recordClean(20, "Trash", addSeconds(t0, 7'776'001));
    ASSERT_EQ(h.data.cleans.size(), 1u);
    EXPECT_EQ(h.data.cleans[0].label, "Trash");
}

TEST(History, CacheClearsAreWrittenEvenWhenEmptyAndKeepThirtyDays) {
    TempTree dir;
    History h(dir.root());
    h.recordCacheClears({}, t0);
    ASSERT_TRUE(h.data.cacheClears);
    EXPECT_TRUE(h.data.cacheClears->empty());
    EXPECT_TRUE(nlohmann::json::parse(fileOf(h))["cacheClears"].is_object());

    h.recordCacheClears({item("npm", 1000), item("build", 500, Tier::rebuildable), item("device-support", 70, Tier::yourCall)}, t0);
    EXPECT_EQ(h.data.cacheClears->size(), 2u); // the build folder is no cache that refills
    EXPECT_TRUE(h.data.cacheClears->contains("device-support"));
    h.recordCacheClears({item("pip", 5)}, addSeconds(t0, 2'592'000));
    EXPECT_EQ(h.data.cacheClears->size(), 1u);
    EXPECT_TRUE(h.data.cacheClears->contains("pip"));
}

TEST(History, FastRefillWindowAndHalfSize) {
    auto fastAfter = [](double seconds, int64_t size) {
        TempTree dir;
        History h(dir.root());
        h.recordCacheClears({item("npm", 1000)}, t0);
        h.noteRefills({item("npm", size)}, addSeconds(t0, seconds));
        return h.refillsFast("npm");
    };
    EXPECT_FALSE(fastAfter(3600, 500));
    EXPECT_TRUE(fastAfter(3601, 500));
    EXPECT_TRUE(fastAfter(172'800, 500));
    EXPECT_FALSE(fastAfter(172'801, 500));
    EXPECT_FALSE(fastAfter(7200, 490));
    EXPECT_TRUE(fastAfter(7200, 5000));
}

TEST(History, RefillsCompareByKeysAloneSoTheFirstDateStays) {
    TempTree dir;
    History h(dir.root());
    h.recordCacheClears({item("npm", 1000), item("pip", 1000)}, t0);
    h.noteRefills({item("npm", 800)}, addSeconds(t0, 7200));
    ASSERT_TRUE(h.data.fastRefill);
    EXPECT_EQ(h.data.fastRefill->at("npm"), addSeconds(t0, 7200));
    // Found again: same keys, so nothing is stored and nothing is written.
    std::remove(h.url.c_str());
    h.noteRefills({item("npm", 900)}, addSeconds(t0, 9000));
    EXPECT_EQ(h.data.fastRefill->at("npm"), addSeconds(t0, 7200));
    EXPECT_FALSE(FS::exists(h.url));
    // Thirty days after its first date an entry falls off, and not a second before.
    h.noteRefills({}, addSeconds(t0, 7200 + 2'591'999));
    EXPECT_TRUE(h.refillsFast("npm"));
    h.noteRefills({}, addSeconds(t0, 7200 + 2'592'000));
    EXPECT_FALSE(h.refillsFast("npm"));
    EXPECT_TRUE(FS::exists(h.url));
    // A new key stores the whole result, with the dates this scan gave.
    h.recordCacheClears({item("npm", 1000), item("pip", 1000)}, t0);
    h.noteRefills({item("npm", 900)}, addSeconds(t0, 7200));
    h.noteRefills({item("npm", 900), item("pip", 900)}, addSeconds(t0, 10'000));
    EXPECT_EQ(h.data.fastRefill->size(), 2u);
    EXPECT_EQ(h.data.fastRefill->at("pip"), addSeconds(t0, 10'000));
    // An item of zero bytes at its clear is never a refill, and a rebuildable one is not tracked.
    History other(dir.path("other"));
    other.recordCacheClears({item("zero", 0)}, t0);
    other.noteRefills({item("zero", 50), item("build", 50, Tier::rebuildable)}, addSeconds(t0, 7200));
    EXPECT_FALSE(other.refillsFast("zero"));
    EXPECT_FALSE(other.refillsFast("build"));
}

TEST(History, RefillNoteWording) {
    TempTree dir;
    History h(dir.root());
    h.recordCacheClears({item("npm", 1000), item("pip", 1000)}, t0);
    h.noteRefills({item("npm", 1400), item("pip", 505)}, addSeconds(t0, 7200));
    EXPECT_EQ(h.refillNote(item("npm", 1400), addSeconds(t0, 7200)), "Back to 100% within a day of the last clear");
    EXPECT_EQ(h.refillNote(item("pip", 505), addSeconds(t0, 7200)), "Back to 51% within a day of the last clear");
    EXPECT_EQ(h.refillNote(item("pip", 505), addSeconds(t0, 30 * 3600 - 1)), "Back to 51% within a day of the last clear");
    EXPECT_EQ(h.refillNote(item("pip", 505), addSeconds(t0, 30 * 3600)), "Back to 51% within two days of the last clear");
    EXPECT_FALSE(h.refillNote(item("other", 5), t0));
}

TEST(History, SnoozesEndAtTheirMomentAndAlertsRestTwentyHours) {
    TempTree dir;
    History h(dir.root());
    h.snooze("disk-low", t0);
    EXPECT_TRUE(h.isSnoozed("disk-low", addSeconds(t0, -1)));
    EXPECT_FALSE(h.isSnoozed("disk-low", t0));
    EXPECT_FALSE(h.isSnoozed("unknown", t0));
    h.markAlerted("memory", t0);
    EXPECT_TRUE(h.alertedRecently("memory", addSeconds(t0, 71'999)));
    EXPECT_FALSE(h.alertedRecently("memory", addSeconds(t0, 72'000)));
    EXPECT_FALSE(h.alertedRecently("swap", t0));
    History again(dir.root());
    EXPECT_EQ(again.data.snoozed.at("disk-low"), t0);
    EXPECT_EQ(again.data.alerted.at("memory"), t0);
}

TEST(History, WhileRenderingEveryWriterChangesMemoryOnly) {
    TempTree dir;
    History h(dir.root());
    Tools::rendering = true;
    h.recordFree(1, 0, t0);
    h.recordClean(5, "x", t0);
    h.recordCacheClears({item("npm", 1000)}, t0);
    h.noteRefills({item("npm", 900)}, addSeconds(t0, 7200));
    h.snooze("a", t0);
    h.markAlerted("m", t0);
    h.setGrowth(GrowthReport{});
    h.setRestartReminder(t0);
    Tools::rendering = false;
    EXPECT_FALSE(FS::exists(h.url));
    EXPECT_EQ(h.data.samples.size(), 1u);
    EXPECT_TRUE(h.refillsFast("npm"));
    EXPECT_EQ(h.data.restartReminder, t0);
}

TEST(History, FreedTodayAndTomorrowMorningFollowTheLocalCalendar) {
    ZoneGuard zone("UTC");
    TempTree dir;
    History h(dir.root());
    const TimePoint noon = fromSeconds(1'750'075'200);            // 2025-06-16 12:00 UTC
    h.recordClean(100, "yesterday", addSeconds(noon, -13 * 3600)); // 23:00 the day before
    h.recordClean(20, "early", addSeconds(noon, -12 * 3600));      // 00:00
    h.recordClean(3, "late", addSeconds(noon, 11 * 3600 + 3599));  // 23:59:59
    EXPECT_EQ(h.freedToday(noon), 23);
    EXPECT_EQ(tomorrowMorning(noon), addSeconds(noon, 18 * 3600)); // 06:00 the next day
    EXPECT_EQ(tomorrowMorning(addSeconds(noon, -12 * 3600)), addSeconds(noon, 18 * 3600));
}

TEST(History, TomorrowMorningAddsThirtyHoursToTheStartOfADayWithAClockChange) {
    ZoneGuard zone("Europe/Berlin");
    // 2025-03-30 is 23 hours long in Berlin: midnight is 23:00 UTC the day before.
    const TimePoint noonLocal = fromSeconds(1'743'328'800); // 2025-03-30 12:00 CEST = 10:00 UTC
    const TimePoint midnight = fromSeconds(1'743'289'200);  // 2025-03-29 23:00 UTC
    EXPECT_EQ(tomorrowMorning(noonLocal), addSeconds(midnight, 30 * 3600));
}
