#include "monitor/Grouping.h"

#include "MonitorFixtures.h"
#include "support/FakeAppBundles.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace fixtures;

namespace {

const MonitorTables linuxTables = Layout::linux("/home/ann").monitor;
const MonitorTables macTables = Layout::macos("/Users/ann").monitor;

const AppUsage& row(const std::vector<AppUsage>& rows, const std::string& id) {
    auto it = std::find_if(rows.begin(), rows.end(), [&](const AppUsage& r) { return r.id == id; });
    EXPECT_NE(it, rows.end()) << id;
    static const AppUsage none;
    return it == rows.end() ? none : *it;
}

} // namespace

TEST(Grouping, AttributionOrder) {
    const std::string code = "/apps/code.desktop", term = "/apps/org.gnome.Terminal.desktop";
    auto snap = snapshot({
        {.pid = 10, .name = "gnome-terminal-", .group = term},
        {.pid = 11, .ppid = 10, .name = "bash", .exe = "/usr/bin/bash"},                  // parent chain
        {.pid = 12, .ppid = 11, .name = "code", .exe = "/usr/share/code/code", .group = code}, // own app first
        {.pid = 13, .ppid = 12, .name = "code", .exe = "/usr/share/code/code"},           // parent chain to code
        {.pid = 20, .ppid = 1, .name = "helper", .exe = "/opt/x/helper", .responsible = 12}, // responsible, not parent
        {.pid = 21, .ppid = 10, .name = "other", .responsible = 10, .group = code},       // own app before responsible
        {.pid = 30, .ppid = 1, .name = "editor", .group = term},                          // own entry before own app
    });
    RunningApps apps = {{10, app(10, term, "org.gnome.Terminal")}, {30, app(30, "/apps/gedit.desktop", "gedit")}};
    auto keys = Grouping::keys(snap, apps, linuxTables);
    EXPECT_EQ(keys.size(), snap.procs.size());
    EXPECT_EQ(keys.at(10), term);
    EXPECT_EQ(keys.at(11), term);
    EXPECT_EQ(keys.at(12), code);
    EXPECT_EQ(keys.at(13), code);
    EXPECT_EQ(keys.at(20), code);
    EXPECT_EQ(keys.at(21), code);
    EXPECT_EQ(keys.at(30), "/apps/gedit.desktop");
}

TEST(Grouping, WhatNoAppClaims) {
    auto snap = snapshot({
        {.pid = 40, .ppid = 1, .name = "pipewire", .exe = "/usr/bin/pipewire"},
        {.pid = 41, .ppid = 1, .name = "gvfsd", .exe = "/usr/libexec/gvfsd", .responsible = 1},
        {.pid = 42, .ppid = 1, .name = "node", .exe = "/usr/local/bin/node"}, // the user's own install
        {.pid = 43, .ppid = 1, .name = "node", .exe = "/home/ann/.nvm/versions/node/v22/bin/node"},
        {.pid = 44, .ppid = 0, .name = "secret", .exe = ""},
        {.pid = 45, .ppid = 1, .name = "snapd-helper", .exe = "/lib/snapd/helper"},
    });
    auto keys = Grouping::keys(snap, {}, linuxTables);
    EXPECT_EQ(keys.at(40), "proc:System services");
    EXPECT_EQ(keys.at(41), "proc:System services");
    EXPECT_EQ(keys.at(42), "proc:node");
    EXPECT_EQ(keys.at(43), "proc:node");
    EXPECT_EQ(keys.at(44), "proc:secret");
    EXPECT_EQ(keys.at(45), "proc:System services");

    // Two processes of one name and no app share one row.
    auto rows = Grouping::usage(snap, nullptr, {}, keys, {}, linuxTables, FakeAppBundles());
    EXPECT_EQ(row(rows, "proc:node").pids, (std::vector<int32_t>{42, 43}));
    EXPECT_FALSE(row(rows, "proc:node").bundlePath);
}

TEST(Grouping, ChainsEndAfterFortySteps) {
    // A chain whose deepest process has the lowest pid, so it is resolved first, memo empty.
    auto chain = [](int steps) {
        std::vector<Proc> procs;
        for (int i = 0; i < steps; ++i) procs.push_back({.pid = 100 + i, .ppid = 101 + i, .name = "sh"});
        procs.push_back({.pid = 100 + steps, .ppid = 1, .name = "app", .group = "/apps/app.desktop"});
        return snapshot(procs);
    };
    // The app 39 steps up is found; 40 steps up it lies beyond the limit.
    EXPECT_EQ(Grouping::keys(chain(39), {}, linuxTables).at(100), "/apps/app.desktop");
    auto far = Grouping::keys(chain(40), {}, linuxTables);
    EXPECT_EQ(far.at(100), "proc:sh");
    EXPECT_EQ(far.at(101), "/apps/app.desktop");

    // A cycle of parents ends too.
    auto loop = snapshot({{.pid = 7, .ppid = 8, .name = "a"}, {.pid = 8, .ppid = 7, .name = "b"}});
    auto keys = Grouping::keys(loop, {}, linuxTables);
    EXPECT_EQ(keys.at(7), "proc:a");
    EXPECT_EQ(keys.at(8), "proc:b");
}

