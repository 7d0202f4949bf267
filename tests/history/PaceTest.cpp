#include "history/Forecast.h"
#include "history/History.h"
#include "history/RunwayPanel.h"

#include <gtest/gtest.h>

namespace {

const TimePoint now = fromSeconds(1'750'000'000);
constexpr double day = 86'400;

TimePoint daysAgo(double d) { return addSeconds(now, -d * day); }

} // namespace

TEST(Pace, AbsentWithoutASampleOfTheLastFourteenDaysOrWithLessThanADay) {
    HistoryData d;
    EXPECT_FALSE(Pace::measure(d, 100, 0, now));
    d.samples = {{daysAgo(15), 200, 0}};
    EXPECT_FALSE(Pace::measure(d, 100, 0, now));
    d.samples = {{addSeconds(now, -23 * 3600), 200, 0}};
    EXPECT_FALSE(Pace::measure(d, 100, 0, now));
    d.samples = {{daysAgo(1), 200, 0}};
    auto p = Pace::measure(d, 100, 0, now);
    ASSERT_TRUE(p);
    EXPECT_DOUBLE_EQ(p->days, 1.0);
    EXPECT_DOUBLE_EQ(p->bytesPerDay, 100);
}

TEST(Pace, StartsAtTheFirstSampleOfThePeriodNotTheOldest) {
    HistoryData d;
    d.samples = {{daysAgo(20), 1000 * GB, 0}, {daysAgo(13), 100 * GB, 0}, {daysAgo(1), 10 * GB, 0}};
    auto p = Pace::measure(d, 48 * GB, 0, now);
    ASSERT_TRUE(p);
    EXPECT_EQ(p->since, daysAgo(13));
    EXPECT_DOUBLE_EQ(p->days, 13);
    EXPECT_DOUBLE_EQ(p->bytesPerDay, 52.0 * GB / 13); // the chord, not the sample between
}

TEST(Pace, CleansAreAddedBackAndSwapIsLeftOut) {
    HistoryData d;
    d.samples = {{daysAgo(10), 100 * GB, 0}};
    d.cleans = {{daysAgo(12), 40 * GB, "before the period"},
                {daysAgo(10), 30 * GB, "same instant as the sample"},
                {daysAgo(6), 10 * GB, "a"},
                {daysAgo(2), 5 * GB, "b"},
                {addSeconds(now, 60), 50 * GB, "after now"}};
    auto p = Pace::measure(d, 80 * GB, 0, now);
    ASSERT_TRUE(p);
    EXPECT_DOUBLE_EQ(p->bytesPerDay, 3.5 * GB);
    EXPECT_TRUE(p->filling());

    // Swap grew by 4 GB and free space fell by 4 GB: nothing was consumed.
    HistoryData s;
    s.samples = {{daysAgo(3), 50 * GB, 2 * GB}};
    auto q = Pace::measure(s, 46 * GB, 6 * GB, now);
    ASSERT_TRUE(q);
    EXPECT_DOUBLE_EQ(q->bytesPerDay, 0);
    EXPECT_FALSE(q->filling());
}

TEST(Pace, FillingMeansMoreThanFiftyMegabytesADay) {
    EXPECT_FALSE((Pace{5e7, 3, now}).filling());
    EXPECT_TRUE((Pace{5e7 + 1, 3, now}).filling());
    EXPECT_FALSE((Pace{-9e9, 3, now}).filling());
}

TEST(Forecast, DaysLeftRunwayColourAndDate) {
    EXPECT_EQ(Forecast::state(std::nullopt), Forecast::State::learning);
    EXPECT_EQ(Forecast::state(Pace{1e6, 2, now}), Forecast::State::notFilling);
    Pace p{2 * GB, 5, now};
    EXPECT_EQ(Forecast::state(p), Forecast::State::filling);
    EXPECT_EQ(Forecast::daysLeft(p, 9 * GB), 4);  // 4.5 truncated
    EXPECT_EQ(Forecast::daysLeft(p, 1 * GB), 0);
    EXPECT_FALSE(Forecast::daysLeft(Pace{1e6, 2, now}, GB));
    EXPECT_EQ(Forecast::runway(0), 1);
    EXPECT_EQ(Forecast::runway(9), 9);
    EXPECT_EQ(Forecast::colour(7), "red");
    EXPECT_EQ(Forecast::colour(8), "amber");
    EXPECT_EQ(Forecast::colour(14), "amber");
    EXPECT_EQ(Forecast::colour(15), "green");
    EXPECT_EQ(Forecast::fullAround(now, 4), addSeconds(now, 4 * day));
}

TEST(RunwayPanel, DaysTheCleansOfTheLastWeekGained) {
    std::vector<CleanRecord> cleans{{daysAgo(7), 100 * GB, "exactly a week ago"}, {daysAgo(3), 5 * GB, "a"}, {daysAgo(1), 2 * GB, "b"}};
    EXPECT_EQ(RunwayPanel::moved(cleans, now, 2.0 * GB), 3); // 7 GB at 2 GB a day
    EXPECT_FALSE(RunwayPanel::moved(cleans, now, 0));
    EXPECT_FALSE(RunwayPanel::moved(cleans, now, -1));
    EXPECT_FALSE(RunwayPanel::moved({{daysAgo(8), GB, "old"}}, now, GB));
    EXPECT_FALSE(RunwayPanel::moved({}, now, GB));
}
