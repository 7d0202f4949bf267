#include "projects/Projects.h"

#include "foundation/FS.h"
#include "monitor/MonitorFixtures.h"
#include "support/FakeAppBundles.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

using fixtures::Proc;

namespace {

constexpr double day = 86'400;

// A generated home, its processes as the probe reports them, and the cards built from them.
struct Home {
    TempTree tree;
    Layout layout = Layout::linux(tree.root());
    fixtures::FakeProbe probe;
    FakeAppBundles bundles;
    std::vector<Proc> procs;
    std::vector<CleanItem> items;
    std::vector<Leftover> leftovers;
    TimePoint now = Clock::now();

    std::string path(const std::string& rel) const { return tree.path(rel); }
    std::string repo(const std::string& rel) const {
        tree.dir(rel + "/.git");
        return tree.path(rel);
    }
    // A process named `name` working in `rel`.
    void work(int32_t pid, const std::string& name, const std::string& rel, int64_t memory = 0, std::string exe = "") {
        procs.push_back({pid, 1, name, exe.empty() ? "/usr/bin/" + name : exe, 60, 0, memory});
        probe.cwds[pid] = path(rel);
    }
    CleanItem& item(const std::string& root, int64_t size, const std::string& note = "node_modules") {
        CleanItem i;
        i.id = "project:" + path(root);
        i.tier = Tier::rebuildable;
        i.name = FS::lastComponent(root);
        i.size = size;
        i.note = note;
        i.defaultOn = true;
        items.push_back(i);
        return items.back();
    }
    std::vector<ProjectCard> cards() {
        return Projects::build(items, fixtures::snapshot(procs), leftovers, now, probe, layout, bundles);
    }
};

std::vector<std::string> names(const std::vector<ProjectCard>& cards) {
    std::vector<std::string> out;
    for (const auto& c : cards) out.push_back(c.name);
    return out;
}

const ProjectCard* card(const std::vector<ProjectCard>& cards, const std::string& name) {
    for (const auto& c : cards)
        if (c.name == name) return &c;
    return nullptr;
}

} // namespace

TEST(Projects, AWorkspaceIsOneCardOfItsApps) {
    Home h;
    h.repo("code/shop/shop-admin");
    h.repo("code/shop/shop-web");
    h.item("code/shop/shop-admin", 300 * MB, "node_modules · changed 3 days ago");
    h.item("code/shop/shop-web", 500 * MB, "node_modules · changed 10 days ago");
    h.work(10, "node", "code/shop/shop-admin", 80 * MB);
    h.work(11, "claude", "code/shop", 40 * MB); // in the workspace folder itself
    auto cards = h.cards();
    ASSERT_EQ(cards.size(), 1u);
    const ProjectCard& shop = cards[0];
    EXPECT_EQ(shop.id, h.path("code/shop"));
    EXPECT_EQ(shop.name, "shop");
    EXPECT_EQ(shop.path, "~/code/shop");
    ASSERT_EQ(shop.apps.size(), 2u);
    // Running apps first, then the bigger build.
    EXPECT_EQ(shop.apps[0], (ProjectApp{h.path("code/shop/shop-admin"), "shop-admin", 300 * MB, true, std::nullopt}));
    EXPECT_EQ(shop.apps[1], (ProjectApp{h.path("code/shop/shop-web"), "shop-web", 500 * MB, false,
                                        "project:" + h.path("code/shop/shop-web")}));
    EXPECT_TRUE(shop.running);
    EXPECT_EQ(shop.claude, 1);
    EXPECT_EQ(shop.memory, 120 * MB);
    EXPECT_EQ(shop.build, 800 * MB);
    EXPECT_EQ(shop.idleBuild, 500 * MB);
    EXPECT_EQ(shop.idleItemIDs, std::vector<std::string>{"project:" + h.path("code/shop/shop-web")});
    ASSERT_TRUE(shop.lastChange);
    EXPECT_NEAR(secondsBetween(*shop.lastChange, h.now) / day, 3, 0.1); // the latest of its apps
}

