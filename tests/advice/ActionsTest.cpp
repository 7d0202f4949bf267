#include "advice/ActionFakes.h"
#include "advice/Actions.h"

#include <csignal>
#include <thread>

#include <gtest/gtest.h>

using fakes::at;

namespace {

AppUsage appOf(int32_t main, std::vector<int32_t> pids, double started, const std::string& id = "org.example.Editor") {
    AppUsage a;
    a.id = "/apps/" + id + ".desktop";
    a.name = "Editor";
    a.bundlePath = a.id;
    a.bundleID = id;
    a.mainPID = main;
    a.pids = std::move(pids);
    a.started = at(started);
    return a;
}

Leftover groupOf(std::vector<int32_t> pids) {
    Leftover l;
    l.id = pids.front();
    l.pids = std::move(pids);
    l.label = "vite dev";
    return l;
}

} // namespace

TEST(Actions, QuitByTheAppsOwnQuitOrItsWindowsSendsNoSignal) {
    fakes::World w;
    w.processes.start(100, 0);
    w.apps.action = true;
    w.apps.onAsk = [&] { w.processes.end(100); };
    auto c = w.context();
    EXPECT_EQ(Actions::quit(appOf(100, {100, 101}, 0), c), Actions::Outcome::done());
    EXPECT_EQ(w.apps.actionsAsked, 1);
    EXPECT_TRUE(w.apps.windowsAsked.empty());
    EXPECT_TRUE(w.processes.sent.empty());
    EXPECT_EQ(w.waited, 0);

    w.apps.action = false;
    w.apps.windows = 2;
    w.processes.start(100, 0);
    EXPECT_TRUE(Actions::quit(appOf(100, {100, 101}, 0), c).isDone());
    ASSERT_EQ(w.apps.windowsAsked.size(), 1u);
    EXPECT_EQ(w.apps.windowsAsked[0], (std::set<int32_t>{100, 101}));
    EXPECT_TRUE(w.processes.sent.empty());
}

TEST(Actions, QuitFallsBackToThePoliteSignalAndChromesQuitIsAnInterrupt) {
    fakes::World w;
    w.processes.start(100, 0);
    auto c = w.context();
    EXPECT_TRUE(Actions::quit(appOf(100, {100}, 0), c).isDone());
    EXPECT_EQ(w.processes.signalsTo(100), std::vector<int>{SIGTERM});
    EXPECT_EQ(w.apps.windowsAsked.size(), 1u);

    // Chrome's windows are not closed one by one: its interrupt is its Quit, session and all.
    w.apps.windows = 3;
    w.processes.start(200, 5);
    EXPECT_TRUE(Actions::quit(appOf(200, {200}, 5, "google-chrome"), c).isDone());
    EXPECT_EQ(w.processes.signalsTo(200), std::vector<int>{SIGINT});
    EXPECT_EQ(w.apps.windowsAsked.size(), 1u);
}

TEST(Actions, AnAppThatDoesNotQuitIsNeverForced) {
    fakes::World w;
    w.processes.start(100, 0, {}); // asks about unsaved work: no signal ends it
    auto c = w.context();
    EXPECT_EQ(Actions::quit(appOf(100, {100}, 0), c),
              Actions::Outcome::failed("Editor did not quit. It may be asking you something in its window."));
    EXPECT_EQ(w.processes.signalsTo(100), std::vector<int>{SIGTERM});
    EXPECT_NEAR(w.waited, 8.0, 1e-9);
    EXPECT_TRUE(w.processes.running.contains(100));
}

TEST(Actions, AnAppThatVanishedOrWhosePidWasReusedIsNotRunning) {
    fakes::World w;
    auto c = w.context();
    const auto gone = Actions::Outcome::failed("Editor is not running any more.");
    EXPECT_EQ(Actions::quit(appOf(100, {100}, 0), c), gone);
    AppUsage noMain = appOf(100, {100}, 0);
    noMain.mainPID.reset();
    EXPECT_EQ(Actions::quit(noMain, c), gone);
    // Another process now has the app's pid: it is not asked and not signalled.
    w.processes.start(100, 50);
    EXPECT_EQ(Actions::quit(appOf(100, {100}, 0), c), gone);
    EXPECT_EQ(w.apps.actionsAsked, 0);
    EXPECT_TRUE(w.apps.windowsAsked.empty());
    EXPECT_TRUE(w.processes.sent.empty());
}

