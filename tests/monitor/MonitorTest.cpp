#include "monitor/Monitor.h"

#include "MonitorFixtures.h"
#include "support/FakeAppBundles.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace fixtures;

namespace {

const Layout layout = Layout::linux("/home/ann");
const FakeAppBundles noBundles;
constexpr uint64_t second = 1'000'000'000;

class FakeHost final : public Monitor::Host {
public:
    std::vector<double> intervals, tolerances;
    std::function<void()> tick;
    std::vector<double> delays;
    std::vector<std::pair<std::function<void()>, std::function<void()>>> pending;

    void repeat(double interval, double tolerance, std::function<void()> t) override {
        intervals.push_back(interval);
        tolerances.push_back(tolerance);
        tick = std::move(t);
    }
    void after(double seconds, std::function<void()>) override { delays.push_back(seconds); }
    void work(std::function<void()> w, std::function<void()> d) override { pending.emplace_back(std::move(w), std::move(d)); }
    void finish() {
        auto jobs = std::move(pending);
        pending.clear();
        for (auto& [w, d] : jobs) {
            w();
            d();
        }
    }
};

const std::string heavy = "/apps/heavy.desktop";
const std::string editor = "/apps/code.desktop";

// One app at `load` cores, steadily since t0, seen at second `at`; a lone program beside it.
Snapshot machine(double at, double load, uint64_t busy = 0, uint64_t total = 0) {
    auto s = snapshot({{.pid = 10, .name = "heavy", .startedAgo = 600,
                        .cpuNanos = static_cast<uint64_t>(load * at * 1e9), .footprint = 800, .group = heavy},
                       {.pid = 20, .name = "tool", .exe = "/home/ann/bin/tool", .startedAgo = 600, .footprint = 50}},
                      at);
    s.system.cpuBusy = busy;
    s.system.cpuTotal = total;
    return s;
}

RunningApps heavyRunning(bool active = false) {
    RunningApp a = app(10, heavy, "heavy.app", "Heavy");
    a.active = active;
    return {{10, a}};
}

struct Rig {
    FakeHost host;
    FakeProbe probe;
    Monitor monitor{&host, probe, layout, noBundles};
    TimePoint now = t0;
    Rig() { monitor.clock = [this] { return now; }; }

    void feed(const Snapshot& s, const RunningApps& apps = heavyRunning(), std::optional<std::vector<Leftover>> found = {}) {
        now = s.date;
        monitor.apply(s, apps, Grouping::keys(s, apps, layout.monitor), std::move(found));
    }
    // Minutes closed one after another, 60 seconds apart, starting at `from`.
    void minutes(int count, double load, double& at, bool active = false) {
        for (int i = 0; i < count; ++i) {
            at += 60;
            feed(machine(at, load), heavyRunning(active));
        }
    }
};

AppUsage row(const std::string& id, const std::string& bundleID, double cores = 0) {
    AppUsage a;
    a.id = id;
    a.bundlePath = id;
    a.bundleID = bundleID;
    a.mainPID = 10;
    a.cores = cores;
    return a;
}

} // namespace

TEST(Monitor, FirstSampleHasNoLoadSecondHasFigures) {
    Rig rig;
    rig.feed(machine(0, 1.0, 1000, 4000));
    EXPECT_FALSE(rig.monitor.vitals.cpu);
    ASSERT_EQ(rig.monitor.apps.size(), 2u);
    for (const auto& a : rig.monitor.apps) EXPECT_DOUBLE_EQ(a.cores, 0);
    EXPECT_EQ(rig.monitor.app(heavy)->memory, 800);
    EXPECT_EQ(rig.monitor.measuredAt, t0);

    rig.feed(machine(3, 1.0, 1300, 4600));
    ASSERT_TRUE(rig.monitor.vitals.cpu);
    EXPECT_DOUBLE_EQ(*rig.monitor.vitals.cpu, 50.0); // an unsmoothed first figure
    EXPECT_EQ(rig.monitor.apps.front().id, heavy);   // heaviest first
    EXPECT_NEAR(rig.monitor.apps.front().cores, 1.0, 1e-9);
    EXPECT_EQ(rig.monitor.apps.front().name, "Heavy");
}

