// The Week tab: the runway's states, colours and words at the edges the forecast turns on, the
// strip of 30 days, the chart's scale and labels, the day picker, and the tab on screen.
#include "LiveScreens.h"

#include "foundation/Fmt.h"
#include "history/History.h"
#include "ui/Pictures.h"
#include "ui/UiEngine.h"
#include "ui/WeekState.h"
#include "ui/week/GrowthChart.h"
#include "ui/week/RunwayView.h"

#include <QDir>

#include <ctime>

#include <gtest/gtest.h>

using namespace live;

namespace {

Pace filling(double perDay, TimePoint since) { return Pace{perDay, 10, since}; }

TimePoint localDate(int year, int month, int day) {
    std::tm t{};
    t.tm_year = year - 1900;
    t.tm_mon = month - 1;
    t.tm_mday = day;
    t.tm_hour = 12;
    t.tm_isdst = -1;
    return Clock::from_time_t(std::mktime(&t));
}

} // namespace

TEST(RunwayView, LearningThenSteadyThenTheDayTheDiskFills) {
    const TimePoint now = Clock::now();
    auto learning = RunwayView::panel(std::nullopt, 40 * GB, 0, std::nullopt, now);
    EXPECT_EQ(learning.state, "learning");
    EXPECT_EQ(learning.headline, "Learning your pace");
    EXPECT_EQ(learning.big, "40.0 GB");
    // Half an hour of readings is still 0 hours.
    EXPECT_EQ(learning.line, "Sorrelin needs a day of free space readings to forecast. It has 0 hours so far.");
    EXPECT_EQ(RunwayView::panel(std::nullopt, 40 * GB, 1, std::nullopt, now).line,
              "Sorrelin needs a day of free space readings to forecast. It has 1 hour so far.");

    const TimePoint since = addSeconds(now, -10 * 86400.0);
    auto steady = RunwayView::panel(Pace{5e7, 10, since}, 40 * GB, 240, std::nullopt, now); // 50 MB a day is steady
    EXPECT_EQ(steady.state, "steady");
    EXPECT_EQ(steady.headline, "Not filling up");
    EXPECT_EQ(steady.line, "Free space has not dropped since " + Fmt::dayMonth(since) + ".");

    // The colour turns at 7 and 14 days left.
    const std::vector<std::pair<int, std::string>> edges{{7, "red"}, {8, "amber"}, {14, "amber"}, {15, "green"}};
    for (const auto& [days, tint] : edges) {
        auto p = RunwayView::panel(filling(1e9, since), days * GB + GB / 2, 240, std::nullopt, now);
        EXPECT_EQ(p.state, "filling");
        EXPECT_EQ(p.big, std::to_string(days) + " days");
        EXPECT_EQ(p.tint, tint) << days;
        EXPECT_EQ(p.headline, "Disk full around " + Fmt::dayMonth(addSeconds(now, days * 86400.0)));
        EXPECT_EQ(p.line, "at about 1.0 GB a day");
    }
    // Three hours left reads as one day, in red, full tomorrow.
    auto hours = RunwayView::panel(filling(8e9, since), GB, 240, std::nullopt, now);
    EXPECT_EQ(hours.big, "1 day");
    EXPECT_EQ(hours.tint, "red");
    EXPECT_EQ(hours.headline, "Disk full around " + Fmt::dayMonth(addSeconds(now, 86400)));

    EXPECT_EQ(RunwayView::panel(filling(1e9, since), 30 * GB, 240, 1, now).chip, "Cleaning this week moved it out by 1 day");
    EXPECT_EQ(RunwayView::panel(filling(1e9, since), 30 * GB, 240, 4, now).chip, "Cleaning this week moved it out by 4 days");
    EXPECT_EQ(RunwayView::panel(filling(1e9, since), 30 * GB, 240, 0, now).chip, "");
}