TEST(Actions, TheSettingsHelpersThatOutliveTheirWindowGetThePoliteSignal) {
    fakes::World w;
    auto c = w.context();
    c.settingsPath = "/apps/settings.desktop";
    c.settingsHelpers = {"/panels/"};
    AppUsage settings = appOf(100, {100, 101, 102, 103}, 0);
    settings.bundlePath = c.settingsPath;
    w.processes.start(100, 0);
    w.processes.start(101, 1);
    w.processes.start(102, 2);
    w.processes.start(103, 3);
    w.processes.paths = {{101, "/usr/lib/settings/panels/network"}, {102, "/usr/lib/settings/panels/sound"},
                         {103, "/usr/lib/settings/daemon"}};
    // The sound panel's pid is given to another process while the app quits.
    w.onPause = [&](double s) {
        if (s == 1.5) w.processes.reuse(102);
    };
    EXPECT_TRUE(Actions::quit(settings, c).isDone());
    EXPECT_EQ(w.processes.signalsTo(101), std::vector<int>{SIGTERM});
    EXPECT_TRUE(w.processes.signalsTo(102).empty());
    EXPECT_TRUE(w.processes.signalsTo(103).empty());
}

TEST(Actions, RelaunchWaitsForEveryProcessThenOpensWithTheTabs) {
    fakes::World w;
    auto c = w.context();
    w.processes.start(100, 0);
    w.processes.start(101, 1, {});
    AppUsage chrome = appOf(100, {100, 101}, 0, "google-chrome");
    int pausesAfterMain = 0;
    w.onPause = [&](double) {
        if (!w.processes.running.contains(100) && ++pausesAfterMain == 3) w.processes.end(101); // a renderer ends late
    };
    w.apps.onOpen = [&] { EXPECT_FALSE(w.processes.running.contains(101)) << "opened before the old one had ended"; };
    w.apps.windows = 2;
    EXPECT_EQ(Actions::relaunch(chrome, c), Actions::Outcome::done());
    EXPECT_TRUE(w.apps.windowsAsked.empty());
    EXPECT_EQ(w.processes.signalsTo(100), std::vector<int>{SIGINT});
    ASSERT_EQ(w.apps.opened.size(), 1u);
    EXPECT_EQ(w.apps.opened[0].first, chrome.id);
    EXPECT_EQ(w.apps.opened[0].second, std::vector<std::string>{"--restore-last-session"});
}

TEST(Actions, RelaunchFailures) {
    fakes::World w;
    auto c = w.context();
    AppUsage noPath = appOf(100, {100}, 0);
    noPath.bundlePath.reset();
    w.processes.start(100, 0);
    EXPECT_EQ(Actions::relaunch(noPath, c), Actions::Outcome::failed("Editor is not running any more."));
    EXPECT_TRUE(w.processes.sent.empty());

    // Its program was removed while it ran.
    w.apps.openProblem = "No such file or directory";
    EXPECT_EQ(Actions::relaunch(appOf(100, {100}, 0), c),
              Actions::Outcome::failed("Editor quit but did not open again: No such file or directory"));

    // A page asks about unsaved changes: after 20 seconds it is left as it is, and not opened again.
    w.apps.opened.clear();
    w.waited = 0;
    w.processes.start(200, 0, {});
    EXPECT_EQ(Actions::relaunch(appOf(200, {200}, 0), c),
              Actions::Outcome::failed("Editor did not quit. A page may be asking about unsaved changes."));
    EXPECT_NEAR(w.waited, 20.0, 1e-9);
    EXPECT_TRUE(w.apps.opened.empty());
}

TEST(Actions, StopIsPoliteThenFirmChildrenFirst) {
    fakes::World w;
    auto c = w.context();
    w.processes.start(10, 0);          // the root
    w.processes.start(11, 1, {SIGKILL}); // a child that ignores SIGTERM
    w.processes.start(12, 2);
    EXPECT_EQ(Actions::stop({groupOf({10, 11, 12})}, c), 3);
    EXPECT_EQ(w.processes.sent, (std::vector<std::pair<int32_t, int>>{{12, SIGTERM}, {11, SIGTERM}, {10, SIGTERM}, {11, SIGKILL}}));
    EXPECT_NEAR(w.waited, 2.3, 1e-9);
}

TEST(Actions, StopCountsChildrenThatEndWithTheirRoot) {
    fakes::World w;
    auto c = w.context();
    w.processes.start(10, 0, {});
    w.processes.start(11, 1, {});
    // The root ends on its own while the signals go out, and its child with it.
    w.onPause = [&](double) {
        w.processes.end(10);
        w.processes.end(11);
    };
    EXPECT_EQ(Actions::stop({groupOf({10, 11})}, c), 2);
    for (const auto& [pid, signal] : w.processes.sent) EXPECT_NE(signal, SIGKILL) << pid;
}

TEST(Actions, AReusedPidIsNeverSignalled) {
    fakes::World w;
    auto c = w.context();
    w.processes.start(10, 0);
    w.processes.start(11, 1, {});
    w.processes.start(12, 2, {});
    // 11 ends and its pid goes to another process right after it was noted; 12 likewise during
    // the wait for the polite stop.
    w.processes.onRead = [&](int32_t pid, int reads) {
        if (pid == 11 && reads == 1) w.processes.reuse(11);
    };
    w.onPause = [&](double s) {
        if (s == 2.0) w.processes.reuse(12);
    };
    EXPECT_EQ(Actions::stop({groupOf({10, 11, 12})}, c), 3);
    EXPECT_TRUE(w.processes.signalsTo(11).empty());
    EXPECT_EQ(w.processes.signalsTo(12), std::vector<int>{SIGTERM});
    EXPECT_EQ(w.processes.signalsTo(10), std::vector<int>{SIGTERM});
}