TEST(Grouping, BundlePathsWhereAppsAreFolders) {
    auto snap = snapshot({
        {.pid = 50, .name = "Bar", .exe = "/Applications/Foo.app/Contents/Frameworks/Bar.app/Contents/MacOS/Bar"},
        {.pid = 51, .name = "node", .exe = "/Users/ann/Library/Application Support/Claude/runtime/Claude Helper.app/Contents/MacOS/node"},
        {.pid = 52, .name = "Storage", .exe = "/System/Library/ExtensionKit/Extensions/Storage.appex/Contents/MacOS/Storage"},
        {.pid = 53, .ppid = 1, .name = "launchd-helper", .exe = "/usr/libexec/helper"},
    });
    RunningApps apps = {{60, app(60, "/Users/ann/Applications/Claude.app", "com.anthropic.claudefordesktop")}};
    auto keys = Grouping::keys(snap, apps, macTables);
    EXPECT_EQ(keys.at(50), "/Applications/Foo.app");
    EXPECT_EQ(keys.at(51), "/Users/ann/Applications/Claude.app"); // wherever the running Claude lies
    EXPECT_EQ(keys.at(52), "proc:macOS services");                 // settings isn't open
    EXPECT_EQ(keys.at(53), "proc:macOS services");
    EXPECT_EQ(Grouping::keys(snap, {}, macTables).at(51), "/Applications/Claude.app");

    apps.emplace(70, app(70, "/System/Applications/System Settings.app", "com.apple.systempreferences"));
    EXPECT_EQ(Grouping::keys(snap, apps, macTables).at(52), "/System/Applications/System Settings.app");
    EXPECT_EQ(Grouping::bundle("/Applications/X.app", ".app"), std::nullopt);
    EXPECT_EQ(Grouping::bundle("/opt/x.app/bin", ""), std::nullopt);
}

TEST(Grouping, RowsCarryNamesAndRunningFacts) {
    FakeAppBundles bundles;
    bundles.add("code-rows", "Visual Studio Code").path = "/rows/code.desktop";
    bundles.add("org.gnome.Nautilus-rows", "Files").path = "/rows/files.desktop";
    bundles.entries.back().id = "org.gnome.Nautilus";
    auto snap = snapshot({
        {.pid = 10, .name = "code", .startedAgo = 100, .footprint = 300, .group = "/rows/code.desktop"},
        {.pid = 11, .ppid = 10, .name = "code", .startedAgo = 500, .footprint = 200, .group = "/rows/code.desktop"},
        {.pid = 20, .name = "nautilus", .startedAgo = 50, .group = "/rows/files.desktop"},
        {.pid = 21, .name = "nautilus", .startedAgo = 80, .group = "/rows/files.desktop"},
        {.pid = 30, .name = "x", .group = "/rows/gone.desktop"},
    });
    RunningApp code = app(10, "/rows/code.desktop", "code", "Code");
    code.active = true;
    RunningApp other = app(12, "/rows/code.desktop", "code", "Second");
    RunningApps apps = {{10, code}, {12, other}};
    auto rows = Grouping::usage(snap, nullptr, apps, Grouping::keys(snap, apps, linuxTables), {}, linuxTables, bundles);
    ASSERT_EQ(rows.size(), 3u);

    const AppUsage& c = row(rows, "/rows/code.desktop");
    EXPECT_EQ(c.name, "VS Code"); // the friendly name beats the app's own
    EXPECT_EQ(c.bundleID, "code");
    EXPECT_EQ(c.mainPID, 10); // the first of two apps with one path
    EXPECT_TRUE(c.isFront);
    EXPECT_EQ(c.memory, 500);
    EXPECT_EQ(c.started, addSeconds(t0, -100)); // the main process's start, not the earliest
    EXPECT_DOUBLE_EQ(c.cores, 0);               // nothing to compare with yet

    const AppUsage& f = row(rows, "/rows/files.desktop");
    EXPECT_EQ(f.name, "Files"); // from the entry, with no running app
    EXPECT_EQ(f.bundleID, "org.gnome.Nautilus");
    EXPECT_FALSE(f.mainPID);
    EXPECT_EQ(f.started, addSeconds(t0, -80)); // the earliest of its processes
    EXPECT_FALSE(f.isFront);

    const AppUsage& g = row(rows, "/rows/gone.desktop");
    EXPECT_EQ(g.name, "gone"); // an entry that can't be read: its file name
    EXPECT_FALSE(g.bundleID);
}

