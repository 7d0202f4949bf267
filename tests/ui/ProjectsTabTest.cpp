// The Projects tab: a card's status, chips and the one action that fits it, the grid's rows,
// the summary and the shared-packages insight, and on screen: freeing build folders through
// the model, stopping leftovers, and a project that vanishes while its card shows.
#include "LiveScreens.h"

#include "ui/Pictures.h"
#include "ui/ProjectsState.h"
#include "ui/UiEngine.h"
#include "ui/NumberWords.h"
#include "ui/projects/ProjectView.h"

#include <QDir>

#include <filesystem>

#include <gtest/gtest.h>

using namespace live;
using fixtures::Proc;

namespace {

ProjectCard card(const std::string& name) {
    ProjectCard c;
    c.id = "/home/u/code/" + name;
    c.name = name;
    c.path = "~/code/" + name;
    return c;
}

ProjectApp projectApp(const std::string& name, int64_t build, bool running) {
    ProjectApp a{"/home/u/code/shop/" + name, name, build, running, std::nullopt};
    if (!running && build > 0) a.itemID = "project:" + a.id;
    return a;
}

} // namespace

TEST(ProjectView, WhatRunsHereInOneSentence) {
    const TimePoint now = Clock::now();
    ProjectCard c = card("site");
    c.running = true;
    c.claude = 2;
    c.ports = {3000};
    c.editors = {"VS Code"};
    EXPECT_EQ(ProjectView::status(c, now), "Two Claude sessions, a dev server and VS Code are working here.");
    c.claude = 1;
    c.ports = {};
    c.editors = {};
    EXPECT_EQ(ProjectView::status(c, now), "A Claude session is working here.");
    c.claude = 0;
    c.ports = {3000, 5173};
    EXPECT_EQ(ProjectView::status(c, now), "2 dev servers are working here.");
    c.ports = {};
    EXPECT_EQ(ProjectView::status(c, now), "Something is running in this folder, so its build folders stay.");

    c.running = false;
    c.leftovers = {leftover(9, "vite", c.id, MB, now)};
    EXPECT_EQ(ProjectView::status(c, now), "A process is still running after the session that started it ended.");
    c.leftovers.push_back(leftover(10, "tsc", c.id, MB, now));
    c.leftovers.push_back(leftover(11, "jest", c.id, MB, now));
    EXPECT_EQ(ProjectView::status(c, now), "3 processes are still running after the session that started them ended.");

    c.leftovers.clear();
    EXPECT_EQ(ProjectView::status(c, now), "Nothing is running.");
    c.lastChange = addSeconds(now, -3 * 86400.0);
    EXPECT_EQ(ProjectView::status(c, now), "Nothing is running. Last changed 3 days ago.");
}

TEST(ProjectView, ChipsComeInTheirOrderAndOnlyForWhatIsThere) {
    const TimePoint now = Clock::now();
    ProjectCard c = card("site");
    c.running = true;
    c.claude = 3;
    c.mcp = 1;
    c.ports = {3000, 5173};
    c.editors = {"Cursor", "VS Code"};
    std::vector<std::string> texts;
    for (const auto& chip : ProjectView::chips(c, now)) texts.push_back(chip.text);
    EXPECT_EQ(texts, (std::vector<std::string>{"3 Claude", "1 MCP server", "Dev servers :3000, :5173", "Cursor", "VS Code"}));

    ProjectCard idle = card("old");
    ASSERT_EQ(ProjectView::chips(idle, now).size(), 1u);
    EXPECT_EQ(ProjectView::chips(idle, now)[0].text, "Nothing running");

    ProjectCard left = card("blog");
    left.lastChange = addSeconds(now, -5 * 86400.0);
    left.leftovers = {leftover(9, "vite", left.id, MB, now)};
    ASSERT_EQ(ProjectView::chips(left, now).size(), 1u);
    EXPECT_EQ(ProjectView::chips(left, now)[0].text, "5 days old");
    EXPECT_EQ(ProjectView::chips(left, now)[0].symbol, "custom.ghost");
}

