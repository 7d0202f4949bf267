// The model's own decisions over its state: writes that change nothing stay silent, the
// low-space watch, the advice cache, tabs, ticks and the toast's lifetime.
#include "AppHarness.h"

#include "history/History.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

// Two caches in the generated home: one untouched for 40 days, one in use.
void twoCaches(const TempTree& home) {
    cacheIn(home, "oldtool", 12 * MB, true);
    cacheIn(home, "newtool", 11 * MB, false);
}

} // namespace

TEST(AppModelState, AWriteOfAnEqualValueNotifiesNobody) {
    AppHarness h;
    AppModel& m = h.make();
    QSignalSpy tab(&m, &AppModel::tabChanged), forward(&m, &AppModel::tabForwardChanged), disk(&m, &AppModel::diskChanged),
        confirming(&m, &AppModel::confirmingChanged), who(&m, &AppModel::whoModeChanged), day(&m, &AppModel::weekDayChanged),
        selected(&m, &AppModel::selectedChanged), expanded(&m, &AppModel::expandedChanged);

    m.go(Tab::home);
    m.setConfirming(false);
    m.setWhoMode(AppModel::WhoMode::cpu);
    m.setWeekDay(std::nullopt);
    m.setAll(Tier::safe, false);
    m.setExpanded(Tier::safe, false);
    m.refreshDisk(); // the same reading as at the start
    for (auto* spy : {&tab, &forward, &disk, &confirming, &who, &day, &selected, &expanded}) EXPECT_EQ(spy->count(), 0);

    // A real change notifies once; writing it again does not.
    m.setExpanded(Tier::safe, true);
    m.setExpanded(Tier::safe, true);
    m.setWhoModeValue("memory");
    m.setWhoModeValue("memory");
    m.setWhoModeValue("neither");
    h.disk.available = 400 * GB;
    m.refreshDisk();
    m.refreshDisk();
    EXPECT_EQ(expanded.count(), 1);
    EXPECT_EQ(who.count(), 1);
    EXPECT_EQ(disk.count(), 1);
}

TEST(AppModelState, TabsMoveForwardOnlyToAHigherTab) {
    AppHarness h;
    AppModel& m = h.make();
    m.go(Tab::clean);
    EXPECT_EQ(m.tab(), Tab::clean);
    EXPECT_TRUE(m.tabForward());
    m.go(Tab::week);
    m.go(Tab::storage);
    EXPECT_EQ(m.tab(), Tab::storage);
    EXPECT_FALSE(m.tabForward());
    QSignalSpy forward(&m, &AppModel::tabForwardChanged);
    m.go(Tab::storage);
    EXPECT_FALSE(m.tabForward());
    EXPECT_EQ(forward.count(), 0);
    m.goValue(9); // not a tab
    EXPECT_EQ(m.tab(), Tab::storage);
}

TEST(AppModelState, LowSpaceWarnsOnceUntilTheDiskClimbsAboveTwelveGigabytes) {
    AppHarness h;
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd()); // a fresh scan: each warning is posted at once
    const int before = h.notifier.count("low-space");
    auto at = [&](int64_t bytes) {
        h.disk.available = bytes;
        m.refreshDisk();
        return h.notifier.count("low-space") - before;
    };
    EXPECT_EQ(at(15 * GB), 0);
    EXPECT_EQ(at(10 * GB), 0); // exactly 10 GB is not low
    EXPECT_FALSE(m.isLow());
    EXPECT_EQ(at(10 * GB - 1), 1);
    EXPECT_TRUE(m.isLow());
    EXPECT_EQ(at(11 * GB), 1);
    EXPECT_EQ(at(9 * GB), 1); // back under the line, still within the gap: no second warning
    EXPECT_EQ(at(12 * GB), 1); // the gap ends above 12 GB, not at it
    EXPECT_EQ(at(9 * GB), 1);
    EXPECT_EQ(at(12 * GB + 1), 1);
    EXPECT_EQ(at(9 * GB), 2);
    EXPECT_TRUE(m.warned());
    EXPECT_FALSE(m.warnedCritical());

    const auto& last = h.notifier.posted.back();
    EXPECT_EQ(last.title, "Only 9.0 GB free on Test disk");
    EXPECT_EQ(last.category, QString("space"));
    EXPECT_EQ(last.info.value("tab").toString(), "storage"); // nothing clearable in an empty home
}

