// A Linux developer's home: code folders outside Documents, the cache folder's titles, and the
// odd shapes such a home takes.
#include "foundation/FS.h"
#include "storage/StorageWalkFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

using namespace StorageWalk;

namespace {

std::vector<std::string> projectPaths(const StorageReport& r) {
    std::vector<std::string> paths;
    if (const StorageCategory* c = r.category(StorageKind::projects))
        for (const auto& i : c->items) paths.push_back(i.path);
    std::sort(paths.begin(), paths.end());
    return paths;
}

Layout::Env homeOnly(const TempTree& home) {
    return [&home](const char* name) -> std::optional<std::string> {
        if (std::string_view(name) == "HOME") return home.root();
        return std::nullopt;
    };
}

} // namespace

TEST(StorageHomeFolders, EveryPlainFolderOfTheHomeFindsProjectsByEachLanguagesMarker) {
    TempTree home;
    home.text("code/web/package.json", "{}");
    home.file("code/web/src/app.js", 64 * 1024);
    home.file("code/notes.txt", 64 * 1024);
    home.text("src/tool/Cargo.toml", "[package]");
    home.text("src/py/pyproject.toml", "[project]");
    home.text("go/src/github.com/me/api/go.mod", "module api");
    home.dir("projects/site/.git");
    home.text("Documents/crate/Cargo.toml", "[package]"); // the new markers count in Documents too
    // Go's module cache is full of go.mod files: a tool, not code.
    home.text("go/pkg/mod/rsc.io/quote@v1.5.2/go.mod", "module quote");
    // User folders that are no code folders: nothing is a project there.
    home.text("Public/shared/package.json", "{}");
    home.text("Templates/starter/package.json", "{}");
    home.text("Downloads/unpacked/Cargo.toml", "[package]");
    home.text("code/deep/1/2/3/4/package.json", "{}"); // level 5 below ~/code
    home.text("code/lib/node_modules/package.json", "{}");

    StorageReport r = walk(isolated(home.root()));
    EXPECT_EQ(projectPaths(r), (std::vector<std::string>{home.path("Documents/crate"), home.path("code/web"),
                                                         home.path("go/src/github.com/me/api"),
                                                         home.path("projects/site"), home.path("src/py"),
                                                         home.path("src/tool")}));
    const StorageItem* web = row(r, StorageKind::projects, home.path("code/web"));
    ASSERT_TRUE(web);
    EXPECT_EQ(web->detail, "~/code");
    const int64_t inside = alloc(home, "code/web/package.json") + alloc(home, "code/web/src") + alloc(home, "code/web/src/app.js");
    EXPECT_GE(web->bytes, inside);
    EXPECT_LE(web->bytes, inside + alloc(home, "code/web")); // with or without the folder's own blocks
    // What is no project stays in its folder's row, and the code folder's row is no project.
    const StorageItem* code = row(r, StorageKind::other, home.path("code"));
    ASSERT_TRUE(code);
    EXPECT_GE(code->bytes, alloc(home, "code/notes.txt"));
    EXPECT_LT(code->bytes, alloc(home, "code/notes.txt") + web->bytes);
    const StorageItem* modules = row(r, StorageKind::developer, home.path("go/pkg"));
    ASSERT_TRUE(modules);
    EXPECT_EQ(modules->name, "Go modules");
    EXPECT_TRUE(row(r, StorageKind::other, home.path("Public")));
    EXPECT_TRUE(row(r, StorageKind::downloads, home.path("Downloads/unpacked")));

    // On a Mac only Documents and Desktop look, for .git and package.json alone.
    Layout mac = Layout::macos(home.root());
    mac.storage.outsideTools.clear();
    mac.storage.assetsRoot.clear();
    mac.storage.temporary.clear();
    mac.applicationDirs.clear();
    EXPECT_EQ(projectPaths(walk(mac)), std::vector<std::string>{});
}

