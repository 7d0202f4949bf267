#include "ui/SegmentLayout.h"
#include "ui/SegmentPaint.h"

#include <QColor>

#include <cmath>
#include <limits>
#include <numeric>

#include <gtest/gtest.h>

using SegmentLayout::layout;
using SegmentLayout::Options;
using SegmentLayout::Span;

namespace {

double used(const std::vector<Span>& spans) {
    return std::accumulate(spans.begin(), spans.end(), 0.0, [](double a, const Span& s) { return a + s.length; });
}

Options bar(double width, double gap = 0, double minimum = 0) {
    Options o;
    o.extent = width;
    o.gap = gap;
    o.minimum = minimum;
    return o;
}

} // namespace

TEST(SegmentLayout, PartsShareABarInProportionWithGapsOnlyBetweenThem) {
    auto spans = layout({30, 10, 60}, bar(206, 3));
    ASSERT_EQ(spans.size(), 3u);
    // Two gaps of 3 leave 200 to share.
    EXPECT_DOUBLE_EQ(spans[0].length, 60);
    EXPECT_DOUBLE_EQ(spans[1].length, 20);
    EXPECT_DOUBLE_EQ(spans[2].length, 120);
    EXPECT_DOUBLE_EQ(spans[0].start, 0);
    EXPECT_DOUBLE_EQ(spans[1].start, 63);
    EXPECT_DOUBLE_EQ(spans[2].start, 86);
    EXPECT_DOUBLE_EQ(spans[2].start + spans[2].length, 206);
}

TEST(SegmentLayout, EmptyNegativeAndBrokenValuesTakeNoRoomAndNoGap) {
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    auto spans = layout({0, 50, -20, nan, 50, inf}, bar(102, 2));
    ASSERT_EQ(spans.size(), 2u);
    EXPECT_EQ(spans[0].index, 1);
    EXPECT_EQ(spans[1].index, 4);
    EXPECT_DOUBLE_EQ(used(spans), 100);
    EXPECT_TRUE(layout({0, 0}, bar(100)).empty());
    EXPECT_TRUE(layout({}, bar(100)).empty());
    EXPECT_TRUE(layout({1, 2}, bar(0)).empty());
    EXPECT_TRUE(layout({1, 2}, bar(nan)).empty());
}

TEST(SegmentLayout, ATinyPartStaysVisibleAndTheOthersPayForIt) {
    // 20 TB of disk with 1 MB of swap: the swap would be 0.00000005 of the bar.
    auto spans = layout({20e12, 1e6}, bar(300, 2, 3));
    ASSERT_EQ(spans.size(), 2u);
    EXPECT_DOUBLE_EQ(spans[1].length, 3);
    EXPECT_NEAR(used(spans) + 2, 300, 1e-9);
    // Many tiny parts cannot all have the minimum in a narrow bar: none runs past the end.
    std::vector<double> many(40, 1);
    many.push_back(1e9);
    auto crowded = layout(many, bar(60, 2, 3));
    EXPECT_LE(crowded.back().start + crowded.back().length, 60 + 1e-9);
    for (const auto& s : crowded) EXPECT_GE(s.length, 0);
}

TEST(SegmentLayout, ATotalAboveTheSumLeavesTheRestEmpty) {
    Options o = bar(100, 0);
    o.total = 200;
    auto spans = layout({50, 50}, o);
    EXPECT_DOUBLE_EQ(used(spans), 50);
    // A total below the sum is not a reason to overflow.
    o.total = 10;
    EXPECT_DOUBLE_EQ(used(layout({50, 50}, o)), 100);
}

TEST(SegmentLayout, ARingClosesOnItselfWithOneGapPerPartButAWholePartHasNone) {
    Options ring;
    ring.extent = 360;
    ring.gap = 4;
    ring.closed = true;
    auto spans = layout({1, 1, 1}, ring);
    ASSERT_EQ(spans.size(), 3u);
    EXPECT_DOUBLE_EQ(used(spans), 348);
    EXPECT_DOUBLE_EQ(spans[0].start, 2);
    EXPECT_DOUBLE_EQ(spans[2].start + spans[2].length + 2, 360);
    auto whole = layout({0, 5, 0}, ring);
    ASSERT_EQ(whole.size(), 1u);
    EXPECT_DOUBLE_EQ(whole[0].start, 0);
    EXPECT_DOUBLE_EQ(whole[0].length, 360);
}

TEST(SegmentLayout, GapsGiveWayWhenTheBarIsTooShortForThem) {
    auto spans = layout({1, 1, 1, 1, 1}, bar(10, 8));
    ASSERT_EQ(spans.size(), 5u);
    EXPECT_GT(spans[0].length, 0);
    EXPECT_LE(spans.back().start + spans.back().length, 10 + 1e-9);
}

TEST(SegmentLayout, AHitFindsThePartAndMissesTheGaps) {
    auto spans = layout({50, 50}, bar(104, 4));
    EXPECT_EQ(SegmentLayout::hit(spans, 10), 0);
    EXPECT_EQ(SegmentLayout::hit(spans, 51), -1);
    EXPECT_EQ(SegmentLayout::hit(spans, 60), 1);
    EXPECT_EQ(SegmentLayout::hit(spans, 104), -1);
    EXPECT_EQ(SegmentLayout::hit(spans, -1), -1);
}

TEST(SegmentPaint, PartsComeFromMapsWithPaletteNamesAndNeutralDefaults) {
    QVariantList list{
        QVariantMap{{"id", "swap"}, {"value", 3e9}, {"color", "orange"}, {"hatched", true}},
        QVariantMap{{"id", "free"}, {"value", "12"}, {"color", QColor("#3FD38B")}},
        QVariant(42),                                            // not a part: skipped
        QVariantMap{{"id", "odd"}, {"value", "lots"}, {"color", "no-such-colour"}, {"striped", true}},
    };
    auto parts = SegmentPaint::parse(list);
    ASSERT_EQ(parts.size(), 3u);
    EXPECT_EQ(parts[0].fill, SegmentPaint::Fill::hatched);
    EXPECT_EQ(parts[0].color, QColor("#FF8A5B"));
    EXPECT_EQ(parts[1].value, 12);
    EXPECT_EQ(parts[1].fill, SegmentPaint::Fill::plain);
    EXPECT_EQ(parts[2].value, 0);
    EXPECT_EQ(parts[2].color, QColor("#3B3E47"));
    EXPECT_EQ(parts[2].fill, SegmentPaint::Fill::striped);
}
