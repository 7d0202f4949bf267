#include "app/LoginItem.h"

#include "foundation/FS.h"

#include "AppHarness.h"

#include <QSignalSpy>

#include <gtest/gtest.h>


#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string read(const std::string& path) { return FS::readText(path, 64 << 20).value_or(""); }

} // namespace

TEST(LoginItem, TheEntryStartsThisProgramInTheBackground) {
    const std::string entry = LoginItem::entry("/usr/bin/sorrelin");
    EXPECT_NE(entry.find("\nExec=/usr/bin/sorrelin --background\n"), std::string::npos);
    EXPECT_NE(entry.find("\nX-GNOME-Autostart-enabled=true\n"), std::string::npos);
    EXPECT_EQ(entry.rfind("[Desktop Entry]\n", 0), 0u);
    // Paths the Exec line would read differently are quoted and escaped: a blank, a quote, a
    // dollar sign, a backslash, a percent sign.
    EXPECT_EQ(LoginItem::execArgument("/home/ann/My Apps/sorrelin"), "\"/home/ann/My Apps/sorrelin\"");
    EXPECT_EQ(LoginItem::execArgument("/opt/a\"b$c/sorrelin"), "\"/opt/a\\\\\"b\\\\$c/sorrelin\"");
    EXPECT_EQ(LoginItem::execArgument("/opt/a\\b/s"), "\"/opt/a\\\\\\\\b/s\"");
    EXPECT_EQ(LoginItem::execArgument("/opt/100%/sorrelin"), "/opt/100%%/sorrelin");
    EXPECT_EQ(LoginItem::execArgument("/opt/new\nline"), "\"/opt/new\\nline\"");
}

TEST(LoginItem, OnlyAnInstalledCopyAndNeverABuildFolder) {
    TempTree t;
    const std::string home = t.dir("home");
    EXPECT_TRUE(LoginItem::isInstalledCopy("/usr/bin/sorrelin", home));
    EXPECT_TRUE(LoginItem::isInstalledCopy("/usr/local/bin/sorrelin", home));
    EXPECT_TRUE(LoginItem::isInstalledCopy("/opt/sorrelin/bin/sorrelin", home));
    EXPECT_TRUE(LoginItem::isInstalledCopy(home + "/.local/bin/sorrelin", home));
    EXPECT_FALSE(LoginItem::isInstalledCopy(home + "/Downloads/sorrelin", home));
    EXPECT_FALSE(LoginItem::isInstalledCopy(home + "/.localx/bin/sorrelin", home));
    EXPECT_FALSE(LoginItem::isInstalledCopy("bin/sorrelin", home));
    EXPECT_FALSE(LoginItem::isInstalledCopy("", home));
    // A home at "/" does not make every path an installed one.
    EXPECT_FALSE(LoginItem::isInstalledCopy("/.local/bin/sorrelin", "/"));
    // A build folder under ~/.local (or /opt) has its CMake cache beside it or above it.
    t.text("home/.local/src/build/CMakeCache.txt", "");
    EXPECT_FALSE(LoginItem::isInstalledCopy(home + "/.local/src/build/sorrelin", home));
    t.text("home/.local/src/build2/CMakeCache.txt", "");
    EXPECT_FALSE(LoginItem::isInstalledCopy(home + "/.local/src/build2/bin/sorrelin", home));
}

TEST(LoginItem, OfferedOnceAndTheUsersChoiceStands) {
    TempTree t;
    SettingsStore standard(t.path("settings.json"));
    EXPECT_FALSE(LoginItem::shouldOffer(standard, t.root() + "/build/sorrelin", t.root()));
    EXPECT_FALSE(standard.value(LoginItem::offeredKey)); // a copy from elsewhere leaves no trace
    EXPECT_TRUE(LoginItem::shouldOffer(standard, "/usr/bin/sorrelin", t.root()));
    EXPECT_FALSE(LoginItem::shouldOffer(standard, "/usr/bin/sorrelin", t.root()));
    EXPECT_TRUE(SettingsStore(t.path("settings.json")).boolValue(LoginItem::offeredKey)); // kept across starts
}

TEST(LoginItem, TheSwitchShowsTheDiskNotTheWish) {
    AppHarness h;
    AppModel& m = h.make([&](AppSetup& s) { s.executable = "/usr/bin/sorrelin"; });
    const std::string file = m.environment().loginItemFile;
    EXPECT_EQ(file, h.home.root() + "/.config/autostart/app.sorrelin.Sorrelin.desktop");
    EXPECT_FALSE(m.loginItemOn());
    QSignalSpy changed(&m, &AppModel::loginItemOnChanged);
    m.setLoginItem(true);
    EXPECT_TRUE(m.loginItemOn());
    EXPECT_EQ(changed.count(), 1);
    EXPECT_NE(read(file).find("Exec=/usr/bin/sorrelin --background"), std::string::npos);
    m.setLoginItem(true); // equal: no signal
    EXPECT_EQ(changed.count(), 1);
    m.setLoginItem(false);
    EXPECT_FALSE(m.loginItemOn());
    EXPECT_FALSE(FS::exists(file));
    m.setLoginItem(false); // already gone: no failure
    EXPECT_FALSE(m.loginItemOn());

    // An entry put in place by hand shows the switch on at the next start.
    h.home.text(".config/autostart/app.sorrelin.Sorrelin.desktop", "[Desktop Entry]\n");
    AppHarness again;
    AppModel& n = again.make([&](AppSetup& s) { s.loginItemFile = file; });
    EXPECT_TRUE(n.loginItemOn());
}

TEST(LoginItem, AnAutostartFolderThatIsAFileOrReadOnlyLeavesTheSwitchOff) {
    AppHarness h;
    AppModel& m = h.make([&](AppSetup& s) { s.executable = "/usr/bin/sorrelin"; });
    h.home.text(".config/autostart", "not a folder");
    m.setLoginItem(true);
    EXPECT_FALSE(m.loginItemOn());
    EXPECT_EQ(read(h.home.path(".config/autostart")), "not a folder"); // untouched

    AppHarness r;
    AppModel& ro = r.make([&](AppSetup& s) { s.executable = "/usr/bin/sorrelin"; });
    const std::string folder = r.home.dir(".config/autostart");
    chmod(folder.c_str(), 0555);
    ro.setLoginItem(true);
    const bool root = getuid() == 0; // root writes where the mode says no
    EXPECT_EQ(ro.loginItemOn(), root);
    chmod(folder.c_str(), 0755);
    if (root) GTEST_SKIP() << "the read-only case needs an unprivileged user (run by as-unprivileged-user.sh)";
}