TEST(Actions, StopOfGroupsThatHaveAllEndedIsZeroWithoutASignal) {
    fakes::World w;
    auto c = w.context();
    EXPECT_EQ(Actions::stop({groupOf({10, 11}), groupOf({20})}, c), 0);
    EXPECT_EQ(w.processes.holds, 0);
    EXPECT_EQ(w.waited, 0);
}

TEST(Actions, RestartAsksTheRunningDesktopFirstAndNeverRestartsByItself) {
    fakes::World w;
    auto c = w.context();
    c.desktop = "ubuntu:GNOME";
    w.bus.owners = {"org.gnome.SessionManager", "org.kde.LogoutPrompt"};
    EXPECT_EQ(Actions::restart(c), Actions::Outcome::done());
    EXPECT_EQ(w.bus.methodsCalled(), std::vector<std::string>{"org.gnome.SessionManager.Reboot"});

    w.bus.calls.clear();
    c.desktop = "KDE";
    EXPECT_TRUE(Actions::restart(c).isDone());
    EXPECT_EQ(w.bus.methodsCalled(), std::vector<std::string>{"org.kde.LogoutPrompt.promptReboot"});

    // A dialog that refuses: the next desktop's is asked.
    w.bus.calls.clear();
    w.bus.refusing = {"org.kde.LogoutPrompt"};
    EXPECT_TRUE(Actions::restart(c).isDone());
    EXPECT_EQ(w.bus.methodsCalled(),
              (std::vector<std::string>{"org.kde.LogoutPrompt.promptReboot", "org.gnome.SessionManager.Reboot"}));
}

TEST(Actions, RestartWithoutADialogOrABusSaysSo) {
    const auto refused =
        Actions::Outcome::failed("The system did not open its restart dialog. Use Restart in the system menu.");
    fakes::World w;
    auto c = w.context();
    EXPECT_EQ(Actions::restart(c), refused);
    EXPECT_TRUE(w.bus.methodsCalled().empty()); // nothing that isn't running is asked
    w.bus.present = false;
    EXPECT_EQ(Actions::restart(c), refused);
    c.bus = nullptr;
    EXPECT_EQ(Actions::restart(c), refused);
}

TEST(Actions, PretendModeTouchesNothing) {
    fakes::World w;
    w.processes.start(100, 0);
    w.processes.start(10, 0);
    auto c = w.context();
    c.dryRun = {true, false};
    EXPECT_TRUE(Actions::quit(appOf(100, {100}, 0), c).isDone());
    EXPECT_NEAR(w.waited, 1.1, 1e-9);
    EXPECT_TRUE(Actions::relaunch(appOf(100, {100}, 0), c).isDone());
    EXPECT_EQ(Actions::stop({groupOf({10, 11}), groupOf({12})}, c), 3);
    EXPECT_TRUE(Actions::restart(c).isDone());
    EXPECT_NEAR(w.waited, 1.1 + 2.2 + 2.0, 1e-9);

    c.dryRun = {true, true};
    EXPECT_EQ(Actions::quit(appOf(100, {100}, 0), c), Actions::Outcome::failed("Editor did not quit (dry run)."));
    EXPECT_EQ(Actions::relaunch(appOf(100, {100}, 0), c), Actions::Outcome::failed("Editor did not quit (dry run)."));
    EXPECT_EQ(Actions::stop({groupOf({10})}, c), 0);
    EXPECT_EQ(Actions::restart(c),
              Actions::Outcome::failed("The system did not open its restart dialog (dry run)."));

    EXPECT_EQ(w.processes.holds, 0);
    EXPECT_TRUE(w.processes.sent.empty());
    EXPECT_EQ(w.apps.actionsAsked, 0);
    EXPECT_TRUE(w.apps.windowsAsked.empty());
    EXPECT_TRUE(w.apps.opened.empty());
    EXPECT_TRUE(w.bus.calls.empty());
}

TEST(Actions, TheLaterFormsRunOffTheCallersThread) {
    fakes::World w;
    w.processes.start(100, 0, {});
    auto c = w.context();
    const auto caller = std::this_thread::get_id();
    std::thread::id worker;
    c.pause = [&](double) { worker = std::this_thread::get_id(); };
    auto future = Actions::quitLater(appOf(100, {100}, 0), c);
    ASSERT_EQ(future.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    EXPECT_EQ(future.get().text, "Editor did not quit. It may be asking you something in its window.");
    EXPECT_NE(worker, caller);
    auto stopped = Actions::stopLater({groupOf({500})}, c);
    ASSERT_EQ(stopped.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    EXPECT_EQ(stopped.get(), 0);
}