TEST(Monitor, SmoothingByTimeConstant) {
    Rig rig;
    rig.feed(machine(0, 1.0, 0, 1000));
    rig.feed(machine(3, 1.0, 500, 2000)); // 50 %
    // From here the app runs at 3 cores and the machine is 100 % busy.
    auto at6 = machine(6, 1.0, 1500, 3000);
    at6.procs.at(10).cpuNanos = 3 * second + 9 * second;
    rig.feed(at6);
    const double keep = std::exp(-3.0 / 12);
    EXPECT_NEAR(keep, 0.78, 0.01);
    EXPECT_NEAR(rig.monitor.app(heavy)->cores, keep * 1.0 + (1 - keep) * 3.0, 1e-9);
    EXPECT_NEAR(*rig.monitor.vitals.cpu, keep * 50 + (1 - keep) * 100, 1e-9);

    // After a minute's gap the weight of the past is nearly gone.
    auto late = at6;
    late.date = addSeconds(t0, 66);
    late.procs.at(10).cpuNanos = 12 * second + 60 * second;
    rig.feed(late);
    const double before = keep * 1.0 + (1 - keep) * 3.0;
    const double gap = std::exp(-60.0 / 12);
    EXPECT_NEAR(gap, 0.007, 0.001);
    EXPECT_NEAR(rig.monitor.app(heavy)->cores, gap * before + (1 - gap) * 1.0, 1e-9);
}

TEST(Monitor, VanishedRowsForgetTheirSmoothedFigure) {
    Rig rig;
    rig.feed(machine(0, 2.0));
    rig.feed(machine(3, 2.0));
    auto without = snapshot({{.pid = 20, .name = "tool", .exe = "/home/ann/bin/tool", .startedAgo = 600}}, 6);
    rig.feed(without, {});
    EXPECT_FALSE(rig.monitor.app(heavy));
    // Back again: its first figure is taken whole, not blended with the old one.
    auto back = machine(9, 2.0);
    back.procs.at(10).pid = 11;
    auto moved = back.procs.extract(10);
    moved.key() = 11;
    back.procs.insert(std::move(moved));
    back.procs.at(11).start = addSeconds(t0, 7);
    back.procs.at(11).cpuNanos = second; // 1 s over its 2 s of life
    rig.feed(back, {{11, app(11, heavy, "heavy.app", "Heavy")}});
    EXPECT_NEAR(rig.monitor.app(heavy)->cores, 0.5, 1e-9);
}

TEST(Monitor, MinuteStepAtFiftyFiveSeconds) {
    Rig rig;
    int closed = 0;
    rig.monitor.minuteClosed = [&](Monitor&) { ++closed; };
    rig.feed(machine(0, 0.5));
    for (double at = 3; at < 55; at += 3) rig.feed(machine(at, 0.5)); // last at 54
    EXPECT_EQ(closed, 0);
    EXPECT_TRUE(rig.monitor.minuteHistory().empty());
    rig.feed(machine(55, 0.5));
    EXPECT_EQ(closed, 1);
    const auto& line = rig.monitor.minuteHistory().at(heavy);
    ASSERT_EQ(line.size(), 1u);
    EXPECT_NEAR(line[0].cores, 0.5, 1e-9); // the minute's own average
    EXPECT_FALSE(line[0].front);
    EXPECT_EQ(line[0].date, addSeconds(t0, 55));
    EXPECT_EQ(rig.monitor.pressureHistory().size(), 1u);
    // The next minute counts from 55.
    rig.feed(machine(109.9, 0.5));
    EXPECT_EQ(closed, 1);
    rig.feed(machine(110, 0.5), heavyRunning(true));
    EXPECT_EQ(closed, 2);
    EXPECT_TRUE(rig.monitor.minuteHistory().at(heavy).back().front);
}

TEST(Monitor, MinuteHistoryLimits) {
    Rig rig;
    double at = 0;
    rig.feed(machine(at, 1.0));
    rig.minutes(181, 1.0, at);
    EXPECT_EQ(rig.monitor.minuteHistory().at(heavy).size(), 180u);
    EXPECT_EQ(rig.monitor.minuteHistory().at(heavy).front().date, addSeconds(t0, 120)); // the first one pushed out
    EXPECT_EQ(rig.monitor.pressureHistory().size(), 30u);

    // A minute without the app: its whole history goes.
    at += 60;
    auto without = snapshot({{.pid = 20, .name = "tool", .exe = "/home/ann/bin/tool", .startedAgo = 600}}, at);
    rig.feed(without, {});
    EXPECT_FALSE(rig.monitor.minuteHistory().contains(heavy));
    EXPECT_TRUE(rig.monitor.minuteHistory().contains("proc:tool"));
}

