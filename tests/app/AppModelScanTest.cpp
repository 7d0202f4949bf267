// The scan and clean cycles: what a second request does, what a late result is worth, and
// what a clean takes, leaves and tells.
#include "AppHarness.h"

#include "foundation/FS.h"
#include "history/History.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

void cachesAndAProject(const TempTree& home) {
    cacheIn(home, "oldtool", 12 * MB, true);
    cacheIn(home, "newtool", 11 * MB, false);
    projectIn(home, "code/app", 21 * MB);
}

const CleanItem* byId(const std::vector<CleanItem>& items, const std::string& id) {
    for (const auto& i : items)
        if (i.id == id) return &i;
    return nullptr;
}

} // namespace

TEST(ScanCycle, AScanDuringAScanStartsNothingButItsClosureRunsWhenTheRunningOneEnds) {
    AppHarness h;
    h.gated = true;
    AppModel& m = h.make();
    std::vector<std::string> ran;
    m.scan([&] { ran.push_back("first"); });
    ASSERT_TRUE(h.gate.waitStarted(1));
    m.scan([&] { ran.push_back("second"); });
    m.scanIfStale(600); // no last scan: stale, and still nothing new starts
    h.gate.release();
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.isScanning(); }));
    h.settle();
    EXPECT_EQ(h.gate.started.load(), 1);
    EXPECT_EQ(ran, (std::vector<std::string>{"first", "second"}));
    EXPECT_TRUE(m.lastScan());

    // A fresh result keeps a stale-check from scanning again.
    m.scanIfStale(600);
    EXPECT_FALSE(m.isScanning());
    h.clock.advance(601);
    m.scanIfStale(600);
    EXPECT_TRUE(m.isScanning());
}

TEST(ScanCycle, AClosureAskedForDuringACleanWaitsForALaterScan) {
    AppHarness h;
    cachesAndAProject(h.home);
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    m.clean(m.selectedItems(), "window");
    ASSERT_TRUE(m.isCleaning());
    bool ran = false;
    m.scan([&] { ran = true; });
    EXPECT_FALSE(m.isScanning());
    ASSERT_TRUE(h.finishClean());
    EXPECT_FALSE(ran); // a clean starts no scan, and the closure waits for one
    ASSERT_TRUE(h.scanToEnd());
    EXPECT_TRUE(ran);
}

TEST(ScanCycle, AfterAStopTheClosuresWaitForTheNextFinishedScan) {
    AppHarness h;
    h.gated = true;
    AppModel& m = h.make();
    int ran = 0;
    m.scan([&] { ++ran; });
    ASSERT_TRUE(h.gate.waitStarted(1));
    m.cancelScan();
    EXPECT_FALSE(m.isScanning());
    h.gate.release();
    h.settle();
    EXPECT_EQ(ran, 0);
    EXPECT_FALSE(m.lastScan());
    ASSERT_TRUE(h.scanToEnd());
    EXPECT_EQ(ran, 1);
}

TEST(ScanCycle, LateProgressOfAStoppedScanNeverLands) {
    AppHarness h;
    h.gated = true;
    h.gate.lateProgress = true;
    AppModel& m = h.make();
    m.scan();
    ASSERT_TRUE(h.gate.waitStarted(1));
    m.cancelScan();
    QSignalSpy progress(&m, &AppModel::scanProgressChanged);
    QSignalSpy items(&m, &AppModel::itemsChanged);
    h.gate.release();
    h.settle();
    EXPECT_EQ(progress.count(), 0);
    EXPECT_FALSE(m.scanProgress());
    EXPECT_EQ(items.count(), 0);

    // A new scan started after the stop is not disturbed by the old one's reports either.
    h.gate.lateProgress = false;
    m.scan();
    ASSERT_TRUE(h.gate.waitStarted(2));
    ASSERT_TRUE(m.scanProgress());
    EXPECT_EQ(m.scanProgress()->stage, ScanProgress::Stage::finding);
}

