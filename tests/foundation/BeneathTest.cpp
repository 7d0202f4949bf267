#include "foundation/Beneath.h"
#include "foundation/FS.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

// Both walks: the kernel's (openat2) and the one older kernels get.
class BeneathWays : public ::testing::TestWithParam<Beneath::Way> {};

std::string nameOf(const ::testing::TestParamInfo<Beneath::Way>& info) {
    return info.param == Beneath::Way::best ? "Kernel" : "ByHand";
}

} // namespace

TEST(Beneath, ComponentsRefuseTricksInsteadOfNormalising) {
    EXPECT_EQ(Beneath::components("a/b/c"), (std::vector<std::string>{"a", "b", "c"}));
    for (std::string_view bad : {"", "/a", "a//b", "a/./b", "a/..", "../a", ".", "a/", "a/b/.."})
        EXPECT_TRUE(Beneath::components(bad).empty()) << bad;
    EXPECT_TRUE(Beneath::components(std::string_view("a\0b", 3)).empty());

    EXPECT_EQ(Beneath::below("/home/me/x/y", "/home/me"), "x/y");
    EXPECT_EQ(Beneath::below("/home/me/x", "/home/me/"), "x");
    EXPECT_EQ(Beneath::below("/home/me", "/home/me"), "");
    EXPECT_EQ(Beneath::below("/home/me2/x", "/home/me"), ""); // a sibling that shares the prefix
    EXPECT_EQ(Beneath::below("/etc/x", "/"), "etc/x");
}

TEST_P(BeneathWays, OpensOnlyWhatIsReachedWithoutALink) {
    TempTree t;
    t.file("root/a/b/file", 10);
    t.file("outside/secret", 10);
    t.symLink(t.path("outside"), "root/a/out");  // a link leading out
    t.symLink(t.path("root/a/b"), "root/a/in");  // a link that stays inside is refused too
    t.symLink("b/file", "root/a/filelink");
    Fd root = Beneath::openRoot(t.path("root"));
    ASSERT_TRUE(root);

    auto ok = Beneath::open(root.get(), "a/b/file", O_RDONLY, GetParam());
    ASSERT_TRUE(ok.ok()) << ok.error;
    struct stat st {};
    ASSERT_EQ(fstat(ok.fd.get(), &st), 0);
    EXPECT_EQ(st.st_size, 10);

    for (const auto& [rel, link] : std::vector<std::pair<std::string, std::string>>{
             {"a/out/secret", "a/out"}, {"a/in/file", "a/in"}, {"a/filelink", "a/filelink"}, {"a/out", "a/out"}}) {
        for (int flags : {O_RDONLY, O_PATH, O_PATH | O_DIRECTORY}) {
            auto refused = Beneath::open(root.get(), rel, flags, GetParam());
            EXPECT_FALSE(refused.ok()) << rel;
            EXPECT_TRUE(refused.throughLink) << rel;
            EXPECT_EQ(refused.link, link) << rel;
        }
    }
    auto missing = Beneath::open(root.get(), "a/none/x", O_PATH, GetParam());
    EXPECT_FALSE(missing.ok());
    EXPECT_FALSE(missing.throughLink);
    EXPECT_EQ(missing.error, ENOENT);
    EXPECT_EQ(Beneath::open(root.get(), "a/../../outside/secret", O_RDONLY, GetParam()).error, EINVAL);
}

TEST_P(BeneathWays, MakingFoldersNeverGoesThroughALink) {
    TempTree t;
    t.dir("root/a");
    t.dir("outside");
    t.symLink(t.path("outside"), "root/a/out");

    auto made = Beneath::parent(t.path("root"), t.path("root/a/new/deeper/item"), GetParam(), /*make=*/true);
    ASSERT_TRUE(made.ok());
    EXPECT_EQ(made.name, "item");
    EXPECT_TRUE(FS::isDir(t.path("root/a/new/deeper")));
    EXPECT_FALSE(FS::exists(t.path("root/a/new/deeper/item")));

    auto refused = Beneath::parent(t.path("root"), t.path("root/a/out/made/item"), GetParam(), /*make=*/true);
    EXPECT_FALSE(refused.ok());
    EXPECT_TRUE(refused.folder.throughLink);
    EXPECT_EQ(refused.folder.link, "a/out");
    EXPECT_TRUE(FS::children(t.path("outside")).empty());

    // Directly in the root, the root is the folder; the root itself and paths elsewhere have none.
    EXPECT_TRUE(Beneath::parent(t.path("root"), t.path("root/x"), GetParam()).ok());
    EXPECT_FALSE(Beneath::parent(t.path("root"), t.path("root"), GetParam()).ok());
    EXPECT_FALSE(Beneath::parent(t.path("root"), t.path("outside/x"), GetParam()).ok());
    EXPECT_FALSE(Beneath::parent(t.path("root"), t.path("root/a/../../outside/x"), GetParam()).ok());
}

INSTANTIATE_TEST_SUITE_P(Ways, BeneathWays, ::testing::Values(Beneath::Way::best, Beneath::Way::byHand), nameOf);