TEST(Monitor, MemoryTightForTenMinutes) {
    Rig rig;
    double at = 0;
    auto feedLevel = [&](int level) {
        at += 60;
        auto s = machine(at, 0);
        s.system.pressureLevel = level;
        rig.feed(s);
    };
    rig.feed(machine(0, 0));
    for (int i = 0; i < 9; ++i) feedLevel(4);
    EXPECT_FALSE(rig.monitor.memoryTightTenMinutes()); // nine values, whatever they say
    feedLevel(1);
    EXPECT_FALSE(rig.monitor.memoryTightTenMinutes());
    for (int i = 0; i < 9; ++i) feedLevel(2);
    EXPECT_FALSE(rig.monitor.memoryTightTenMinutes()); // nine at 2, one at 1
    feedLevel(4);
    EXPECT_TRUE(rig.monitor.memoryTightTenMinutes());
}

TEST(Monitor, SlowAppsNow) {
    Rig rig;
    auto& apps = rig.monitor.apps;
    apps = {row(heavy, "heavy.app", 0.5), row("/apps/b.desktop", "b.app", 0.49), row("/apps/c.desktop", "code", 2),
            row("/apps/d.desktop", "app.sorrelin.Sorrelin", 2), row("/apps/e.desktop", "google-chrome", 2),
            row("/apps/f.desktop", "f.app", 2), row("/apps/g.desktop", "g.app", 2), row("proc:node", "", 3)};
    apps[5].isFront = true;
    apps[6].mainPID.reset();
    apps[7].bundlePath.reset();
    apps[7].bundleID.reset();
    auto slow = rig.monitor.slowApps();
    ASSERT_EQ(slow.size(), 1u);
    EXPECT_EQ(slow[0].id, heavy);
}

TEST(Monitor, TwoMinutesGraceAfterBeingFront) {
    Rig rig;
    double at = 0;
    rig.feed(machine(at, 1.0));
    rig.minutes(3, 1.0, at, true);
    rig.minutes(1, 1.0, at, false);
    EXPECT_TRUE(rig.monitor.slowApps().empty()); // front a minute ago
    rig.minutes(1, 1.0, at, false);
    ASSERT_EQ(rig.monitor.slowApps().size(), 1u);
    EXPECT_EQ(rig.monitor.busyMinutes(heavy), 2);
}

TEST(Monitor, SustainedSlow) {
    Rig rig;
    double at = 0;
    rig.feed(machine(at, 0.6));
    rig.minutes(9, 0.6, at);
    EXPECT_TRUE(rig.monitor.sustainedSlow().empty()); // nine minutes
    rig.minutes(1, 0.6, at);
    ASSERT_EQ(rig.monitor.sustainedSlow().size(), 1u);
    EXPECT_EQ(rig.monitor.busyMinutes(heavy), 10);

    // The tenth minute back is 720 seconds old at most.
    rig.now = addSeconds(t0, at + 720 - 540);
    EXPECT_EQ(rig.monitor.sustainedSlow().size(), 1u);
    rig.now = addSeconds(t0, at + 721 - 540);
    EXPECT_TRUE(rig.monitor.sustainedSlow().empty());

    // Front at one minute of the ten: not sustained.
    rig.minutes(1, 0.6, at, true);
    rig.minutes(8, 0.6, at);
    EXPECT_TRUE(rig.monitor.sustainedSlow().empty());
    EXPECT_EQ(rig.monitor.busyMinutes(heavy), 8);
    rig.minutes(1, 0.6, at);
    EXPECT_TRUE(rig.monitor.sustainedSlow().empty()); // the front minute is the tenth back
    rig.minutes(1, 0.6, at);
    EXPECT_EQ(rig.monitor.sustainedSlow().size(), 1u);

    // A machine that slept: ten samples reaching back more than 720 seconds.
    Rig slept;
    at = 0;
    slept.feed(machine(at, 2.0));
    slept.minutes(5, 2.0, at);
    at += 3600;
    slept.minutes(5, 2.0, at);
    EXPECT_TRUE(slept.monitor.sustainedSlow().empty());

    // An average below half a core.
    Rig light;
    at = 0;
    light.feed(machine(at, 0.45));
    light.minutes(10, 0.45, at);
    EXPECT_TRUE(light.monitor.sustainedSlow().empty());
    EXPECT_EQ(light.monitor.busyMinutes(heavy), 10);
}

