#include "advice/AdviceText.h"
#include "advice/Advisor.h"
#include "foundation/Fmt.h"

#include <gtest/gtest.h>

namespace {

const TimePoint now = Clock::from_time_t(1'800'000'000);
constexpr double day = 86'400;

Advisor::Situation situation() {
    Advisor::Situation s;
    s.now = now;
    s.cores = 8;
    s.monitor.vitals.boot = addSeconds(now, -day);
    s.model.disk = {"disk", 500 * GB, 100 * GB};
    return s;
}

AppUsage app(const std::string& id, const std::string& name, double cores, int64_t memory) {
    AppUsage a;
    a.id = id;
    a.name = name;
    a.bundlePath = id;
    a.bundleID = name;
    a.mainPID = 100;
    a.pids = {100};
    a.cores = cores;
    a.memory = memory;
    return a;
}

Leftover leftover(int32_t id, const std::string& label, const std::string& project, double ageSeconds, int64_t memory) {
    Leftover l;
    l.id = id;
    l.pids = {id};
    l.label = label;
    l.project = project;
    l.cwd = "/home/u/" + project;
    l.started = addSeconds(now, -ageSeconds);
    l.memory = memory;
    return l;
}

CleanItem item(const std::string& id, Tier tier, int64_t size, std::optional<CacheKind> kind = std::nullopt) {
    CleanItem i;
    i.id = id;
    i.name = id.starts_with("project:") ? id.substr(id.rfind('/') + 1) : id;
    i.tier = tier;
    i.size = size;
    i.cacheKind = kind;
    i.defaultOn = true;
    return i;
}

// A scan has run and left these items; the disk has `free` bytes.
void scanned(Advisor::Situation& s, int64_t free, std::vector<CleanItem> items) {
    s.model = Advisor::ModelFacts::of({"disk", 500 * GB, free}, std::move(items), addSeconds(now, -60));
}

std::vector<std::string> ids(const std::vector<Rec>& recs) {
    std::vector<std::string> out;
    for (const auto& r : recs) out.push_back(r.id);
    return out;
}

const Rec* find(const std::vector<Rec>& recs, const std::string& id) {
    for (const auto& r : recs)
        if (r.id == id) return &r;
    return nullptr;
}

} // namespace

TEST(Advisor, NothingToSayBeforeAScanAndWithoutApps) {
    EXPECT_TRUE(Advisor::recommendations(situation()).empty());
    // A low disk says nothing until a scan has shown what could go.
    auto s = situation();
    s.model.disk.available = 2 * GB;
    EXPECT_TRUE(Advisor::recommendations(s).empty());
}

TEST(Advisor, ASlowAppWithEveryWord) {
    auto s = situation();
    AppUsage busy = app("/apps/busy.desktop", "Busy Bee", 2.0, 800 * MB);
    busy.cpuNanos = 754'000'000'000; // 12 min 34 s
    busy.started = addSeconds(now, -3 * 3600);
    s.monitor.apps = {busy};
    s.monitor.slowApps = {busy};
    s.monitor.busyMinutes = {{busy.id, 3}};
    auto recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    const Rec& r = recs[0];
    EXPECT_EQ(r.id, "quit:/apps/busy.desktop");
    EXPECT_TRUE(r.now);
    EXPECT_EQ(r.reason, RecReason::slow);
    EXPECT_EQ(r.title, "Quit Busy Bee");
    EXPECT_EQ(r.why, "It has kept the processor busy in the background for 3 minutes.");
    EXPECT_EQ(r.effect, "25% of the processor back");
    EXPECT_EQ(r.tip, "Busy Bee has used 12 min of processor time since " + Fmt::clock(*busy.started, now) +
                         ". If it has unsaved work, it asks you first.");
    EXPECT_EQ(r.actionLabel, "Quit Busy Bee");
    EXPECT_EQ(r.shortLabel, "Quit");
    EXPECT_EQ(r.busyLabel, "Quitting");
    EXPECT_EQ(r.doneLabel, "Quit");
    EXPECT_EQ(r.doneChip, "Busy Bee quit");
    EXPECT_FALSE(r.safe);
    EXPECT_FALSE(r.caveat);
    EXPECT_FALSE(r.arm);
    EXPECT_EQ(r.symbol, "power");
    EXPECT_EQ(r.tint, "pink");
    EXPECT_EQ(r.appPath, "/apps/busy.desktop");
    EXPECT_EQ(r.impact, RecImpact::cpu(busy.id));
    EXPECT_EQ(r.cpuShare, 25);
    EXPECT_EQ(r.memory, 800 * MB);
    EXPECT_EQ(r.action, RecAction::quit(busy.id));
}

TEST(Advisor, SlowAppBoundaries) {
    auto s = situation();
    s.cores = 10;
    AppUsage quiet = app("/apps/quiet.desktop", "Settings", 0.05, MB);
    AppUsage other = app("/apps/other.desktop", "Other", 0.5, MB);
    s.monitor.slowApps = {quiet, other};
    s.monitor.busyMinutes = {{quiet.id, 2}, {other.id, 75}};
    s.monitor.nothingToSave = {quiet.id};
    auto recs = Advisor::recommendations(s);
    ASSERT_EQ(ids(recs), (std::vector<std::string>{"quit:/apps/quiet.desktop", "quit:/apps/other.desktop"}));
    // 0.05 cores of ten is half a percent: shown as 1, never 0.
    EXPECT_EQ(recs[0].cpuShare, 1);
    EXPECT_EQ(recs[0].effect, "1% of the processor back");
    EXPECT_EQ(recs[0].why, "It is keeping the processor busy in the background.");
    // No start known: no " since".
    EXPECT_EQ(recs[0].tip, "Settings has used 0 s of processor time. It has nothing to save, so quitting loses nothing.");
    EXPECT_TRUE(recs[0].safe);
    EXPECT_EQ(recs[1].why, "It has kept the processor busy in the background for 1 h 15 min.");
    EXPECT_EQ(recs[1].cpuShare, 5);
}

TEST(Advisor, LowDiskAtItsBoundaries) {
    const int64_t warn = 10 * GB;
    auto s = situation();
    // Exactly at the threshold neither form applies, and old caches may speak instead.
    scanned(s, warn, {item("old", Tier::safe, 400 * MB, CacheKind::orphan)});
    EXPECT_EQ(ids(Advisor::recommendations(s)), std::vector<std::string>{"caches"});
    EXPECT_FALSE(Advisor::recommendations(s)[0].now);

    // One byte below, with exactly 1 GB of safe caches: clear them now.
    scanned(s, warn - 1, {item("a", Tier::safe, GB, CacheKind::active), item("p", Tier::rebuildable, 3 * GB)});
    auto recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    const Rec& caches = recs[0];
    EXPECT_EQ(caches.id, "caches");
    EXPECT_TRUE(caches.now);
    EXPECT_EQ(caches.reason, RecReason::disk);
    EXPECT_EQ(caches.title, "Clear 1.0 GB of caches");
    EXPECT_EQ(caches.why, "Only 10.0 GB is free. These caches refill on their own as you work.");
    EXPECT_EQ(caches.effect, "1.0 GB of disk back, refilled as you work");
    EXPECT_EQ(caches.actionLabel, "Clear 1.0 GB");
    EXPECT_EQ(caches.doneChip, "Caches cleared");
    EXPECT_TRUE(caches.safe);
    EXPECT_EQ(caches.symbol, "custom.broom");
    EXPECT_EQ(caches.impact, RecImpact::disk(GB));
    EXPECT_EQ(caches.action, RecAction::clearCaches());

    // Below 1 GB of caches: show what can go instead.
    scanned(s, 4 * GB, {item("a", Tier::safe, GB - 1, CacheKind::active), item("p", Tier::rebuildable, 3 * GB)});
    recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    const Rec& space = recs[0];
    EXPECT_EQ(space.id, "space");
    EXPECT_EQ(space.title, "See what can go");
    EXPECT_EQ(space.why, "Only 4.0 GB is free. 4.0 GB of it can be cleared.");
    EXPECT_EQ(space.effect, "Up to 4.0 GB of disk back");
    EXPECT_EQ(space.tip, "Opens Clean with everything sorted by how safe it is.");
    EXPECT_EQ(space.actionLabel, "Open Clean");
    EXPECT_EQ(space.shortLabel, "Open");
    EXPECT_EQ(space.busyLabel, "");
    EXPECT_EQ(space.doneLabel, "");
    EXPECT_EQ(space.doneChip, "");
    EXPECT_FALSE(space.safe);
    EXPECT_EQ(space.action, RecAction::open(Tab::clean));
    EXPECT_EQ(space.impact, RecImpact::disk(4 * GB - 1));
}

TEST(Advisor, ModelFactsCountNothingLocked) {
    CleanItem locked = item("locked", Tier::safe, 5 * GB);
    locked.lockedReason = "In use";
    auto f = Advisor::ModelFacts::of({}, {locked, item("a", Tier::safe, GB), item("b", Tier::yourCall, 2 * GB)}, now);
    EXPECT_EQ(f.safeTotal, GB);
    EXPECT_EQ(f.cleanable, 3 * GB);
    EXPECT_EQ(f.warnBelow, 10 * GB);
}

TEST(Advisor, LeftoversWaitUntilMemoryIsTight) {
    auto s = situation();
    s.monitor.leftovers = {leftover(10, "vite dev", "shop", 3 * 3600, 300 * MB)};
    auto recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    const Rec& one = recs[0];
    EXPECT_EQ(one.id, "leftovers");
    EXPECT_FALSE(one.now);
    EXPECT_EQ(one.reason, RecReason::wait);
    EXPECT_EQ(one.title, "Stop 1 leftover process");
    EXPECT_EQ(one.why, "vite dev, running for 3 hours after the session that started it ended.");
    EXPECT_EQ(one.effect, "300 MB of memory back");
    EXPECT_EQ(one.tip, "In shop. Nothing reads their output any more.");
    EXPECT_EQ(one.actionLabel, "Stop it");
    EXPECT_TRUE(one.safe);
    EXPECT_EQ(one.symbol, "custom.ghost");
    EXPECT_EQ(one.impact, RecImpact::memory("leftovers"));
    EXPECT_EQ(one.memory, 300 * MB);
    EXPECT_EQ(one.cpuShare, 0);
    EXPECT_EQ(one.action, RecAction::stopLeftovers());

    s.monitor.leftovers = {leftover(10, "wrangler dev", "shop", 3 * day, 100 * MB),
                           leftover(11, "vite dev", "api", 3 * 3600, 100 * MB),
                           leftover(12, "vite dev", "shop", 3600, 100 * MB),
                           leftover(13, "esbuild", "api", 3600, 100 * MB)};
    s.monitor.vitals.pressure = 2;
    recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_TRUE(recs[0].now);
    EXPECT_EQ(recs[0].reason, RecReason::memory);
    EXPECT_EQ(recs[0].title, "Stop 4 leftover processes");
    // Labels: repeats gone, sorted, the first two; the oldest's age.
    EXPECT_EQ(recs[0].why, "esbuild and vite dev, running for 3 days after the session that started them ended.");
    EXPECT_EQ(recs[0].tip, "In api, shop. Nothing reads their output any more.");
    EXPECT_EQ(recs[0].actionLabel, "Stop all 4");
    EXPECT_EQ(recs[0].memory, 400 * MB);
}

TEST(Advisor, TheBrowserUnderPressureOrWithAnUpdate) {
    auto s = situation();
    AppUsage chrome = app("/apps/google-chrome.desktop", "Google Chrome", 0.3, 2'900 * MB);
    AppUsage editor = app("/apps/editor.desktop", "Editor", 0.1, 5 * GB);
    s.monitor.apps = {chrome, editor};
    s.monitor.browsers = {chrome.id};
    s.monitor.quittable = {editor.id};
    s.monitor.vitals.pressure = 2;
    // 2.9 GB with no update: nothing, even under pressure.
    EXPECT_TRUE(Advisor::recommendations(s).empty());

    s.monitor.apps[0].memory = 3 * GB;
    auto recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    const Rec& r = recs[0];
    EXPECT_EQ(r.id, "relaunch:/apps/google-chrome.desktop");
    EXPECT_TRUE(r.now);
    EXPECT_EQ(r.reason, RecReason::memory);
    EXPECT_EQ(r.title, "Relaunch Google Chrome");
    // A bigger app that can be quit: no "more than any other".
    EXPECT_EQ(r.why, "It holds 3.0 GB.");
    EXPECT_EQ(r.effect, "A fresh start for 3.0 GB, with your tabs");
    EXPECT_EQ(r.tip, "Works like Google Chrome's own Relaunch button: your windows and tabs reopen and the pages "
                     "reload. Finish anything you are typing first.");
    EXPECT_EQ(r.caveat, "Pages reload");
    EXPECT_TRUE(r.arm);
    EXPECT_FALSE(r.safe);
    EXPECT_EQ(r.doneChip, "Google Chrome relaunched");
    EXPECT_EQ(r.tint, "browser");
    EXPECT_EQ(r.impact, RecImpact::memory(chrome.id));
    EXPECT_EQ(r.action, RecAction::relaunch(chrome.id));

    // The biggest of all that could be restarted, open less than a day.
    s.monitor.quittable.clear();
    EXPECT_EQ(Advisor::recommendations(s)[0].why, "It holds 3.0 GB, more than any other app you can restart.");
    // Open for days, it says so instead.
    s.monitor.apps[0].started = addSeconds(now, -2.5 * day);
    EXPECT_EQ(Advisor::recommendations(s)[0].why, "It holds 3.0 GB after 2 days open.");
    s.monitor.apps[0].started = addSeconds(now, -1.2 * day);
    EXPECT_EQ(Advisor::recommendations(s)[0].why, "It holds 3.0 GB after 1 day open.");

    // An update waiting, memory plentiful: it can wait.
    s.monitor.vitals.pressure = 1;
    EXPECT_TRUE(Advisor::recommendations(s).empty());
    const TimePoint arrived = addSeconds(now, -4 * day);
    s.monitor.updates[chrome.id] = Browsers::Update{"124.0.1", arrived};
    recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_FALSE(recs[0].now);
    EXPECT_EQ(recs[0].reason, RecReason::wait);
    EXPECT_EQ(recs[0].why, "It holds 3.0 GB after 1 day open, and an update has waited since " + Fmt::dayMonth(arrived) + ".");
    EXPECT_EQ(recs[0].effect, "Installs the update and keeps your tabs");
    s.monitor.updates[chrome.id].since.reset();
    EXPECT_EQ(Advisor::recommendations(s)[0].why, "It holds 3.0 GB after 1 day open, and an update has waited.");
}

TEST(Advisor, TheBiggestBrowserWithAMainProcessFirstOnATie) {
    auto s = situation();
    AppUsage a = app("/apps/chromium.desktop", "Chromium", 0, 4 * GB);
    AppUsage b = app("/apps/firefox.desktop", "Firefox", 0, 4 * GB);
    AppUsage c = app("/apps/brave.desktop", "Brave", 0, 9 * GB);
    c.mainPID.reset(); // no app process: not a row that can be relaunched
    s.monitor.apps = {c, a, b};
    s.monitor.browsers = {a.id, b.id, c.id};
    s.monitor.vitals.pressure = 4;
    auto recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0].id, "relaunch:/apps/chromium.desktop");
    // Brave holds more but can't be restarted from here; Chromium is the biggest that can.
    EXPECT_EQ(recs[0].why, "It holds 4.0 GB.");
}

