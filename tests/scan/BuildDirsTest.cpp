// Build folders: the walk's rules, the grouping into projects, their wording, their age and
// their lock.
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "scan/BuildFolders.h"
#include "support/FakeAppBundles.h"
#include "scan/ScannerAccess.h"
#include "support/FakeFacts.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr double day = 86'400;

struct Home {
    TempTree t;
    FakeFacts facts;
    FakeAppBundles apps;
    Layout layout = Layout::linux(t.root());

    Scanner scanner(std::shared_ptr<ScanToken> token = nullptr) { return Scanner(layout, {}, std::move(token), facts, apps); }
    std::vector<std::string> found() {
        auto s = scanner();
        auto dirs = ScannerTestAccess::findBuildDirs(s);
        for (auto& d : dirs) d = d.substr(t.root().size() + 1);
        std::sort(dirs.begin(), dirs.end());
        return dirs;
    }
};

using Paths = std::vector<std::string>;

} // namespace

TEST(BuildFolderWalk, NamesMarkersAndSkips) {
    Home h;
    h.t.file("code/web/node_modules/react/node_modules/x/index.js", 10);
    h.t.file("code/web/.next/cache/x", 10);
    h.t.file("code/rust/Cargo.toml", 10);
    h.t.file("code/rust/target/debug/x", 10);
    h.t.file("code/notes/target/node_modules/x", 10);        // target without Cargo.toml is walked
    h.t.file("code/py/pyproject.toml", 10);
    h.t.file("code/py/.venv/lib/x", 10);
    h.t.file("code/py2/venv/lib/x", 10);                       // no marker
    h.t.file("code/site/.vercel/project.json", 10);            // no output: nothing
    h.t.file("code/app/.vercel/output/static/x", 10);
    h.t.file("code/.hidden/node_modules/x", 10);               // hidden folders are not walked
    h.t.file("code/Thing.app/node_modules/x", 10);             // nor single-document bundles
    h.t.file("Pictures/shoot/node_modules/x", 10);             // nor the media folders
    h.t.file("Videos/x/node_modules/y", 10);
    h.t.file("snap/app/node_modules/x", 10);
    h.t.file("code/Pictures/node_modules/x", 10);              // a media name deeper down is walked
    h.t.file("code/Library/node_modules/x", 10);
    h.t.file("elsewhere/node_modules/x", 10);
    h.t.symLink(h.t.path("elsewhere"), "code/link");           // links are not followed
    EXPECT_EQ(h.found(), (Paths{"code/Library/node_modules", "code/Pictures/node_modules", "code/app/.vercel/output",
                                "code/notes/target/node_modules", "code/py/.venv", "code/rust/target",
                                "code/web/.next", "code/web/node_modules", "elsewhere/node_modules"}));
}

TEST(BuildFolderWalk, DepthLimitAndMacTopFolders) {
    Home h;
    h.t.dir("a/b/c/d/e/f/g/h/node_modules");   // level 9: counts
    h.t.dir("p/q/r/s/t/u/v/w/x/node_modules"); // level 10: does not
    EXPECT_EQ(h.found(), Paths{"a/b/c/d/e/f/g/h/node_modules"});

    Home mac;
    mac.layout = Layout::macos(mac.t.root());
    mac.t.dir("Library/x/node_modules");
    mac.t.dir("Movies/cut/node_modules");
    mac.t.dir("Videos/cut/node_modules"); // not a media folder on this layout
    mac.t.dir("Projects/Library/node_modules");
    EXPECT_EQ(mac.found(), (Paths{"Projects/Library/node_modules", "Videos/cut/node_modules"}));
}

TEST(BuildFolderWalk, LocalisedMediaFoldersAreSkipped) {
    Home h;
    h.t.text(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\nXDG_MUSIC_DIR=\"$HOME/Media/Musik\"\n");
    h.t.dir("Bilder/x/node_modules");
    h.t.dir("Pictures/x/node_modules"); // an ordinary folder once the pictures live elsewhere
    h.t.dir("Media/Musik/node_modules"); // not directly in the home folder: walked
    h.layout = Layout::linux(h.t.root(), [&](const char* name) -> std::optional<std::string> {
        if (std::string_view(name) == "HOME") return h.t.root();
        return std::nullopt;
    });
    EXPECT_EQ(h.found(), (Paths{"Media/Musik/node_modules", "Pictures/x/node_modules"}));
}