TEST(RunwayView, CellsFadeAsTheDiskFillsAndTurnAtFiveAndTenGigabytes) {
    const TimePoint now = Clock::now();
    // 20 GB free at 1 GB a day: day 10 leaves exactly 10 GB (green), day 15 exactly 5 GB (amber).
    const auto today = RunwayView::cell(0, 20 * GB, 1e9, now);
    EXPECT_EQ(today.tint, "green");
    EXPECT_DOUBLE_EQ(today.opacity, 1.0);
    EXPECT_EQ(today.tip, "Today: about 20.0 GB free");
    EXPECT_EQ(RunwayView::cell(10, 20 * GB, 1e9, now).tint, "green");
    EXPECT_EQ(RunwayView::cell(11, 20 * GB, 1e9, now).tint, "amber");
    EXPECT_EQ(RunwayView::cell(15, 20 * GB, 1e9, now).tint, "amber");
    EXPECT_EQ(RunwayView::cell(16, 20 * GB, 1e9, now).tint, "red");
    EXPECT_DOUBLE_EQ(RunwayView::cell(10, 20 * GB, 1e9, now).opacity, 0.35 + 0.65 * 0.5);
    const auto full = RunwayView::cell(20, 20 * GB, 1e9, now);
    EXPECT_TRUE(full.hatched);
    EXPECT_EQ(full.tip, Fmt::dayMonth(addSeconds(now, 20 * 86400.0)) + ": disk full");
    EXPECT_FALSE(RunwayView::cell(19, 20 * GB, 1e9, now).hatched);

    // Without a rate every day stands as today, a little dimmed.
    const auto still = RunwayView::cell(29, 20 * GB, std::nullopt, now);
    EXPECT_EQ(still.tint, "green");
    EXPECT_DOUBLE_EQ(still.opacity, 0.75);
    EXPECT_EQ(still.tip, Fmt::dayMonth(addSeconds(now, 29 * 86400.0)) + ": about 20.0 GB free, if nothing changes");
    // A full disk with no space at all: nothing to divide by, and no fault.
    const auto empty = RunwayView::cell(3, 0, 1e9, now);
    EXPECT_TRUE(empty.hatched);
    EXPECT_TRUE(std::isfinite(empty.opacity));
}