TEST(AppModelState, AFallFromTwentyToFourGigabytesSetsBothFlagsWithOneWarning) {
    AppHarness h;
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    h.disk.available = 20 * GB;
    m.refreshDisk();
    const int before = h.notifier.count("low-space");
    h.disk.available = 4 * GB;
    m.refreshDisk();
    EXPECT_TRUE(m.warned());
    EXPECT_TRUE(m.warnedCritical());
    EXPECT_EQ(h.notifier.count("low-space") - before, 1);
    // Climbing past 6 GB re-arms the critical flag only; the ordinary one waits for 12 GB.
    h.disk.available = 7 * GB;
    m.refreshDisk();
    EXPECT_FALSE(m.warnedCritical());
    EXPECT_TRUE(m.warned());
    h.disk.available = 4 * GB;
    m.refreshDisk();
    EXPECT_EQ(h.notifier.count("low-space") - before, 2);
}

TEST(AppModelState, LowSpaceWithoutAFreshScanScansFirstAndThenNamesWhatCanGo) {
    AppHarness h;
    twoCaches(h.home);
    AppModel& m = h.make();
    h.disk.available = 3 * GB;
    bool finished = false;
    QObject::connect(&m, &AppModel::scanFinished, [&] { finished = true; });
    m.refreshDisk();
    EXPECT_TRUE(m.isScanning());
    EXPECT_EQ(h.notifier.count("low-space"), 0);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return finished; }));
    ASSERT_EQ(h.notifier.count("low-space"), 1);
    // 23 MB of caches is under a gigabyte: the notification sends the user to the storage map.
    EXPECT_EQ(h.notifier.posted.front().body, "Click to see what is using the space.");
}

TEST(AppModelState, TheAdviceIsRebuiltByANewScanAloneAndNotByASmallDrift) {
    AppHarness h;
    twoCaches(h.home);
    h.disk.available = 20'010 * MB;
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    const int afterFirst = h.adviceBuilds;
    EXPECT_GE(afterFirst, 1);
    (void)m.recs();
    EXPECT_EQ(h.adviceBuilds, afterFirst); // read from the cache

    h.disk.available = 20'020 * MB; // ten megabytes, within one 50 MB step
    m.refreshDisk();
    (void)m.recs();
    EXPECT_EQ(h.adviceBuilds, afterFirst);

    h.clock.advance(5);
    ASSERT_TRUE(h.scanToEnd()); // the same items: only lastScan differs
    EXPECT_EQ(m.items().size(), 2u);
    EXPECT_EQ(h.adviceBuilds, afterFirst + 1);

    h.disk.available = 20'060 * MB; // crosses a step
    m.refreshDisk();
    EXPECT_EQ(h.adviceBuilds, afterFirst + 2);
}

TEST(AppModelState, FreshTicksFollowStalenessAndTheUsersOwnChoiceSurvivesRescans) {
    AppHarness h;
    twoCaches(h.home);
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    ASSERT_EQ(m.items().size(), 2u);
    EXPECT_EQ(m.selected(), (std::set<std::string>{"cache:oldtool"})); // the cache in use stays on a roomy disk
    // Stale first within the tier, whatever the size.
    auto safe = m.itemsIn(Tier::safe);
    EXPECT_EQ(safe[0].id, "cache:oldtool");
    EXPECT_TRUE(m.allSelected(Tier::rebuildable) == false);

    const CleanItem old = m.itemsIn(Tier::safe)[0];
    m.toggle(old);
    EXPECT_TRUE(m.selected().empty());
    ASSERT_TRUE(h.scanToEnd());
    EXPECT_TRUE(m.selected().empty()); // unticked by the user: stays so

    // On a low disk the cache in use starts ticked too.
    h.disk.available = 2 * GB;
    m.refreshDisk();
    ASSERT_TRUE(h.scanToEnd());
    EXPECT_EQ(m.selected(), (std::set<std::string>{"cache:newtool"}));
    EXPECT_EQ(m.ticked(Tier::safe), m.itemsIn(Tier::safe)[1].size);
}

TEST(AppModelState, LockedItemsAreNeverTickedNorCounted) {
    AppHarness h;
    projectIn(h.home, "code/busy", 21 * MB);
    h.facts.procs = {{4242, "node", h.home.path("code/busy"), "/usr/bin/node"}};
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    ASSERT_EQ(m.items().size(), 1u);
    const CleanItem busy = m.items()[0];
    ASSERT_TRUE(busy.isLocked());
    m.toggle(busy);
    m.setAll(Tier::rebuildable, true);
    EXPECT_TRUE(m.selected().empty());
    EXPECT_TRUE(m.overrides().empty());
    EXPECT_FALSE(m.allSelected(Tier::rebuildable)); // nothing in it can be ticked
    EXPECT_EQ(m.total(Tier::rebuildable), 0);
    EXPECT_EQ(m.cleanable(), 0);
}

