// "history.json" on disk: dates that must not wrap, caps that keep every file the writer makes
// readable, and saves killed half-way that leave nothing behind.
#include "foundation/AtomicFile.h"
#include "foundation/FS.h"
#include "history/History.h"
#include "history/HistoryFile.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <dirent.h>
#include <poll.h>
#include <signal.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <limits>

using nlohmann::json;

namespace {

constexpr double year3000 = 32'503'680'000;
const TimePoint t0 = fromSeconds(1'750'000'000);

json sample(double date, int64_t free) { return json{{"date", date}, {"free", free}, {"swap", 0}}; }

json growthWith(double made, double dayDate) {
    json day{{"date", dayDate}, {"buckets", {1, 2, 3, 4}}, {"top", json::array()}};
    return json{{"made", made}, {"days", json::array({day})}, {"biggest", json::array()}};
}

// A text of `bytes` bytes that the encoder writes at six bytes each (\u0001), after a unique
// number, so that keys differ.
std::string worst(std::size_t bytes, std::size_t index) {
    std::string s = std::to_string(index);
    s.resize(bytes, '\x01');
    return s;
}

GrowthPlace worstPlace(std::size_t i) {
    return GrowthPlace{worst(HistoryFile::maxNameBytes + 50, i), worst(HistoryFile::maxLocationBytes + 50, i),
                       std::numeric_limits<int64_t>::min(), GrowthBucket::tools};
}

// Every list past its cap, every text past its length, every number at its longest.
HistoryData overfilled() {
    using namespace HistoryFile;
    constexpr int64_t longest = std::numeric_limits<int64_t>::min();
    HistoryData d;
    for (std::size_t i = 0; i < maxSamples + 10; ++i)
        d.samples.push_back({addSeconds(t0, static_cast<double>(i) * 1800 + 0.5), longest, longest});
    for (std::size_t i = 0; i < maxCleans + 10; ++i)
        d.cleans.push_back({addSeconds(t0, static_cast<double>(i) + 0.25), longest, worst(maxLabelBytes + 100, i)});
    for (std::size_t i = 0; i < maxSnoozed + 10; ++i) d.snoozed[worst(maxKeyBytes, i)] = addSeconds(t0, static_cast<double>(i));
    for (std::size_t i = 0; i < maxAlerted + 10; ++i) d.alerted[worst(maxKeyBytes, i)] = addSeconds(t0, static_cast<double>(i));
    d.snoozed[worst(maxKeyBytes + 1, 0)] = addSeconds(t0, 1e9); // too long to be an id
    d.cacheClears.emplace();
    d.fastRefill.emplace();
    for (std::size_t i = 0; i < maxCacheClears + 10; ++i)
        (*d.cacheClears)[worst(maxKeyBytes, i)] = CacheClear{addSeconds(t0, static_cast<double>(i)), longest};
    for (std::size_t i = 0; i < maxFastRefill + 10; ++i)
        (*d.fastRefill)[worst(maxKeyBytes, i)] = addSeconds(t0, static_cast<double>(i));
    GrowthReport g;
    g.made = t0;
    for (std::size_t i = 0; i < maxGrowthDays + 2; ++i) {
        GrowthDay day{addSeconds(t0, static_cast<double>(i) * 86'400), {longest, longest, longest, longest}, {}};
        for (std::size_t k = 0; k < maxGrowthTop + 2; ++k) day.top.push_back(worstPlace(k));
        g.days.push_back(std::move(day));
    }
    for (std::size_t k = 0; k < maxGrowthBiggest + 2; ++k) g.biggest.push_back(worstPlace(k));
    d.growth = std::move(g);
    d.restartReminder = t0;
    return d;
}

// A child that saves in a loop; killed at the latest when it goes out of scope, so that a failed
// assertion leaves no process behind.
struct Saver {
    pid_t pid;
    ~Saver() { stop(); }
    void stop() {
        if (pid <= 0) return;
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
        pid = -1;
    }
};

int temporaries(const std::string& folder) {
    int n = 0;
    for (const auto& name : FS::children(folder))
        if (AtomicFile::isTemporaryName(name, "history.json")) ++n;
    return n;
}

} // namespace

TEST(HistoryFile, ADateOutsideTheYears1970To9999IsDroppedNeverWrapped) {
    json j{{"samples", {sample(1e308, 1), sample(1'750'000'000, 2), sample(-1, 3)}},
           {"cleans", {json{{"date", 1e308}, {"freed", 5}, {"label", "x"}}, json{{"date", 1.75e9}, {"freed", 6}, {"label", "y"}}}},
           {"snoozed", {{"far", 1e308}, {"year3000", year3000}, {"before1970", -100}}},
           {"alerted", {{"memory", 1.75e9}, {"later", 1e20}}},
           {"restartReminder", 1e308},
           {"cacheClears", {{"gone", {{"date", 1e308}, {"size", 1}}}, {"kept", {{"date", 1.75e9}, {"size", 2}}}}},
           {"fastRefill", {{"gone", 1e308}, {"kept", 1.75e9}}},
           {"growth", growthWith(1.75e9, 1e308)}};
    auto d = HistoryFile::decode(j.dump());
    ASSERT_TRUE(d);
    ASSERT_EQ(d->samples.size(), 1u);
    EXPECT_EQ(d->samples[0].free, 2);
    ASSERT_EQ(d->cleans.size(), 1u);
    EXPECT_EQ(d->cleans[0].label, "y");
    EXPECT_EQ(d->snoozed.size(), 1u);
    ASSERT_TRUE(d->snoozed.contains("year3000"));
    EXPECT_NEAR(secondsSince1970(d->snoozed["year3000"]), year3000, 1e-3);
    EXPECT_EQ(d->alerted.size(), 1u);
    EXPECT_FALSE(d->restartReminder);
    EXPECT_EQ(d->cacheClears->size(), 1u);
    EXPECT_TRUE(d->cacheClears->contains("kept"));
    EXPECT_EQ(d->fastRefill->size(), 1u);
    // A growth report with a hole in its days is no report; the rest of the file stands.
    EXPECT_FALSE(d->growth);
    j["growth"] = growthWith(1.75e9, 1.75e9);
    EXPECT_TRUE(HistoryFile::decode(j.dump())->growth);

    // A date that is no number at all is a broken file, as before.
    j["restartReminder"] = "tomorrow";
    EXPECT_FALSE(HistoryFile::decode(j.dump()));
}

TEST(HistoryFile, AFarSnoozeStaysFarThroughSaves) {
    TempTree dir;
    json j{{"samples", json::array()}, {"cleans", json::array()},
           {"snoozed", {{"far", 1e308}, {"year3000", year3000}}}, {"alerted", json::object()}};
    dir.text("history.json", j.dump());
    const TimePoint now = Clock::now();
    {
        History h(dir.root());
        EXPECT_TRUE(h.isSnoozed("year3000", now));
        EXPECT_FALSE(h.isSnoozed("far", now));
        h.save();
    }
    auto saved = json::parse(FS::readText(dir.path("history.json")).value_or("{}"));
    EXPECT_FALSE(saved["snoozed"].contains("far"));
    EXPECT_NEAR(saved["snoozed"]["year3000"].get<double>(), year3000, 1e-3);
    History again(dir.root());
    EXPECT_TRUE(again.isSnoozed("year3000", now));
}

TEST(HistoryFile, FilledToEveryCapTheFileStaysUnderTheReadLimitAndReadsBack) {
    using namespace HistoryFile;
    const HistoryData d = overfilled();
    const HistoryData kept = bounded(d);

    // What the caps keep: the newest records, the latest entries, ids whole, texts cut.
    ASSERT_EQ(kept.samples.size(), maxSamples);
    EXPECT_EQ(kept.samples.front(), d.samples[10]);
    EXPECT_EQ(kept.samples.back(), d.samples.back());
    ASSERT_EQ(kept.cleans.size(), maxCleans);
    EXPECT_EQ(kept.cleans.front().date, d.cleans[10].date);
    EXPECT_EQ(kept.cleans.front().label.size(), maxLabelBytes);
    EXPECT_EQ(kept.snoozed.size(), maxSnoozed);
    EXPECT_FALSE(kept.snoozed.contains(worst(maxKeyBytes, 9)));
    EXPECT_TRUE(kept.snoozed.contains(worst(maxKeyBytes, 10)));
    EXPECT_FALSE(kept.snoozed.contains(worst(maxKeyBytes + 1, 0)));
    EXPECT_EQ(kept.alerted.size(), maxAlerted);
    EXPECT_EQ(kept.cacheClears->size(), maxCacheClears);
    EXPECT_EQ(kept.fastRefill->size(), maxFastRefill);
    ASSERT_EQ(kept.growth->days.size(), maxGrowthDays);
    EXPECT_EQ(kept.growth->days.back().date, d.growth->days.back().date);
    EXPECT_EQ(kept.growth->days[0].top.size(), maxGrowthTop);
    EXPECT_EQ(kept.growth->biggest.size(), maxGrowthBiggest);
    EXPECT_EQ(kept.growth->biggest[0].location.size(), maxLocationBytes);

    // The derived bound holds, and it is a bound of this file, not a guess far above it.
    const std::string text = encode(d);
    EXPECT_LE(text.size(), largestFile);
    EXPECT_GT(text.size(), largestFile / 10 * 9);

    TempTree dir;
    {
        History h(dir.root());
        h.data = d;
        h.save();
        EXPECT_EQ(h.data, kept);
    }
    struct stat st {};
    ASSERT_EQ(stat(dir.path("history.json").c_str(), &st), 0);
    EXPECT_EQ(static_cast<std::size_t>(st.st_size), text.size());
    EXPECT_EQ(History(dir.root()).data, kept);
}

TEST(HistoryFile, TheReaderTakesAFileUpToItsLimitAndNoMore) {
    const std::string body = json{{"samples", {sample(1.75e9, 7)}}, {"cleans", json::array()},
                                  {"snoozed", json::object()}, {"alerted", json::object()}}
                                 .dump();
    TempTree dir;
    std::string padded = body;
    padded.resize(HistoryFile::readLimit, ' ');
    dir.text("history.json", padded);
    EXPECT_EQ(History(dir.root()).data.samples.size(), 1u);
    padded += ' ';
    dir.text("history.json", padded);
    EXPECT_TRUE(History(dir.root()).data.samples.empty());
}

TEST(HistorySave, SavesKilledHalfWayLeaveTheFileWholeAndTheNextSaveClearsTheirTemporaries) {
    TempTree dir;
    // Big enough that a write and its fsync take a while.
    HistoryData d;
    for (std::size_t i = 0; i < HistoryFile::maxCleans; ++i)
        d.cleans.push_back({addSeconds(t0, static_cast<double>(i)), 1, std::string(HistoryFile::maxLabelBytes, 'x')});
    for (std::size_t i = 0; i < HistoryFile::maxSnoozed; ++i) d.snoozed[worst(2000, i)] = t0;
    {
        History h(dir.root());
        h.data = d;
        h.save();
    }
    const std::string whole = FS::readText(dir.path("history.json"), HistoryFile::readLimit).value_or("");
    ASSERT_GT(whole.size(), 1'000'000u);

    int watch = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    ASSERT_GE(watch, 0);
    ASSERT_GE(inotify_add_watch(watch, dir.root().c_str(), IN_CREATE), 0);
    int kills = 0, landed = 0, left = 0;
    // Until a few kills have landed in the middle of a save, the last one among them.
    while (kills < 200 && !(landed >= 2 && left == 1)) {
        Saver child{fork()};
        ASSERT_GE(child.pid, 0);
        if (child.pid == 0) {
            // Behind everything else on the machine, so the kill below finds it mid-write.
            (void)!nice(19);
            History h(dir.root());
            for (;;) h.save();
        }
        bool created = false;
        alignas(inotify_event) char buffer[4096];
        while (!created) {
            pollfd p{watch, POLLIN, 0};
            ASSERT_EQ(poll(&p, 1, 30'000), 1) << "the saving child made no temporary file in 30 s";
            ssize_t n = read(watch, buffer, sizeof buffer);
            for (ssize_t at = 0; at < n;) {
                auto* e = reinterpret_cast<inotify_event*>(buffer + at);
                if (e->len > 0 && AtomicFile::isTemporaryName(e->name, "history.json")) created = true;
                at += static_cast<ssize_t>(sizeof(inotify_event) + e->len);
            }
        }
        child.stop();
        ++kills;
        // What that child made after its first file is no news for the next one.
        while (read(watch, buffer, sizeof buffer) > 0) {
        }
        // Each save clears the leftovers of the saves before it: they never pile up.
        left = temporaries(dir.root());
        ASSERT_LE(left, 1) << "after kill " << kills;
        landed += left;
        ASSERT_EQ(FS::readText(dir.path("history.json"), HistoryFile::readLimit), whole) << "after kill " << kills;
    }
    close(watch);
    ASSERT_EQ(left, 1) << landed << " of " << kills << " kills landed in the middle of a save";

    History h(dir.root());
    EXPECT_EQ(h.data, d);
    h.save();
    EXPECT_EQ(temporaries(dir.root()), 0);
    EXPECT_EQ(FS::readText(dir.path("history.json"), HistoryFile::readLimit), whole);
}
