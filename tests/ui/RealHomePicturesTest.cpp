// Pictures of the Storage tab and the tray panel over this machine's own home folder, for a
// person to look at. The walk of a real home takes a while, so it runs only when asked for.
#include "ScreenHarness.h"

#include <cstdlib>

#include <gtest/gtest.h>

TEST(RealHomePictures, StorageTabAndPanelOverThisMachinesHome) {
    const char* home = std::getenv("SORRELIN_REAL_HOME_PICTURES");
    if (!home || !*home) GTEST_SKIP() << "set SORRELIN_REAL_HOME_PICTURES to a home folder to draw it";
    ScreenHarness screen;
    screen.realHome = home;
    AppModel& model = screen.model();
    ASSERT_TRUE(screen.show("panel/MenuBarView.qml", QSize(340, 640)));
    screen.picture("menu-real-first.png");

    model.measureStorage();
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return !model.storageBusy() && model.storageShown(); }, 900));
    model.scan();
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return model.lastScan().has_value(); }, 900));
    ASSERT_TRUE(screen.show("storage/StorageTab.qml", QSize(1180, 1500)));
    (void)ScreenHarness::waitUntil([] { return false; }, 1); // lets the bar grow in
    screen.picture("storage-real.png");
    ASSERT_TRUE(screen.show("panel/MenuBarView.qml", QSize(340, 640)));
    (void)ScreenHarness::waitUntil([] { return false; }, 1);
    screen.picture("menu-real.png");
}
