#include "platform/Layout.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

TEST(Layout, LinuxDefaultsAndXdgVariables) {
    Layout plain = Layout::linux("/home/ann");
    EXPECT_EQ(plain.caches, "/home/ann/.cache");
    EXPECT_EQ(plain.appSupport, "/home/ann/.config");
    EXPECT_EQ(plain.trash, "/home/ann/.local/share/Trash");
    EXPECT_EQ(plain.supportDir, "/home/ann/.local/share/sorrelin");
    EXPECT_EQ(plain.movies, "/home/ann/Videos");
    EXPECT_EQ(plain.loginItem, "/home/ann/.config/autostart/app.sorrelin.Sorrelin.desktop");
    EXPECT_TRUE(plain.logs.empty());

    TempTree t;
    t.text("cfg/user-dirs.dirs",
           "# written by xdg-user-dirs-update\n"
           "XDG_DOWNLOAD_DIR=\"$HOME/Downloads files\"\n"
           "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"
           "XDG_PUBLICSHARE_DIR=\"$HOME/\"\n"
           "XDG_MUSIC_DIR=\"relative/ignored\"\n"
           "XDG_VIDEOS_DIR=\"/srv/videos\"\n");
    auto env = [&](const char* name) -> std::optional<std::string> {
        std::string_view n = name;
        if (n == "XDG_CONFIG_HOME") return t.path("cfg");
        if (n == "XDG_CACHE_HOME") return std::string("relative/cache"); // ignored: not absolute
        if (n == "XDG_DATA_HOME") return std::string("/data/ann/");
        if (n == "XDG_DATA_DIRS") return std::string("/usr/share:/var/lib/flatpak/exports/share");
        return std::nullopt;
    };
    Layout l = Layout::linux("/home/ann", env);
    EXPECT_EQ(l.caches, "/home/ann/.cache");
    EXPECT_EQ(l.configHome, t.path("cfg"));
    EXPECT_EQ(l.trash, "/data/ann/Trash");
    EXPECT_EQ(l.downloads, "/home/ann/Downloads files");
    EXPECT_EQ(l.documents, "/home/ann/Dokumente");
    EXPECT_EQ(l.publicShare, "/home/ann/Public"); // "$HOME/" alone: disabled, default stands
    EXPECT_EQ(l.music, "/home/ann/Music");
    EXPECT_EQ(l.movies, "/srv/videos");
    EXPECT_EQ(l.applicationDirs.front(), "/data/ann/applications");
    EXPECT_EQ(std::count(l.applicationDirs.begin(), l.applicationDirs.end(),
                         "/var/lib/flatpak/exports/share/applications"), 1);
}

TEST(Layout, MacPlaces) {
    Layout m = Layout::macos("/Users/ann");
    EXPECT_EQ(m.caches, "/Users/ann/Library/Caches");
    EXPECT_EQ(m.appSupport, "/Users/ann/Library/Application Support");
    EXPECT_EQ(m.logs, "/Users/ann/Library/Logs");
    EXPECT_EQ(m.trash, "/Users/ann/.Trash");
    EXPECT_EQ(m.supportDir, "/Users/ann/Library/Application Support/Sorrelin");
    EXPECT_EQ(m.mergedLocation, "~/Library/Caches and Application Support");
    EXPECT_TRUE(m.isMac());
}

TEST(Layout, PlacesWrittenThroughALinkedHomeLandBelowTheResolvedHome) {
    // /home/me -> /data/me: the program works on /data/me, while $HOME, the XDG variables and
    // user-dirs.dirs may still write /home/me.
    TempTree t;
    t.text("data/me/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"" + t.path("home/me") + "/Downloads\"\n"
                                              "XDG_DOCUMENTS_DIR=\"$HOME/Docs\"\n");
    const std::string real = t.path("data/me"), given = t.path("home/me");
    auto env = [&](const char* name) -> std::optional<std::string> {
        std::string_view n = name;
        if (n == "HOME") return given + "/";
        if (n == "XDG_CACHE_HOME") return given + "/.cache";
        if (n == "XDG_CONFIG_HOME") return given + "/.config";
        if (n == "XDG_DATA_HOME") return t.path("home/me2/share"); // a sibling is not the home
        return std::nullopt;
    };
    Layout l = Layout::linux(real, env);
    EXPECT_EQ(l.xdgCache, real + "/.cache");
    EXPECT_EQ(l.configHome, real + "/.config");
    EXPECT_EQ(l.downloads, real + "/Downloads");
    EXPECT_EQ(l.documents, real + "/Docs");
    EXPECT_EQ(l.dataHome, t.path("home/me2/share"));
}
