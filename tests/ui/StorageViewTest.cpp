#include "ui/StorageView.h"

#include "foundation/Fmt.h"

#include <numeric>

#include <gtest/gtest.h>

namespace {

StorageReport report(bool complete) {
    StorageReport r;
    r.complete = complete;
    r.categories = {StorageCategory{StorageKind::downloads, 40 * GB, {}, 0, {}},
                    StorageCategory{StorageKind::apps, 25 * GB, {}, 0, {}},
                    StorageCategory{StorageKind::music, 0, {}, 2, {"/h/Music/locked", "/h/Music/other"}}};
    return r;
}

// 500 GB: 100 GB used by files, 375 GB free, 25 GB kept back for the administrator.
DiskInfo disk() { return DiskInfo{"Test disk", 500 * GB, 375 * GB, 25 * GB}; }

std::vector<std::string> ids(const std::vector<StorageView::Slice>& slices) {
    std::vector<std::string> out;
    for (const auto& s : slices) out.push_back(s.id);
    return out;
}

int64_t sum(const std::vector<StorageView::Slice>& slices) {
    return std::accumulate(slices.begin(), slices.end(), int64_t{0},
                           [](int64_t a, const StorageView::Slice& s) { return a + s.bytes; });
}

const StorageView::Slice& find(const std::vector<StorageView::Slice>& slices, const std::string& id) {
    static const StorageView::Slice none;
    for (const auto& s : slices)
        if (s.id == id) return s;
    ADD_FAILURE() << "no slice " << id;
    return none;
}

} // namespace

// The finished bar accounts for the whole disk: the categories, the system's share (what they
// and swap leave of the used space, plus the kept-back space), swap and free.
TEST(StorageViewSlices, ACompleteWalkAddsUpToTheDiskWithTheKeptBackSpaceInTheSystemShare) {
    auto slices = StorageView::slices(report(true), false, disk(), 5 * GB);
    EXPECT_EQ(ids(slices), (std::vector<std::string>{"downloads", "apps", "system", "swap", "free"}));
    EXPECT_EQ(sum(slices), disk().total);
    // 100 used - 65 measured - 5 swap = 30, and 25 kept back.
    EXPECT_EQ(find(slices, "system").bytes, 55 * GB);
    EXPECT_EQ(find(slices, "system").title, "System data");
    EXPECT_FALSE(find(slices, "system").kind);
    EXPECT_TRUE(find(slices, "downloads").kind);
    EXPECT_EQ(find(slices, "swap").title, "Swap and sleep image");
    EXPECT_EQ(find(slices, "swap").legend, "Swap");
    // A kind's own colour reaches the bar as a colour it can parse.
    EXPECT_EQ(find(slices, "apps").colour, "#8B8FF8");
    EXPECT_EQ(find(slices, "free").bytes, 375 * GB);
}

TEST(StorageViewSlices, TheReportsOwnSwapFigureWinsAndNoSwapMeansNoSwapSlice) {
    StorageReport r = report(true);
    r.vm = 8 * GB;
    auto slices = StorageView::slices(r, false, disk(), 5 * GB);
    EXPECT_EQ(find(slices, "swap").bytes, 8 * GB);
    EXPECT_EQ(find(slices, "system").bytes, 27 * GB + 25 * GB);
    EXPECT_EQ(sum(slices), disk().total);

    auto noSwap = StorageView::slices(report(true), false, disk(), 0);
    EXPECT_EQ(ids(noSwap), (std::vector<std::string>{"downloads", "apps", "system", "free"}));
}

// Files counted in full beyond the used figure (shared blocks) never make the system share
// negative: only the kept-back space stays, and without that there is no system slice.
TEST(StorageViewSlices, HomeFilesBeyondTheUsedSpaceLeaveNoNegativeSystemShare) {
    StorageReport r = report(true);
    r.categories[0].bytes = 300 * GB;
    EXPECT_EQ(StorageView::system(r, disk(), 0), 25 * GB);
    DiskInfo plain{"Test disk", 500 * GB, 400 * GB, 0};
    EXPECT_EQ(ids(StorageView::slices(r, false, plain, 0)), (std::vector<std::string>{"downloads", "apps", "free"}));
}

