#include "monitor/Alerts.h"

#include "foundation/Rendering.h"
#include "history/History.h"
#include "monitor/Monitor.h"

#include "MonitorFixtures.h"
#include "support/FakeAppBundles.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace fixtures;

namespace {

const Layout layout = Layout::linux("/home/ann");
const FakeAppBundles noBundles;

// An app of its own desktop entry that keeps `load` cores busy.
struct Busy {
    int32_t pid;
    std::string name;
    double load = 1.0;
    int64_t footprint = 100'000'000;
    bool accessory = false;
    bool front = false;
    [[nodiscard]] std::string path() const { return "/apps/" + name + ".desktop"; }
};

class Recorder final : public Alerts::Poster {
public:
    std::vector<Alerts::Alert> posted;
    void post(const Alerts::Alert& a) override { posted.push_back(a); }
};

// A monitor fed one closed minute at a time, with alerts decided as the program decides them:
// at each closed minute, against a history on disk.
struct Rig {
    TempTree support;
    History history{support.root()};
    FakeProbe probe;
    Monitor monitor{nullptr, probe, layout, noBundles};
    Recorder poster;
    std::vector<Busy> apps;
    int pressure = 1;
    int64_t swap = 0;
    double at = 0;
    TimePoint now = t0;
    int cores = 4;

    explicit Rig(std::vector<Busy> a) : apps(std::move(a)) {
        monitor.clock = [this] { return now; };
        monitor.minuteClosed = [this](Monitor& m) { Alerts::evaluate(m, history, poster, now, cores); };
        feed();
    }
    void feed() {
        std::vector<Proc> procs;
        RunningApps running;
        for (const auto& b : apps) {
            procs.push_back({.pid = b.pid, .name = b.name, .startedAgo = 600,
                             .cpuNanos = static_cast<uint64_t>(b.load * at * 1e9), .footprint = b.footprint,
                             .group = b.path()});
            RunningApp r = app(b.pid, b.path(), "org.example." + b.name, b.name);
            r.accessory = b.accessory;
            r.active = b.front;
            running.emplace(b.pid, r);
        }
        Snapshot s = snapshot(procs, at);
        s.system.pressureLevel = pressure;
        s.system.swapUsed = swap;
        now = s.date;
        monitor.apply(s, running, Grouping::keys(s, running, layout.monitor), std::nullopt);
    }
    // `count` minutes closed one after another.
    void minutes(int count) {
        for (int i = 0; i < count; ++i) {
            at += 60;
            feed();
        }
    }
};

} // namespace

TEST(Alerts, TwoSlowAppsShareOneNotificationAndBothAreMarked) {
    Rig rig({{10, "Render", 1.2}, {20, "Encoder", 0.8}});
    rig.minutes(9);
    EXPECT_TRUE(rig.poster.posted.empty()); // nine minutes are not enough
    rig.minutes(1);
    ASSERT_EQ(rig.poster.posted.size(), 1u);
    const Alerts::Alert& a = rig.poster.posted[0];
    EXPECT_EQ(a.title, "Your computer is slowing down");
    EXPECT_EQ(a.category, "slow2");
    EXPECT_EQ(a.id, "slow");
    // 2.0 cores of 4: half the processor.
    EXPECT_EQ(a.body, "Render and Encoder are keeping the processor busy in the background. "
                      "Quitting gives back about 50% of the processor.");
    EXPECT_EQ(a.apps, (std::vector<std::string>{"/apps/Render.desktop", "/apps/Encoder.desktop"}));
    EXPECT_TRUE(rig.history.alertedRecently("slow:/apps/Render.desktop", rig.now));
    EXPECT_TRUE(rig.history.alertedRecently("slow:/apps/Encoder.desktop", rig.now));
    // Marked means silent for the minutes that follow.
    rig.minutes(5);
    EXPECT_EQ(rig.poster.posted.size(), 1u);
    // The marks are on disk: a restart of the program does not repeat the alert.
    History again(rig.support.root());
    EXPECT_TRUE(again.alertedRecently("slow:/apps/Render.desktop", rig.now));
}

TEST(Alerts, ThreeFreshAppsTwoNamedThreeMarked) {
    Rig rig({{10, "Alpha", 1.5}, {20, "Beta", 1.0}, {30, "Gamma", 0.7}});
    rig.minutes(10);
    ASSERT_EQ(rig.poster.posted.size(), 1u);
    const Alerts::Alert& a = rig.poster.posted[0];
    EXPECT_EQ(a.category, "slow2");
    EXPECT_NE(a.body.find("Alpha and Beta are"), std::string::npos);
    EXPECT_EQ(a.body.find("Gamma"), std::string::npos);
    EXPECT_EQ(a.apps.size(), 2u);
    EXPECT_TRUE(rig.history.alertedRecently("slow:/apps/Gamma.desktop", rig.now)); // passed over, yet marked
}

