#include "foundation/FS.h"
#include "platform/Layout.h"
#include "removal/Remover.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

const std::string home = "/Users/ann";

Remover::Context macContext() { return Remover::Context::forLayout(Layout::macos(home), {}); }

bool safe(std::string_view path) { return Remover::isSafe(path, macContext()); }

} // namespace

TEST(RemoverGuard, TheRootOneLevelBelowItAndAnythingOutsideAreRefused) {
    EXPECT_FALSE(safe(home));
    EXPECT_FALSE(safe(home + "/"));
    EXPECT_FALSE(safe(home + "/notes.txt"));   // directly in the root, not listed
    EXPECT_FALSE(safe(home + "/Library"));     // directly in the root, listed
    EXPECT_FALSE(safe(home + "/Projects/"));   // trailing "/" does not add a level
    EXPECT_FALSE(safe("/tmp/a/b"));
    EXPECT_FALSE(safe("/"));
    EXPECT_FALSE(safe("/Users/annabel/Library/Caches/x")); // shares the root's letters, not its folder
    EXPECT_FALSE(safe("/Users/ann-old/a/b"));
}

TEST(RemoverGuard, EveryProtectedRowIsRefusedWithOrWithoutTrailingSlash) {
    auto context = macContext();
    ASSERT_EQ(context.protectedPaths.size(), 30u);
    for (const auto& row : context.protectedPaths) {
        EXPECT_FALSE(Remover::isSafe(home + row, context)) << row;
        EXPECT_FALSE(Remover::isSafe(home + row + "/", context)) << row;
    }
    EXPECT_FALSE(safe(home + "/Library/Caches"));
    EXPECT_FALSE(safe(home + "/Documents/GitHub"));
    EXPECT_FALSE(safe(home + "/.nvm/versions/node"));
}

TEST(RemoverGuard, WhatLiesBelowAProtectedFolderIsAccepted) {
    EXPECT_TRUE(safe(home + "/Library/Caches/AppX"));
    EXPECT_TRUE(safe(home + "/Library/Caches/AppX/"));
    EXPECT_TRUE(safe(home + "/Documents/GitHub/app/node_modules"));
    EXPECT_TRUE(safe(home + "/Projects/app"));
    EXPECT_TRUE(safe(home + "/.nvm/versions/node/v18.0.0"));
    EXPECT_TRUE(safe(home + "/Library/Caches/...")); // three dots is a name, not a trick
    EXPECT_TRUE(safe(home + "/Library/Caches/..x"));
}

TEST(RemoverGuard, DotTricksAreRefusedNotNormalised) {
    EXPECT_FALSE(safe(home + "/Library/Caches/../../x"));
    EXPECT_FALSE(safe(home + "/Library/Caches/AppX/.."));
    EXPECT_FALSE(safe(home + "/Library/Caches/AppX/../"));
    EXPECT_FALSE(safe(home + "//Documents"));
    EXPECT_FALSE(safe(home + "/Library//Caches/AppX"));
    EXPECT_FALSE(safe(home + "/Library/Caches/AppX//"));
    EXPECT_FALSE(safe(home + "/Library/./Caches"));
    EXPECT_FALSE(safe(home + "/Library/Caches/./AppX"));
    // "x/." names x itself: with it a listed folder would pass as a deeper one.
    EXPECT_FALSE(safe(home + "/Library/Caches/."));
    EXPECT_FALSE(safe(home + "/Documents/."));
    EXPECT_FALSE(safe("/Users/ann/../ann/Library/Caches/AppX"));
}

TEST(RemoverGuard, RelativeEmptyAndNulPathsAreRefused) {
    EXPECT_FALSE(safe(""));
    EXPECT_FALSE(safe("Library/Caches/AppX"));
    EXPECT_FALSE(safe("./Users/ann/Library/Caches/AppX"));
    EXPECT_FALSE(safe("~/Library/Caches/AppX"));
    // The system would stop reading at the NUL and touch the protected folder.
    std::string withNul = home + "/Library/Caches";
    withNul += '\0';
    withNul += "/AppX";
    EXPECT_FALSE(safe(withNul));
}

TEST(RemoverGuard, OddButHonestNamesAreAccepted) {
    EXPECT_TRUE(safe(home + "/Library/Caches/bad\xff\xfe name"));
    EXPECT_TRUE(safe(home + "/Library/Caches/line\nbreak"));
    EXPECT_TRUE(safe(home + "/Library/Caches/" + std::string(4000, 'a')));
}

