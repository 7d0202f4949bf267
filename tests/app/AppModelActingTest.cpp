// Acting on advice: arming, a row's states, fixes one after another, snoozing, quitting from a
// notification, and one thing to the Trash with its undo.
#include "AppHarness.h"

#include "foundation/FS.h"
#include "history/History.h"
#include "storage/StorageStore.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

int entries(const std::string& folder) {
    std::error_code ec;
    int n = 0;
    for (auto it = std::filesystem::directory_iterator(folder, ec); !ec && it != std::filesystem::directory_iterator(); ++it) ++n;
    return n;
}

} // namespace

TEST(Acting, ArmingMovesBetweenRowsAndExpiresAfterFourSeconds) {
    AppHarness h;
    h.canned = std::vector<Rec>{makeRec("a", RecAction::open(Tab::storage), true, false, true),
                                makeRec("b", RecAction::open(Tab::week), true, false, true)};
    AppModel& m = h.make();
    const Rec a = m.recs()[0], b = m.recs()[1];
    m.run(a);
    EXPECT_EQ(m.armed(), std::optional<std::string>("rec:a"));
    EXPECT_EQ(h.windowOpens, 0);
    m.run(b); // the arming moves to the second row; the first is disarmed at once
    EXPECT_EQ(m.armed(), std::optional<std::string>("rec:b"));
    h.clock.advance(3.9);
    m.run(b);
    EXPECT_EQ(h.windowOpens, 1);
    EXPECT_EQ(m.tab(), Tab::week);
    EXPECT_FALSE(m.armed());
    EXPECT_TRUE(m.acting().empty()); // opening a tab leaves no state

    m.run(a);
    h.clock.advance(4.0);
    EXPECT_FALSE(m.armed()); // forgotten after four seconds
    m.run(a);
    EXPECT_EQ(h.windowOpens, 1); // that press only armed again
    EXPECT_EQ(m.armed(), std::optional<std::string>("rec:a"));

    // An older arming's timer never disarms a newer one.
    h.clock.advance(2);
    m.armQuickClean();
    h.clock.advance(2.5);
    EXPECT_EQ(m.armed(), std::optional<std::string>("menu"));
    h.clock.advance(1.6);
    EXPECT_FALSE(m.armed());
}

TEST(Acting, APressOnAnUnarmedRowDisarmsTheOthers) {
    AppHarness h;
    h.canned = std::vector<Rec>{makeRec("a", RecAction::open(Tab::storage), true, false, true),
                                makeRec("plain", RecAction::open(Tab::clean))};
    AppModel& m = h.make();
    m.run(m.recs()[0]);
    m.run(m.recs()[1]);
    EXPECT_FALSE(m.armed());
    EXPECT_EQ(m.tab(), Tab::clean);
}

TEST(Acting, ABatchWithAFailureShowsOnlyThatFailure) {
    AppHarness h;
    // An app that is not running, and leftovers (none left, so stopping them is done at once).
    h.canned = std::vector<Rec>{makeRec("quit:ghost", RecAction::quit("proc:ghost"), true, true),
                                makeRec("leftovers", RecAction::stopLeftovers(), true, true),
                                makeRec("caches", RecAction::clearCaches(), true, true),
                                makeRec("later", RecAction::stopLeftovers(), false, true)};
    AppModel& m = h.make();
    auto toasts = h.recordToasts();
    ASSERT_EQ(m.safeRecs().size(), 2u); // never the caches, never what can wait
    m.runSafe();
    m.runSafe(); // a batch under way: nothing more
    ASSERT_TRUE(m.batch());
    EXPECT_EQ(m.failedRec(), std::optional<std::string>("quit:ghost"));
    EXPECT_FALSE(m.acting().contains("quit:ghost"));
    ASSERT_TRUE(AppHarness::waitUntil([&] {
        auto it = m.acting().find("leftovers");
        return it != m.acting().end() && it->second == RecState::done;
    }));
    EXPECT_EQ(m.batch(), (AppModel::Batch{1, 2}));
    h.clock.advance(0.65);
    EXPECT_TRUE(m.acting().empty());
    EXPECT_FALSE(m.batch());
    EXPECT_EQ(*toasts, std::vector<std::string>{"That app is not running any more."});
    EXPECT_EQ(m.doneToday(), std::vector<std::string>{"leftovers done"});
    EXPECT_TRUE(m.failedRec()); // the shake lasts 0.8 seconds
    h.clock.advance(0.2);
    EXPECT_FALSE(m.failedRec());
}