TEST(StorageHomeFolders, CodeFoldersThatAreLinksFilesOrMissingUserFoldersGiveHonestFigures) {
    TempTree home;
    TempTree elsewhere;
    elsewhere.text("far/package.json", "{}");
    elsewhere.file("far/big.bin", 8 * MiB);
    home.text("work/app/package.json", "{}");
    home.file("work/app/main.js", 128 * 1024);
    home.symLink(home.path("work"), "code");           // a code folder that points inside the home
    home.symLink(elsewhere.path("far"), "external");   // and one that points outside it
    home.file("src", 64 * 1024);                       // a code folder's name on a plain file
    // user-dirs names a Documents folder that does not exist: the one that does is plain.
    home.text(".config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    home.text("Documents/thesis/.git/HEAD", "ref");

    StorageReport r = walk(isolated(home.root(), homeOnly(home)));
    // The linked project is measured once, where it lies; nothing outside the home counts.
    EXPECT_EQ(projectPaths(r), (std::vector<std::string>{home.path("Documents/thesis"), home.path("work/app")}));
    const StorageItem* app = row(r, StorageKind::projects, home.path("work/app"));
    ASSERT_TRUE(app);
    const int64_t inside = alloc(home, "work/app/package.json") + alloc(home, "work/app/main.js");
    EXPECT_GE(app->bytes, inside);
    EXPECT_LE(app->bytes, inside + alloc(home, "work/app"));
    for (const auto& c : r.categories)
        for (const auto& i : c.items) EXPECT_FALSE(i.path.starts_with(elsewhere.root())) << i.path;
    EXPECT_LT(r.measured(), allocatedSize(elsewhere.path("far/big.bin")));
    const StorageItem* src = row(r, StorageKind::other, home.path("src"));
    ASSERT_TRUE(src);
    EXPECT_FALSE(src->isFolder);
    EXPECT_EQ(src->bytes, alloc(home, "src"));
}

TEST(StorageHomeFolders, CacheRowsTakeTheCleanTabsTitlesAndNeverShareOneUnplaced) {
    TempTree home;
    for (const char* name : {"yarn", "pnpm", "mesa_shader_cache", "mesa_shader_cache_db", "huggingface", "fontconfig",
                             "ms-playwright", "google-chrome", "uv"})
        home.file(std::string(".cache/") + name + "/x", 64 * 1024);
    home.file(".config/pnpm/rc", 64 * 1024);
    home.file(".local/share/pnpm/global/x", 64 * 1024);
    home.file(".config/google-chrome/Default/History", 64 * 1024);

    StorageReport r = walk(isolated(home.root()));
    auto title = [&](const std::string& relative) {
        const StorageItem* i = row(r, StorageKind::appData, home.path(relative));
        return i ? i->name : "(no row)";
    };
    EXPECT_EQ(title(".cache/yarn"), "Yarn cache");
    EXPECT_EQ(title(".cache/pnpm"), "pnpm metadata cache");
    EXPECT_EQ(title(".cache/google-chrome"), "Chrome cache");
    EXPECT_EQ(title(".cache/uv"), "uv cache");
    EXPECT_EQ(title(".cache/huggingface"), "Huggingface models");
    EXPECT_EQ(title(".cache/ms-playwright"), "Playwright browsers");
    EXPECT_EQ(title(".cache/fontconfig"), "Fontconfig cache");
    EXPECT_EQ(title(".config/google-chrome"), "Chrome");
    // One title for two folders side by side: each row says which folder it is.
    EXPECT_EQ(title(".cache/mesa_shader_cache"), "Graphics shader cache");
    EXPECT_EQ(row(r, StorageKind::appData, home.path(".cache/mesa_shader_cache"))->detail, "~/.cache/mesa_shader_cache");
    EXPECT_EQ(row(r, StorageKind::appData, home.path(".cache/mesa_shader_cache_db"))->detail,
              "~/.cache/mesa_shader_cache_db");
    EXPECT_EQ(row(r, StorageKind::appData, home.path(".cache/yarn"))->detail, "~/.cache");

    // Whatever the titles, no two rows of a category read the same.
    for (const auto& c : r.categories) {
        std::set<std::pair<std::string, std::optional<std::string>>> seen;
        for (const auto& i : c.items)
            EXPECT_TRUE(seen.insert({i.name, i.detail}).second) << i.name << " at " << i.path;
    }
}