TEST(RemoverGuard, NestedRootsMustAllAgree) {
    std::vector<std::string> roots = {"/srv/a", "/srv/a/b"};
    EXPECT_FALSE(Remover::isSafe("/srv/a/b/c", roots, {})); // one level below the inner root
    EXPECT_TRUE(Remover::isSafe("/srv/a/b/c/d", roots, {}));
    EXPECT_TRUE(Remover::isSafe("/srv/a/x/y", roots, {}));
    // A root given with a trailing slash guards the same folder.
    EXPECT_TRUE(Remover::isSafe("/srv/a/x/y", {"/srv/a/"}, {}));
    EXPECT_FALSE(Remover::isSafe("/srv/a/x", {"/srv/a/"}, {}));
    // A root of "/" or "" lets nothing through.
    EXPECT_FALSE(Remover::isSafe("/usr/lib", {"/"}, {}));
    EXPECT_FALSE(Remover::isSafe("/usr/lib", {""}, {}));
    EXPECT_FALSE(Remover::isSafe("/usr/lib/x", {}, {}));
}

TEST(RemoverGuard, TheProcessStartsWithTheHomeFolderAlone) {
    EXPECT_EQ(Remover::allowedRoots(), std::vector<std::string>{FS::home()});
    EXPECT_EQ(Remover::context().protectedPaths, Layout::host().removal.protectedPaths);
}

TEST(RemoverGuard, LinuxPlacesAreProtectedAsTheUserHasThem) {
    TempTree t;
    const std::string h = t.root();
    t.text(".config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"
                                     "XDG_DOWNLOAD_DIR=\"$HOME/T\xC3\xA9l\xC3\xA9" "chargements\"\n"
                                     "XDG_MUSIC_DIR=\"$HOME/Media/Musik\"\n");
    std::map<std::string, std::string> vars = {{"XDG_CONFIG_HOME", h + "/.config"}, {"XDG_DATA_HOME", h + "/data"}};
    Layout::Env env = [&](const char* name) -> std::optional<std::string> {
        auto it = vars.find(name);
        if (it == vars.end()) return std::nullopt;
        return it->second;
    };
    auto context = Remover::Context::forLayout(Layout::linux(h, env), {});
    auto refused = [&](std::string_view rel) { return !Remover::isSafe(h + std::string(rel), context); };

    for (auto rel : {"/.local/state", "/.var/app", "/.local/share/Trash", "/.gnupg", "/.mozilla", "/snap", "/.cache",
                     "/.ssh", "/Library/Caches", "/Documents/GitHub"})
        EXPECT_TRUE(refused(rel)) << rel;
    // Localised user folders, also deeper ones, and the moved data folder with its Trash and
    // the program's own support folder.
    EXPECT_TRUE(refused("/Dokumente"));
    EXPECT_TRUE(refused("/T\xC3\xA9l\xC3\xA9" "chargements"));
    EXPECT_TRUE(refused("/Media/Musik"));
    EXPECT_TRUE(refused("/data/Trash"));
    EXPECT_TRUE(refused("/data/Trash/files"));
    EXPECT_TRUE(refused("/data/sorrelin"));
    EXPECT_TRUE(refused("/Videos"));
    EXPECT_TRUE(refused("/Templates"));
    // Below them is what a clean works on.
    EXPECT_FALSE(refused("/Dokumente/app/node_modules"));
    EXPECT_FALSE(refused("/.cache/pip"));
    EXPECT_FALSE(refused("/.var/app/org.example.App"));
    EXPECT_FALSE(refused("/Media/Other"));
}

TEST(RemoverGuard, PlacesOutsideTheHomeFolderAddNoRows) {
    std::map<std::string, std::string> vars = {{"XDG_CACHE_HOME", "/var/cache/ann"}};
    Layout::Env env = [&](const char* name) -> std::optional<std::string> {
        auto it = vars.find(name);
        if (it == vars.end()) return std::nullopt;
        return it->second;
    };
    auto rows = Layout::linux("/home/ann", env).removal.protectedPaths;
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(), [](const std::string& r) { return r.find("var/cache") != std::string::npos; }), 0);
    for (const auto& r : rows) {
        EXPECT_TRUE(r.starts_with("/")) << r;
        EXPECT_FALSE(r.ends_with("/")) << r;
        EXPECT_EQ(std::count(rows.begin(), rows.end(), r), 1) << r;
    }
}