TEST(ProjectView, TheActionThatFitsTheCard) {
    const TimePoint now = Clock::now();
    // Nothing built and nothing running: no action at all.
    auto none = ProjectView::card(card("empty"), 1, 1, false, false, now);
    EXPECT_EQ(none.stopLabel, "");
    EXPECT_EQ(none.freeLabel, "");
    EXPECT_FALSE(none.locked);

    // A group where one app runs and another is idle frees the idle one only.
    ProjectCard shop = card("shop");
    shop.apps = {projectApp("shop-admin", 300 * MB, true), projectApp("shop-web", 500 * MB, false), projectApp("shop-docs", 0, false)};
    shop.running = true;
    shop.build = 800 * MB;
    shop.idleBuild = 500 * MB;
    shop.idleItemIDs = {"project:/home/u/code/shop/shop-web"};
    auto group = ProjectView::card(shop, GB, GB, false, false, now);
    EXPECT_EQ(group.freeLabel, "Free idle apps, 500 MB");
    EXPECT_EQ(group.freeTip, "Nothing runs in shop-web. Deletes node_modules and build output. The next install and build bring them back.");
    EXPECT_FALSE(group.locked);
    EXPECT_TRUE(group.wide);
    EXPECT_DOUBLE_EQ(group.buildFraction, 0.8);

    // Running with everything in use: locked, never freed.
    ProjectCard busy = card("api");
    busy.running = true;
    busy.build = 200 * MB;
    auto locked = ProjectView::card(busy, GB, GB, false, false, now);
    EXPECT_TRUE(locked.locked);
    EXPECT_EQ(locked.freeLabel, "");

    // Changed recently: the tip says to think twice. Armed, the button waits for a second press.
    ProjectCard recent = card("blog");
    recent.build = recent.idleBuild = 120 * MB;
    recent.idleItemIDs = {"project:/home/u/code/blog"};
    recent.recentlyChanged = true;
    auto armed = ProjectView::card(recent, GB, GB, true, false, now);
    EXPECT_EQ(armed.freeLabel, "Free 120 MB");
    EXPECT_EQ(armed.freeTip.rfind("You changed this recently, so think twice. ", 0), 0u);
    EXPECT_TRUE(armed.armed);
    // Once freed, the size waits for the next refresh to go, and nothing is offered twice.
    auto freed = ProjectView::card(recent, GB, GB, false, true, now);
    EXPECT_EQ(freed.freeLabel, "");
    EXPECT_EQ(freed.build, "Freed");

    // Leftovers are stopped, and the free button may stand beside the stop.
    recent.leftovers = {leftover(9, "vite", recent.id, MB, now), leftover(10, "tsc", recent.id, MB, now)};
    auto both = ProjectView::card(recent, GB, GB, false, false, now);
    EXPECT_EQ(both.stopLabel, "Stop 2 leftovers");
    EXPECT_EQ(both.leftoverTag, "2 leftovers");
    EXPECT_EQ(both.freeLabel, "Free 120 MB");
    recent.leftovers.pop_back();
    EXPECT_EQ(ProjectView::card(recent, GB, GB, false, false, now).stopLabel, "Stop leftover");
}

TEST(ProjectView, RowsPairCardsAndAWideCardEndsAPendingPair) {
    auto plain = [](const std::string& n) { return card(n); };
    auto wide = [](const std::string& n) {
        ProjectCard c = card(n);
        c.apps = {projectApp("a", 1, false), projectApp("b", 1, false), projectApp("c", 1, false)};
        return c;
    };
    ProjectCard older = wide("older");
    older.isOlder = true; // the fold of old projects never takes a whole row
    using Rows = std::vector<std::vector<std::size_t>>;
    EXPECT_EQ(ProjectView::rows({plain("a"), plain("b"), wide("c"), plain("d"), older, plain("f")}), (Rows{{0, 1}, {2}, {3, 4}, {5}}));
    EXPECT_EQ(ProjectView::rows({plain("a"), wide("b"), plain("c")}), (Rows{{0}, {1}, {2}}));
    EXPECT_EQ(ProjectView::rows({}), Rows{});
}