TEST(GrowthChart, TheScaleTheLabelsAndHowAPlaceLooks) {
    EXPECT_EQ(GrowthChart::top(0), 500 * MB); // a week with nothing new
    EXPECT_EQ(GrowthChart::top(490 * MB), 500 * MB);
    EXPECT_EQ(GrowthChart::top(500 * MB), 1 * GB);
    EXPECT_EQ(GrowthChart::top(11'760 * MB), 12 * GB);
    EXPECT_EQ(GrowthChart::top(11'761 * MB), 16 * GB);
    EXPECT_EQ(GrowthChart::top(98 * GB), 100 * GB);
    EXPECT_EQ(GrowthChart::top(98 * GB + 1), 100 * GB);
    EXPECT_EQ(GrowthChart::top(101 * GB), 150 * GB);
    EXPECT_EQ(GrowthChart::gridLabel(125 * MB), "125 MB");
    EXPECT_EQ(GrowthChart::gridLabel(GB), "1 GB");
    EXPECT_EQ(GrowthChart::gridLabel(1500 * MB), "1.5 GB");
    EXPECT_EQ(GrowthChart::gridLabel(12 * GB), "12 GB");

    const TimePoint tuesday = localDate(2026, 3, 3);
    EXPECT_EQ(GrowthChart::barLabel(tuesday, 0, false), Fmt::dayMonth(tuesday));
    EXPECT_EQ(GrowthChart::barLabel(tuesday, 4, false), "3");
    EXPECT_EQ(GrowthChart::barLabel(localDate(2026, 3, 1), 4, false), Fmt::dayMonth(localDate(2026, 3, 1)));
    EXPECT_EQ(GrowthChart::barLabel(tuesday, 13, true), "Today");
    EXPECT_EQ(GrowthChart::dayTitle(tuesday, false), "Tue, Mar 3");
    EXPECT_EQ(GrowthChart::dayTitle(tuesday, true), "Today, " + Fmt::dayMonth(tuesday));

    GrowthDay day;
    day.date = tuesday;
    EXPECT_EQ(GrowthChart::barTip(day, false), "Tue, Mar 3: nothing new");
    day.buckets = {300 * MB, 0, 0, 100 * MB};
    day.top = {{"node_modules packages", "~/code/shop", 300 * MB, GrowthBucket::projects}};
    EXPECT_EQ(GrowthChart::barTip(day, false), "Tue, Mar 3: 400 MB. Most of it: node_modules packages, 300 MB.");
    EXPECT_EQ(GrowthChart::accessibleLabel(day), Fmt::dayMonth(tuesday) + ", 400 MB of new files");

    using L = GrowthChart::Look;
    EXPECT_EQ(GrowthChart::look("Google Chrome cache", GrowthBucket::appData), (L{"globe", "browser"})); // the first rule wins
    EXPECT_EQ(GrowthChart::look("Claude transcripts", GrowthBucket::appData), (L{"doc.text", "purple"}));
    EXPECT_EQ(GrowthChart::look("Downloads", GrowthBucket::files), (L{"arrow.down.to.line", "green"}));
    EXPECT_EQ(GrowthChart::look("Cargo build output", GrowthBucket::tools), (L{"hammer", "blue"}));
    EXPECT_EQ(GrowthChart::look("Flatpak runtimes", GrowthBucket::tools), (L{"wrench.and.screwdriver", "purple"}));
    EXPECT_EQ(GrowthChart::look("Thunderbird", GrowthBucket::appData), (L{"square.stack.3d.up", "amber"}));
}

TEST(WeekState, TheRunwayFollowsTheHistoryAndAPickedDayCanBeLetGo) {
    Machine h;
    h.keepGrowth({0, 0, GB, 0, 0, 2 * GB, 0, 0, 0, 400 * MB, 0, 0, 0, 300 * MB});
    AppModel& m = h.start();
    WeekState week;
    week.setModel(&m);
    ASSERT_TRUE(m.growth());
    EXPECT_EQ(week.runway()["state"].toString(), "learning");
    EXPECT_EQ(week.cells().size(), 30);

    h.fillingHistory(10, 9 * GB, GB);
    EXPECT_EQ(week.runway()["state"].toString(), "filling");
    EXPECT_EQ(week.runway()["big"].toString(), "9 days");
    EXPECT_EQ(week.runway()["tint"].toString(), "amber");
    EXPECT_EQ(week.runway()["chip"].toString(), "");
    // A clean of this week moves the date out.
    m.history().data.cleans.push_back({addSeconds(h.clock.now(), -2 * 86400.0), 3 * GB, "caches"});
    h.disk.available = 9 * GB - 1; // the disk timer's next reading
    m.refreshDisk();
    EXPECT_EQ(week.runway()["chip"].toString(), "Cleaning this week moved it out by 2 days");

    // The chart: a peak of 2 GB is more than 98% of 2 GB, so the scale goes to 4.
    ASSERT_EQ(week.growthState(), "report");
    ASSERT_EQ(week.bars().size(), 14);
    QStringList grid;
    for (const auto& line : week.grid()) grid << line.toMap()["label"].toString();
    EXPECT_EQ(grid, (QStringList{"1 GB", "2 GB", "3 GB", "4 GB"}));
    EXPECT_DOUBLE_EQ(week.bars()[5].toMap()["fraction"].toDouble(), 0.5);
    EXPECT_EQ(week.bars()[13].toMap()["label"].toString(), "Today");

    const auto& days = m.growth()->days;
    EXPECT_TRUE(week.day()["title"].toString().startsWith("Today, "));
    week.pick(5);
    EXPECT_EQ(m.weekDay(), std::optional<int>(5));
    EXPECT_EQ(week.day()["title"].toString().toStdString(), GrowthChart::dayTitle(days[5].date, false));
    EXPECT_TRUE(week.bars()[5].toMap()["selected"].toBool());
    week.pick(1);
    EXPECT_EQ(m.weekDay(), std::optional<int>(1));
    EXPECT_EQ(week.day()["rows"].toList().size(), 0); // a day with nothing new
    week.pick(1);
    EXPECT_EQ(m.weekDay(), std::nullopt);
    // A pick past the report's days reads as no pick.
    m.setWeekDay(40);
    EXPECT_TRUE(week.day()["title"].toString().startsWith("Today, "));
}

TEST(WeekTab, TheDayPickerAndTheEmptyStatesOnScreen) {
    Machine h;
    AppModel& m = h.start();
    Screen screen("week/WeekTab.qml");
    ASSERT_TRUE(screen.find("runway"));
    EXPECT_TRUE(showsText(screen.find("growthEmpty"), "Sorrelin has not measured the last 14 days yet."));
    screen.click("measureNow");
    EXPECT_TRUE(m.growthRunning());
    EXPECT_TRUE(showsText(screen.find("growthEmpty"),
                          "Measuring the files made in the last 14 days. This takes a minute or two, in the background."));
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.growthRunning(); }));
    ASSERT_TRUE(m.growth());
    EXPECT_TRUE(screen.shown("chart"));
    EXPECT_FALSE(screen.shown("growthEmpty"));

    // Today is shown until a day is picked; a second click on the picked day lets it go.
    EXPECT_EQ(screen.text("dayTitle").rfind("Today, ", 0), 0u) << screen.text("dayTitle");
    screen.click("day-5");
    EXPECT_EQ(m.weekDay(), std::optional<int>(5));
    EXPECT_EQ(screen.text("dayTitle"), GrowthChart::dayTitle(m.growth()->days[5].date, false));
    screen.click("day-9");
    EXPECT_EQ(m.weekDay(), std::optional<int>(9));
    screen.click("day-9");
    EXPECT_EQ(m.weekDay(), std::nullopt);
    EXPECT_EQ(screen.text("dayTitle").rfind("Today, ", 0), 0u);
}

TEST(WeekTab, Pictures) {
    Album album;
    {
        Machine h;
        h.keepGrowth({120 * MB, 0, 1400 * MB, 90 * MB, 30 * MB, 2600 * MB, 0, 0, 700 * MB, 450 * MB, 3 * GB, 60 * MB, 0, 820 * MB});
        AppModel& m = h.start();
        h.fillingHistory(12, 11 * GB, 900 * MB);
        m.history().data.cleans.push_back({addSeconds(h.clock.now(), -86400.0), 2 * GB, "caches"});
        h.disk.available = 11 * GB - 1;
        m.refreshDisk();
        m.setWeekDay(10);
        album.draw("week/WeekTab.qml", "Week.png", {1100, 980});
    }
    {
        Machine h;
        h.start();
        album.draw("week/WeekTab.qml", "week-learning.png", {1100, 980});
    }
}
