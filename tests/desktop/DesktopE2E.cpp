// The real program on a desktop of the test's own (Xvfb, a private session bus, a notification
// server and a tray watcher played by the test), tried as a new user would try it.
#include "DesktopSession.h"

#include "app/BusReply.h"

#include "foundation/FS.h"
#include "foundation/SettingsStore.h"
#include "history/History.h"
#include "support/RunProgram.h"

#include <QDBusMessage>

#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include <sys/mount.h>
#include <unistd.h>

namespace {

std::string read(const std::string& path) { return FS::readText(path, 64 << 20).value_or(""); }

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

const std::string title = "Sorrelin";

} // namespace

TEST(DesktopE2E, OneCopyItsWindowItsTrayItemAndItsActions) {
    DesktopSession s;
    if (!s.missing().empty()) GTEST_SKIP() << s.missing();
    ASSERT_TRUE(s.serveNotifications());
    ASSERT_TRUE(s.serveTray());

    auto first = s.start();
    ASSERT_TRUE(first->started());
    // Started by hand: the window comes up, and the item is in the tray.
    ASSERT_TRUE(waitFor([&] { return s.visibleWindows(title) == 1; }, 20)) << s.log();
    ASSERT_TRUE(waitFor([&] { return !s.tray.registered.isEmpty(); }, 20)) << s.log();
    // A person clicks on what is drawn: the first frame is there before anything is pressed.
    ASSERT_TRUE(waitFor([&] { return contains(s.log(), "window first frame"); }, 20)) << s.log();
    EXPECT_EQ(s.tab(), QStringLiteral("home"));
    s.screenshot("window");
    {
        // The window draws in software: a GL driver (llvmpipe here, 64 MB) would stay resident
        // for as long as the program waits in the tray.
        std::ifstream maps("/proc/" + std::to_string(first->pid) + "/maps");
        std::string line, gl;
        while (std::getline(maps, line))
            if (line.find("/dri/") != std::string::npos || line.find("libLLVM") != std::string::npos)
                gl = line;
        EXPECT_EQ(gl, "") << "a GL driver is loaded";
    }

    // A click on the tray item opens the panel; a second one closes it.
    const QString item = s.tray.registered.first();
    auto click = [&] {
        QDBusMessage m = QDBusMessage::createMethodCall(item, QStringLiteral("/StatusNotifierItem"),
                                                        QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("Activate"));
        m << 1580 << 4;
        (void)BusReply::await(s.bus, m, 10000);
    };
    click();
    EXPECT_TRUE(waitFor([&] { return s.visibleWindows("Sorrelin panel") == 1; }, 20)) << s.log();
    s.screenshot("panel");
    click();
    EXPECT_TRUE(waitFor([&] { return s.visibleWindows("Sorrelin panel") == 0; }, 20)) << s.log();

    // Closing the window leaves the program running in the tray.
    // Under Xvfb with no window manager, a close request sent just as the panel's window is torn
    // down is now and then lost before it reaches the program; a person would click again.
    ASSERT_TRUE(waitFor([&] {
        s.closeWindows(title);
        return waitFor([&] { return s.visibleWindows(title) == 0; }, 3);
    }, 20)) << s.log();
    EXPECT_EQ(s.windowShown(), std::optional<bool>(false));
    EXPECT_TRUE(contains(s.log(), "window closed, back to menu bar only"));

    // A second start hands over to the first, whose window comes up again.
    auto second = s.start();
    EXPECT_EQ(second->waitExit(5), std::optional<int>(0));
    EXPECT_TRUE(waitFor([&] { return s.visibleWindows(title) == 1; }, 20));

    // The actions of the bus, and errors for calls that make no sense.
    EXPECT_EQ(s.activateAction("show-tab", {QStringLiteral("storage")}), QString());
    EXPECT_EQ(s.tab(), QStringLiteral("storage"));
    EXPECT_FALSE(s.activateAction("format-the-disk").isEmpty());
    EXPECT_FALSE(s.activateAction("show-tab", {42}).isEmpty());
    QDBusMessage typed = QDBusMessage::createMethodCall(QStringLiteral("app.sorrelin.Sorrelin"), QStringLiteral("/app/sorrelin/Sorrelin"),
                                                        QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
    typed << 7 << true;
    EXPECT_EQ(BusReply::await(s.bus, typed, 10000).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(s.tab(), QStringLiteral("storage")); // still there, still at Storage

    EXPECT_EQ(s.activateAction("quit"), QString());
    EXPECT_EQ(first->waitExit(20), std::optional<int>(0)) << s.log();
}

TEST(DesktopE2E, LowSpaceOnASmallVolumeAndItsAnswerOpensTheStorageTab) {
    TempTree scratch;
    const std::string point = scratch.dir("small-home");
    if (getuid() != 0 || ::mount("tmpfs", point.c_str(), "tmpfs", 0, "size=2g") != 0)
        GTEST_SKIP() << "a 2 GB tmpfs for the home folder needs root and mount rights";
    struct Unmount {
        std::string p;
        ~Unmount() { ::umount2(p.c_str(), MNT_DETACH); }
    } unmount{point};
    {
        DesktopSession s(point);
        if (!s.missing().empty()) GTEST_SKIP() << s.missing();
        ASSERT_TRUE(s.serveNotifications());
        // At login: no window until the user answers.
        auto program = s.start({"--background"});
        ASSERT_TRUE(waitFor([&] { return s.notifications.last("Only ") != nullptr; }, 60)) << s.log();
        const auto posted = *s.notifications.last("Only ");
        EXPECT_TRUE(posted.summary.contains(QStringLiteral(" free on "))) << posted.summary.toStdString();
        // An empty home has nothing worth clearing: the body sends the user to the storage map.
        EXPECT_EQ(posted.body, QStringLiteral("Click to see what is using the space."));
        EXPECT_TRUE(posted.actions.contains(QStringLiteral("default")));
        EXPECT_EQ(posted.hints.value(QStringLiteral("desktop-entry")).toString(), QStringLiteral("app.sorrelin.Sorrelin"));
        EXPECT_EQ(s.windowShown(), std::optional<bool>(false));

        s.notifications.press(posted.id, QStringLiteral("default"));
        EXPECT_TRUE(waitFor([&] { return s.windowShown() == std::optional<bool>(true); }, 20)) << s.log();
        EXPECT_EQ(s.tab(), QStringLiteral("storage"));
        EXPECT_EQ(s.activateAction("quit"), QString());
        EXPECT_EQ(program->waitExit(20), std::optional<int>(0));
    }
}

TEST(DesktopE2E, AtLoginNoWindowAndTheRestartReminderComesByItsOwnTimer) {
    DesktopSession s;
    if (!s.missing().empty()) GTEST_SKIP() << s.missing();
    // A server that shows no buttons.
    ASSERT_TRUE(s.serveNotifications({QStringLiteral("body")}));
    // A reminder set in an earlier run, a few seconds ahead.
    {
        History h(s.home() + "/.local/share/sorrelin");
        h.setRestartReminder(addSeconds(Clock::now(), 4));
    }
    auto program = s.start({"--background"});
    ASSERT_TRUE(waitFor([&] { return s.notifications.last("Restart your computer tonight?") != nullptr; }, 60)) << s.log();
    const auto reminder = *s.notifications.last("Restart your computer tonight?");
    EXPECT_TRUE(reminder.actions.isEmpty());
    EXPECT_TRUE(contains(reminder.body.toStdString(), "of swap on your disk. A restart empties it."));
    EXPECT_EQ(s.windowShown(), std::optional<bool>(false));
    EXPECT_EQ(s.visibleWindows(title), 0);
    EXPECT_TRUE(contains(s.log(), "launched, background: true"));

    // Answered after the program that posted it has quit: the next run does nothing with it.
    EXPECT_EQ(s.activateAction("quit"), QString());
    ASSERT_EQ(program->waitExit(20), std::optional<int>(0));
    {
        History h(s.home() + "/.local/share/sorrelin");
        h.setRestartReminder(std::nullopt);
    }
    auto again = s.start({"--background"});
    ASSERT_TRUE(waitFor([&] { return s.windowShown().has_value(); }, 30)) << s.log();
    s.notifications.press(reminder.id, QStringLiteral("default"));
    s.notifications.press(reminder.id, QStringLiteral("restart"));
    // The calls go out on the connection that sent the answers, so they arrive after them.
    EXPECT_EQ(s.windowShown(), std::optional<bool>(false));
    EXPECT_EQ(s.tab(), QStringLiteral("home"));
    again->signal(SIGTERM); // the session ends
    EXPECT_EQ(again->waitExit(20), std::optional<int>(0));
}

TEST(DesktopE2E, ARealNotificationDaemonShowsItAndItsClickOpensTheWindow) {
    if (access("/usr/bin/dunst", X_OK) != 0 || access("/usr/bin/dunstctl", X_OK) != 0) GTEST_SKIP() << "dunst is not installed";
    DesktopSession s;
    if (!s.missing().empty()) GTEST_SKIP() << s.missing();
    auto env = s.environment();
    Program dunst("/usr/bin/dunst", {}, env, s.home() + "/dunst.log");
    ASSERT_TRUE(waitFor([&] {
        return runProgram("/usr/bin/dunstctl", {"is-paused"}, env, 10).status == 0;
    }, 30));
    {
        History h(s.home() + "/.local/share/sorrelin");
        h.setRestartReminder(addSeconds(Clock::now(), 3));
    }
    auto program = s.start({"--background"});
    ASSERT_TRUE(waitFor([&] { return runProgram("/usr/bin/dunstctl", {"count", "displayed"}, env, 10).out == "1\n"; }, 60))
        << s.log();
    s.screenshot("dunst");
    // The click on the body: dunst's default action.
    runProgram("/usr/bin/dunstctl", {"action", "0"}, env, 10);
    EXPECT_TRUE(waitFor([&] { return s.windowShown() == std::optional<bool>(true); }, 20)) << s.log();
    EXPECT_EQ(s.tab(), QStringLiteral("home"));
    EXPECT_EQ(s.activateAction("quit"), QString());
    EXPECT_EQ(program->waitExit(20), std::optional<int>(0));
}

TEST(DesktopE2E, LoginItemOnceFromAnInstalledCopyNeverFromTheBuildFolder) {
    DesktopSession s;
    if (!s.missing().empty()) GTEST_SKIP() << s.missing();
    const std::string autostart = s.home() + "/.config/autostart/app.sorrelin.Sorrelin.desktop";
    const std::string settings = s.home() + "/.config/sorrelin/settings.json";

    // From the build folder: never.
    auto built = s.start({"--background"});
    ASSERT_TRUE(waitFor([&] { return s.windowShown().has_value(); }, 30)) << s.log();
    EXPECT_FALSE(std::filesystem::exists(autostart));
    EXPECT_EQ(s.activateAction("quit"), QString());
    ASSERT_EQ(built->waitExit(20), std::optional<int>(0));

    // Installed under ~/.local: the first start turns it on.
    const std::string prefix = s.home() + "/.local";
    ASSERT_EQ(runProgram(SORRELIN_CMAKE, {"--install", SORRELIN_BUILD, "--prefix", prefix}, {}, 300).status, 0);
    const std::string installed = prefix + "/bin/sorrelin";
    auto first = s.start({"--background"}, installed);
    ASSERT_TRUE(waitFor([&] { return std::filesystem::exists(autostart); }, 30)) << s.log();
    const std::string entry = read(autostart);
    EXPECT_TRUE(contains(entry, "\nExec=" + installed + " --background\n")) << entry;
    EXPECT_TRUE(contains(entry, "\nX-GNOME-Autostart-enabled=true\n")) << entry;
    EXPECT_TRUE(SettingsStore(settings).boolValue("loginItemOffered"));
    EXPECT_EQ(s.activateAction("quit"), QString());
    ASSERT_EQ(first->waitExit(20), std::optional<int>(0));

    // The user turned it off: the next start leaves it off.
    std::filesystem::remove(autostart);
    auto next = s.start({"--background"}, installed);
    ASSERT_TRUE(waitFor([&] { return s.windowShown().has_value(); }, 30)) << s.log();
    EXPECT_FALSE(std::filesystem::exists(autostart));
    EXPECT_EQ(s.activateAction("quit"), QString());
    EXPECT_EQ(next->waitExit(20), std::optional<int>(0));
}

TEST(DesktopE2E, WithoutASessionBusItStillRunsAndEndsWithTheSession) {
    DesktopSession s;
    if (!s.missing().empty()) GTEST_SKIP() << s.missing();
    auto program = s.start({}, SORRELIN_EXE, {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"}});
    ASSERT_TRUE(waitFor([&] { return s.visibleWindows(title) == 1; }, 30)) << s.log();
    EXPECT_TRUE(contains(s.log(), "no session bus"));
    program->signal(SIGTERM);
    EXPECT_EQ(program->waitExit(20), std::optional<int>(0));
}

TEST(DesktopE2E, ASnapshotOfTheWindowWhenAskedFor) {
    DesktopSession s;
    if (!s.missing().empty()) GTEST_SKIP() << s.missing();
    ASSERT_TRUE(s.serveTray());
    const std::string picture = s.home() + "/window.png";
    auto program = s.start({}, SORRELIN_EXE, {{"FENNELBOX_SNAPSHOT", picture}});
    ASSERT_TRUE(waitFor([&] { return contains(s.log(), "window snapshot written to " + picture); }, 40)) << s.log();
    // A PNG of the window itself, at the window's size, not of the screen.
    const std::string png = read(picture);
    ASSERT_GT(png.size(), 24u);
    EXPECT_EQ(png.substr(1, 3), "PNG");
    auto be32 = [&](size_t at) {
        return (uint32_t(uint8_t(png[at])) << 24) | (uint32_t(uint8_t(png[at + 1])) << 16) |
               (uint32_t(uint8_t(png[at + 2])) << 8) | uint32_t(uint8_t(png[at + 3]));
    };
    EXPECT_EQ(be32(16), 1060u);
    EXPECT_EQ(be32(20), 760u);
    EXPECT_EQ(s.activateAction("quit"), QString());
    EXPECT_EQ(program->waitExit(20), std::optional<int>(0));
}