TEST(Grouping, CoresBetweenSnapshots) {
    const uint64_t s = 1'000'000'000;
    auto before = snapshot({{.pid = 1, .name = "a", .cpuNanos = 10 * s},
                            {.pid = 2, .name = "b", .cpuNanos = 5 * s},
                            {.pid = 3, .name = "c", .startedAgo = 7200, .cpuNanos = 9 * s},
                            {.pid = 4, .name = "d", .cpuNanos = 4 * s}},
                           0);
    auto after = snapshot({{.pid = 1, .name = "a", .cpuNanos = 12 * s},          // 2 s over 2 s
                           {.pid = 2, .name = "b", .startedAgo = -1, .cpuNanos = 6 * s}, // pid re-used, born 1 s after t0
                           {.pid = 3, .name = "c", .cpuNanos = 8 * s},          // counter went back
                           {.pid = 4, .name = "d", .cpuNanos = 4 * s},
                           {.pid = 5, .name = "e", .startedAgo = -1.5, .cpuNanos = s / 2}, // born inside: 0.5 s of life
                           {.pid = 6, .name = "f", .startedAgo = 3600, .cpuNanos = 100 * s}}, // older, not seen before
                          2);
    auto keys = Grouping::keys(after, {}, linuxTables);
    auto rows = Grouping::usage(after, &before, {}, keys, {}, linuxTables, FakeAppBundles());
    EXPECT_DOUBLE_EQ(row(rows, "proc:a").cores, 1.0);
    EXPECT_DOUBLE_EQ(row(rows, "proc:b").cores, 0.0);
    EXPECT_DOUBLE_EQ(row(rows, "proc:c").cores, 0.0);
    EXPECT_DOUBLE_EQ(row(rows, "proc:d").cores, 0.0);
    EXPECT_DOUBLE_EQ(row(rows, "proc:e").cores, 1.0);
    EXPECT_DOUBLE_EQ(row(rows, "proc:f").cores, 0.0);
    EXPECT_EQ(row(rows, "proc:f").cpuNanos, 100 * s);

    // Too short an interval gives no figures, but memory and processes are right.
    auto close = after;
    close.date = addSeconds(before.date, 0.2);
    for (auto& r : Grouping::usage(close, &before, {}, keys, {}, linuxTables, FakeAppBundles())) EXPECT_DOUBLE_EQ(r.cores, 0);

    // Skipped processes are in no row.
    auto skipped = Grouping::usage(after, &before, {}, keys, {1, 5}, linuxTables, FakeAppBundles());
    EXPECT_EQ(skipped.size(), 4u);
    for (const auto& r : skipped) EXPECT_TRUE(r.id != "proc:a" && r.id != "proc:e");
}

TEST(Grouping, MachineBusy) {
    auto a = snapshot({});
    a.system.cpuBusy = 1000;
    a.system.cpuTotal = 4000;
    auto b = a;
    EXPECT_FALSE(Grouping::machineBusy(b, nullptr));
    EXPECT_FALSE(Grouping::machineBusy(b, &a)); // nothing moved
    b.system.cpuBusy = 1250;
    b.system.cpuTotal = 5000;
    EXPECT_DOUBLE_EQ(*Grouping::machineBusy(b, &a), 25.0);
    b.system.cpuBusy = 3000; // more busy than total: clamped
    EXPECT_DOUBLE_EQ(*Grouping::machineBusy(b, &a), 100.0);
    b.system.cpuBusy = 900;
    EXPECT_DOUBLE_EQ(*Grouping::machineBusy(b, &a), 0.0);
    b.system = {}; // a failed read after a good one is no measurement
    EXPECT_FALSE(Grouping::machineBusy(b, &a));
}

TEST(Grouping, EntryReadsAreCached) {
    FakeAppBundles bundles;
    bundles.add("cached.one", "Cached One").path = "/cache-test/one.desktop";
    EXPECT_EQ(Grouping::displayName("/cache-test/one.desktop", bundles), "Cached One");
    EXPECT_EQ(Grouping::bundleIdentifier("/cache-test/one.desktop", bundles), "cached.one");
    EXPECT_EQ(Grouping::bundleIdentifier("/cache-test/none.desktop", bundles), std::nullopt);
    const int reads = bundles.lookups;
    bundles.entries.clear(); // the entry changes on disk: the cache still answers
    EXPECT_EQ(Grouping::displayName("/cache-test/one.desktop", bundles), "Cached One");
    EXPECT_EQ(Grouping::bundleIdentifier("/cache-test/one.desktop", bundles), "cached.one");
    EXPECT_EQ(Grouping::bundleIdentifier("/cache-test/none.desktop", bundles), std::nullopt); // absence remembered
    EXPECT_EQ(bundles.lookups, reads);
}