TEST(Alerts, QuietForTwentyHoursStrictly) {
    Rig rig({{10, "Render", 1.0}});
    // Alerted 19 hours before the tenth minute closes: no repeat.
    rig.history.markAlerted("slow:/apps/Render.desktop", addSeconds(t0, 600 - 19 * 3600));
    rig.minutes(10);
    EXPECT_TRUE(rig.poster.posted.empty());

    // Alerted exactly 20 hours before: the test is "less than", so it may come again.
    Rig later({{10, "Render", 1.0}});
    later.history.markAlerted("slow:/apps/Render.desktop", addSeconds(t0, 600 - 20 * 3600));
    later.minutes(10);
    ASSERT_EQ(later.poster.posted.size(), 1u);
    EXPECT_EQ(later.poster.posted[0].category, "slow1");
    EXPECT_EQ(later.poster.posted[0].body, "Render is keeping the processor busy in the background. "
                                           "Quitting gives back about 25% of the processor.");
}

TEST(Alerts, MemoryWaitsBehindASlowAlertAndIsNotLost) {
    Rig rig({{10, "Render", 1.0, 3'000'000'000}});
    rig.pressure = 2;
    rig.swap = 2'500'000'000;
    rig.minutes(10);
    // Ten tight minutes and a fresh slow app in the same minute: the slow one alone.
    ASSERT_EQ(rig.poster.posted.size(), 1u);
    EXPECT_EQ(rig.poster.posted[0].id, "slow");
    EXPECT_FALSE(rig.history.alertedRecently("memory", rig.now));
    rig.minutes(1);
    ASSERT_EQ(rig.poster.posted.size(), 2u);
    const Alerts::Alert& m = rig.poster.posted[1];
    EXPECT_EQ(m.title, "Memory is tight");
    EXPECT_EQ(m.category, "memory");
    EXPECT_EQ(m.body, "Your computer is moving memory to the disk (2.5 GB so far), which makes switching apps slow. "
                      "Render holds 3.0 GB.");
    EXPECT_TRUE(m.apps.empty());
    rig.minutes(3);
    EXPECT_EQ(rig.poster.posted.size(), 2u); // once in 20 hours
}

TEST(Alerts, MemoryStillRunsWhenTheSlowAppWasAlertedRecently) {
    // A slow app alerted an hour ago leaves the minute to the memory test. The biggest app is
    // named only from a gigabyte up, the swap likewise.
    Rig rig({{10, "Small", 1.0, 900'000'000}, {20, "Tiny", 0.0, 10'000'000}});
    rig.history.markAlerted("slow:/apps/Small.desktop", t0);
    rig.pressure = 4; // critical counts like warning
    rig.swap = 999'000'000;
    rig.minutes(10);
    ASSERT_EQ(rig.poster.posted.size(), 1u);
    EXPECT_EQ(rig.poster.posted[0].body, "Your computer is moving memory to the disk, which makes switching apps slow.");
}

TEST(Alerts, NothingToSaveAndTheSmallestShare) {
    Rig rig({{10, "Helper", 0.5, 100'000'000, /*accessory*/ true}});
    rig.cores = 64;
    rig.minutes(10);
    ASSERT_EQ(rig.poster.posted.size(), 1u);
    EXPECT_EQ(rig.poster.posted[0].body, "Helper is keeping the processor busy in the background. It has nothing to save.");

    // Two apps where one has work to lose: the share sentence, never "Neither"; a share
    // that cuts to 0 reads 1%.
    Rig two({{10, "Helper", 0.5, 1, true}, {20, "Editor", 0.5}});
    two.cores = 256;
    two.minutes(10);
    ASSERT_EQ(two.poster.posted.size(), 1u);
    EXPECT_NE(two.poster.posted[0].body.find("Quitting gives back about 1% of the processor."), std::string::npos);
}

TEST(Alerts, AFrontAppOrAnAppSeenLessThanTenMinutesNeverAlerts) {
    Rig rig({{10, "Game", 2.0, 1, false, /*front*/ true}});
    rig.minutes(12);
    EXPECT_TRUE(rig.poster.posted.empty());
}

TEST(Alerts, NothingWhileRendering) {
    Rig rig({{10, "Render", 1.0}});
    rig.pressure = 2;
    Tools::rendering = true;
    rig.minutes(10);
    Tools::rendering = false;
    EXPECT_TRUE(rig.poster.posted.empty());
    EXPECT_FALSE(rig.history.alertedRecently("slow:/apps/Render.desktop", rig.now));
}
