#include "foundation/FS.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <unistd.h>

namespace {

constexpr int64_t MiB = 1 << 20;

} // namespace

TEST(FSMeasure, HardLinksCountOnceAndLinksHeldOutsideAreShared) {
    TempTree t;
    std::string file = t.file("outside/shared.bin", MiB);
    t.hardLink("outside/shared.bin", "item/shared.bin");
    t.file("item/own.bin", 2 * MiB);
    t.file("pair/x.bin", MiB);
    t.hardLink("pair/x.bin", "pair/sub/x-again.bin");
    const int64_t blocks = allocatedSize(file);
    ASSERT_GT(blocks, 0);

    Measured item = FS::measure({t.path("item")});
    EXPECT_EQ(item.shared, blocks);
    EXPECT_LT(item.exclusive, 2 * MiB + blocks);
    EXPECT_GE(item.exclusive, 2 * MiB);

    // Two links inside one measured folder: counted once, and freed by a clear.
    Measured pair = FS::measure({t.path("pair")});
    EXPECT_EQ(pair.shared, 0);
    Measured pairDirsOnly = FS::measure({t.path("pair/sub")});
    EXPECT_EQ(pairDirsOnly.shared, blocks);
    EXPECT_LT(pair.exclusive, 2 * blocks);
    EXPECT_GE(pair.exclusive, blocks);

    // Measuring both sides in one call frees the shared file.
    Measured both = FS::measure({t.path("outside"), t.path("item")});
    EXPECT_EQ(both.shared, 0);
    Measured outside = FS::measure({t.path("outside")});
    EXPECT_EQ(outside.shared, blocks);
    EXPECT_EQ(both.exclusive, outside.exclusive + item.exclusive + blocks);
}

TEST(FSMeasure, SymlinksAreNotFollowedAndOddInputsGiveZeros) {
    TempTree t;
    t.file("big/data.bin", 8 * MiB);
    t.symLink(t.path("big"), "item/link-to-big");
    t.symLink("/nonexistent/target", "item/broken");
    Measured m = FS::measure({t.path("item")});
    EXPECT_LT(m.exclusive, MiB);
    EXPECT_EQ(m.shared, 0);

    EXPECT_EQ(FS::measure({}), Measured{});
    EXPECT_EQ(FS::measure({t.path("does-not-exist")}), Measured{});
    // A path given as a symbolic link measures the link, not its target.
    EXPECT_LT(FS::measure({t.path("item/link-to-big")}).exclusive, MiB);
}

TEST(FSMeasure, SparseFilesCountWhatTheyHold) {
    TempTree t;
    std::string p = t.path("sparse.bin");
    FILE* f = std::fopen(p.c_str(), "w");
    ASSERT_TRUE(f);
    std::fseek(f, 64 * MiB, SEEK_SET);
    std::fputc('x', f);
    std::fclose(f);
    EXPECT_LT(FS::measure({p}).exclusive, MiB);
}

TEST(FSMeasure, CancelledTokenEndsTheWalkEarly) {
    TempTree t;
    for (int i = 0; i < 2000; ++i) t.file("many/f" + std::to_string(i), 4096);
    ScanToken token;
    token.cancel();
    Measured partial = FS::measure({t.path("many")}, &token);
    Measured whole = FS::measure({t.path("many")});
    EXPECT_LT(partial.exclusive, whole.exclusive / 2);
    EXPECT_GE(whole.exclusive, 2000 * 4096);
}

TEST(FSMeasure, UnreadableFolderAddsNothingBelowIt) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not bind root";
    TempTree t;
    t.file("item/locked/secret.bin", 4 * MiB);
    chmod(t.path("item/locked").c_str(), 0);
    Measured m = FS::measure({t.path("item")});
    EXPECT_LT(m.exclusive, MiB);
}