TEST(Projects, NoWorkspaceInAFolderOfTheHomeOrWithoutNamesLikeItsApps) {
    Home h;
    h.repo("Documents/alpha");
    h.repo("Documents/beta");
    h.tree.text("Documents/turbo.json", "{}");
    h.repo("code/worktrees/a-cf");
    h.repo("code/worktrees/b-cf");
    for (const char* p : {"Documents/alpha", "Documents/beta", "code/worktrees/a-cf", "code/worktrees/b-cf"})
        h.item(p, 100 * MB, "node_modules · changed today");
    auto cards = h.cards();
    EXPECT_EQ(cards.size(), 4u);
    for (const auto& c : cards) EXPECT_TRUE(c.apps.empty()) << c.name;
}

TEST(Projects, ProcessesCountForTheirRepositoryAndOnlyInTheOpenPartOfTheHome) {
    Home h;
    h.repo("code/api");
    h.tree.dir("code/api/src/deep");
    h.repo(".config/someapp/plugins/repo");
    h.repo("snap/tool/common/repo");
    h.work(10, "node", "code/api/src/deep", 50 * MB);
    h.work(11, "node", ".config/someapp/plugins/repo", 50 * MB);
    h.work(12, "node", "snap/tool/common/repo", 50 * MB);
    h.work(13, "bash", "code/api", 50 * MB); // a shell says nothing
    h.work(14, "node", "elsewhere", 50 * MB); // in no repository
    h.procs.push_back({15, 1, "node", "/usr/bin/node", 60, 0, MB});
    h.probe.cwds[15] = "/tmp/outside";
    auto cards = h.cards();
    ASSERT_EQ(names(cards), std::vector<std::string>{"api"});
    EXPECT_EQ(cards[0].id, h.path("code/api"));
    EXPECT_EQ(cards[0].memory, 50 * MB);
    EXPECT_TRUE(cards[0].running);
    EXPECT_TRUE(cards[0].apps.empty());
}

TEST(Projects, WhatIsIdleIsWhatNothingUses) {
    Home h;
    for (const char* p : {"code/busy", "code/free", "code/locked", "code/empty", "code/fresh"}) h.repo(p);
    h.item("code/busy", 2 * GB);
    h.work(10, "node", "code/busy");
    h.item("code/free", GB);
    h.item("code/locked", GB).lockedReason = "In use by the build · kept";
    h.item("code/empty", 0);
    CleanItem& fresh = h.item("code/fresh", GB);
    fresh.defaultOn = false;
    auto cards = h.cards();
    EXPECT_EQ(card(cards, "busy")->idleBuild, 0);
    EXPECT_EQ(card(cards, "busy")->build, 2 * GB);
    EXPECT_EQ(card(cards, "free")->idleBuild, GB);
    EXPECT_EQ(card(cards, "free")->idleItemIDs, std::vector<std::string>{"project:" + h.path("code/free")});
    EXPECT_EQ(card(cards, "locked")->idleBuild, 0);
    EXPECT_FALSE(card(cards, "locked")->recentlyChanged);
    EXPECT_EQ(card(cards, "empty")->idleBuild, 0);
    // Left unticked because it is in use this week: still idle, and said so.
    EXPECT_TRUE(card(cards, "fresh")->recentlyChanged);
    EXPECT_EQ(card(cards, "fresh")->idleBuild, GB);
}

TEST(Projects, OldProjectsFoldOnceThereAreTwoButAWorkspaceNever) {
    Home h;
    h.repo("code/one");
    h.item("code/one", 300 * MB, "target · changed Jan 5, 2021");
    h.repo("code/recent");
    h.item("code/recent", 100 * MB, "node_modules · changed 3 days ago");
    auto cards = h.cards();
    EXPECT_EQ(names(cards), (std::vector<std::string>{"one", "recent"}));
    EXPECT_FALSE(cards[0].isOlder);

    h.repo("code/two");
    h.item("code/two", 200 * MB, "node_modules · changed Feb 7, 2022");
    h.repo("code/three"); // a note without a date, and a repository untouched for 90 days
    h.tree.text("code/three/.git/index", "x");
    h.tree.age("code/three/.git/index", 90 * day);
    h.item("code/three", 50 * MB);
    h.repo("code/old/old-a");
    h.repo("code/old/old-b");
    h.item("code/old/old-a", 10 * MB, "node_modules · changed Jan 5, 2021");
    h.item("code/old/old-b", 10 * MB, "node_modules · changed Jan 5, 2021");
    cards = h.cards();
    EXPECT_EQ(names(cards), (std::vector<std::string>{"old", "recent", "Older projects"}));
    const ProjectCard& older = cards.back();
    EXPECT_EQ(older.id, "older");
    EXPECT_TRUE(older.isOlder);
    EXPECT_EQ(older.path, "one, three, two");
    EXPECT_EQ(older.build, 550 * MB);
    EXPECT_EQ(older.idleBuild, 550 * MB);
    EXPECT_EQ(older.idleItemIDs.size(), 3u);
    ASSERT_EQ(older.apps.size(), 3u);
    EXPECT_EQ(older.apps[0].name, "one"); // the biggest build first
    EXPECT_EQ(older.apps[0].itemID, "project:" + h.path("code/one"));
    EXPECT_EQ(older.apps[2].name, "three");
    ASSERT_TRUE(older.lastChange);
    EXPECT_NEAR(secondsBetween(*older.lastChange, h.now) / day, 90, 1);
}