TEST(ProjectView, TheSummaryAndTheSharedPackagesInsight) {
    const TimePoint now = Clock::now();
    ProjectCard a = card("a"), b = card("b"), c = card("c");
    a.running = true;
    a.memory = 300 * MB;
    b.leftovers = {leftover(1, "x", b.id, 0, now), leftover(2, "y", b.id, 0, now)};
    b.memory = 100 * MB;
    b.build = 2 * GB;
    c.build = 500 * MB;
    auto summary = ProjectView::summary({a, b, c}, false);
    ASSERT_EQ(summary.size(), 4u);
    EXPECT_EQ(summary[0].text, "1 running");
    EXPECT_TRUE(summary[0].live);
    EXPECT_EQ(summary[1].text, "2 leftovers");
    EXPECT_EQ(summary[2].text, "400 MB memory");
    EXPECT_EQ(summary[3].text, "Measuring build folders");
    EXPECT_EQ(ProjectView::summary({a, b, c}, true)[3].text, "2.5 GB build folders");
    EXPECT_EQ(ProjectView::summary({c}, true).size(), 3u); // no leftovers: no ghost chip
    EXPECT_FALSE(ProjectView::summary({c}, true)[0].live);

    auto insight = ProjectView::insight(SharedPackages{"shop", 4, 212, 1'600 * MB, 420 * MB}, "~/code/shop");
    EXPECT_EQ(insight.headline, "Four shop apps carry the same 212 packages");
    EXPECT_EQ(insight.text, "One shared workspace would keep a single copy instead of four.");
    EXPECT_DOUBLE_EQ(insight.sharedFraction, 420.0 / 1600.0);
    EXPECT_EQ(insight.steps.rfind("List the 4 apps in one workspace file at ~/code/shop/", 0), 0u);
    EXPECT_NE(insight.steps.find("install once in ~/code/shop/node_modules and each app keeps only its own."), std::string::npos);
    EXPECT_EQ(NumberWords::number(0), "Zero");
    EXPECT_EQ(NumberWords::number(10), "Ten");
    EXPECT_EQ(NumberWords::number(11), "11");
}

namespace {

// A home with four projects: a site where a dev server and Claude run, a blog with leftovers, an
// idle api with a build folder, and a workspace of three apps.
struct ProjectHome : Machine {
    ProjectHome() {
        projectIn(home, "code/site", 90 * MB);
        projectIn(home, "code/blog", 140 * MB);
        projectIn(home, "code/api", 260 * MB);
        for (const char* app : {"shop-web", "shop-admin", "shop-api"}) projectIn(home, std::string("code/shop/") + app, 180 * MB);
    }
    // The shop's three apps each install the same 25 packages (the generated one and 24 more of
    // 5 MB): 300 MB a copy, where one shared workspace would keep a single one.
    void sharePackages() {
        for (const char* app : {"shop-web", "shop-admin", "shop-api"})
            for (int i = 0; i < 24; ++i)
                home.file("code/shop/" + std::string(app) + "/node_modules/lib-" + std::to_string(i) + "/index.js", 5 * MB);
    }
    AppModel& ready(bool withLeftovers = true) {
        AppModel& m = start();
        std::vector<Proc> procs{{100, 1, "node", "/usr/bin/node", 3600, 0, 180 * MB}, {101, 1, "claude", "/usr/bin/claude", 600, 0, 300 * MB}};
        probe.cwds[100] = home.path("code/site");
        probe.cwds[101] = home.path("code/site");
        probe.ports[100] = {3000};
        probe.snapshots = {fixtures::snapshot(procs)};
        m.monitor().sample(0);
        EXPECT_TRUE(AppHarness::waitUntil([&] { return m.monitor().latest().has_value(); }));
        EXPECT_TRUE(scanToEnd());
        settle();
        if (withLeftovers) {
            m.monitor().leftovers = {leftover(200, "vite dev server", home.path("code/blog"), 250 * MB, addSeconds(clock.now(), -2 * 86400.0))};
            m.monitor().changed();
        }
        m.refreshProjects(true);
        EXPECT_TRUE(AppHarness::waitUntil([&] { return !m.projectsBusy() && m.sharedChecked(); }));
        settle();
        return m;
    }
};

const ProjectView::Card* view(const ProjectsState& s, const std::string& name) {
    for (const auto& c : s.cardViews())
        if (c.name == name) return &c;
    return nullptr;
}

} // namespace

TEST(ProjectsState, FindingThenNothingThenTheCards) {
    Machine empty;
    AppModel& m = empty.start();
    ProjectsState state;
    state.setModel(&m);
    EXPECT_EQ(state.content(), "finding");
    empty.probe.snapshots = {fixtures::snapshot({})};
    m.monitor().sample(0);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return m.monitor().latest().has_value(); }));
    m.refreshProjects(false);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return m.sharedChecked(); }));
    EXPECT_EQ(state.content(), "none");

    ProjectHome h;
    AppModel& full = h.ready();
    state.setModel(&full);
    EXPECT_EQ(state.content(), "cards");
    const auto* site = view(state, "site");
    ASSERT_TRUE(site);
    EXPECT_EQ(site->tag, "Running");
    EXPECT_EQ(site->status, "A Claude session and a dev server are working here.");
    EXPECT_TRUE(site->locked);
    const auto* blog = view(state, "blog");
    ASSERT_TRUE(blog);
    EXPECT_EQ(blog->stopLabel, "Stop leftover");
    const auto* shop = view(state, "shop");
    ASSERT_TRUE(shop);
    EXPECT_TRUE(shop->wide);
    EXPECT_EQ(shop->apps.size(), 3u);
    EXPECT_EQ(state.summary()[0].toMap()["text"].toString(), "1 running");
}