TEST(StorageViewSlices, WhileTheWalkRunsTheRestIsStripedAsNotMeasuredYet) {
    auto slices = StorageView::slices(report(false), true, disk(), 5 * GB);
    EXPECT_EQ(ids(slices), (std::vector<std::string>{"downloads", "apps", "unmeasured", "system", "swap", "free"}));
    EXPECT_TRUE(find(slices, "unmeasured").striped);
    EXPECT_EQ(find(slices, "unmeasured").title, "Not measured yet");
    EXPECT_EQ(find(slices, "unmeasured").bytes, 30 * GB);
    EXPECT_EQ(find(slices, "system").bytes, 25 * GB);
    EXPECT_EQ(sum(slices), disk().total);
}

TEST(StorageViewSlices, TheTipNamesTitleSizeAndShareOfTheDisk) {
    StorageView::Slice s{"downloads", "Downloads", "Downloads", 125 * GB, "blue", true, false};
    EXPECT_EQ(StorageView::segmentTip(s, 500 * GB), "Downloads: " + Fmt::bytes(125 * GB) + ", " + Fmt::percent(25) + " of the disk");
    EXPECT_EQ(StorageView::segmentTip(s, 0), "Downloads: " + Fmt::bytes(125 * GB) + ", " + Fmt::percent(0) + " of the disk");
}

// The largest slices keep their names wherever they stand in the bar; the others fold into
// one entry that names them in bar order with their sum.
TEST(StorageViewLegend, TheLargestStandByNameAndTheRestFoldTogether) {
    std::vector<StorageView::Slice> slices = {
        {"a", "A", "A", 5, "", true, false},  {"b", "B", "B", 50, "", true, false}, {"c", "C", "C", 1, "", true, false},
        {"d", "D", "D", 30, "", true, false}, {"e", "E", "E", 2, "", true, false},  {"free", "Free", "Free", 90, "", false, false}};
    auto legend = StorageView::legend(slices, 3);
    EXPECT_EQ(ids(legend.named), (std::vector<std::string>{"b", "d", "free"}));
    EXPECT_EQ(legend.rest, "+ A, C, E, " + Fmt::bytes(8) + " together");

    // Folding one slice would save nothing: with room for all but one, all stand by name.
    auto roomy = StorageView::legend(slices, 5);
    EXPECT_EQ(roomy.named.size(), 6u);
    EXPECT_EQ(roomy.rest, "");
    // At least one name stands, however narrow the bar.
    EXPECT_EQ(ids(StorageView::legend(slices, 0).named), (std::vector<std::string>{"free"}));
}

TEST(StorageViewWords, DatesOfFilesAndAppsReadAsThePanelsSayThem) {
    const TimePoint now = fromSeconds(1'750'000'000);
    const TimePoint week = addSeconds(now, -7 * 86400.0);
    const TimePoint old = addSeconds(now, -91 * 86400.0);
    EXPECT_EQ(StorageView::when(week, old, now), "opened " + Fmt::day(week, now));
    EXPECT_EQ(StorageView::when(std::nullopt, old, now), "changed " + Fmt::day(old, now));
    EXPECT_EQ(StorageView::when(std::nullopt, std::nullopt, now), "");

    EXPECT_EQ(StorageView::usage(std::nullopt, now), "Not opened since it was installed");
    EXPECT_EQ(StorageView::usage(old, now), "Not opened since " + Fmt::day(old, now));
    // 90 days exactly is still recent use.
    const TimePoint edge = addSeconds(now, -7'776'000.0);
    EXPECT_EQ(StorageView::usage(edge, now), "Used " + Fmt::day(edge, now));
    EXPECT_EQ(StorageView::usage(week, now), "Used " + Fmt::day(week, now));
}

TEST(StorageViewWords, TheUnreadableNoteCountsFolders) {
    EXPECT_EQ(StorageView::unreadableNote(1), "One folder here keeps Sorrelin out with its permissions, so it is not measured:");
    EXPECT_EQ(StorageView::unreadableNote(3), "3 folders here keep Sorrelin out with their permissions, so they are not measured:");
}