TEST(BuildFolderWalk, ProgressCountsFoldersAndCancelStops) {
    Home h;
    for (int i = 0; i < 1200; ++i) h.t.dir("many/d" + std::to_string(i));
    h.t.dir("many/d7/node_modules");
    std::vector<int> checked;
    auto s = h.scanner();
    auto items = s.run([&](const ScanProgress& p) { checked.push_back(p.checked); });
    // 1 + 1200 + 1 folders: the last report before measuring holds the full count.
    EXPECT_EQ(s.checkedFolders(), 1202);
    EXPECT_NE(std::find(checked.begin(), checked.end(), 1202), checked.end());
    EXPECT_EQ(s.buildDirs, Paths{h.t.path("many/d7/node_modules")});

    // A cancelled walk ends at its next check, long before the last folder.
    auto token = ScanToken::make();
    token->cancel();
    auto stopped = h.scanner(token);
    (void)ScannerTestAccess::findBuildDirs(stopped);
    EXPECT_LT(stopped.checkedFolders(), 300);
    EXPECT_TRUE(stopped.run().empty());
}

TEST(BuildFolderProjects, RootsGroupUnderGit) {
    Home h;
    h.t.dir("Documents/a/.git");
    h.t.dir("Documents/a/b/c/node_modules");
    h.t.dir("Documents/a/node_modules");
    h.t.dir("Documents/a/web/.next");
    h.t.dir("Documents/a/web/.vercel/output");
    // ".git" seven levels up is too far: the folder's parent is the root.
    h.t.dir("deep/.git");
    h.t.dir("deep/1/2/3/4/5/6/node_modules");
    // A stray ".git" directly in the home folder's child does not swallow what is below it.
    h.t.dir("Work/.git");
    h.t.dir("Work/x/node_modules");
    h.t.dir("Work/y/node_modules");
    auto s = h.scanner();
    auto list = ScannerTestAccess::projects(s);
    Paths locations;
    for (const auto& c : list) locations.push_back(c.location);
    EXPECT_EQ(locations, (Paths{"~/Documents/a", "~/Work/x", "~/Work/y", "~/deep/1/2/3/4/5/6"}));
    const Candidate& a = list[0];
    EXPECT_EQ(a.id, "project:" + h.t.path("Documents/a"));
    EXPECT_EQ(a.name, "a");
    EXPECT_TRUE(a.note.starts_with("node_modules ×2 + .next + .vercel/output · changed ")) << a.note;
    EXPECT_EQ(a.paths, (Paths{h.t.path("Documents/a/b/c/node_modules"), h.t.path("Documents/a/node_modules"),
                              h.t.path("Documents/a/web/.next"), h.t.path("Documents/a/web/.vercel/output")}));
    EXPECT_EQ(a.reveal, a.paths);
    EXPECT_FALSE(a.lockedReason);

    // A deploy output belongs to the project that holds its hidden folder.
    EXPECT_EQ(BuildFolders::projectRoot(h.t.path("site/.vercel/output"), h.t.root()), h.t.path("site"));
    EXPECT_EQ(BuildFolders::label(h.t.path("site/.vercel/output")), ".vercel/output");
    EXPECT_EQ(BuildFolders::label(h.t.path("site/output")), "output");
}

TEST(BuildFolderProjects, LabelsAreCountedAndOrdered) {
    EXPECT_EQ(BuildFolders::joinLabels({"/p/a/node_modules", "/p/.turbo", "/p/b/node_modules", "/p/.next",
                                        "/p/c/node_modules", "/p/x/.next"}),
              "node_modules ×3 + .next ×2 + .turbo");
    EXPECT_EQ(BuildFolders::joinLabels({"/p/target"}), "target");
    EXPECT_EQ(BuildFolders::joinLabels({"/p/venv", "/p/.venv"}), ".venv + venv");
}

