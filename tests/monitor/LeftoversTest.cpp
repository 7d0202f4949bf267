#include "monitor/Leftovers.h"

#include "MonitorFixtures.h"
#include "support/FakeAppBundles.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace fixtures;

namespace {

const Layout layout = Layout::linux("/home/ann");

// A node dev server in ~/proj, orphaned an hour and a half ago.
Proc server(int32_t pid) {
    return {.pid = pid, .ppid = 1, .name = "node", .exe = "/usr/bin/node", .startedAgo = 5400, .footprint = 1000};
}

std::vector<int32_t> roots(const std::vector<Leftover>& found) {
    std::vector<int32_t> out;
    for (const auto& l : found) out.push_back(l.id);
    return out;
}

} // namespace

TEST(Leftovers, Runtimes) {
    const auto& t = layout.monitor;
    EXPECT_TRUE(Leftovers::isRuntime(record({.name = "node", .exe = "/usr/bin/node"}), t));
    EXPECT_TRUE(Leftovers::isRuntime(record({.name = "python3.12"}), t)); // a versioned interpreter
    EXPECT_FALSE(Leftovers::isRuntime(record({.name = "python2.7"}), t));
    EXPECT_TRUE(Leftovers::isRuntime(record({.name = "MainThread", .exe = "/home/ann/.nvm/versions/node/v22/bin/node"}), t));
    EXPECT_TRUE(Leftovers::isRuntime(record({.name = "x", .exe = "/home/ann/.local/share/pnpm/pnpm"}), t));
    EXPECT_TRUE(Leftovers::isRuntime(record({.name = "x", .exe = "/home/linuxbrew/.linuxbrew/Cellar/node/22/bin/node"}), t));
    EXPECT_FALSE(Leftovers::isRuntime(record({.name = "Node", .exe = "/usr/bin/node"}), t)); // names are case-sensitive
    EXPECT_FALSE(Leftovers::isRuntime(record({.name = "bash", .exe = "/home/bob/.nvm/bash"}), t)); // another home
    const auto mac = Layout::macos("/Users/ann").monitor;
    EXPECT_TRUE(Leftovers::isRuntime(record({.name = "x", .exe = "/Users/ann/Library/pnpm/pnpm"}), mac));
    EXPECT_TRUE(Leftovers::isRuntime(record({.name = "x", .exe = "/opt/homebrew/Cellar/node/22/bin/node"}), mac));
}

TEST(Leftovers, EachTestInItsOrder) {
    FakeAppBundles bundles;
    bundles.add("claude", "Claude", "/opt/Claude/claude");
    FakeProbe probe;
    auto snap = snapshot({
        server(10),                                                       // a leftover
        {.pid = 11, .ppid = 500, .name = "node", .startedAgo = 5400},     // a child of a living parent
        {.pid = 12, .ppid = 1, .name = "node", .startedAgo = 5400},       // a managed service's process
        {.pid = 13, .ppid = 1, .name = "node", .startedAgo = 5400},       // a running app
        {.pid = 14, .ppid = 1, .name = "node", .exe = "/opt/Claude/resources/node", .startedAgo = 5400}, // inside an app
        {.pid = 15, .ppid = 1, .name = "bash", .exe = "/usr/bin/bash", .startedAgo = 5400},            // no runtime
        {.pid = 16, .ppid = 1, .name = "node", .startedAgo = 3599},       // not old enough
        {.pid = 17, .ppid = 1, .name = "node", .startedAgo = 5400},       // working outside home
        {.pid = 18, .ppid = 1, .name = "node", .startedAgo = 5400},       // working in home itself
        {.pid = 19, .ppid = 1, .name = "node", .startedAgo = 5400},       // folder unreadable
        {.pid = 20, .ppid = 1, .name = "node", .exe = "/opt/Claude/claude", .startedAgo = 5400}, // an app's own program
        {.pid = 500, .ppid = 1, .name = "zsh", .startedAgo = 5400},
    });
    for (int32_t pid : {10, 11, 12, 13, 14, 15, 16, 20}) probe.cwds[pid] = "/home/ann/proj";
    probe.cwds[17] = "/tmp/proj";
    probe.cwds[18] = "/home/ann";
    probe.services = {12};
    RunningApps apps = {{13, app(13, "/apps/x.desktop", "x")}};

    auto found = Leftovers::find(snap, apps, probe.services, 3600, probe, layout, bundles);
    EXPECT_EQ(roots(found), std::vector<int32_t>{10});
    // The folder is read only for those that passed the cheaper tests: 10, 17, 18 and 19.
    EXPECT_EQ(probe.cwdReads, 4);
    // Ports only for what passed every other test.
    EXPECT_EQ(probe.portReads, std::set<int32_t>{10});
}