TEST(Advisor, RestartAfterAWeekWithSwapOnTheDisk) {
    auto s = situation();
    auto restart = [&](double upDays, int64_t used, int64_t total) {
        s.monitor.vitals.boot = addSeconds(now, -upDays * day);
        s.monitor.vitals.swapUsed = used;
        s.monitor.vitals.swapTotal = total;
        return find(Advisor::recommendations(s), "restart") != nullptr;
    };
    EXPECT_FALSE(restart(6.9, 8 * GB, 8 * GB));
    EXPECT_TRUE(restart(7, 2 * GB, 4 * GB));
    EXPECT_FALSE(restart(7, 2 * GB, 5 * GB));
    EXPECT_FALSE(restart(7, 3 * GB, 0));
    EXPECT_TRUE(restart(7, 4 * GB, 0));
    EXPECT_FALSE(restart(30, 2 * GB - 1, 2 * GB));

    s.monitor.vitals.swappedOut = 12 * GB;
    ASSERT_TRUE(restart(9.5, 5 * GB, 8 * GB));
    const auto recs = Advisor::recommendations(s);
    const Rec& r = recs[0];
    EXPECT_FALSE(r.now);
    EXPECT_EQ(r.reason, RecReason::wait);
    EXPECT_EQ(r.title, "Restart your computer");
    EXPECT_EQ(r.why, "On for 9 days, with 5.0 GB of swap on your disk. A restart empties it.");
    EXPECT_EQ(r.effect, "Up to 5.0 GB of disk back");
    EXPECT_EQ(r.tip, "The system has written 12.0 GB of memory to your disk since " + Fmt::dayMonth(s.monitor.vitals.boot) +
                         ". After a restart swap starts empty, so that space comes back and apps stop waiting on the disk.");
    EXPECT_EQ(r.actionLabel, "Restart\u2026");
    EXPECT_EQ(r.shortLabel, "Restart\u2026");
    EXPECT_EQ(r.busyLabel, "");
    EXPECT_EQ(r.doneChip, "");
    EXPECT_EQ(r.impact, RecImpact::swap());
    EXPECT_EQ(r.action, RecAction::restart());
    EXPECT_EQ(r.tint, "blueText");

    s.history.restartReminder = addSeconds(now, 3600);
    EXPECT_EQ(Advisor::recommendations(s)[0].title, "Restart tonight");
    EXPECT_EQ(Advisor::recommendations(s)[0].effect, "Reminder set for tonight");
    s.history.restartReminder = addSeconds(now, -3600); // a reminder that has passed
    EXPECT_EQ(Advisor::recommendations(s)[0].title, "Restart your computer");
}

