// The background refreshes: the storage walk with its stop, the growth report, the project
// cards, their staleness checks, and the monitor's cadence.
#include "AppHarness.h"

#include "history/History.h"
#include "storage/StorageStore.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

StorageReport madeAgo(const ManualClock& clock, double seconds) {
    StorageReport r;
    r.made = addSeconds(clock.now(), -seconds);
    r.complete = true;
    r.files = 3;
    return r;
}

} // namespace

TEST(Refresh, AStorageWalkLandsSavedAndAStoppedOneLeavesTheOldReport) {
    AppHarness h;
    h.home.file("Documents/notes.txt", 20'000);
    h.home.file("Videos/clip.mkv", 2 * MB);
    StorageStore::save(madeAgo(h.clock, 5 * 3600), h.support.root());
    AppModel& m = h.make();
    const auto old = m.storage();
    ASSERT_TRUE(old);

    m.measureStorageIfStale(); // five hours old: fresh enough
    EXPECT_FALSE(m.storageBusy());

    m.measureStorage();
    ASSERT_TRUE(m.storageBusy());
    m.measureStorage(); // one walk at a time
    m.stopStorage();
    EXPECT_FALSE(m.storageBusy());
    EXPECT_FALSE(m.storageLive());
    EXPECT_EQ(m.storageShown(), &*m.storage());
    h.settle();
    EXPECT_EQ(m.storage(), old); // the stopped walk's result never lands
    EXPECT_EQ(StorageStore::load(h.support.root()), old);

    h.clock.advance(3600 + 1); // now six hours old
    QSignalSpy changed(&m, &AppModel::storageChanged);
    m.measureStorageIfStale();
    ASSERT_TRUE(m.storageBusy());
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.storageBusy(); }));
    ASSERT_TRUE(m.storage());
    EXPECT_TRUE(m.storage()->complete);
    EXPECT_GT(m.storage()->files, 0);
    EXPECT_EQ(changed.count(), 1);
    const auto saved = StorageStore::load(h.support.root());
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->files, m.storage()->files);
    EXPECT_EQ(saved->categories, m.storage()->categories);
    EXPECT_GT(m.storageCategoriesModel()->rowCount(), 0);
}

TEST(Refresh, GrowthRunsWhenStaleAndANewReportClearsThePickedDay) {
    AppHarness h;
    h.home.file("Documents/new.bin", 3 * MB);
    AppModel& m = h.make();
    EXPECT_FALSE(m.growth());
    m.setWeekDay(3);
    m.refreshGrowthIfStale();
    EXPECT_TRUE(m.growthRunning());
    m.refreshGrowth(); // one at a time
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.growthRunning(); }));
    ASSERT_TRUE(m.growth());
    EXPECT_EQ(m.weekDay(), std::nullopt);
    EXPECT_EQ(m.history().data.growth, m.growth());
    EXPECT_EQ(m.growthDaysModel()->rowCount(), 14);

    h.clock.advance(11 * 3600);
    m.refreshGrowthIfStale();
    EXPECT_FALSE(m.growthRunning());
    h.clock.advance(3600);
    m.refreshGrowthIfStale();
    EXPECT_TRUE(m.growthRunning());
    h.settle();
}

TEST(Refresh, ProjectsWaitForTheMonitorsFirstSample) {
    AppHarness h;
    projectIn(h.home, "code/site", 21 * MB);
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd()); // asks for the cards, but there is no sample yet
    h.settle();
    EXPECT_FALSE(m.projectsBusy());
    EXPECT_FALSE(m.sharedChecked());
    EXPECT_TRUE(m.projects().empty());

    h.probe.snapshots = {fixtures::snapshot({})};
    m.monitor().sample(0);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return m.monitor().latest().has_value(); }));
    // The very first build works the insight out once, even when not asked.
    m.refreshProjects(false);
    ASSERT_TRUE(m.projectsBusy());
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.projectsBusy() && m.sharedChecked(); }));
    ASSERT_EQ(m.projects().size(), 1u);
    EXPECT_EQ(m.projects()[0].name, "site");
    EXPECT_EQ(m.projectsModel()->rowCount(), 1);
    h.settle();
    EXPECT_FALSE(m.sharedInsight()); // one app: never looked at for the insight
}

TEST(Refresh, TheMonitorSamplesEveryThreeSecondsWhileAViewIsLiveAndEveryMinuteOtherwise) {
    AppHarness h;
    h.probe.snapshots = {fixtures::snapshot({})};
    AppModel& m = h.make();
    m.start(true);
    EXPECT_EQ(m.monitorInterval(), 60);
    m.setLive("window", true);
    EXPECT_EQ(m.monitorInterval(), 3);
    m.setLive("menu", true);
    m.setLive("window", false);
    EXPECT_EQ(m.monitorInterval(), 3);
    m.setLive("menu", false);
    EXPECT_EQ(m.monitorInterval(), 60);
    h.settle();
    // The sampling itself runs on a worker; each tick of the clock asks for one.
    const std::size_t taken = h.probe.taken;
    h.clock.advance(60);
    h.settle();
    EXPECT_EQ(h.probe.taken, taken + 1);
}

TEST(Refresh, ABackgroundStartScansLateAndOnlyWhenStale) {
    AppHarness h;
    AppModel& m = h.make();
    m.start(true);
    EXPECT_FALSE(m.isScanning());
    EXPECT_FALSE(m.wantsWindowAtLaunch());
    h.clock.advance(119);
    EXPECT_FALSE(m.isScanning());
    h.clock.advance(1);
    EXPECT_TRUE(m.isScanning());
    // The disk is read every 30 seconds from then on.
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.isScanning(); }));
    h.disk.available = 321 * GB;
    h.clock.advance(30);
    EXPECT_EQ(m.disk().available, 321 * GB);
    EXPECT_EQ(h.windowOpens, 0);
}

TEST(Refresh, AStartByHandScansAtOnceAndOpensTheWindow) {
    AppHarness h;
    AppModel& m = h.make();
    m.start(false);
    EXPECT_TRUE(m.isScanning());
    EXPECT_EQ(h.windowOpens, 1);
    EXPECT_FALSE(m.wantsWindowAtLaunch());
    h.settle();
}