TEST(Leftovers, AgeIsInclusiveAndTheServiceManagerAdopts) {
    FakeProbe probe;
    auto snap = snapshot({
        {.pid = 30, .ppid = 1, .name = "node", .startedAgo = 3600},
        {.pid = 31, .ppid = 1, .name = "node", .startedAgo = 3599},
        {.pid = 40, .ppid = 1, .name = "systemd", .exe = "/usr/lib/systemd/systemd"},
        {.pid = 41, .ppid = 40, .name = "python3", .startedAgo = 4000},
        {.pid = 50, .ppid = 1, .name = "systemd", .exe = "/usr/lib/systemd/systemd"}, // not the user's manager
        {.pid = 51, .ppid = 50, .name = "python3", .startedAgo = 4000},
    });
    for (int32_t pid : {30, 31, 41, 51}) probe.cwds[pid] = "/home/ann/app";
    probe.args[40] = {"/usr/lib/systemd/systemd", "--user"};
    probe.args[50] = {"/usr/lib/systemd/systemd", "--system"};
    auto found = Leftovers::find(snap, {}, {}, 3600, probe, layout, FakeAppBundles());
    EXPECT_EQ(roots(found), (std::vector<int32_t>{41, 30})); // oldest first
}

TEST(Leftovers, DescendantsCappedAndListenersDropTheGroup) {
    FakeProbe probe;
    std::vector<Proc> procs = {server(60)};
    for (int32_t i = 0; i < 250; ++i) procs.push_back({.pid = 1000 + i, .ppid = 60, .name = "esbuild", .footprint = 10});
    procs.push_back(server(70));
    procs.push_back({.pid = 71, .ppid = 70, .name = "sh"});
    procs.push_back({.pid = 72, .ppid = 71, .name = "vite"}); // a grandchild that serves
    procs.push_back(server(80));
    procs.push_back({.pid = 81, .ppid = 80, .name = "sh", .footprint = 5});
    procs.push_back({.pid = 82, .ppid = 81, .name = "esbuild", .footprint = 7});
    auto snap = snapshot(procs);
    for (int32_t pid : {60, 70, 80}) probe.cwds[pid] = "/home/ann/site";
    probe.ports[72] = {5173};

    auto found = Leftovers::find(snap, {}, {}, 3600, probe, layout, FakeAppBundles());
    ASSERT_EQ(roots(found), (std::vector<int32_t>{60, 80}));
    EXPECT_EQ(found[0].pids.size(), 201u); // the root and 200 descendants
    EXPECT_EQ(found[0].pids.front(), 60);
    EXPECT_EQ(found[0].memory, 1000 + 200 * 10);
    EXPECT_EQ(found[1].pids, (std::vector<int32_t>{80, 81, 82}));
    EXPECT_EQ(found[1].memory, 1000 + 5 + 7);
}

TEST(Leftovers, LabelCwdAndProject) {
    TempTree home;
    home.dir("code/shop/.git");
    home.dir("code/shop/web/src");
    const Layout here = Layout::linux(home.root());
    FakeProbe probe;
    auto snap = snapshot({server(90), server(91)});
    probe.cwds[90] = home.path("code/shop/web/src");
    probe.cwds[91] = home.path("scratch");
    probe.args[90] = {"node", home.path("code/shop/node_modules/.bin/vite"), "dev"};
    auto found = Leftovers::find(snap, {}, {}, 3600, probe, here, FakeAppBundles());
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].label, "vite dev");
    EXPECT_EQ(found[0].cwd, home.path("code/shop/web/src"));
    EXPECT_EQ(found[0].project, "shop"); // the git root
    EXPECT_EQ(found[0].started, addSeconds(t0, -5400));
    EXPECT_EQ(found[1].label, "node"); // arguments unreadable: the name
    EXPECT_EQ(found[1].project, "scratch");
}

TEST(Leftovers, Labels) {
    using Leftovers::label;
    EXPECT_EQ(label({"node", "/p/node_modules/.bin/vite", "dev"}, "node"), "vite dev");
    EXPECT_EQ(label({"node", "/p/node_modules/@angular/cli/bin/ng.js", "serve"}, "node"), "@angular/cli serve");
    EXPECT_EQ(label({"node", "/p/node_modules/.bin/"}, "node"), "node");
    EXPECT_EQ(label({"python3", "-u", "-m", "http.server", "8000"}, "python3"), "http.server");
    EXPECT_EQ(label({"python3", "-m"}, "python3"), "python3");
    EXPECT_EQ(label({"node", "server.js", "--port", "3000"}, "node"), "server 3000");
    EXPECT_EQ(label({"node", "/srv/app/server.mjs", "/srv/app/config.json"}, "node"), "server");
    EXPECT_EQ(label({"ruby", "bin/rails", "averyveryverylongargumentname", "s"}, "ruby"), "rails s");
    EXPECT_EQ(label({"node"}, "node"), "node");
    EXPECT_EQ(label({"node", "--inspect", "--trace-warnings"}, "node"), "node");
    EXPECT_EQ(label({"deno", ".hidden"}, "deno"), ".hidden");
}