TEST(FSMeasure, AMountedVolumeBelowTheRootIsNotEntered) {
    TempTree t;
    std::string mp = t.dir("item/mnt");
    if (mount("tmpfs", mp.c_str(), "tmpfs", 0, "size=16m") != 0) GTEST_SKIP() << "cannot mount here";
    t.file("item/mnt/inside.bin", 4 * MiB);
    Measured m = FS::measure({t.path("item")});
    umount(mp.c_str());
    EXPECT_LT(m.exclusive, MiB);
}

TEST(FS, PathHelpers) {
    EXPECT_EQ(FS::tilde("/home/ann", "/home/ann"), "~");
    EXPECT_EQ(FS::tilde("/home/ann/x/y", "/home/ann"), "~/x/y");
    EXPECT_EQ(FS::tilde("/home/ann2/x", "/home/ann"), "/home/ann2/x");
    EXPECT_EQ(FS::lastComponent("/a/b/c/"), "c");
    EXPECT_EQ(FS::parent("/a/b/c"), "/a/b");
    EXPECT_EQ(FS::parent("/a"), "/");
    EXPECT_EQ(FS::extension("/x/Setup.DMG"), "dmg");
    EXPECT_EQ(FS::extension("/x/.hidden"), "");
    EXPECT_EQ(FS::extension("/x/archive.tar.gz"), "gz");
}

TEST(FS, LstatBasedQuestions) {
    TempTree t;
    t.file("f", 10);
    t.dir("d");
    t.symLink(t.path("d"), "link-to-d");
    t.symLink("/nope", "broken");
    EXPECT_TRUE(FS::exists(t.path("broken")));
    EXPECT_FALSE(FS::isDir(t.path("link-to-d")));
    EXPECT_TRUE(FS::isDir(t.path("d")));
    EXPECT_TRUE(FS::isFile(t.path("f")));
    EXPECT_FALSE(FS::exists(t.path("none")));
    EXPECT_TRUE(FS::children(t.path("none")).empty());
    EXPECT_EQ(FS::children(t.path("")).size(), 4u);
    t.age("f", 3 * 86400);
    auto m = FS::mtime(t.path("f"));
    ASSERT_TRUE(m);
    EXPECT_NEAR(secondsBetween(*m, Clock::now()), 3 * 86400, 5);
    EXPECT_FALSE(FS::mtime(t.path("none")));
    EXPECT_TRUE(FS::birthTime(t.path("f")));
}

TEST(FS, ReadTextGivesTheWholeFileUpToItsLimitWhateverSizeTheFileTells) {
    TempTree t;
    std::string big;
    for (int i = 0; big.size() < 300000; ++i) big += "line " + std::to_string(i) + "\n";
    const std::string path = t.text("big.txt", big);
    EXPECT_EQ(FS::readText(path, 1 << 20), big);
    EXPECT_EQ(FS::readText(path, 1000), big.substr(0, 1000));
    EXPECT_EQ(FS::readText(path, big.size()), big);
    EXPECT_EQ(FS::readText(path, big.size() - 1), big.substr(0, big.size() - 1));
    EXPECT_EQ(FS::readText(t.text("empty", "")), "");
    EXPECT_FALSE(FS::readText(t.path("none")));

    // One room for many files: each text is that file's alone, never what a longer one left.
    std::string room;
    EXPECT_EQ(FS::readInto(path, room, 1 << 20), big);
    EXPECT_EQ(FS::readInto(t.text("short", "short\n"), room), "short\n");
    EXPECT_EQ(FS::readInto(t.path("empty"), room), "");
    EXPECT_EQ(FS::readInto(path, room, 10), big.substr(0, 10));
    EXPECT_FALSE(FS::readInto(t.path("none"), room));

    // Files of /proc tell a size of 0 and still hold text, more than one read's worth here.
    auto maps = FS::readText("/proc/self/smaps");
    ASSERT_TRUE(maps);
    EXPECT_GT(maps->size(), 8192u);
    EXPECT_EQ(maps->back(), '\n');
    EXPECT_EQ(maps->find('\0'), std::string::npos);
}