TEST(Advisor, OldCachesOnlyWhatIsStaleUnlockedAndSafe) {
    auto s = situation();
    CleanItem locked = item("locked", Tier::safe, 5 * GB, CacheKind::leftover);
    locked.lockedReason = "In use";
    scanned(s, 50 * GB,
            {item("orphan", Tier::safe, 200 * MB, CacheKind::orphan), item("idle", Tier::safe, 99 * MB, CacheKind::idle),
             item("active", Tier::safe, 2 * GB, CacheKind::active), item("none", Tier::safe, 2 * GB), locked,
             item("big", Tier::yourCall, 2 * GB, CacheKind::orphan)});
    EXPECT_TRUE(Advisor::recommendations(s).empty()); // 299 MB
    s.model.items[1].size = 100 * MB;
    auto recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0].id, "caches");
    EXPECT_EQ(recs[0].title, "Clear 300 MB of old caches");
    EXPECT_EQ(recs[0].effect, "300 MB of disk back, and it stays free");
    EXPECT_EQ(recs[0].doneChip, "Old caches cleared");
    EXPECT_EQ(recs[0].impact, RecImpact::disk(300 * MB));
    EXPECT_TRUE(recs[0].safe);
    s.model.lastScan.reset();
    EXPECT_TRUE(Advisor::recommendations(s).empty());
}