TEST(BuildFolderProjects, RecentWorkStartsUnticked) {
    Home h;
    auto project = [&](const std::string& name, double age) {
        h.t.file(name + "/package.json", 10);
        h.t.file(name + "/node_modules/x/index.js", 10);
        h.t.age(name + "/package.json", age);
        h.t.age(name + "/node_modules", 1); // the build folder's own date plays no part
    };
    project("six", 6 * day);
    project("eight", 8 * day);
    h.t.dir("empty/node_modules");
    h.t.age("empty/node_modules", 100 * day);
    auto s = h.scanner();
    auto list = ScannerTestAccess::projects(s);
    ASSERT_EQ(list.size(), 3u);
    const Candidate* six = withId(list, "project:" + h.t.path("six"));
    const Candidate* eight = withId(list, "project:" + h.t.path("eight"));
    const Candidate* empty = withId(list, "project:" + h.t.path("empty"));
    EXPECT_FALSE(six->defaultOn);
    EXPECT_EQ(six->note, "node_modules · changed " + Fmt::day(s.now - std::chrono::seconds(6 * 86'400), s.now));
    EXPECT_TRUE(eight->defaultOn);
    EXPECT_NE(eight->note.find(" · changed "), std::string::npos);
    // Nothing but the build folder: no date, ticked.
    EXPECT_TRUE(empty->defaultOn);
    EXPECT_EQ(empty->note, "node_modules");
}

TEST(BuildFolderProjects, FilesDatedAheadOfNowAreRecentWork) {
    // A clock gone wrong or an archive unpacked with dates of 2400: the project was touched now,
    // not in 1815, so it starts unticked and reads "changed today".
    Home h;
    h.t.file("future/package.json", 10);
    h.t.file("future/src/main.ts", 10);
    h.t.file("future/node_modules/x/index.js", 10);
    for (const char* p : {"future/package.json", "future/src/main.ts", "future/src"})
        if (!h.t.dateAt(p, 13'583'635'200)) GTEST_SKIP() << "this file system cannot hold a date in 2400";
    auto s = h.scanner();
    auto list = ScannerTestAccess::projects(s);
    const Candidate* future = withId(list, "project:" + h.t.path("future"));
    ASSERT_TRUE(future);
    EXPECT_FALSE(future->defaultOn);
    EXPECT_EQ(future->note, "node_modules · changed " + Fmt::day(s.now, s.now));
}

TEST(BuildFolderProjects, ActivityReadsGitAndWorktrees) {
    Home h;
    // A repository whose files are old but whose index moved today.
    h.t.file("repo/src/main.ts", 10);
    h.t.file("repo/.git/index", 10);
    h.t.file("repo/.git/HEAD", 10);
    h.t.dir("repo/node_modules");
    h.t.age("repo/src/main.ts", 30 * day);
    h.t.age("repo/src", 30 * day);
    h.t.age("repo/.git/HEAD", 30 * day);
    h.t.age("repo/.git", 30 * day);
    // A worktree: ".git" is a file naming the folder with its index.
    h.t.file("gitdirs/wt/index", 10);
    h.t.file("gitdirs/wt/HEAD", 10);
    h.t.age("gitdirs/wt/HEAD", 30 * day);
    h.t.file("tree/src/a.ts", 10);
    h.t.text("tree/.git", "gitdir: " + h.t.path("gitdirs/wt") + "\n");
    h.t.dir("tree/.next/cache");
    h.t.age("tree/src/a.ts", 30 * day);
    h.t.age("tree/src", 30 * day);
    h.t.age("tree/.git", 30 * day);
    h.t.age("tree/.next/cache", 20 * day);
    h.t.age("tree/.next", 1);
    h.t.age("gitdirs/wt", 30 * day);
    h.t.age("gitdirs", 30 * day);
    auto s = h.scanner();
    auto list = ScannerTestAccess::projects(s);
    const Candidate* repo = withId(list, "project:" + h.t.path("repo"));
    const Candidate* tree = withId(list, "project:" + h.t.path("tree"));
    ASSERT_TRUE(repo && tree);
    EXPECT_FALSE(repo->defaultOn);
    EXPECT_NE(repo->note.find("changed today"), std::string::npos) << repo->note;
    // Only the worktree's index is fresh.
    EXPECT_FALSE(tree->defaultOn);
    EXPECT_NE(tree->note.find("changed today"), std::string::npos) << tree->note;

    // Once that index is old too, the newest date is the build cache's, twenty days back.
    h.t.age("gitdirs/wt/index", 30 * day);
    auto again = h.scanner();
    auto later = ScannerTestAccess::projects(again);
    const Candidate* quiet = withId(later, "project:" + h.t.path("tree"));
    EXPECT_TRUE(quiet->defaultOn) << quiet->note;
    EXPECT_EQ(quiet->note, ".next · changed " + Fmt::day(again.now - std::chrono::seconds(20 * 86'400), again.now));
}

TEST(BuildFolderProjects, ProcessesWorkingInAProjectLockIt) {
    Home h;
    h.t.dir("app/.git");
    h.t.dir("app/node_modules");
    h.t.dir("app-two/node_modules");
    auto reason = [&](std::vector<ProcInfo> procs) -> std::optional<std::string> {
        h.facts.procs = std::move(procs);
        auto s = h.scanner();
        auto list = ScannerTestAccess::projects(s);
        auto c = withId(list, "project:" + h.t.path("app"));
        return c ? c->lockedReason : std::optional<std::string>("missing");
    };
    const std::string app = h.t.path("app");
    EXPECT_EQ(reason({}), std::nullopt);
    // A shell says nothing about a project.
    EXPECT_EQ(reason({{1, "zsh", app, "/bin/zsh"}, {2, "bash", app + "/src", "/bin/bash"}}), std::nullopt);
    // A folder that only begins with the same letters is another project.
    EXPECT_EQ(reason({{3, "node", h.t.path("app-two"), "/usr/bin/node"}}), std::nullopt);
    EXPECT_EQ(reason({{3, "node", app + "/src", "/usr/bin/node"}}), "In use by node · kept");
    EXPECT_EQ(reason({{3, "node", app, "/usr/bin/node"}, {4, "claude", app, "/x/claude"}}), "In use by Claude · kept");
    EXPECT_EQ(reason({{5, "python3.12", app, "/usr/bin/python3.12"}, {6, "Code Helper (Renderer)", app, "/x"}}),
              "In use by VS Code · kept");
    EXPECT_EQ(reason({{7, "code", app, "/usr/share/code/code"}}), "In use by VS Code · kept");
    EXPECT_EQ(reason({{8, "vite", app, "/x"}, {9, "mcp-server-git", app, "/y"}}), "In use by an MCP server · kept");
    EXPECT_EQ(reason({{10, "", app, "/x"}}), "In use by a program · kept");

    // The lock wins over the tick of an old project.
    h.t.age("app/.git", 30 * day);
    h.facts.procs = {{3, "node", app, "/usr/bin/node"}};
    auto s = h.scanner();
    auto list = ScannerTestAccess::projects(s);
    auto c = withId(list, "project:" + app);
    ASSERT_TRUE(c);
    EXPECT_TRUE(c->defaultOn);
    EXPECT_FALSE(c->item(30 * MB).defaultOn);
}

TEST(BuildFolderProjects, ProjectsInDownloadsAreNotDownloads) {
    Home h;
    h.t.file("Downloads/starter-kit/package.json", 10);
    h.t.file("Downloads/starter-kit/node_modules/big.bin", 25 << 20);
    h.t.file("Downloads/starter-kit/README.md", 110 << 20);
    auto s = h.scanner();
    auto items = s.run();
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].id, "project:" + h.t.path("Downloads/starter-kit"));
    EXPECT_EQ(items[0].location, "~/Downloads/starter-kit");
}