TEST(Projects, WithoutAChangeInTheNoteTheRepositorysOwnDateStands) {
    Home h;
    h.repo("code/plain");
    h.tree.text("code/plain/.git/index", "x");
    h.tree.age("code/plain/.git/index", 40 * day);
    h.item("code/plain", 100 * MB, "node_modules");
    // No index at all: the folder's own date.
    h.repo("code/bare");
    h.work(10, "node", "code/bare");
    h.tree.age("code/bare", 5 * day);
    auto cards = h.cards();
    ASSERT_TRUE(card(cards, "plain") && card(cards, "plain")->lastChange);
    EXPECT_NEAR(secondsBetween(*card(cards, "plain")->lastChange, h.now) / day, 40, 0.1);
    ASSERT_TRUE(card(cards, "bare") && card(cards, "bare")->lastChange);
    EXPECT_NEAR(secondsBetween(*card(cards, "bare")->lastChange, h.now) / day, 5, 0.1);
}

TEST(Projects, CardsGoRunningThenLeftoversThenWorkspacesThenTheBiggest) {
    Home h;
    for (const char* p : {"code/small", "code/big", "code/run", "code/ghost", "code/ws/ws-a", "code/ws/ws-b"}) h.repo(p);
    h.item("code/small", 100 * MB);
    h.item("code/big", 3 * GB);
    h.item("code/ws/ws-a", 10 * MB);
    h.item("code/ws/ws-b", 10 * MB);
    h.work(10, "node", "code/run", 10 * MB);
    Leftover ghost;
    ghost.id = 20;
    ghost.pids = {20, 21};
    ghost.cwd = h.path("code/ghost/server");
    ghost.label = "vite dev";
    h.leftovers = {ghost};
    h.work(20, "node", "code/ghost/server", 900 * MB); // its memory is the leftover's, not the card's
    h.work(21, "esbuild", "code/ghost/server", 100 * MB);
    auto cards = h.cards();
    EXPECT_EQ(names(cards), (std::vector<std::string>{"run", "ghost", "ws", "big", "small"}));
    const ProjectCard* g = card(cards, "ghost");
    EXPECT_FALSE(g->running);
    EXPECT_EQ(g->memory, 0);
    ASSERT_EQ(g->leftovers.size(), 1u);
    EXPECT_EQ(g->leftovers[0].id, 20);
}

TEST(Projects, SessionsServersEditorsAndPorts) {
    Home h;
    h.repo("code/api");
    h.work(10, "claude", "code/api");
    h.work(11, "node", "code/api");
    h.probe.args[11] = {"node", "/home/u/.npm/_npx/x/node_modules/@playwright/mcp/cli.js"};
    h.work(12, "mcp-proxy", "code/api");
    h.work(13, "python3", "code/api");
    h.probe.args[13] = {"python3", "-m", "http.server", "8000"};
    h.probe.ports[13] = {8000, 80};
    h.work(14, "code", "code/api", 0, "/usr/share/code/code");
    h.probe.ports[14] = {45123};
    h.work(15, "idea", "code/api", 0, "/home/u/.local/share/JetBrains/Toolbox/apps/intellij-idea-ultimate/bin/idea");
    h.work(16, "slack", "code/api", 0, "/usr/lib/slack/slack");
    h.probe.ports[16] = {40000};
    h.bundles.add("slack", "Slack", "/usr/lib/slack/slack");
    h.work(17, "vim", "code/api", 0, "/usr/bin/vim");
    h.probe.ports[17] = {3000};
    h.bundles.add("vim", "Vim", "/usr/bin/vim").terminal = true; // a terminal program is no app
    auto cards = h.cards();
    ASSERT_EQ(cards.size(), 1u);
    EXPECT_EQ(cards[0].claude, 1);
    EXPECT_EQ(cards[0].mcp, 2);
    EXPECT_EQ(cards[0].editors, (std::vector<std::string>{"IntelliJ IDEA", "VS Code"}));
    EXPECT_EQ(cards[0].ports, (std::vector<int>{3000, 8000}));
}

