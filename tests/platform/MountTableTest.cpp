#include "platform/MountTable.h"

#include <gtest/gtest.h>

#include <sys/sysmacros.h>

TEST(MountTable, ParsesOptionalFieldsEscapesAndPicksTheDeepestHolder) {
    auto mounts = MountTable::parse(
        "25 1 254:1 / / rw,relatime shared:1 - ext4 /dev/vda1 rw\n"
        "40 25 8:17 / /media/ann/My\\040Disk rw,nosuid,noatime shared:20 master:3 - vfat /dev/sdb1 rw,uid=1000\n"
        "41 25 254:1 /home /home rw - ext4 /dev/vda1 ro\n"
        "short line\n");
    ASSERT_EQ(mounts.size(), 3u);
    EXPECT_EQ(mounts[1].point, "/media/ann/My Disk");
    EXPECT_EQ(mounts[1].fsType, "vfat");
    EXPECT_EQ(mounts[1].source, "/dev/sdb1");
    EXPECT_FALSE(mounts[1].keepsAccessTimes());
    EXPECT_TRUE(mounts[0].keepsAccessTimes());
    EXPECT_TRUE(mounts[2].readOnly()); // by the file system's own options

    // The same device mounted twice: the longest point that holds the path wins.
    const MountEntry* m = MountTable::holding(mounts, "/home/ann/x", makedev(254, 1));
    ASSERT_TRUE(m);
    EXPECT_EQ(m->point, "/home");
    EXPECT_EQ(MountTable::holding(mounts, "/homework", makedev(254, 1))->point, "/");
    EXPECT_EQ(MountTable::holding(mounts, "/media/ann/My Disk/f", makedev(254, 1))->point, "/"); // other device
    EXPECT_EQ(MountTable::holding(mounts, "/x", makedev(9, 9)), nullptr);
}