TEST(Advisor, IdleProjectsFromAGigabyteWithTheirNames) {
    auto s = situation();
    std::vector<CleanItem> items;
    for (int i = 1; i <= 4; ++i) items.push_back(item("project:/home/u/code/p" + std::to_string(i), Tier::rebuildable, 250 * MB));
    CleanItem fresh = item("project:/home/u/code/fresh", Tier::rebuildable, 5 * GB);
    fresh.defaultOn = false;
    CleanItem busy = item("project:/home/u/code/busy", Tier::rebuildable, 5 * GB);
    busy.lockedReason = "In use by node · kept";
    items.push_back(fresh);
    items.push_back(busy);
    items.push_back(item("xcode", Tier::rebuildable, 5 * GB));
    s.model.items = items; // no scan date: this rule doesn't need one
    auto recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    const Rec& r = recs[0];
    EXPECT_EQ(r.id, "idle-projects");
    EXPECT_EQ(r.title, "Free 1.0 GB from idle projects");
    EXPECT_EQ(r.why, "Build folders in 4 projects you have not touched for a week.");
    EXPECT_EQ(r.effect, "1.0 GB of disk back, an install brings it back");
    EXPECT_EQ(r.tip, "p1, p2, p3, p4.");
    EXPECT_EQ(r.actionLabel, "Free 1.0 GB");
    EXPECT_TRUE(r.arm);
    EXPECT_FALSE(r.safe);
    EXPECT_EQ(r.tint, "indigo");
    EXPECT_EQ(r.action, RecAction::freeItems({"project:/home/u/code/p1", "project:/home/u/code/p2",
                                              "project:/home/u/code/p3", "project:/home/u/code/p4"}));

    s.model.items.push_back(item("project:/home/u/code/p5", Tier::rebuildable, 1));
    recs = Advisor::recommendations(s);
    EXPECT_EQ(recs[0].tip, "p1, p2, p3, p4 and more.");
    EXPECT_EQ(recs[0].action.itemIDs.size(), 5u);

    s.model.items = {item("project:/home/u/code/one", Tier::rebuildable, GB - 1)};
    EXPECT_TRUE(Advisor::recommendations(s).empty());
    s.model.items[0].size = GB;
    EXPECT_EQ(Advisor::recommendations(s)[0].why, "Build folders in 1 project you have not touched for a week.");
}