TEST(Monitor, KeptQuittableAndNothingToSave) {
    Rig rig;
    const Monitor& m = rig.monitor;
    auto loose = row("proc:node", "");
    loose.bundlePath.reset();
    loose.bundleID.reset();
    EXPECT_TRUE(m.isKept(loose));
    EXPECT_FALSE(m.canQuit(loose));
    EXPECT_TRUE(m.isKept(row("/apps/t.desktop", "org.gnome.Terminal")));
    EXPECT_TRUE(m.isKept(row("/apps/s.desktop", "app.sorrelin.Sorrelin.Beta")));
    EXPECT_TRUE(m.isKept(row("/apps/g.desktop", "org.gnome.SettingsDaemon.Color")));
    auto plain = row("/apps/gimp.desktop", "org.gimp.GIMP");
    EXPECT_FALSE(m.isKept(plain));
    EXPECT_TRUE(m.canQuit(plain));
    plain.mainPID.reset(); // helpers whose app isn't running
    EXPECT_FALSE(m.canQuit(plain));
    EXPECT_FALSE(m.nothingToSave(plain));
    plain.accessory = true;
    EXPECT_TRUE(m.nothingToSave(plain));
    EXPECT_TRUE(m.nothingToSave(row("/apps/s.desktop", "org.gnome.Settings")));

    Monitor mac(nullptr, rig.probe, Layout::macos("/Users/ann"), noBundles);
    EXPECT_TRUE(mac.isKept(row("/System/Library/CoreServices/Finder.app", "x")));
    EXPECT_TRUE(mac.nothingToSave(row("/System/Applications/Stocks.app", "com.apple.stocks")));
}

TEST(Monitor, LeftoversLeaveTheRowsUntilForgotten) {
    Rig rig;
    Leftover left;
    left.id = 20;
    left.pids = {20};
    left.memory = 50;
    rig.feed(machine(0, 1.0), heavyRunning(), std::vector<Leftover>{left});
    EXPECT_FALSE(rig.monitor.app("proc:tool"));
    EXPECT_EQ(rig.monitor.memoryCounted(), 800 + 50);
    rig.feed(machine(3, 1.0)); // no sweep: the stored leftovers still count
    EXPECT_FALSE(rig.monitor.app("proc:tool"));
    rig.monitor.forgetLeftovers({20});
    EXPECT_TRUE(rig.monitor.leftovers.empty());
    rig.feed(machine(6, 1.0));
    EXPECT_TRUE(rig.monitor.app("proc:tool")); // still alive: an ordinary row until the next sweep
    EXPECT_EQ(rig.monitor.memoryCounted(), 850);
}

TEST(Monitor, TimerFollowsLiveViews) {
    Rig rig;
    rig.probe.snapshots = {machine(0, 1.0)};
    rig.monitor.start();
    EXPECT_EQ(rig.host.intervals, std::vector<double>{60});
    EXPECT_DOUBLE_EQ(rig.host.tolerances.back(), 12);
    EXPECT_EQ(rig.host.pending.size(), 1u);

    rig.monitor.setLive("window", true);
    EXPECT_EQ(rig.host.intervals, (std::vector<double>{60, 3}));
    EXPECT_DOUBLE_EQ(rig.host.tolerances.back(), 0.6);
    EXPECT_EQ(rig.host.pending.size(), 1u); // a sample under way absorbs the request
    rig.host.finish();
    EXPECT_FALSE(rig.monitor.isSampling());

    rig.monitor.setLive("menu", true); // a second key: no new timer, one sample
    EXPECT_EQ(rig.host.intervals.size(), 2u);
    EXPECT_EQ(rig.host.pending.size(), 1u);
    rig.host.finish();
    rig.monitor.setLive("window", false);
    EXPECT_EQ(rig.host.intervals.size(), 2u);
    EXPECT_TRUE(rig.host.pending.empty()); // closing asks for nothing
    rig.monitor.setLive("menu", false);
    EXPECT_EQ(rig.host.intervals, (std::vector<double>{60, 3, 60}));

    rig.monitor.sample(5);
    EXPECT_EQ(rig.host.delays, std::vector<double>{5});
    EXPECT_TRUE(rig.host.pending.empty());
    rig.host.tick();
    EXPECT_EQ(rig.host.pending.size(), 1u);
}

TEST(Monitor, LeftoverSweepAtMostEveryFiftySeconds) {
    Rig rig;
    rig.probe.snapshots = {machine(0, 1.0)};
    // A leftover the sweep finds: a node server orphaned two hours ago.
    rig.probe.snapshots[0].procs.emplace(30, record({.pid = 30, .name = "node", .exe = "/usr/bin/node"}));
    rig.probe.cwds[30] = "/home/ann/p";
    rig.monitor.sample();
    rig.host.finish();
    ASSERT_EQ(rig.monitor.leftovers.size(), 1u);
    EXPECT_EQ(rig.probe.cwdReads, 1);

    rig.now = addSeconds(t0, 50);
    rig.monitor.sample();
    rig.host.finish();
    EXPECT_EQ(rig.probe.cwdReads, 1); // 50 seconds: not yet
    rig.now = addSeconds(t0, 50.5);
    rig.monitor.sample();
    rig.host.finish();
    EXPECT_EQ(rig.probe.cwdReads, 2);
}
