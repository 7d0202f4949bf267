#include "foundation/FS.h"
#include "platform/Layout.h"
#include "removal/Eraser.h"
#include "removal/Remover.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

namespace {

int countFiles(const std::string& folder) {
    int n = 0;
    std::error_code ec;
    for (auto it = std::filesystem::recursive_directory_iterator(folder, ec);
         !ec && it != std::filesystem::recursive_directory_iterator(); it.increment(ec))
        if (it->is_regular_file(ec)) ++n;
    return n;
}

CleanItem deleteItem(const std::string& path) {
    CleanItem i;
    i.id = i.name = "item";
    i.paths = {path};
    return i;
}

} // namespace

TEST(Eraser, RemovesFilesLinksAndFoldersAndKnowsWhatIsGone) {
    TempTree t;
    t.file("a/b/c/d.txt", 10);
    t.symLink(t.path("elsewhere"), "a/b/link");
    t.file("single.txt", 10);
    auto folder = Eraser::erase(t.path("a"));
    EXPECT_TRUE(folder.gone);
    EXPECT_EQ(folder.error, 0);
    EXPECT_TRUE(Eraser::erase(t.path("single.txt")).gone);
    EXPECT_FALSE(FS::exists(t.path("a")));
    EXPECT_FALSE(FS::exists(t.path("single.txt")));
    // What is not there is gone; a path through a file cannot be there either.
    EXPECT_TRUE(Eraser::erase(t.path("never")).gone);
    t.file("plain", 1);
    EXPECT_TRUE(Eraser::erase(t.path("plain/below")).gone);
    EXPECT_TRUE(FS::exists(t.path("plain")));
}

TEST(Eraser, EmptyingAFolderKeepsIt) {
    TempTree t;
    t.file("box/x/y", 10);
    t.file("box/z", 10);
    t.symLink(t.path("keep"), "box/l");
    t.file("keep/k", 10);
    int fd = open(t.path("box").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_GE(fd, 0);
    auto out = Eraser::empty(fd);
    close(fd);
    EXPECT_TRUE(out.gone);
    EXPECT_TRUE(FS::isDir(t.path("box")));
    EXPECT_TRUE(FS::children(t.path("box")).empty());
    EXPECT_TRUE(FS::isFile(t.path("keep/k")));
}

TEST(Eraser, ReadOnlyFoldersInsideAnItemAreOpenedUpAndRemoved) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not bind the superuser";
    TempTree t;
    // Module caches are written read-only; a folder without any rights is rarer but happens.
    t.file("item/mod/pkg@v1/file.go", 10);
    t.file("item/closed/inner.txt", 10);
    chmod(t.path("item/mod/pkg@v1").c_str(), 0555);
    chmod(t.path("item/mod").c_str(), 0555);
    chmod(t.path("item/closed").c_str(), 0);
    auto out = Eraser::erase(t.path("item"));
    EXPECT_TRUE(out.gone) << out.error;
    EXPECT_FALSE(FS::exists(t.path("item")));
}

TEST(Eraser, TheFolderHoldingTheItemIsNeverChanged) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not bind the superuser";
    TempTree t;
    t.file("holder/item/f", 10);
    chmod(t.path("holder").c_str(), 0555);
    auto out = Eraser::erase(t.path("holder/item"));
    EXPECT_FALSE(out.gone);
    EXPECT_EQ(out.error, EACCES);
    struct stat st {};
    ASSERT_EQ(stat(t.path("holder").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0555u);
}

