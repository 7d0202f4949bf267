#include "foundation/Text.h"
#include "scan/ScanReport.h"

#include <gtest/gtest.h>

namespace {

CleanItem make(std::string name, Tier tier, int64_t size, bool on = true) {
    CleanItem it;
    it.id = name;
    it.name = std::move(name);
    it.tier = tier;
    it.size = size;
    it.defaultOn = on;
    it.location = "~/x";
    it.note = "a note";
    return it;
}

std::vector<std::string> lines(const std::string& text) { return Text::split(text, '\n', true); }

} // namespace

TEST(ScanReport, TiersInOrderStableSortLockedCountedNotTotalled) {
    std::vector<CleanItem> items{make("first-equal", Tier::safe, 5'000'000), make("big", Tier::safe, 50'000'000),
                                 make("second-equal", Tier::safe, 5'000'000), make("locked", Tier::yourCall, 900'000'000)};
    items[3].lockedReason = "Running right now · kept";
    std::string out = ScanReport::text(items, DiskInfo{"the system disk", 500'000'000'000, 80'000'000'000}, 3.04);
    auto l = lines(out);
    ASSERT_EQ(l.size(), 13u);
    EXPECT_EQ(l[12], ""); // the foot ends its line
    EXPECT_EQ(l[0], "");
    EXPECT_EQ(l[1], "== Safe to clear · 60 MB · 3 items ==");
    EXPECT_TRUE(l[2].starts_with("50 MB    "));
    EXPECT_NE(l[3].find("first-equal"), std::string::npos);
    EXPECT_NE(l[4].find("second-equal"), std::string::npos);
    EXPECT_EQ(l[5], "");
    EXPECT_EQ(l[6], "== Rebuildable · 0 bytes · 0 items ==");
    EXPECT_EQ(l[8], "== Your call · 0 bytes · 1 items ==");
    EXPECT_NE(l[9].find("LOCK"), std::string::npos);
    EXPECT_TRUE(l[9].ends_with("Running right now · kept")); // the reason, not the note
    EXPECT_EQ(l[11], "the system disk: 80.0 GB free of 500 GB · scan took 3.0 s");
}

TEST(ScanReport, LineColumnsAndKindTag) {
    CleanItem it = make("App", Tier::safe, 123, false);
    it.location = std::string(60, 'l');
    it.cacheKind = CacheKind::idle;
    std::string line = ScanReport::line(it);
    EXPECT_EQ(Text::graphemeCount(line.substr(0, line.find(" off"))), 9u); // width 8 and the separator
    EXPECT_TRUE(line.starts_with("123 byt\xE2\x80\xA6  off App"));
    EXPECT_NE(line.find(std::string(55, 'l') + "\xE2\x80\xA6 [idle] a note"), std::string::npos);
    it.lastUsed = Clock::now();
    EXPECT_TRUE(ScanReport::kindTag(it).starts_with("[idle "));
    EXPECT_TRUE(ScanReport::kindTag(it).ends_with("] "));
    it.cacheKind.reset();
    EXPECT_EQ(ScanReport::kindTag(it), "");
    it.defaultOn = true;
    EXPECT_NE(ScanReport::line(it).find("  on  App"), std::string::npos);
}