TEST(Acting, ABatchThatStoodSaysWhatCameBack) {
    AppHarness h;
    Rec one = makeRec("leftovers", RecAction::stopLeftovers(), true, true);
    one.cpuShare = 0.5;
    one.memory = 10 * MB;
    Rec two = makeRec("other", RecAction::open(Tab::home), true, true);
    h.canned = std::vector<Rec>{one, two};
    AppModel& m = h.make();
    auto toasts = h.recordToasts();
    m.runSafe();
    EXPECT_EQ(m.acting().at("other"), RecState::queued);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return m.acting().at("leftovers") == RecState::done; }));
    h.clock.advance(0.65);
    EXPECT_EQ(m.acting().at("other"), RecState::done);
    h.clock.advance(0.65);
    // Half a percent and ten megabytes are too little to mention.
    EXPECT_EQ(*toasts, std::vector<std::string>{"Done: 2 fixes."});
}

TEST(Acting, OneSafeFixShowsItsOwnWordsAndAQuitGivesItsShareBack) {
    AppHarness h;
    Rec one = makeRec("leftovers", RecAction::stopLeftovers(), true, true);
    one.doneChip = "Leftovers stopped";
    one.effect = "memory comes back";
    h.canned = std::vector<Rec>{one};
    AppModel& m = h.make();
    auto toasts = h.recordToasts();
    m.runSafe();
    // The advisor stops offering it while it runs; its row stays for its last moments.
    h.canned = std::vector<Rec>{};
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !toasts->empty(); }));
    EXPECT_EQ(*toasts, std::vector<std::string>{"Leftovers stopped. Memory comes back."});
    h.clock.advance(1.1);
    ASSERT_EQ(m.recs().size(), 1u);
    EXPECT_EQ(m.recs()[0].id, "leftovers");
    h.clock.advance(0.2);
    EXPECT_TRUE(m.recs().empty());
    EXPECT_TRUE(m.recentlyFreed().empty()); // not a quit
}

TEST(Acting, APressOnABusyRowDoesNothingAndSnoozeWaitsForIt) {
    AppHarness h;
    cacheIn(h.home, "oldtool", 12 * MB, true);
    h.canned = std::vector<Rec>{makeRec("caches", RecAction::clearCaches())};
    AppModel& m = h.make();
    ASSERT_TRUE(h.scanToEnd());
    auto toasts = h.recordToasts();
    const Rec rec = m.recs()[0];
    m.run(rec);
    EXPECT_EQ(m.acting().at("caches"), RecState::busy);
    m.run(rec);
    m.snooze(rec);
    EXPECT_EQ(m.snoozeTick(), 0);
    EXPECT_TRUE(toasts->empty());
    ASSERT_TRUE(h.finishClean());
    EXPECT_EQ(m.acting().at("caches"), RecState::done);
    EXPECT_EQ(m.doneToday(), std::vector<std::string>{"Caches cleared"});
    ASSERT_EQ(toasts->size(), 1u);
    EXPECT_TRUE(toasts->front().starts_with("Freed "));
    h.clock.advance(1.4);
    EXPECT_FALSE(m.acting().contains("caches"));
    // Nothing left to clear now.
    m.run(rec);
    EXPECT_EQ(toasts->back(), "That is already cleared. Sorrelin measures again on the next scan.");
    EXPECT_TRUE(m.acting().empty());
}

TEST(Acting, SnoozingMovesAdviceToLaterUntilTomorrowMorning) {
    AppHarness h;
    h.canned = std::vector<Rec>{makeRec("space", RecAction::open(Tab::clean))};
    AppModel& m = h.make();
    const Rec space = m.recs()[0];
    const int builds = h.adviceBuilds;
    m.snooze(space);
    EXPECT_EQ(m.snoozeTick(), 1);
    EXPECT_EQ(h.adviceBuilds, builds + 1);
    ASSERT_TRUE(m.history().data.snoozed.contains("space"));
    EXPECT_EQ(m.history().data.snoozed.at("space"), tomorrowMorning(h.clock.now()));
    EXPECT_EQ(m.toast()->text, "Fix space moved to Can wait. Sorrelin asks again tomorrow if it still matters.");
}