TEST(AppModelState, AToastWithAButtonLivesSevenSecondsIsHeldWhileHoveredThenTwoMore) {
    AppHarness h;
    AppModel& m = h.make();
    m.say("Moved", Toast::Kind::ok, std::string("Undo"));
    ASSERT_TRUE(m.toast());
    EXPECT_EQ(m.toast()->seconds, 7.0);
    h.clock.advance(6.9);
    EXPECT_TRUE(m.toast());
    m.holdToast(true);
    h.clock.advance(60);
    EXPECT_TRUE(m.toast()); // held for as long as the pointer stays
    m.holdToast(false);
    h.clock.advance(1.9);
    EXPECT_TRUE(m.toast()); // two seconds, whatever was left before
    h.clock.advance(0.2);
    EXPECT_FALSE(m.toast());
}

TEST(AppModelState, ANewerToastOutlivesTheTimerOfAnOlderOne) {
    AppHarness h;
    AppModel& m = h.make();
    m.say("First", Toast::Kind::info);
    EXPECT_EQ(m.toast()->seconds, 3.8);
    h.clock.advance(0.5);
    m.say("First", Toast::Kind::info); // the same words: still a new toast
    h.clock.advance(3.5); // past the first toast's 3.8 seconds
    ASSERT_TRUE(m.toast());
    h.clock.advance(0.35); // past the second's
    EXPECT_FALSE(m.toast());
}

TEST(AppModelState, TheToastButtonRunsItsActionOnceAndClosesTheToast) {
    AppHarness h;
    AppModel& m = h.make();
    int runs = 0;
    m.say("Moved", Toast::Kind::ok, std::string("Undo"), [&] { ++runs; });
    m.runToastAction();
    m.runToastAction();
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(m.toast());
    h.clock.advance(10); // the old timer finds nothing to close
    EXPECT_FALSE(m.toast());
}

TEST(AppModelState, ScanFractionFollowsTheLastScansFolderCount) {
    AppHarness h;
    h.gated = true;
    h.home.dir("code/a/.git");
    AppModel& m = h.make();
    m.scan();
    ASSERT_TRUE(h.gate.waitStarted(1));
    EXPECT_FALSE(m.scanFraction()); // no count from an earlier scan yet
    h.gate.release();
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.isScanning(); }));
    const auto folders = h.settings.doubleValue("scanFolders");
    ASSERT_TRUE(folders);
    EXPECT_GE(*folders, 1);
    m.scan();
    ASSERT_TRUE(h.gate.waitStarted(2));
    EXPECT_EQ(m.scanFraction(), 0.0); // finding, nothing checked yet, against the stored count
    h.gate.release();
}

// Pictures show what a scan finds with its defaults, whatever the staleness rules or the
// user's earlier choices said, and never tick what something runs in.
TEST(AppModelState, PicturesTickTheDefaultsOfUnlockedItemsAndDateTheScanNow) {
    AppHarness h;
    twoCaches(h.home);
    projectIn(h.home, "code/idle", 21 * MB);
    projectIn(h.home, "code/busy", 22 * MB);
    h.facts.procs = {{4242, "node", h.home.path("code/busy"), "/usr/bin/node"}};
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    ASSERT_EQ(m.items().size(), 4u);
    for (const auto& i : m.items())
        if (!i.isLocked() && m.selected().contains(i.id)) m.toggle(i); // the user unticked everything
    h.clock.advance(3600);

    m.settleForPictures(14);
    std::set<std::string> expected;
    for (const auto& i : m.items())
        if (i.defaultOn && !i.isLocked()) expected.insert(i.id);
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(m.selected(), expected);
    for (const auto& i : m.items()) {
        if (i.isLocked()) {
            EXPECT_FALSE(m.selected().contains(i.id)) << i.id;
        }
    }
    EXPECT_EQ(m.lastScan(), h.clock.now());
    EXPECT_EQ(m.lastScanSeconds(), 14);
    m.settleForPictures(0);
    EXPECT_EQ(m.lastScanSeconds(), 1); // a scan never took no time
}