TEST(ScanCycle, ACleanDuringAScanDropsTheScanAndKeepsTheOldResults) {
    AppHarness h;
    h.gated = true;
    cachesAndAProject(h.home);
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    const auto firstScan = m.lastScan();
    const auto firstItems = m.items();
    ASSERT_EQ(firstItems.size(), 3u);

    h.clock.advance(30);
    h.home.file(".cache/thirdtool/blob", 15 * MB); // the running scan would find this
    m.scan();
    ASSERT_TRUE(h.gate.waitStarted(2));
    const CleanItem* old = byId(m.items(), "cache:oldtool");
    ASSERT_TRUE(old);
    m.clean({*old}, "window");
    EXPECT_FALSE(m.isScanning());
    EXPECT_TRUE(m.isCleaning());
    h.gate.release();
    ASSERT_TRUE(h.finishClean());
    h.settle();
    EXPECT_EQ(m.lastScan(), firstScan);
    EXPECT_FALSE(byId(m.items(), "cache:thirdtool"));
    EXPECT_FALSE(byId(m.items(), "cache:oldtool"));
    EXPECT_EQ(m.items().size(), 2u);
}

TEST(ScanCycle, ASecondCleanIsRefusedWithWordsAndNothingTickedWinsFirst) {
    AppHarness h;
    cachesAndAProject(h.home);
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    auto toasts = h.recordToasts();
    m.setConfirming(true);
    m.clean(m.items(), "window");
    ASSERT_TRUE(m.isCleaning());
    const auto running = m.cleanProgress();
    m.setConfirming(true);
    m.clean(m.items(), "window");
    EXPECT_FALSE(m.confirming());
    EXPECT_EQ(m.cleanProgress(), running);
    m.clean(std::vector<CleanItem>{}, "window");
    ASSERT_TRUE(h.finishClean());
    EXPECT_EQ(*toasts, (std::vector<std::string>{"Sorrelin is still clearing the last batch. Try again when it finishes.",
                                                 "Nothing is ticked, so there is nothing to clear."}));
}

TEST(ScanCycle, ACleanOfLockedItemsOnlyClearsNothing) {
    AppHarness h;
    AppModel& m = h.make();
    CleanItem locked = makeItem("locked", Tier::rebuildable, {h.home.file("code/x/node_modules/a", 10)}, 10);
    locked.lockedReason = "open now";
    auto toasts = h.recordToasts();
    m.clean({locked}, "window");
    EXPECT_FALSE(m.isCleaning());
    EXPECT_EQ(*toasts, std::vector<std::string>{"Nothing is ticked, so there is nothing to clear."});
    EXPECT_TRUE(FS::exists(h.home.path("code/x/node_modules/a")));
}

TEST(ScanCycle, ACleanRemovesWhatWentKeepsFailuresAndForgetsOverrides) {
    AppHarness h;
    cachesAndAProject(h.home);
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    const CleanItem newtool = *byId(m.items(), "cache:newtool");
    m.toggle(newtool); // ticked by hand
    EXPECT_EQ(m.overrides().at("cache:newtool"), true);
    // A second item whose path the remover refuses: it fails and stays listed.
    CleanItem refused = makeItem("refused", Tier::safe, {h.home.path("code")}, 5);
    std::vector<CleanItem> chosen = m.selectedItems();
    chosen.push_back(refused);
    m.clean(chosen, "menu", std::string("Caches"));
    h.disk.available = 500 * GB + 23 * MB; // what the volume says afterwards
    auto toasts = h.recordToasts();
    ASSERT_TRUE(h.finishClean());
    ASSERT_TRUE(m.report());
    EXPECT_EQ(m.report()->freed, 23 * MB); // the volume's difference, not the sum of sizes
    EXPECT_EQ(m.report()->removedCount, 2);
    ASSERT_EQ(m.report()->failures.size(), 1u);
    EXPECT_EQ(m.report()->source, "menu");
    EXPECT_FALSE(byId(m.items(), "cache:newtool"));
    EXPECT_FALSE(byId(m.items(), "cache:oldtool"));
    EXPECT_EQ(m.items().size(), 1u); // the build folder, never ticked
    EXPECT_TRUE(m.overrides().empty());
    EXPECT_FALSE(m.cleanSummary()); // only a clean from the window has a sheet
    EXPECT_EQ(*toasts, std::vector<std::string>{"1 of 3 could not be fully cleared."});
    ASSERT_FALSE(m.history().data.cleans.empty());
    EXPECT_EQ(m.history().data.cleans.back().label, "Caches");
    EXPECT_EQ(m.history().data.cleans.back().freed, 23 * MB);
    // After it went through a clean and came back, the cache follows the fresh-scan rule again.
    h.home.file(".cache/newtool/blob", 11 * MB);
    ASSERT_TRUE(h.scanToEnd());
    EXPECT_FALSE(m.selected().contains("cache:newtool"));
}