TEST(Projects, LastChangeReadBackFromANote) {
    const TimePoint now = Clock::now();
    auto ago = [&](const std::string& note) {
        auto t = Projects::lastChange(note, now);
        return t ? std::optional<double>(secondsBetween(*t, now) / day) : std::nullopt;
    };
    EXPECT_EQ(ago("node_modules · changed today"), 0);
    EXPECT_NEAR(*ago("node_modules · changed 3 days ago"), 3, 0.05);
    // Yesterday is the start of the day before: between one and two days back.
    EXPECT_GE(*ago("target · changed yesterday"), 1);
    EXPECT_LT(*ago("target · changed yesterday"), 2);
    auto dated = Projects::lastChange("x · changed Mar 4, 2024", now);
    ASSERT_TRUE(dated);
    std::time_t t = Clock::to_time_t(*dated);
    std::tm parts{};
    localtime_r(&t, &parts);
    EXPECT_EQ(parts.tm_year + 1900, 2024);
    EXPECT_EQ(parts.tm_mon, 2);
    EXPECT_EQ(parts.tm_mday, 4);
    // Without a year: this year's date, never one ahead of now.
    auto noYear = Projects::lastChange("x · changed Dec 31", now);
    ASSERT_TRUE(noYear);
    EXPECT_LE(*noYear, now);
    EXPECT_LT(secondsBetween(*noYear, now), 366 * day);
    EXPECT_FALSE(ago("node_modules"));
    EXPECT_FALSE(ago("changed recently"));
    EXPECT_FALSE(ago("changed Foo 4"));
    EXPECT_FALSE(ago("changed Mar 40"));
    EXPECT_FALSE(ago("changed 3 weeks ago"));
}

TEST(Projects, EditorsByTheirProgramsPlace) {
    const ProjectTables linux = ProjectTables::forLinux({});
    EXPECT_EQ(Projects::editorName("/usr/share/code/code", linux), "VS Code");
    EXPECT_EQ(Projects::editorName("/usr/share/code-insiders/code-insiders", linux), "VS Code Insiders");
    EXPECT_EQ(Projects::editorName("/snap/code/172/usr/share/code/code", linux), "VS Code");
    EXPECT_EQ(Projects::editorName("/tmp/.mount_cursorAbC12/usr/share/cursor/cursor", linux), "Cursor");
    EXPECT_EQ(Projects::editorName("/home/u/.local/zed.app/libexec/zed-editor", linux), "Zed");
    EXPECT_EQ(Projects::editorName("/usr/share/windsurf/windsurf", linux), "Windsurf");
    EXPECT_EQ(Projects::editorName("/opt/pycharm-2024.1/jbr/bin/java", linux), "PyCharm");
    EXPECT_EQ(Projects::editorName("/opt/idea-IU-241.14494.240/bin/idea", linux), "IntelliJ IDEA");
    EXPECT_FALSE(Projects::editorName("/usr/bin/node", linux));
    // A person or a project named like an editor is not one.
    EXPECT_FALSE(Projects::editorName("/home/rider/.nvm/versions/node/v20.11.1/bin/node", linux));
    EXPECT_FALSE(Projects::editorName("/home/u/code/cursor/target/debug/cursor", linux));
    EXPECT_FALSE(Projects::editorName("", linux));
    const ProjectTables mac = ProjectTables::forMacos({});
    EXPECT_EQ(Projects::editorName("/Applications/Visual Studio Code - Insiders.app/Contents/MacOS/Electron", mac),
              "VS Code Insiders");
    EXPECT_EQ(Projects::editorName("/Applications/Xcode.app/Contents/MacOS/Xcode", mac), "Xcode");
}
