#include "foundation/DiskInfo.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

void expectAddsUp(const DiskInfo& d) {
    EXPECT_GE(d.used(), 0);
    EXPECT_GE(d.available, 0);
    EXPECT_GE(d.reserved, 0);
    EXPECT_EQ(d.used() + d.available + d.reserved, d.total);
}

} // namespace

TEST(DiskInfo, BlocksKeptBackForRootAreNeitherUsedNorFree) {
    // 1000 blocks of 4 KB, 300 free, of which 250 the user may write: 50 kept back.
    DiskInfo d = DiskInfo::fromBlocks(1000, 300, 250, 4096);
    EXPECT_EQ(d.total, 1000 * 4096);
    EXPECT_EQ(d.used(), 700 * 4096);
    EXPECT_EQ(d.available, 250 * 4096);
    EXPECT_EQ(d.reserved, 50 * 4096);
    expectAddsUp(d);
}

TEST(DiskInfo, OddCountsStillGiveHonestFiguresThatAddUp) {
    // No reserve (tmpfs, XFS, btrfs): free is available.
    DiskInfo none = DiskInfo::fromBlocks(1000, 300, 300, 4096);
    EXPECT_EQ(none.reserved, 0);
    EXPECT_EQ(none.used(), 700 * 4096);
    expectAddsUp(none);

    // A nearly full ext4: the reserve is bigger than what is left, the user has nothing and
    // what remains free is all kept back.
    DiskInfo full = DiskInfo::fromBlocks(1000, 30, 0, 4096);
    EXPECT_EQ(full.available, 0);
    EXPECT_EQ(full.reserved, 30 * 4096);
    EXPECT_EQ(full.used(), 970 * 4096);
    expectAddsUp(full);

    // More available than free (some network file systems): the user's figure stands, nothing
    // is kept back, and used is not inflated by the contradiction.
    DiskInfo odd = DiskInfo::fromBlocks(1000, 200, 260, 4096);
    EXPECT_EQ(odd.available, 260 * 4096);
    EXPECT_EQ(odd.reserved, 0);
    EXPECT_EQ(odd.used(), 740 * 4096);
    expectAddsUp(odd);

    // Counts beyond the total are cut to it.
    DiskInfo broken = DiskInfo::fromBlocks(1000, 5000, 4000, 4096);
    EXPECT_EQ(broken.available, broken.total);
    EXPECT_EQ(broken.used(), 0);
    expectAddsUp(broken);

    // A failed read's zeros, and a size too large for 64 bits, stay in range.
    expectAddsUp(DiskInfo::fromBlocks(0, 0, 0, 0));
    DiskInfo huge = DiskInfo::fromBlocks(std::numeric_limits<uint64_t>::max(), 0, 0, 4096);
    EXPECT_EQ(huge.total, std::numeric_limits<int64_t>::max());
    EXPECT_EQ(huge.used(), huge.total);
}