TEST(Advisor, TheOrderOfTheRulesIsTheRankingAndASnoozeKeepsItsPlace) {
    auto s = situation();
    AppUsage busy = app("/apps/busy.desktop", "Busy", 1, MB);
    AppUsage chrome = app("/apps/google-chrome.desktop", "Google Chrome", 0, 4 * GB);
    s.monitor.apps = {busy, chrome};
    s.monitor.slowApps = {busy};
    s.monitor.browsers = {chrome.id};
    s.monitor.leftovers = {leftover(10, "vite dev", "shop", 7200, MB)};
    s.monitor.vitals.pressure = 2;
    s.monitor.vitals.boot = addSeconds(now, -8 * day);
    s.monitor.vitals.swapUsed = 5 * GB;
    scanned(s, 5 * GB, {item("a", Tier::safe, 2 * GB, CacheKind::active), item("project:/p/x", Tier::rebuildable, 2 * GB)});
    auto recs = Advisor::recommendations(s);
    EXPECT_EQ(ids(recs), (std::vector<std::string>{"quit:/apps/busy.desktop", "caches", "leftovers",
                                                    "relaunch:/apps/google-chrome.desktop", "restart", "idle-projects"}));
    EXPECT_EQ(std::count_if(recs.begin(), recs.end(), [](const Rec& r) { return r.now; }), 4);

    s.history.snoozed = {"caches"};
    auto snoozed = Advisor::recommendations(s);
    EXPECT_EQ(ids(snoozed), ids(recs));
    EXPECT_FALSE(snoozed[1].now);
    EXPECT_EQ(snoozed[1].reason, RecReason::snoozed);
    EXPECT_EQ(snoozed[1].title, recs[1].title);
    EXPECT_EQ(RecReasons::label(snoozed[1].reason), "Not now");
}

