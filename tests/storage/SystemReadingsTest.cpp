#include "foundation/FS.h"
#include "platform/AppInstalls.h"
#include "platform/FileOpened.h"
#include "platform/PackageDatabase.h"
#include "platform/SwapAreas.h"
#include "support/FakeAppBundles.h"
#include "storage/StorageScan.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

TEST(SwapAreas, ParsesFilesPartitionsAndEscapedNames) {
    auto areas = SwapAreas::parse("Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n"
                                  "/swap\\040file\tfile\t\t1048572\t\t2048\t\t-2\n"
                                  "/dev/zram0                              partition\t8388604\t\t512000\t\t100\n"
                                  "/dev/nvme0n1p3  partition  4194300  1024  -3"); // no final newline
    ASSERT_EQ(areas.size(), 3u);
    EXPECT_EQ(areas[0].path, "/swap file");
    EXPECT_EQ(areas[0].type, "file");
    EXPECT_EQ(areas[0].size, 1048572LL * 1024);
    EXPECT_EQ(areas[0].used, 2048 * 1024);
    EXPECT_TRUE(SwapAreas::inMemory(areas[1]));
    EXPECT_FALSE(SwapAreas::inMemory(areas[2]));
    EXPECT_TRUE(SwapAreas::parse("").empty());
    EXPECT_TRUE(SwapAreas::read("/nonexistent/swaps").empty());
}

TEST(PackageDatabase, InstalledSizesAndOwners) {
    auto sizes = PackageDatabase::parseStatus("Package: vim\nStatus: install ok installed\nPriority: optional\n"
                                              "Installed-Size: 4000\nArchitecture: amd64\nDescription: editor\n"
                                              " Installed-Size: 99999\n\n"
                                              "Package: libfoo\nStatus: install ok installed\nArchitecture: amd64\n"
                                              "Multi-Arch: same\nInstalled-Size: 10\n\n"
                                              "Package: removed\nStatus: deinstall ok config-files\nInstalled-Size: 50\n\n"
                                              "Package: halfway\nStatus: install ok unpacked\nInstalled-Size: 70\n");
    EXPECT_EQ(sizes.at("vim"), 4000 * 1024); // a continuation line is no field
    EXPECT_EQ(sizes.at("libfoo:amd64"), 10 * 1024);
    EXPECT_FALSE(sizes.contains("removed"));
    EXPECT_FALSE(sizes.contains("halfway"));
    EXPECT_EQ(PackageDatabase::totalSize("Package: a\nStatus: install ok installed\nInstalled-Size: 1\n\n"
                                         "Package: b\nStatus: install ok installed\nInstalled-Size: 2\n"),
              3 * 1024);

    TempTree info;
    info.text("vim.list", "/.\n/usr\n/usr/bin/vim.basic\n/usr/share/applications/vim.desktop\n");
    info.text("libfoo:amd64.list", "/usr/lib/x86_64-linux-gnu/libfoo.so.1\n");
    info.text("vim.md5sums", "/usr/bin/vim.basic\n");
    auto owners = PackageDatabase::owners(info.root(), {"/usr/bin/vim.basic", "/usr/lib/x86_64-linux-gnu/libfoo.so.1", "/nowhere"});
    EXPECT_EQ(owners.at("/usr/bin/vim.basic"), "vim");
    EXPECT_EQ(owners.at("/usr/lib/x86_64-linux-gnu/libfoo.so.1"), "libfoo:amd64");
    EXPECT_FALSE(owners.contains("/nowhere"));

    // Many lists, read in parts side by side: each path still finds its own list, whichever part
    // reads it, and neither a longer line that starts alike nor a last line without its end is missed.
    TempTree many;
    for (int i = 0; i < 40; ++i)
        many.text("pkg" + std::to_string(i) + ".list", "/.\n/usr/share/doc/pkg" + std::to_string(i) + "\n");
    many.text("early.list", "/usr/bin/tool.orig\n/usr/bin/tool-extra\n");
    many.text("tool.list", "/usr/share/doc/tool\n/usr/bin/tool");
    many.text("late.list", "/usr/share/applications/late.desktop\n");
    auto found = PackageDatabase::owners(many.root(), {"/usr/bin/tool", "/usr/share/applications/late.desktop",
                                                       "/usr/share/doc/pkg39", "/usr/share/doc/pkg0"});
    ASSERT_EQ(found.size(), 4u);
    EXPECT_EQ(found.at("/usr/bin/tool"), "tool");
    EXPECT_EQ(found.at("/usr/share/applications/late.desktop"), "late");
    EXPECT_EQ(found.at("/usr/share/doc/pkg39"), "pkg39");
    EXPECT_EQ(found.at("/usr/share/doc/pkg0"), "pkg0");
}

