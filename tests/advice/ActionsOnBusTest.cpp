// The actions' requests as they reach programs on a real session bus (a private dbus-daemon):
// an app's own Quit, and the desktop's restart dialog.
#include "advice/Actions.h"
#include "platform/Layout.h"
#include "platform/linux/DesktopAppControl.h"
#include "platform/linux/SdSessionBus.h"
#include "support/BusService.h"
#include "support/FakeAppBundles.h"
#include "support/PrivateSession.h"

#include <gtest/gtest.h>

TEST(ActionsOnBus, AnAppIsAskedForItsOwnQuitOnlyWhileItHoldsItsName) {
    PrivateSession desktop;
    SKIP_WITHOUT_BUS(desktop);
    SdSessionBus session;
    FakeAppBundles bundles;
    DesktopEntry& editor = bundles.install("org.example.Text-Editor", "Text Editor", "/apps/org.example.Text-Editor.desktop");
    editor.dbusActivatable = true;
    const std::string entry = editor.path;
    DesktopAppControl control(bundles, session, {}, "/usr/bin:/bin");

    // Not running: nothing is asked, and nothing is started to be asked.
    EXPECT_FALSE(control.quitAction(entry));

    BusService app(desktop.bus.address, "org.example.Text-Editor");
    ASSERT_TRUE(app.ready());
    EXPECT_TRUE(control.quitAction(entry));
    auto got = app.received(1, 30);
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(got[0].path, "/org/example/Text_Editor");
    EXPECT_EQ(got[0].interface, "org.freedesktop.Application");
    EXPECT_EQ(got[0].method, "ActivateAction");
    EXPECT_EQ(got[0].signature, "sava{sv}");
    EXPECT_EQ(got[0].values, std::vector<BusValue>{BusValue::string("quit")});
}

TEST(ActionsOnBus, RestartOpensTheDialogOfTheDesktopThatAnswers) {
    PrivateSession desktop;
    SKIP_WITHOUT_BUS(desktop);
    SdSessionBus session;
    Actions::Context c;
    c.bus = &session;
    c.tables = Layout::host().actions;
    c.desktop = "ubuntu:GNOME";
    c.pause = [](double) {};

    EXPECT_EQ(Actions::restart(c),
              Actions::Outcome::failed("The system did not open its restart dialog. Use Restart in the system menu."));

    // The session says GNOME, but only Xfce's manager runs: it is the one asked.
    BusService xfce(desktop.bus.address, "org.xfce.SessionManager");
    ASSERT_TRUE(xfce.ready());
    EXPECT_TRUE(Actions::restart(c).isDone());
    auto got = xfce.received(1, 30);
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(got[0].path, "/org/xfce/SessionManager");
    EXPECT_EQ(got[0].interface, "org.xfce.Session.Manager");
    EXPECT_EQ(got[0].method, "Logout");
    // Show the dialog, and allow saving the session.
    EXPECT_EQ(got[0].values, (std::vector<BusValue>{BusValue::boolean(true), BusValue::boolean(true)}));
}
