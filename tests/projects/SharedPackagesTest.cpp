#include "projects/Projects.h"

#include "foundation/FS.h"
#include "support/TempTree.h"

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

constexpr int64_t MiB = 1 << 20;

// Real blocks, quickly: what the measure counts without the time of writing them.
void reserve(const std::string& path, int64_t bytes) {
    std::filesystem::create_directories(FS::parent(path));
    int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    ASSERT_GE(fd, 0) << path;
    ASSERT_EQ(posix_fallocate(fd, 0, bytes), 0) << path;
    close(fd);
}

// An app of the workspace with `count` packages; the first one holds `bulk` bytes, the rest a block.
std::string app(const TempTree& t, const std::string& name, int count, int64_t bulk) {
    const std::string modules = t.path("ws/" + name + "/node_modules");
    for (int i = 0; i < count; ++i) {
        std::string package = i < 2 ? "@scope/pkg-" + std::to_string(i) : "pkg-" + std::to_string(i);
        reserve(modules + "/" + package + "/index.js", i == 0 ? bulk : 4096);
    }
    t.dir("ws/" + name + "/node_modules/.bin");
    t.text("ws/" + name + "/node_modules/.package-lock.json", "{}");
    return t.path("ws/" + name);
}

ProjectCard workspace(const std::vector<std::string>& roots) {
    ProjectCard card;
    card.name = "ws";
    for (const auto& r : roots) card.apps.push_back({r, FS::lastComponent(r), 0, false, std::nullopt});
    return card;
}

} // namespace

TEST(SharedPackages, AnAppOfAnotherKindDoesNotCutTheCommonPackages) {
    TempTree t;
    std::vector<std::string> roots = {app(t, "a", 500, 160 * MiB), app(t, "b", 500, 160 * MiB), app(t, "c", 500, 160 * MiB),
                                      app(t, "d", 10, 160 * MiB)};
    roots.push_back(t.dir("ws/e")); // no node_modules at all
    auto shared = Projects::sharedPackages(workspace(roots));
    ASSERT_TRUE(shared);
    EXPECT_EQ(shared->group, "ws");
    EXPECT_EQ(shared->apps, 3);
    EXPECT_EQ(shared->packages, 500);
    EXPECT_GT(shared->shared, 160 * MiB);
    EXPECT_LT(shared->shared, 170 * MiB);
    EXPECT_GE(shared->today, 3 * shared->shared - 3 * 4096);
    EXPECT_LE(shared->today, 3 * shared->shared);
}

TEST(SharedPackages, TwoAppsNeverHoweverMuchTheyShare) {
    TempTree t;
    auto card = workspace({app(t, "a", 30, 400 * MiB), app(t, "b", 30, 400 * MiB)});
    EXPECT_FALSE(Projects::sharedPackages(card));
}

TEST(SharedPackages, TooFewCommonPackagesOrTooLittleToSave) {
    TempTree t;
    EXPECT_FALSE(Projects::sharedPackages(
        workspace({app(t, "a", 19, 200 * MiB), app(t, "b", 19, 200 * MiB), app(t, "c", 19, 200 * MiB)})));
    // 300 MB of copies beyond the one that stays is not enough.
    TempTree u;
    const int64_t each = 150 * MB - 19 * 4096 - 21 * 4096;
    EXPECT_FALSE(Projects::sharedPackages(
        workspace({app(u, "a", 20, each), app(u, "b", 20, each), app(u, "c", 20, each)})));
}

TEST(SharedPackages, PackagesLinkedFromAStoreCountOnce) {
    TempTree t;
    reserve(t.path("store/big.bin"), 200 * MiB);
    std::vector<std::string> roots;
    for (const char* name : {"a", "b", "c", "d"}) {
        roots.push_back(app(t, name, 30, 4096));
        t.hardLink("store/big.bin", std::string("ws/") + name + "/node_modules/pkg-5/big.bin");
    }
    EXPECT_FALSE(Projects::sharedPackages(workspace(roots)));
}

TEST(SharedPackages, NamesThatAreFilesCountButWeighNothing) {
    TempTree t;
    std::vector<std::string> roots;
    for (const char* name : {"a", "b", "c"}) {
        roots.push_back(app(t, name, 30, 160 * MiB));
        reserve(t.path(std::string("ws/") + name + "/node_modules/README"), 200 * MiB);
    }
    auto shared = Projects::sharedPackages(workspace(roots));
    ASSERT_TRUE(shared);
    EXPECT_EQ(shared->packages, 31);
    EXPECT_LT(shared->today, 3 * 170 * MiB);
}
