// DiskInfo on real volumes, checked against what df says of the same mount.
#include "foundation/DiskInfo.h"
#include "support/LoopMount.h"

#include <gtest/gtest.h>

#include <sys/vfs.h>


TEST(DiskInfoVolume, AnExt4WithATenthKeptBackReadsAsDfDoes) {
    constexpr int64_t image = 64 << 20;
    LoopMount volume(image, 10);
    if (!volume.ready()) GTEST_SKIP() << volume.why();
    auto df = dfOf(volume.point());
    ASSERT_TRUE(df) << "df gave nothing for " << volume.point();
    DiskInfo d = DiskInfo::of(volume.point());
    EXPECT_EQ(d.total, df->size);
    EXPECT_EQ(d.used(), df->used);
    EXPECT_EQ(d.available, df->available);
    // The rest of the volume is the reserve: a tenth of the image, and the few clusters ext4
    // keeps back on its own besides.
    EXPECT_EQ(d.reserved, df->size - df->used - df->available);
    EXPECT_GE(d.reserved, image / 10);
    EXPECT_LT(d.reserved, image / 5);
    EXPECT_EQ(d.name, volume.point()); // an unlabelled volume is named by where it is mounted
}

TEST(DiskInfoVolume, AFileSystemWithNoReserveHasNothingKeptBack) {
    // /dev/shm is a tmpfs on any Linux with shared memory: no blocks kept back.
    struct statfs fs {};
    if (statfs("/dev/shm", &fs) != 0 || fs.f_type != 0x01021994) GTEST_SKIP() << "no tmpfs at /dev/shm";
    auto df = dfOf("/dev/shm");
    ASSERT_TRUE(df);
    DiskInfo d = DiskInfo::of("/dev/shm");
    EXPECT_EQ(d.reserved, 0);
    EXPECT_EQ(d.total, df->size);
    // Other processes may write to /dev/shm meanwhile; the figures still add up exactly.
    EXPECT_EQ(d.used() + d.available, d.total);
    EXPECT_NEAR(static_cast<double>(d.available), static_cast<double>(df->available), 64.0 * (1 << 20));
}
