// What the model does with bad input: a home folder that vanishes during a scan, an item
// someone else removed between the scan and the clean, and a second press on a busy row.
#include "AppHarness.h"

#include "foundation/FS.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(BadInput, AHomeThatDisappearsDuringAScanEndsInAnEmptyResult) {
    AppHarness h;
    h.gated = true;
    h.home.file(".cache/oldtool/blob", 12 * MB);
    AppModel& m = h.make();
    m.scan();
    ASSERT_TRUE(h.gate.waitStarted(1));
    std::filesystem::remove_all(h.home.root());
    h.gate.release();
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.isScanning(); }));
    EXPECT_TRUE(m.items().empty());
    EXPECT_TRUE(m.lastScan());
    EXPECT_FALSE(m.toast());
}

TEST(BadInput, AnItemRemovedByOthersBeforeTheCleanTouchesNothingElse) {
    AppHarness h;
    cacheIn(h.home, "oldtool", 12 * MB, true);
    cacheIn(h.home, "othertool", 13 * MB, true);
    cacheIn(h.home, "newtool", 11 * MB, false);
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    ASSERT_EQ(m.selected(), (std::set<std::string>{"cache:oldtool", "cache:othertool"}));
    std::filesystem::remove_all(h.home.path(".cache/oldtool"));
    m.cleanSelected();
    ASSERT_TRUE(h.finishClean());
    ASSERT_TRUE(m.report());
    EXPECT_FALSE(FS::exists(h.home.path(".cache/othertool")));
    EXPECT_TRUE(FS::isFile(h.home.path(".cache/newtool/blob"))); // never ticked, never touched
    EXPECT_EQ(m.items().size() + static_cast<std::size_t>(m.report()->removedCount), 3u);
    EXPECT_FALSE(m.isCleaning());
}

TEST(BadInput, APressOnARowThatIsAlreadyBusyStartsNothing) {
    AppHarness h;
    projectIn(h.home, "code/app", 21 * MB);
    const std::string itemId = "project:" + h.home.path("code/app");
    h.canned = std::vector<Rec>{makeRec("idle-projects", RecAction::freeItems({itemId}), false)};
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    ASSERT_EQ(m.items().size(), 1u);
    ASSERT_EQ(m.items()[0].id, itemId);
    const auto found = m.recById("idle-projects");
    ASSERT_TRUE(found);
    const Rec rec = *found;
    auto toasts = h.recordToasts();
    m.run(rec);
    ASSERT_TRUE(m.isCleaning());
    const auto progress = m.cleanProgress();
    m.run(rec);
    m.run(QString::fromStdString(rec.id));
    EXPECT_EQ(m.cleanProgress(), progress);
    EXPECT_TRUE(toasts->empty());
    ASSERT_TRUE(h.finishClean());
    EXPECT_EQ(m.acting().at("idle-projects"), RecState::done);
    EXPECT_FALSE(FS::exists(h.home.path("code/app/node_modules")));
    EXPECT_EQ(toasts->size(), 1u); // the projects clean's own words
}
