// The front app and window closing over xcb, against a private Xvfb on which a client of the
// test's own plays the apps and their window manager.
#include "platform/linux/X11Display.h"

#include "foundation/FS.h"
#include "support/DeskClient.h"
#include "support/PrivateServers.h"
#include "support/ScopedEnv.h"
#include "support/TempTree.h"

#include <signal.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <future>

namespace {

constexpr auto generous = std::chrono::seconds(30);

// A reading made on a thread of its own, so that a hang fails the test instead of stalling it.
std::optional<std::optional<int32_t>> readApart(X11Display& display) {
    auto reading = std::async(std::launch::async, [&display] { return display.activePid(); });
    if (reading.wait_for(generous) != std::future_status::ready) return std::nullopt;
    return reading.get();
}

// Reads until the pid comes, for a server that is still coming back.
std::optional<int32_t> readUntil(X11Display& display, int32_t pid) {
    std::optional<int32_t> got;
    const auto end = std::chrono::steady_clock::now() + generous;
    while ((got = display.activePid()) != pid && std::chrono::steady_clock::now() < end) usleep(50'000);
    return got;
}

} // namespace

#define NEED_DISPLAY(display) \
    if ((display).name.empty()) GTEST_SKIP() << "Xvfb could not be started: is it installed?"

TEST(X11Display, TheFrontAppIsThePidOfTheActiveWindow) {
    PrivateDisplay server;
    NEED_DISPLAY(server);
    DeskClient desk(server.name);
    ASSERT_TRUE(desk.connected());
    X11Display display(server.name);

    const uint32_t editor = desk.window(4242), shell = desk.window(777), bare = desk.window(std::nullopt);
    desk.setActive(editor);
    desk.sync();
    EXPECT_EQ(display.activePid(), 4242);
    desk.setActive(shell);
    desk.sync();
    EXPECT_EQ(display.activePid(), 777);

    // Nothing to tell: a window without a pid, no active window, one that has gone, a pid of
    // the wrong kind, a pid of 0.
    desk.setActive(bare);
    desk.sync();
    EXPECT_FALSE(display.activePid());
    desk.setActive(0);
    desk.sync();
    EXPECT_FALSE(display.activePid());
    const uint32_t gone = desk.window(55);
    desk.setActive(gone);
    desk.destroy(gone);
    desk.sync();
    EXPECT_FALSE(display.activePid());
    desk.setText(bare, "_NET_WM_PID", "4242");
    desk.setActive(bare);
    desk.sync();
    EXPECT_FALSE(display.activePid());
    desk.set(bare, "_NET_WM_PID", "CARDINAL", {0});
    desk.sync();
    EXPECT_FALSE(display.activePid());
    // The root without the property, as before any window manager ran.
    desk.remove(desk.root(), "_NET_ACTIVE_WINDOW");
    desk.sync();
    EXPECT_FALSE(display.activePid());

    desk.setActive(editor);
    desk.sync();
    EXPECT_EQ(display.activePid(), 4242);
    // One connection served every reading.
    EXPECT_EQ(display.connections(), 1);
}

TEST(X11Display, CloseRequestsGoToEveryWindowOfTheAppAndToNoOther) {
    PrivateDisplay server;
    NEED_DISPLAY(server);
    DeskClient desk(server.name);
    ASSERT_TRUE(desk.connected());
    ASSERT_TRUE(desk.manage());
    const uint32_t a1 = desk.window(4242), other = desk.window(777), a2 = desk.window(4243), a3 = desk.window(4242),
                   bare = desk.window(std::nullopt);
    desk.setClients({a1, other, a2, bare, a3});
    desk.sync();
    X11Display display(server.name);

    EXPECT_EQ(display.closeWindows({4242, 4243}), 3);
    // Requests arrive in order: the later one for 777 closes the list, so nothing else came between.
    EXPECT_EQ(display.closeWindows({777}), 1);
    EXPECT_EQ(desk.closeRequests(4, 30), (std::vector<uint32_t>{a1, a2, a3, other}));

    EXPECT_EQ(display.closeWindows({}), 0);
    EXPECT_EQ(display.closeWindows({9999}), 0);
    // A window manager that keeps no list: nothing to close.
    desk.remove(desk.root(), "_NET_CLIENT_LIST");
    desk.sync();
    EXPECT_EQ(display.closeWindows({4242}), 0);
    EXPECT_EQ(display.connections(), 1);
}

TEST(X11Display, NoServerAndAServerElsewhereGiveTheNeutralAnswer) {
    X11Display none(std::nullopt);
    EXPECT_FALSE(none.activePid());
    EXPECT_EQ(none.closeWindows({1}), 0);
    EXPECT_EQ(none.connections(), 0);
    // Another machine's pids are not this machine's: never asked.
    X11Display remote("desk.example:0");
    EXPECT_FALSE(remote.activePid());
    EXPECT_EQ(remote.connections(), 0);

    int freeNumber = -1;
    {
        PrivateDisplay server;
        NEED_DISPLAY(server);
        freeNumber = server.number;
    }
    X11Display nobody(":" + std::to_string(freeNumber));
    auto read = readApart(nobody);
    ASSERT_TRUE(read) << "a reading of a display without a server did not end";
    EXPECT_FALSE(*read);
    EXPECT_EQ(nobody.closeWindows({1}), 0);

    using D = X11Display;
    EXPECT_EQ(D::sessionDisplay("x11", nullptr, ":0"), ":0");
    EXPECT_EQ(D::sessionDisplay(nullptr, nullptr, ":1.0"), ":1.0");
    EXPECT_EQ(D::sessionDisplay("tty", nullptr, ":0"), ":0"); // an X server started from a console
    EXPECT_EQ(D::sessionDisplay("x11", "wayland-0", ":0"), ":0");
    // Wayland with XWayland: its X server knows only its own clients' windows.
    EXPECT_FALSE(D::sessionDisplay("wayland", "wayland-0", ":0"));
    EXPECT_FALSE(D::sessionDisplay(nullptr, "wayland-0", ":0"));
    EXPECT_FALSE(D::sessionDisplay("wayland", "wayland-0", nullptr));
    EXPECT_FALSE(D::sessionDisplay("x11", nullptr, ""));
}

TEST(X11Display, AServerThatGoesAwayBetweenSamplesIsReachedAgainWhenItIsBack) {
    auto server = std::make_unique<PrivateDisplay>();
    NEED_DISPLAY(*server);
    const int number = server->number;
    X11Display display(server->name);
    {
        DeskClient desk(server->name);
        desk.setActive(desk.window(4242));
        desk.sync();
        EXPECT_EQ(display.activePid(), 4242);
    }
    server->stop();
    auto read = readApart(display);
    ASSERT_TRUE(read);
    EXPECT_FALSE(*read);
    EXPECT_EQ(display.closeWindows({4242}), 0);

    server = std::make_unique<PrivateDisplay>(number);
    ASSERT_FALSE(server->name.empty()) << "the display number was not free again";
    DeskClient desk(server->name);
    desk.setActive(desk.window(5151));
    desk.sync();
    EXPECT_EQ(readUntil(display, 5151), 5151);
    EXPECT_GE(display.connections(), 2);
}

TEST(X11Display, AServerThatStopsAnsweringHoldsNoReadingAndIsReadAgainWhenItWakes) {
    PrivateDisplay server;
    NEED_DISPLAY(server);
    DeskClient desk(server.name);
    desk.setActive(desk.window(4242));
    desk.sync();
    X11Display display(server.name);
    EXPECT_EQ(display.activePid(), 4242);

    ASSERT_EQ(kill(server.pid, SIGSTOP), 0);
    // Stuck in a reply, and stuck in the greeting of a new connection.
    auto read = readApart(display);
    X11Display fresh(server.name);
    auto freshRead = readApart(fresh);
    auto again = readApart(fresh);
    kill(server.pid, SIGCONT);
    ASSERT_TRUE(read) << "a reading waited on a stopped server";
    EXPECT_FALSE(*read);
    ASSERT_TRUE(freshRead) << "a new connection waited on a stopped server";
    EXPECT_FALSE(*freshRead);
    ASSERT_TRUE(again);
    EXPECT_FALSE(*again);
    // Only one greeting was waited for: the second reading did not start another.
    EXPECT_EQ(fresh.connections(), 1);

    EXPECT_EQ(readUntil(display, 4242), 4242);
    EXPECT_EQ(readUntil(fresh, 4242), 4242);
}

TEST(X11Display, AServerThatWantsACookieGetsTheOneInXauthority) {
    char host[256] = {};
    ASSERT_EQ(gethostname(host, sizeof host - 1), 0);
    TempTree t;
    // The server's own list: any display number, as xauth would add it before the start.
    const std::string serverAuth = t.text("server-auth", xauthorityEntry(host, 0, "0123456789abcdef"));
    PrivateDisplay server(std::nullopt, serverAuth);
    NEED_DISPLAY(server);
    const std::string good = t.text("good", xauthorityEntry(host, server.number, "0123456789abcdef"));
    const std::string wrong = t.text("wrong", xauthorityEntry(host, server.number, "fedcba9876543210"));
    {
        ScopedEnv auth("XAUTHORITY", good);
        DeskClient desk(server.name);
        ASSERT_TRUE(desk.connected());
        desk.setActive(desk.window(4242));
        desk.sync();
        X11Display display(server.name);
        EXPECT_EQ(display.activePid(), 4242);
    }
    ScopedEnv auth("XAUTHORITY", wrong);
    X11Display refused(server.name);
    auto read = readApart(refused);
    ASSERT_TRUE(read);
    EXPECT_FALSE(*read);
}