TEST(ProjectsTab, FreeingAndStoppingGoThroughTheModel) {
    ProjectHome h;
    AppModel& m = h.ready();
    Screen screen("projects/ProjectsTab.qml", {1100, 1400});
    auto toasts = h.recordToasts();
    QQuickItem* api = screen.find("card-api");
    ASSERT_TRUE(api);
    QQuickItem* free = within(api, "free");
    ASSERT_TRUE(free && free->isVisible());
    EXPECT_EQ(free->property("text").toString(), "Free 260 MB");
    // The first click arms, the second clears the build folder through the model's clean.
    screen.click(free);
    EXPECT_EQ(m.armed(), std::optional<std::string>("proj:" + h.home.path("code/api")));
    EXPECT_EQ(free->property("text").toString(), "Click again to free");
    screen.click(free);
    ASSERT_TRUE(h.finishClean());
    EXPECT_TRUE(m.freedProjects().contains(h.home.path("code/api")));
    EXPECT_FALSE(std::filesystem::exists(h.home.path("code/api/node_modules")));
    EXPECT_TRUE(std::filesystem::exists(h.home.path("code/api/package.json")));
    // The card redraws when the model says what went, which may take a few frames.
    EXPECT_TRUE(AppHarness::waitUntil([&] { return !free->isVisible(); })) << "the freed card still offers to free";

    // Stopping the blog's leftover: the model stops it, says so and builds the cards again.
    QQuickItem* blog = screen.find("card-blog");
    ASSERT_TRUE(blog);
    QQuickItem* stop = within(blog, "stop");
    ASSERT_TRUE(stop && stop->isVisible());
    screen.click(stop);
    ASSERT_TRUE(AppHarness::waitUntil([&] {
        return std::find(toasts->begin(), toasts->end(), "Stopped 1 leftover in blog. 250 MB of memory back.") != toasts->end();
    })) << (toasts->empty() ? "" : toasts->back());
    EXPECT_TRUE(m.monitor().leftovers.empty());
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.projectsBusy(); }));
    h.settle();
    blog = screen.find("card-blog");
    ASSERT_TRUE(blog);
    ASSERT_TRUE(within(blog, "stop"));
    EXPECT_FALSE(within(blog, "stop")->isVisible());
}

TEST(ProjectsTab, TheGridFollowsTheRowsAndAVanishedProjectJustLeaves) {
    ProjectHome h;
    AppModel& m = h.ready(false);
    Screen screen("projects/ProjectsTab.qml", {1100, 1400});
    // Cards stand in the grid as the rows say: paired, with a wide card alone on its row.
    const auto rows = ProjectView::rows(m.projects());
    std::vector<double> rowTops;
    for (const auto& row : rows) {
        QQuickItem* first = screen.find(QString::fromStdString("card-" + m.projects()[row[0]].name));
        ASSERT_TRUE(first);
        if (!rowTops.empty()) {
            EXPECT_GT(first->y(), rowTops.back());
        }
        rowTops.push_back(first->y());
        if (row.size() == 2) {
            QQuickItem* second = screen.find(QString::fromStdString("card-" + m.projects()[row[1]].name));
            EXPECT_EQ(second->y(), first->y());
            EXPECT_GT(second->x(), first->x());
        }
        if (ProjectView::isWide(m.projects()[row[0]])) {
            EXPECT_EQ(first->width(), screen.find("cards")->width());
        }
    }

    // A project folder removed while its card shows: the next build drops the card, nothing breaks.
    std::filesystem::remove_all(h.home.path("code/blog"));
    ASSERT_TRUE(h.scanToEnd());
    m.refreshProjects(false);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.projectsBusy(); }));
    h.settle();
    EXPECT_FALSE(screen.find("card-blog"));
    EXPECT_TRUE(screen.find("card-api"));
}

TEST(ProjectsTab, TheSharedPackagesInsightStandsAboveTheCardsAndShowsHowOnAClick) {
    ProjectHome h;
    h.sharePackages();
    AppModel& m = h.ready();
    ASSERT_TRUE(m.sharedInsight());
    Screen screen("projects/ProjectsTab.qml", {1100, 1400});
    ASSERT_TRUE(screen.shown("insight"));
    EXPECT_EQ(screen.text("insightHeadline"), "Three shop apps carry the same 25 packages");
    EXPECT_LT(screen.find("insight")->mapToScene({0, 0}).y(), screen.find("card-site")->mapToScene({0, 0}).y());
    EXPECT_FALSE(screen.shown("steps"));
    screen.click("showHow");
    EXPECT_TRUE(m.showHow());
    ASSERT_TRUE(screen.shown("steps"));
    EXPECT_EQ(screen.text("showHow"), "Hide");
    EXPECT_EQ(screen.find("steps")->property("text").toString().toStdString().rfind("List the 3 apps in one workspace file at ~/code/shop/", 0), 0u);
    screen.click("showHow");
    EXPECT_FALSE(m.showHow());
    EXPECT_FALSE(screen.shown("steps"));

    m.setShowHow(true);
    Album().draw("projects/ProjectsTab.qml", "Projects.png", {1100, 1400});
}

TEST(ProjectsTab, Pictures) {
    Machine h;
    h.start();
    Album().draw("projects/ProjectsTab.qml", "projects-finding.png", {1100, 420});
}
