#include "ui/PanelView.h"

#include "foundation/Fmt.h"

#include <gtest/gtest.h>

namespace {

const TimePoint now = fromSeconds(1'750'000'000);

// A pace at which `free` lasts `days` days and a little more.
Pace fillingFor(double days, int64_t free) { return Pace{static_cast<double>(free) / (days + 0.5), 14, now}; }

} // namespace

// The days left are truncated, and the colour turns at 8 and 15: red at 7, amber at 8 and
// 14, green at 15.
TEST(PanelViewForecast, TheLineChangesColourAtEightAndFifteenDaysLeft) {
    const int64_t free = 100 * GB;
    struct Case {
        double days;
        const char* tone;
    };
    for (Case c : {Case{7, "red"}, Case{8, "amberText"}, Case{14, "amberText"}, Case{15, "greenText"}}) {
        const auto line = PanelView::forecast(fillingFor(c.days, free), free, now);
        EXPECT_EQ(line.tone, c.tone) << c.days << " days";
        const TimePoint full = addSeconds(now, c.days * 86400);
        EXPECT_EQ(line.words, "Full " + Fmt::dayMonth(full) + ", " + Fmt::days(static_cast<int>(c.days))) << c.days << " days";
        EXPECT_EQ(line.symbol, "calendar");
    }
    const Pace pace = fillingFor(8, free);
    EXPECT_EQ(PanelView::forecast(pace, free, now).tip,
              "Free space falls about " + Fmt::bytes(static_cast<int64_t>(pace.bytesPerDay)) + " a day. Cleaning moves the date out.");
}

TEST(PanelViewForecast, LearningSteadyAndFillingToday) {
    auto learning = PanelView::forecast(std::nullopt, 100 * GB, now);
    EXPECT_EQ(learning.words, "Learning your pace");
    EXPECT_EQ(learning.symbol, "hourglass");
    EXPECT_EQ(learning.tip, "Sorrelin forecasts when your disk fills after a day of readings.");

    // 50 MB a day exactly is steady, not filling.
    auto steady = PanelView::forecast(Pace{5e7, 14, now}, 1 * GB, now);
    EXPECT_EQ(steady.words, "Not filling up");
    EXPECT_EQ(steady.symbol, "checkmark.circle");
    EXPECT_EQ(steady.tip, "");

    auto today = PanelView::forecast(Pace{2e9, 14, now}, 1 * GB, now);
    EXPECT_EQ(today.words, "Could fill today");
    EXPECT_EQ(today.tone, "red");
    EXPECT_NE(today.tip, "");
}

// The row's states in their order of precedence: a clean from the panel, its result for ten
// minutes, the time before the first scan, then what the caches are.
TEST(PanelViewCaches, StatesFollowTheCleanTheScanAndTheSpace) {
    PanelView::CachesInput in;
    EXPECT_EQ(PanelView::caches(in, now).state, PanelView::CachesState::placeholder);

    in.scanned = true;
    auto none = PanelView::caches(in, now);
    EXPECT_EQ(none.state, PanelView::CachesState::none);
    EXPECT_EQ(none.words, "Caches are doing their job");
    EXPECT_FALSE(none.button);

    in.caches = 3 * GB;
    auto old = PanelView::caches(in, now);
    EXPECT_EQ(old.words, Fmt::bytes(3 * GB) + " of old caches");
    EXPECT_TRUE(old.button);
    in.isLow = true;
    auto ready = PanelView::caches(in, now);
    EXPECT_EQ(ready.words, Fmt::bytes(3 * GB) + " of caches ready");
    EXPECT_EQ(ready.tip, "Deletes " + Fmt::bytes(3 * GB) + " of caches. Apps refill them as you use them, a little slower at first.");

    in.menuClean = std::pair{2, 5};
    auto clearing = PanelView::caches(in, now);
    EXPECT_EQ(clearing.words, "Clearing 2 of 5");
    EXPECT_FALSE(clearing.button) << "no second clean while one runs";
}

TEST(PanelViewCaches, TheFreedLineStandsForTenMinutesAndThenGivesWay) {
    PanelView::CachesInput in;
    in.scanned = true;
    in.caches = 1 * GB;
    in.menuReport = std::pair{int64_t{2 * GB}, now};
    EXPECT_EQ(PanelView::caches(in, now).words, "Freed " + Fmt::bytes(2 * GB) + " just now");
    EXPECT_EQ(PanelView::cachesChangeIn(in, now), 600.0);
    const TimePoint later = addSeconds(now, 599.5);
    EXPECT_EQ(PanelView::caches(in, later).state, PanelView::CachesState::freed);
    EXPECT_NEAR(*PanelView::cachesChangeIn(in, later), 0.5, 1e-6);

    const TimePoint gone = addSeconds(now, 600);
    EXPECT_EQ(PanelView::caches(in, gone).state, PanelView::CachesState::old);
    EXPECT_FALSE(PanelView::cachesChangeIn(in, gone));
}

TEST(PanelViewLabel, TheIconAloneShowsNoWords) {
    EXPECT_EQ(PanelView::label(MenuLabelStyle::iconOnly, 50 * GB, 20), "");
    EXPECT_EQ(PanelView::label(MenuLabelStyle::freeSpace, 50 * GB, 20), Fmt::bytes(50 * GB) + " free");
    EXPECT_EQ(PanelView::label(MenuLabelStyle::freeAndMemory, 50 * GB, 20), Fmt::bytes(50 * GB) + " free 20%");
}

TEST(PanelViewAdvice, TheButtonSaysWhatTheAdviceDoesInEachState) {
    auto words = [](const std::string& state, bool armed) {
        return PanelView::recButton(state, armed, "Quit Chrome", "Quit", "Quitting", "Quit");
    };
    EXPECT_EQ(words("", false), "Quit Chrome");
    EXPECT_EQ(words("", true), "Click again to quit");
    EXPECT_EQ(words("queued", true), "Waiting its turn") << "a state outranks the arming";
    EXPECT_EQ(words("busy", false), "Quitting");
    EXPECT_EQ(words("done", false), "Quit");
}