// The suggestions section of the speed report, through the function the report prints with,
// for a situation the live machine can't be made to have.
TEST(Advisor, SuggestionLinesOfAHandMadeSituation) {
    auto s = situation();
    s.monitor.leftovers = {leftover(10, "vite dev", "shop", 7200, 200 * MB)};
    s.monitor.vitals.boot = addSeconds(now, -12 * day);
    s.monitor.vitals.swapUsed = 3 * GB;
    s.monitor.vitals.swapTotal = 4 * GB;
    scanned(s, 6 * GB, {item("a", Tier::safe, 2 * GB, CacheKind::active)});
    EXPECT_EQ(AdviceText::lines(Advisor::recommendations(s)),
              (std::vector<std::string>{"[now] [Disk low] Clear 2.0 GB of caches",
                                        "[later] [Can wait] Stop 1 leftover process",
                                        "[later] [Can wait] Restart your computer"}));
}

TEST(Advisor, AppNamesKeepTheirWords) {
    auto s = situation();
    AppUsage mac = app("/apps/mmf.desktop", "Mac Mouse Fix", 1, MB);
    s.monitor.slowApps = {mac};
    auto recs = Advisor::recommendations(s);
    ASSERT_EQ(recs.size(), 1u);
    EXPECT_EQ(recs[0].title, "Quit Mac Mouse Fix");
    EXPECT_EQ(recs[0].doneChip, "Mac Mouse Fix quit");
}

TEST(RecReasons, ChipsOfEachReason) {
    EXPECT_EQ(RecReasons::label(RecReason::slow), "Slow now");
    EXPECT_EQ(RecReasons::label(RecReason::memory), "Memory tight");
    EXPECT_EQ(RecReasons::label(RecReason::disk), "Disk low");
    EXPECT_EQ(RecReasons::label(RecReason::wait), "Can wait");
    EXPECT_EQ(RecReasons::bg(RecReason::memory), (RecReasons::Fill{"browser", 0.15}));
    // Waiting and snoozed look alike but for their words.
    EXPECT_EQ(RecReasons::bg(RecReason::wait), RecReasons::bg(RecReason::snoozed));
    EXPECT_EQ(RecReasons::symbol(RecReason::wait), RecReasons::symbol(RecReason::snoozed));
    EXPECT_NE(RecReasons::label(RecReason::wait), RecReasons::label(RecReason::snoozed));
}