TEST(AppInstalls, SnapsByTheirCurrentRevisionAndPackagesAcrossTheUsrMerge) {
    TempTree sys;
    StorageTables t = Layout::linux(sys.path("home")).storage;
    t.snapDesktopDir = sys.path("snapd/desktop/applications");
    t.snapMountDir = sys.path("snap");
    t.snapFilesDir = sys.path("snapd/snaps");
    t.optDir = sys.path("opt");
    t.dpkgStatus = sys.path("dpkg/status");
    t.dpkgInfo = sys.path("dpkg/info");
    sys.file("snapd/snaps/firefox_4100.snap", 8192);
    sys.file("snapd/snaps/firefox_4200.snap", 8192);
    sys.dir("snap/firefox/4200");
    sys.symLink("4200", "snap/firefox/current");
    sys.text("dpkg/status", "Package: tool\nStatus: install ok installed\nInstalled-Size: 12\n");
    // The list names /bin/tool; the entry starts /usr/bin/tool, the same file after the merge.
    sys.text("dpkg/info/tool.list", "/bin/tool\n");

    std::vector<DesktopEntry> entries{
        desktopEntry("firefox_firefox", sys.path("snapd/desktop/applications/firefox_firefox.desktop"), "Firefox", "/snap/bin/firefox"),
        desktopEntry("tool", sys.path("apps/tool.desktop"), "Tool", "/usr/bin/tool"),
        desktopEntry("ghost", sys.path("apps/ghost.desktop"), "Ghost", sys.path("nowhere/ghost")),
    };
    auto installs = AppInstalls::resolve(entries, t);
    ASSERT_EQ(installs.size(), 3u);
    ASSERT_TRUE(installs[0]);
    EXPECT_EQ(installs[0]->path, sys.path("snapd/snaps/firefox_4200.snap"));
    EXPECT_EQ(installs[0]->installName, "firefox");
    EXPECT_EQ(installs[0]->key, "snap:firefox");
    ASSERT_TRUE(installs[1]);
    EXPECT_EQ(installs[1]->bytes, 12 * 1024);
    EXPECT_EQ(installs[1]->key, "package:tool");
    EXPECT_FALSE(installs[2]);
    EXPECT_EQ(AppInstalls::snapOfFile("core22_1380.snap"), "core22");
    EXPECT_EQ(AppInstalls::snapOfFile("gnome-42-2204_176.snap"), "gnome-42-2204");
    EXPECT_FALSE(AppInstalls::snapOfFile("notes.txt"));
}

TEST(StorageScanSnaps, OldRevisionsAndRuntimesAreSystemDownloads) {
    TempTree home;
    home.file("snapd/snaps/firefox_4100.snap", 16384);
    home.file("snapd/snaps/firefox_4200.snap", 32768);
    home.file("snapd/snaps/core22_1380.snap", 65536);
    home.dir("snap/firefox/4200");
    home.symLink("4200", "snap/firefox/current");
    FakeAppBundles apps;
    apps.entries = {desktopEntry("firefox_firefox", home.path("snapd/desktop/applications/firefox_firefox.desktop"), "Firefox")};
    Layout l = Layout::linux(home.root());
    StorageTables& t = l.storage;
    t.outsideTools.clear();
    t.assetPlaces.clear();
    t.temporary.clear();
    t.dpkgStatus.clear();
    t.systemPlaces.clear();
    t.procSwaps.clear();
    t.snapDesktopDir = home.path("snapd/desktop/applications");
    t.snapMountDir = home.path("snap");
    t.snapFilesDir = home.path("snapd/snaps");
    StorageScan scan(l, ScanToken::make(), &apps);
    StorageReport r = scan.run();
    ASSERT_EQ(r.apps.size(), 1u);
    EXPECT_EQ(r.apps[0].appBytes, allocatedSize(home.path("snapd/snaps/firefox_4200.snap")));
    const StorageCategory* assets = r.category(StorageKind::assets);
    ASSERT_TRUE(assets);
    std::map<std::string, int64_t> rows;
    for (const auto& i : assets->items) rows[i.name] = i.bytes;
    EXPECT_EQ(rows["Snap revisions"], allocatedSize(home.path("snapd/snaps/firefox_4100.snap")));
    EXPECT_EQ(rows["Snap runtimes"], allocatedSize(home.path("snapd/snaps/core22_1380.snap")));
}

TEST(FileOpened, AccessTimesCountWhenReadAfterTheLastWriteAndTheMountKeepsThem) {
    EXPECT_TRUE(FileOpened::keepsAccessTimes("rw,relatime"));
    EXPECT_FALSE(FileOpened::keepsAccessTimes("rw,noatime,nodiratime"));
    TempTree t;
    std::string read = t.file("read.bin", 10);
    std::string untouched = t.file("untouched.bin", 10);
    timespec readTimes[2] = {{1'700'000'500, 0}, {1'700'000'000, 0}};
    utimensat(AT_FDCWD, read.c_str(), readTimes, 0);
    timespec sameTimes[2] = {{1'700'000'000, 0}, {1'700'000'000, 0}};
    utimensat(AT_FDCWD, untouched.c_str(), sameTimes, 0);
    auto dates = FileOpened::dates({read, untouched, t.path("missing")});
    ASSERT_EQ(dates.size(), 3u);
    struct stat st {};
    stat(read.c_str(), &st);
    // Where the test folder's mount records no access times, nothing may be claimed.
    EXPECT_TRUE(dates[0] == fromSeconds(1'700'000'500) || !dates[0]);
    EXPECT_FALSE(dates[1]);
    EXPECT_FALSE(dates[2]);
    // A mount table that says noatime for this device rules the access time out.
    t.text("mountinfo", "1 0 0:1 / / rw,noatime shared:1 - ext4 /dev/x rw\n"
                        "2 1 " + std::to_string(major(st.st_dev)) + ":" + std::to_string(minor(st.st_dev)) +
                            " / / rw,noatime shared:1 - ext4 /dev/y rw\n");
    EXPECT_FALSE(FileOpened::dates({read}, t.path("mountinfo"))[0]);
    t.text("mountinfo2", "2 1 " + std::to_string(major(st.st_dev)) + ":" + std::to_string(minor(st.st_dev)) +
                             " / / rw,relatime shared:1 - ext4 /dev/y rw\n");
    EXPECT_EQ(FileOpened::dates({read}, t.path("mountinfo2"))[0], fromSeconds(1'700'000'500));
}