TEST(Acting, QuitFromAlertQuitsOnlyWhatItKnowsAndEndsSilentlyWhenAllHaveGone) {
    AppHarness h;
    h.canned = std::vector<Rec>{makeRec("quit:known", RecAction::quit("known"), true)};
    AppModel& m = h.make();
    auto toasts = h.recordToasts();
    m.quitFromAlert(std::vector<std::string>{"known", "unknown"});
    // The known one is among the advice; the app itself has gone meanwhile.
    EXPECT_EQ(*toasts, std::vector<std::string>{"That app is not running any more."});
    toasts->clear();
    m.quitFromAlert(std::vector<std::string>{"gone1", "gone2"});
    m.quitFromAlert(std::vector<std::string>{});
    EXPECT_TRUE(toasts->empty());
    EXPECT_TRUE(m.acting().empty());
}

TEST(Acting, RemindRestartKeepsTheDateAndAsksTheNotifier) {
    AppHarness h;
    AppModel& m = h.make();
    m.setRestartSheet(true);
    m.remindRestart();
    EXPECT_FALSE(m.restartSheet());
    ASSERT_TRUE(m.history().data.restartReminder);
    const TimePoint target = *m.history().data.restartReminder;
    EXPECT_GE(target, addSeconds(h.clock.now(), 600));
    ASSERT_EQ(h.notifier.count("restart-reminder"), 1);
    EXPECT_EQ(h.notifier.posted.back().at, std::optional<TimePoint>(target));
    EXPECT_EQ(h.notifier.posted.back().title, "Restart your computer tonight?");
    EXPECT_TRUE(m.toast()->text.starts_with("Sorrelin reminds you at "));
    // Late in the evening the reminder comes two hours on.
    const std::time_t t = Clock::to_time_t(h.clock.now());
    std::tm local{};
    localtime_r(&t, &local);
    local.tm_hour = 21;
    local.tm_min = 51;
    local.tm_sec = 0;
    local.tm_isdst = -1;
    h.clock.set(Clock::from_time_t(std::mktime(&local)));
    m.remindRestart();
    EXPECT_EQ(*m.history().data.restartReminder, addSeconds(h.clock.now(), 7200));
}

TEST(Acting, MovingOnePathTwiceMovesItOnceAndUndoRestoresTheStorageReport) {
    AppHarness h;
    const std::string film = h.home.file("Videos/film.mkv", 4 * MB);
    StorageReport before;
    before.made = h.clock.now();
    before.complete = true;
    StorageItem row;
    row.name = "film.mkv";
    row.path = film;
    row.bytes = 4 * MB;
    StorageCategory movies{StorageKind::movies, 4 * MB, {row}, 0, {}};
    before.categories = {movies};
    before.biggest = {BigFile{"film.mkv", film, 4 * MB, FileKind::video, StorageKind::movies, std::nullopt, std::nullopt}};
    StorageStore::save(before, h.support.root());
    before = *StorageStore::load(h.support.root()); // as the file keeps it, dates to the microsecond
    AppModel& m = h.make();
    ASSERT_EQ(m.storage(), std::optional<StorageReport>(before));

    m.moveToTrash(film, "film.mkv", 4 * MB);
    m.moveToTrash(film, "film.mkv", 4 * MB); // still on its way: no second move
    EXPECT_TRUE(m.trashing().contains(film));
    ASSERT_TRUE(AppHarness::waitUntil([&] { return m.trashing().empty(); }));
    EXPECT_FALSE(FS::exists(film));
    EXPECT_EQ(entries(h.home.path(".local/share/Trash/files")), 1);
    ASSERT_TRUE(m.storage());
    EXPECT_EQ(*m.storage(), before.moving(film, 4 * MB));
    EXPECT_EQ(StorageStore::load(h.support.root()), m.storage());
    ASSERT_TRUE(m.toast());
    EXPECT_EQ(m.toast()->text, "film.mkv is in the Trash. Empty it to get 4 MB back.");
    EXPECT_EQ(m.toast()->action, std::optional<std::string>("Undo"));

    m.runToastAction();
    EXPECT_TRUE(FS::isFile(film));
    EXPECT_EQ(entries(h.home.path(".local/share/Trash/files")), 0);
    EXPECT_EQ(m.storage(), std::optional<StorageReport>(before));
    EXPECT_EQ(StorageStore::load(h.support.root()), std::optional<StorageReport>(before));
    EXPECT_EQ(m.toast()->text, "film.mkv is back where it was.");
}
