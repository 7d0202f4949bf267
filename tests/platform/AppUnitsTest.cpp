#include "platform/linux/AppUnits.h"

#include "support/FakeAppBundles.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> ids(std::string_view unit) {
    auto u = AppUnits::parse(unit);
    return u ? u->ids : std::vector<std::string>{};
}

const std::string userApps = "/user.slice/user-1000.slice/user@1000.service/app.slice/";

} // namespace

TEST(AppUnits, GnomeScopesUnescapeAfterSplitting) {
    EXPECT_EQ(ids("app-gnome-org.gnome.Nautilus-4242.scope")[0], "org.gnome.Nautilus");
    // The escaped dash is part of the id, not a separator.
    EXPECT_EQ(ids("app-gnome-google\\x2dchrome-5678.scope")[0], "google-chrome");
    EXPECT_EQ(ids("app-gnome-org.gnome.Terminal\\x2dPreferences-99.scope")[0], "org.gnome.Terminal-Preferences");
}

TEST(AppUnits, LaunchPidOfAScope) {
    EXPECT_EQ(AppUnits::parse("app-gnome-org.gnome.Nautilus-4242.scope")->launchPid, 4242);
    EXPECT_EQ(AppUnits::parse("app-flatpak-org.mozilla.firefox-12345.scope")->launchPid, 12345);
    EXPECT_FALSE(AppUnits::parse("app-org.kde.dolphin-8d0e5c1f04a04f5c9d6fd3c2b2a0f1e7.scope")->launchPid);
    EXPECT_FALSE(AppUnits::parse("app-org.kde.konsole@123.service")->launchPid);
}

TEST(AppUnits, KdeServicesAndScopes) {
    EXPECT_EQ(ids("app-org.kde.konsole@3f2a9c.service"), std::vector<std::string>{"org.kde.konsole"});
    EXPECT_EQ(ids("app-org.kde.dolphin-8d0e5c1f04a04f5c9d6fd3c2b2a0f1e7.scope")[0], "org.kde.dolphin");
    EXPECT_EQ(ids("app-org.kde.dolphin-8d0e5c1f-04a0-4f5c-9d6f-d3c2b2a0f1e7.scope")[0], "org.kde.dolphin");
    // A launcher before the id of a service.
    EXPECT_EQ(ids("app-gnome-org.gnome.Evolution@abc.service")[0], "org.gnome.Evolution");
    auto autostart = AppUnits::parse("app-org.kde.kdeconnect.daemon@autostart.service");
    ASSERT_TRUE(autostart);
    EXPECT_TRUE(autostart->autostart);
    EXPECT_EQ(autostart->ids[0], "org.kde.kdeconnect.daemon");
    EXPECT_FALSE(AppUnits::parse("app-org.kde.konsole@x.service")->autostart);
    EXPECT_EQ(ids("app-gnome\\x2dkeyring\\x2dssh@autostart.service")[0], "gnome-keyring-ssh");
}

TEST(AppUnits, FlatpakSnapAndDbus) {
    EXPECT_EQ(ids("app-flatpak-org.mozilla.firefox-12345.scope")[0], "org.mozilla.firefox");
    auto snap = ids("snap.spotify.spotify-0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d.scope");
    ASSERT_FALSE(snap.empty());
    EXPECT_EQ(snap[0], "spotify_spotify");
    EXPECT_EQ(ids("snap.firefox.geckodriver-1234.scope")[0], "firefox_geckodriver");
    EXPECT_EQ(ids("dbus-:1.2-org.gnome.Terminal@0.service"), std::vector<std::string>{"org.gnome.Terminal"});
    EXPECT_EQ(ids("app-dbus\\x2d:1.2\\x2dorg.gnome.Terminal.slice"), std::vector<std::string>{"org.gnome.Terminal"});
    EXPECT_EQ(ids("app-org.gnome.Terminal.slice"), std::vector<std::string>{"org.gnome.Terminal"});
}

TEST(AppUnits, UnitsThatNameNoApp) {
    for (const char* unit : {"app.slice", "session-2.scope", "init.scope", "pipewire.service", "vte-spawn-1b2c.scope",
                             "user@1000.service", "app-.scope", "app-x.scope", "snap.scope", "run-r3a.scope"})
        EXPECT_FALSE(AppUnits::parse(unit)) << unit;
    EXPECT_EQ(AppUnits::unescape("a\\x2db\\x2"), "a-b\\x2");
}

TEST(AppUnits, ManagedServices) {
    const std::string manager = "/user.slice/user-1000.slice/user@1000.service/";
    EXPECT_TRUE(AppUnits::isManagedService(manager + "session.slice/pipewire.service", 1000));
    EXPECT_TRUE(AppUnits::isManagedService(manager + "app.slice/dbus-:1.2-org.gnome.Terminal@0.service", 1000));
    EXPECT_FALSE(AppUnits::isManagedService(manager + "app.slice/app-org.kde.konsole@x.service", 1000));
    EXPECT_FALSE(AppUnits::isManagedService(manager + "app.slice/app-gnome-code-42.scope", 1000));
    EXPECT_FALSE(AppUnits::isManagedService(manager + "init.scope", 1000));
    EXPECT_FALSE(AppUnits::isManagedService(manager + "session.slice/pipewire.service", 1001)); // someone else's manager
    EXPECT_FALSE(AppUnits::isManagedService("/system.slice/sshd.service", 1000));
    EXPECT_FALSE(AppUnits::isManagedService("/", 1000));
}

TEST(AppUnits, MembershipOrder) {
    FakeAppBundles apps;
    apps.add("org.kde.konsole", "Konsole", "/usr/bin/konsole");
    apps.add("code", "Visual Studio Code", "/usr/share/code/code");
    apps.add("org.gnome.Terminal", "Terminal");
    apps.add("vim", "Vim", "/usr/bin/vim").terminal = true;
    apps.add("org.gnome.Shell", "GNOME Shell", "/usr/bin/gnome-shell").noDisplay = true;

    // The process's own unit comes first, even for another app's program started inside it.
    auto m = AppUnits::membership(userApps + "app-org.kde.konsole@abc.service", "/usr/share/code/code", apps);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->entry.id, "org.kde.konsole");
    EXPECT_EQ(m->group, userApps + "app-org.kde.konsole@abc.service");

    // Without an app unit the program decides, before any enclosing slice.
    const std::string terminalSlice = userApps + "app-org.gnome.Terminal.slice";
    m = AppUnits::membership(terminalSlice + "/vte-spawn-1234.scope", "/usr/share/code/code", apps);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->entry.id, "code");
    EXPECT_EQ(m->group, "exe:/apps/code.desktop");

    // A shell in a terminal tab belongs to the terminal's slice.
    m = AppUnits::membership(terminalSlice + "/vte-spawn-1234.scope", "/usr/bin/bash", apps);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->entry.id, "org.gnome.Terminal");
    EXPECT_EQ(m->group, terminalSlice);

    // Programs of terminal and hidden entries make no app.
    EXPECT_FALSE(AppUnits::membership("/", "/usr/bin/vim", apps));
    EXPECT_FALSE(AppUnits::membership("/", "/usr/bin/gnome-shell", apps));
    // An app unit whose id has no installed entry claims nothing.
    EXPECT_FALSE(AppUnits::membership(userApps + "app-gnome-unknown.app-77.scope", "/usr/bin/x", apps));
    // Above the user's service manager nothing is looked at.
    EXPECT_FALSE(AppUnits::membership("/app-org.gnome.Terminal.slice/user@1000.service/x.scope", "", apps));
}