TEST(ScanCycle, FreedIsNeverNegativeAndAWindowCleanGetsItsSheet) {
    AppHarness h;
    cachesAndAProject(h.home);
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    m.clean(m.selectedItems(), "window");
    h.disk.available = 400 * GB; // others wrote more than the clean gave back
    ASSERT_TRUE(h.finishClean());
    EXPECT_EQ(m.report()->freed, 0);
    EXPECT_EQ(m.report()->availableAfter, 400 * GB);
    ASSERT_TRUE(m.cleanSummary());
    EXPECT_EQ(m.cleanSummary()->before, 500 * GB);
    EXPECT_EQ(m.cleanSummary()->items.size(), 1u);
}

// The sheet of a dry run must say what the clean pretended, not the unchanged free space, so
// its summary says it was one.
TEST(ScanCycle, AWindowCleansSummaryTellsTheSheetWhetherItWasADryRun) {
    for (bool dry : {false, true}) {
        AppHarness h;
        cachesAndAProject(h.home);
        AppModel& m = h.make([dry](AppSetup& s) { s.remover.dryRun.on = dry; });
        ASSERT_TRUE(h.scanToEnd());
        m.clean(m.selectedItems(), "window");
        ASSERT_TRUE(h.finishClean());
        const QVariantMap summary = m.cleanSummaryValue().toMap();
        EXPECT_EQ(summary.value("dryRun").toBool(), dry);
        EXPECT_EQ(summary.value("before").toLongLong(), 500 * GB);
        EXPECT_EQ(FS::exists(h.home.path(".cache/oldtool")), dry) << "a dry run touches nothing";
    }
}

TEST(ScanCycle, EmptyingTheTrashFoldsTheGainIntoTheReportAndRunsOnce) {
    AppHarness h;
    h.home.file("Downloads/old.iso", 3 * MB);
    AppModel& m = h.make();
    // Without a report nothing is recorded.
    m.emptyTrash();
    m.emptyTrash();
    ASSERT_TRUE(AppHarness::waitUntil([&] { return h.clock.nextDue().has_value(); }));
    h.clock.advance(1);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.emptyingTrash(); }));
    EXPECT_TRUE(m.history().data.cleans.empty());

    CleanItem iso = makeItem("iso", Tier::yourCall, {h.home.path("Downloads/old.iso")}, 3 * MB, Removal::trash());
    m.clean({iso}, "window");
    ASSERT_TRUE(h.finishClean());
    EXPECT_EQ(m.report()->trashed, 3 * MB);
    EXPECT_FALSE(FS::exists(h.home.path("Downloads/old.iso")));
    m.emptyTrash();
    h.disk.available = 500 * GB + 3 * MB;
    ASSERT_TRUE(AppHarness::waitUntil([&] { return h.clock.nextDue() && *h.clock.nextDue() <= 1.0; }));
    h.clock.advance(1);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.emptyingTrash(); }));
    EXPECT_EQ(m.report()->trashed, 0);
    EXPECT_EQ(m.report()->freed, 3 * MB);
    ASSERT_FALSE(m.history().data.cleans.empty());
    EXPECT_EQ(m.history().data.cleans.back().label, "Trash");
    EXPECT_TRUE(std::filesystem::is_empty(h.home.path(".local/share/Trash/files")));
}