TEST(Eraser, AnotherFileSystemMountedInsideIsNotEntered) {
    TempTree t;
    t.file("Library/Caches/App/own.bin", 10);
    std::string point = t.dir("Library/Caches/App/mounted");
    if (geteuid() != 0 || mount("sorrelin-test", point.c_str(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "mounting needs the superuser";
    struct Unmount {
        std::string p;
        ~Unmount() { umount2(p.c_str(), MNT_DETACH); }
    } unmount{point};
    t.text("Library/Caches/App/mounted/on-the-other-disk.txt", "keep");

    auto context = Remover::Context::forLayout(Layout::macos(t.root()), {});
    auto r = Remover::run({deleteItem(t.path("Library/Caches/App"))}, {}, context);
    EXPECT_TRUE(FS::isFile(t.path("Library/Caches/App/mounted/on-the-other-disk.txt")));
    EXPECT_FALSE(FS::exists(t.path("Library/Caches/App/own.bin")));
    ASSERT_EQ(r.failures.size(), 1u);
    EXPECT_EQ(r.failures[0], "item: partly cleared, another disk is mounted inside it");
}

TEST(Eraser, TreesDeeperThanTheWalkGoesAreLeftToTheFallback) {
    TempTree t;
    t.dir("Library/Caches/Deep");
    // Built relative to open folders: the whole path is longer than the system takes at once.
    int fd = open(t.path("Library/Caches/Deep").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_GE(fd, 0);
    for (int i = 0; i < 2100; ++i) {
        ASSERT_EQ(mkdirat(fd, "d", 0755), 0);
        int next = openat(fd, "d", O_RDONLY | O_DIRECTORY);
        close(fd);
        ASSERT_GE(next, 0);
        fd = next;
    }
    int f = openat(fd, "bottom.txt", O_WRONLY | O_CREAT, 0644);
    close(f);
    close(fd);
    auto direct = Eraser::erase(t.path("Library/Caches/Deep"));
    EXPECT_FALSE(direct.gone);
    EXPECT_EQ(direct.error, ENAMETOOLONG);

    auto context = Remover::Context::forLayout(Layout::macos(t.root()), {});
    auto r = Remover::run({deleteItem(t.path("Library/Caches/Deep"))}, {}, context);
    EXPECT_EQ(r.removed, 1) << (r.failures.empty() ? "" : r.failures[0]);
    EXPECT_FALSE(FS::exists(t.path("Library/Caches/Deep")));
}

namespace {

// Keeps swapping the folder `target` for a symbolic link to `outside` and back, as fast as it
// can, until stopped.
struct Swapper {
    std::atomic<bool> stop{false};
    std::atomic<int> swaps{0};
    std::thread thread;
    Swapper(std::string target, std::string outside) {
        thread = std::thread([this, target, outside] {
            std::string held = target + ".held";
            while (!stop.load()) {
                if (rename(target.c_str(), held.c_str()) != 0) {
                    std::this_thread::yield();
                    continue;
                }
                if (symlink(outside.c_str(), target.c_str()) == 0) ++swaps;
                std::this_thread::yield();
                unlink(target.c_str()); // fails harmlessly when a folder stands there
                rename(held.c_str(), target.c_str());
            }
        });
    }
    ~Swapper() {
        stop = true;
        thread.join();
    }
};

void fill(const TempTree& t, const std::string& rel, int folders, int files) {
    for (int d = 0; d < folders; ++d)
        for (int f = 0; f < files; ++f) t.file(rel + "/d" + std::to_string(d) + "/f" + std::to_string(f), 0);
}

} // namespace

TEST(Eraser, AFolderSwappedForALinkDuringTheRemovalNeverLeadsOutside) {
    // Swapped deep inside the item, and the item itself.
    for (std::string swapped : {"Library/Caches/Big/a/b", "Library/Caches/Big"}) {
        for (int round = 0; round < 6; ++round) {
            TempTree t;
            fill(t, "outside/keep", 10, 10);
            t.file("outside/keep/top.txt", 10);
            const int outsideFiles = countFiles(t.path("outside"));
            fill(t, "Library/Caches/Big/a/b", 30, 20);
            fill(t, "Library/Caches/Big/c", 20, 20);

            auto context = Remover::Context::forLayout(Layout::macos(t.root()), {});
            RemovalResult r;
            int swaps = 0;
            {
                Swapper swapper(t.path(swapped), t.path("outside/keep"));
                auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
                while (swapper.swaps.load() == 0 && std::chrono::steady_clock::now() < deadline)
                    std::this_thread::yield();
                ASSERT_GT(swapper.swaps.load(), 0) << "the swapping thread never got going";
                r = Remover::run({deleteItem(t.path("Library/Caches/Big"))}, {}, context);
                swaps = swapper.swaps.load();
            }
            EXPECT_GT(swaps, 0);
            EXPECT_EQ(countFiles(t.path("outside")), outsideFiles) << swapped << " round " << round;
            EXPECT_TRUE(FS::isFile(t.path("outside/keep/d9/f9")));
            // The item ends cleared or with a sentence, never anything else.
            EXPECT_EQ(r.removed + static_cast<int>(r.failures.size()), 1);
            for (const auto& f : r.failures) EXPECT_TRUE(f.starts_with("item: partly cleared, ")) << f;
        }
    }
}
