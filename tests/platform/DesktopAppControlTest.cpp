#include "platform/linux/DesktopAppControl.h"

#include "advice/ActionFakes.h"
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/linux/Detached.h"
#include "platform/linux/ProcText.h"
#include "support/FakeAppBundles.h"
#include "support/TempTree.h"

#include <signal.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

struct Desktop {
    FakeAppBundles bundles;
    fakes::Bus bus;
    std::vector<std::set<int32_t>> windowsClosed;
    int windows = 0; // how many windows each close finds
    DesktopAppControl control{bundles, bus,
                              [this](const std::set<int32_t>& pids) {
                                  windowsClosed.push_back(pids);
                                  return windows;
                              },
                              "/usr/bin:/bin"};
};

// What /proc says of a process: its parent, its session, its working folder and environment.
struct Seen {
    int32_t ppid = 0;
    int32_t session = 0;
    std::string cwd;
    std::string environ;
};
Seen see(int32_t pid) {
    Seen s;
    const std::string base = "/proc/" + std::to_string(pid);
    if (auto stat = FS::readText(base + "/stat")) {
        auto close = stat->rfind(')');
        auto fields = Text::split(stat->substr(close + 2), ' ');
        if (fields.size() > 3) {
            s.ppid = std::atoi(fields[1].c_str());
            s.session = std::atoi(fields[3].c_str());
        }
    }
    char buf[4096] = {};
    if (readlink((base + "/cwd").c_str(), buf, sizeof buf - 1) > 0) s.cwd = buf;
    s.environ = FS::readText(base + "/environ").value_or("");
    return s;
}

} // namespace

TEST(DesktopAppControl, TheAppsOwnQuitWhenItOffersOneAndRuns) {
    Desktop d;
    DesktopEntry& calc = d.bundles.install("org.gnome.Calculator", "Calculator", "/apps/org.gnome.Calculator.desktop");
    calc.dbusActivatable = true;
    const std::string path = calc.path;
    // Not running on the bus: it is not started just to be told to quit.
    EXPECT_FALSE(d.control.quitAction(path));
    EXPECT_TRUE(d.bus.methodsCalled().empty());

    d.bus.owners = {"org.gnome.Calculator"};
    EXPECT_TRUE(d.control.quitAction(path));
    ASSERT_EQ(d.bus.methodsCalled(), std::vector<std::string>{"org.gnome.Calculator.ActivateAction"});
    const BusCall& call = d.bus.calls.back();
    EXPECT_EQ(call.path, "/org/gnome/Calculator");
    EXPECT_EQ(call.interface, "org.freedesktop.Application");
    EXPECT_EQ(call.args, (std::vector<BusValue>{BusValue::string("quit"), BusValue::emptyArray("v"), BusValue::emptyDict("sv")}));

    // Running, but the action fails; an entry without bus activation; no entry at all.
    d.bus.refusing = {"org.gnome.Calculator"};
    EXPECT_FALSE(d.control.quitAction(path));
    d.bundles.install("xterm", "XTerm", "/apps/xterm.desktop");
    d.bus.owners.insert("xterm");
    EXPECT_FALSE(d.control.quitAction(std::string("/apps/xterm.desktop")));
    EXPECT_FALSE(d.control.quitAction(std::nullopt));
    EXPECT_TRUE(d.windowsClosed.empty());
}

TEST(DesktopAppControl, WindowsAreClosedThroughTheWindowManager) {
    Desktop d;
    d.windows = 2;
    EXPECT_EQ(d.control.closeWindows({20, 21}), 2);
    EXPECT_EQ(d.windowsClosed.back(), (std::set<int32_t>{20, 21}));
    EXPECT_EQ(d.control.closeWindows({}), 0);
    EXPECT_EQ(d.windowsClosed.size(), 1u);
}

TEST(DesktopAppControl, EntryLinesAndObjectPaths) {
    EXPECT_EQ(DesktopAppControl::objectPath("org.gnome.Calculator"), "/org/gnome/Calculator");
    EXPECT_EQ(DesktopAppControl::objectPath("org.example.my-app"), "/org/example/my_app");
    DesktopEntry flatpak;
    flatpak.exec = {"/usr/bin/flatpak", "run", "--branch=stable", "--command=chrome", "com.google.Chrome", "@@u", "@@"};
    EXPECT_EQ(DesktopAppControl::commandLine(flatpak, {"--restore-last-session"}),
              (std::vector<std::string>{"/usr/bin/flatpak", "run", "--branch=stable", "--command=chrome",
                                        "com.google.Chrome", "--restore-last-session"}));
    EXPECT_TRUE(DesktopAppControl::commandLine(DesktopEntry{}, {"--x"}).empty());
}

TEST(DesktopAppControl, OpeningWhatIsGoneSaysWhy) {
    Desktop d;
    EXPECT_EQ(d.control.open("/apps/nothing.desktop", {}), "its desktop entry is gone");
    d.bundles.install("empty", "Empty", "/apps/empty.desktop");
    EXPECT_EQ(d.control.open("/apps/empty.desktop", {}), "its desktop entry names no program");
    d.bundles.install("gone", "Gone", "/apps/gone.desktop").exec = {"/opt/gone/browser", "%U"};
    EXPECT_EQ(d.control.open("/apps/gone.desktop", {"--restore-last-session"}), "No such file or directory");
    d.bundles.install("bare", "Bare", "/apps/bare.desktop").exec = {"no-such-program-anywhere"};
    EXPECT_EQ(d.control.open("/apps/bare.desktop", {}), "No such file or directory");
}

TEST(Detached, StartsApartFromThisProgramAndWithoutTakingTheFocus) {
    setenv("DESKTOP_STARTUP_ID", "sorrelin-test_TIME0", 1);
    auto started = Detached::start("sleep", {"sleep", "600"}, "/usr/bin:/bin");
    unsetenv("DESKTOP_STARTUP_ID");
    ASSERT_TRUE(started.pid) << started.problem.value_or("");
    EXPECT_FALSE(started.problem);
    const int32_t pid = *started.pid;
    Seen s = see(pid);
    kill(pid, SIGKILL);
    EXPECT_NE(s.ppid, getpid());
    EXPECT_NE(s.session, getsid(0));
    EXPECT_EQ(s.cwd, FS::home());
    EXPECT_EQ(s.environ.find("DESKTOP_STARTUP_ID"), std::string::npos);
    EXPECT_NE(s.environ.find("PATH="), std::string::npos);

    auto missing = Detached::start("/nowhere/browser", {"browser"}, "/usr/bin");
    EXPECT_FALSE(missing.pid);
    EXPECT_EQ(missing.problem, "No such file or directory");
    TempTree t;
    auto notRunnable = Detached::start(t.text("not-a-program", "x"), {"x"}, "/usr/bin");
    EXPECT_FALSE(notRunnable.pid);
    EXPECT_EQ(notRunnable.problem, "Permission denied");
}
