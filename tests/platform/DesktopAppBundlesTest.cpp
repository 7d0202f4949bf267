#include "platform/AppBundles.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

TEST(DesktopEntry, ParsesTheMainGroupOnly) {
    auto e = DesktopEntries::parse("# comment\n"
                                   "[Desktop Entry]\n"
                                   "Type=Application\n"
                                   "Name=Visual Studio Code\n"
                                   "Name[de]=Anderer Name\n"
                                   "Exec=/usr/share/code/code --unity-launch %F\n"
                                   "Icon=vscode\n"
                                   "StartupWMClass=Code\n"
                                   "Categories=Utility;TextEditor;Development;\n"
                                   "[Desktop Action new-empty-window]\n"
                                   "Name=New Empty Window\n"
                                   "Exec=/usr/share/code/code --new-window %F\n",
                                   "code", "/usr/share/applications/code.desktop");
    ASSERT_TRUE(e);
    EXPECT_EQ(e->name, "Visual Studio Code");
    EXPECT_EQ(e->exec, (std::vector<std::string>{"/usr/share/code/code", "--unity-launch"}));
    EXPECT_EQ(e->startupWMClass, "Code");
    EXPECT_EQ(e->categories.size(), 3u);
    EXPECT_FALSE(DesktopEntries::parse("[Desktop Entry]\nType=Link\nURL=x\n", "l", "/l.desktop"));
    EXPECT_FALSE(DesktopEntries::parse("Type=Application\n", "x", "/x.desktop")); // no group
}

TEST(DesktopEntry, ExecQuotingFieldCodesAndPrograms) {
    EXPECT_EQ(DesktopEntries::splitExec(R"("/opt/My App/run" --name "a \"quoted\" word" %U 100%%)"),
              (std::vector<std::string>{"/opt/My App/run", "--name", "a \"quoted\" word", "100%"}));
    EXPECT_EQ(DesktopEntries::programOf({"env", "BAMF_DESKTOP_FILE_HINT=/x", "-u", "FOO", "/snap/bin/firefox"}, ""),
              "/snap/bin/firefox");
    TempTree t;
    t.file("bin/tool", 10);
    chmod(t.path("bin/tool").c_str(), 0755);
    t.file("bin/plain", 10);
    EXPECT_EQ(DesktopEntries::programOf({"tool", "--x"}, "/nowhere:" + t.path("bin")), t.path("bin/tool"));
    EXPECT_EQ(DesktopEntries::programOf({"plain"}, t.path("bin")), ""); // not executable
    EXPECT_EQ(DesktopEntries::programOf({"env", "A=1", "/usr/bin/x"}, ""), "/usr/bin/x");
    EXPECT_EQ(DesktopEntries::idFor("kde4/dolphin.desktop"), "kde4-dolphin");
    EXPECT_EQ(DesktopEntries::idFor("org.mozilla.firefox.desktop"), "org.mozilla.firefox");
}

TEST(DesktopAppBundles, PrecedenceHiddenAndLookups) {
    TempTree t;
    t.file("bin/real-editor", 10);
    chmod(t.path("bin/real-editor").c_str(), 0755);
    t.symLink(t.path("bin/real-editor"), "bin/editor");
    t.text("user/apps/editor.desktop", "[Desktop Entry]\nType=Application\nName=My Editor\nExec=editor %f\n");
    t.text("sys/apps/editor.desktop", "[Desktop Entry]\nType=Application\nName=System Editor\nExec=editor\n");
    t.text("user/apps/gone.desktop", "[Desktop Entry]\nType=Application\nHidden=true\n");
    t.text("sys/apps/gone.desktop", "[Desktop Entry]\nType=Application\nName=Gone\nExec=/bin/true\n");
    t.text("sys/apps/kde4/viewer.desktop", "[Desktop Entry]\nType=Application\nName=Viewer\nExec=/usr/bin/viewer\n");
    t.text("sys/apps/broken.desktop", "\xFF\xFE garbage without a group");
    t.text("gnome/application_state",
           "<?xml version=\"1.0\"?>\n<application-state>\n<context id=\"\">\n"
           "  <application id=\"kde4-viewer.desktop\" open-window-count=\"0\" score=\"3\" last-seen=\"1700000000\"/>\n"
           "</context>\n</application-state>\n");

    DesktopAppBundles apps({t.path("user/apps"), t.path("sys/apps"), t.path("missing")},
                           t.path("gnome/application_state"), t.path("bin"));
    ASSERT_EQ(apps.all().size(), 2u);
    auto editor = apps.entry("editor");
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->name, "My Editor");
    EXPECT_EQ(editor->executable, t.path("bin/editor"));
    EXPECT_FALSE(apps.entry("gone")); // hidden by the user's own entry
    EXPECT_TRUE(apps.entryAt(t.path("sys/apps/kde4/viewer.desktop")));
    // A process runs the link's target; the entry still matches it.
    auto byExe = apps.entryForExecutable(t.path("bin/real-editor"));
    ASSERT_TRUE(byExe);
    EXPECT_EQ(byExe->id, "editor");
    EXPECT_FALSE(apps.entryForExecutable("/usr/bin/unknown"));
    auto viewer = apps.entry("kde4-viewer");
    ASSERT_TRUE(viewer);
    auto used = apps.lastUsed(*viewer);
    ASSERT_TRUE(used);
    EXPECT_EQ(secondsSince1970(*used), 1700000000);
}

TEST(DesktopAppBundles, VisibleEntriesWinAndTheLastUsedRecordIsReadAgainWhenItChanges) {
    TempTree t;
    t.file("bin/player", 10);
    chmod(t.path("bin/player").c_str(), 0755);
    // A helper entry comes first in folder order; the visible one still names the program.
    t.text("apps/a-helper.desktop", "[Desktop Entry]\nType=Application\nName=Helper\nNoDisplay=true\nExec=" +
                                        t.path("bin/player") + " --daemon\n");
    t.text("apps/player.desktop", "[Desktop Entry]\nType=Application\nName=Player\nExec=player %U\n");
    DesktopAppBundles apps({t.path("apps")}, t.path("state"), t.path("bin"));
    auto byExe = apps.entryForExecutable(t.path("bin/player"));
    ASSERT_TRUE(byExe);
    EXPECT_EQ(byExe->id, "player");
    EXPECT_EQ(apps.entryForExecutable(t.path("bin/player"))->id, "player"); // answered again from memory

    auto player = apps.entry("player");
    ASSERT_TRUE(player);
    t.text("state", "<application id=\"player.desktop\" last-seen=\"1700000000\"/>");
    EXPECT_EQ(secondsSince1970(*apps.lastUsed(*player)), 1700000000);
    t.text("state", "<application id=\"player.desktop\" last-seen=\"1800000000\"/>");
    t.age("state", -10); // a later modification time, as a rewrite by the shell gives
    EXPECT_EQ(secondsSince1970(*apps.lastUsed(*player)), 1800000000);
}
