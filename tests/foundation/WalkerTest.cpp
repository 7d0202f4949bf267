// What a parallel walk can get wrong: work lost or done twice between threads, a folder that
// changes while it waits, links, mounts, depth and width beyond the handles and paths a process
// has, cancelling, and names that are no text.
#include "foundation/FS.h"
#include "foundation/Walker.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <thread>

namespace {

// What a walk met, path by path: kind and bytes.
struct Seen {
    std::mutex lock;
    std::multiset<std::string> folders;
    std::multiset<std::string> others;
    std::map<std::string, int> errors;
    std::set<std::string> mountPoints;
    std::atomic<int64_t> bytes{0};
};

class Recorder : public Walker::Visitor {
public:
    explicit Recorder(Seen& s) : seen(s) {}
    std::function<void(const Walker::Entry&)> onFolder;

    std::optional<Walker::Enter> folder(const Walker::Entry& e, int) override {
        std::string path = e.path();
        {
            std::lock_guard guard(seen.lock);
            seen.folders.insert(path);
            if (e.error) seen.errors[path] = e.error;
            if (e.mountPoint) seen.mountPoints.insert(path);
        }
        if (e.stat) seen.bytes += e.stat->bytes;
        if (onFolder) onFolder(e);
        return Walker::Enter{};
    }
    void other(const Walker::Entry& e) override {
        std::lock_guard guard(seen.lock);
        seen.others.insert(e.path());
        if (e.stat) seen.bytes += e.stat->bytes;
    }

private:
    Seen& seen;
};

void walk(const std::string& root, Seen& seen, std::size_t threads,
          std::function<void(const Walker::Entry&)> onFolder = {}, const ScanToken* cancel = nullptr) {
    Walker::Options options;
    options.threads = threads;
    options.cancel = cancel;
    (void)Walker::walk<Recorder>({{root, 0}}, options, [&] {
        auto r = std::make_unique<Recorder>(seen);
        r->onFolder = onFolder;
        return r;
    });
}

// Allocated bytes of a tree by `du`, hard links once: the reference the walks must equal.
int64_t du(const std::string& path) {
    std::string command = "du --block-size=1 -s '" + path + "' 2>/dev/null";
    FILE* p = popen(command.c_str(), "r");
    if (!p) return -1;
    long long bytes = -1;
    if (std::fscanf(p, "%lld", &bytes) != 1) bytes = -1;
    pclose(p);
    return bytes;
}

int openHandles() {
    int n = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) n += entry.is_symlink() ? 1 : 0;
    return n;
}

int threadsNow() {
    int n = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) ++n;
    return n;
}

// The process may hold no more than `limit` handles while alive.
class HandleLimit {
public:
    explicit HandleLimit(rlim_t limit) {
        getrlimit(RLIMIT_NOFILE, &saved);
        rlimit lowered = saved;
        lowered.rlim_cur = limit;
        setrlimit(RLIMIT_NOFILE, &lowered);
    }
    ~HandleLimit() { setrlimit(RLIMIT_NOFILE, &saved); }

private:
    rlimit saved{};
};

// A chain of `depth` folders "d" below `root`, made through handles (the path outgrows PATH_MAX),
// with one file of `size` bytes at the bottom. Gives the chain's allocated bytes.
int64_t deepChain(const std::string& root, int depth, int64_t size) {
    int fd = open(root.c_str(), O_RDONLY | O_DIRECTORY);
    int64_t total = 0;
    for (int i = 0; i < depth; ++i) {
        if (mkdirat(fd, "d", 0755) != 0) break;
        int next = openat(fd, "d", O_RDONLY | O_DIRECTORY);
        close(fd);
        fd = next;
    }
    int file = openat(fd, "bottom.bin", O_WRONLY | O_CREAT, 0644);
    std::string chunk(static_cast<std::size_t>(size), 'x');
    [[maybe_unused]] auto n = write(file, chunk.data(), chunk.size());
    fsync(file);
    close(file);
    close(fd);
    // What each level holds, read back through handles too.
    fd = open(root.c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < depth; ++i) {
        struct stat st {};
        fstatat(fd, "d", &st, AT_SYMLINK_NOFOLLOW);
        total += static_cast<int64_t>(st.st_blocks) * 512;
        int next = openat(fd, "d", O_RDONLY | O_DIRECTORY);
        close(fd);
        fd = next;
    }
    struct stat st {};
    fstatat(fd, "bottom.bin", &st, AT_SYMLINK_NOFOLLOW);
    close(fd);
    return total + static_cast<int64_t>(st.st_blocks) * 512;
}

// The temporary tree's own clean-up reads every path whole, which takes long at this depth.
void removeDeep(const std::string& path) { [[maybe_unused]] int status = std::system(("rm -rf '" + path + "'").c_str()); }

} // namespace

TEST(Walker, ManyThreadsMeetEveryEntryExactlyOnceAsOneThreadDoes) {
    TempTree t;
    // Wide and nested, so that folders are handed between threads at every level, and one folder
    // with more subfolders than a listing holds at once, so that its listing is taken up again.
    for (int a = 0; a < 12; ++a)
        for (int b = 0; b < 12; ++b)
            for (int f = 0; f < 5; ++f) t.file("w/a" + std::to_string(a) + "/b" + std::to_string(b) + "/f" + std::to_string(f), 100);
    const std::string longName(40, 'n');
    for (int i = 0; i < 2500; ++i) t.dir("w/wide/" + longName + std::to_string(i));
    t.file("w/wide/" + longName + "7/inside", 10);

    Seen one, many;
    walk(t.path("w"), one, 1);
    walk(t.path("w"), many, 4);
    EXPECT_EQ(one.folders.size(), 1u + 12 + 144 + 1 + 2500);
    EXPECT_EQ(one.others.size(), 12u * 12 * 5 + 1);
    EXPECT_EQ(many.folders, one.folders);
    EXPECT_EQ(many.others, one.others);
    EXPECT_EQ(many.bytes.load(), one.bytes.load());
    EXPECT_EQ(one.bytes.load(), du(t.path("w")));
}

TEST(Walker, AHardLinkMetByTwoThreadsCountsOnceAndEqualsDu) {
    TempTree t;
    for (int i = 0; i < 20; ++i) t.file("store/f" + std::to_string(i), 8192);
    for (int p = 0; p < 150; ++p)
        for (int i = 0; i < 20; ++i)
            t.hardLink("store/f" + std::to_string(i), "projects/p" + std::to_string(p) + "/node_modules/f" + std::to_string(i));
    Measured m = FS::measure({t.path("projects")});
    // Every link of the store's files but one lies inside: all of it is held elsewhere.
    EXPECT_EQ(m.shared, 20 * allocatedSize(t.path("store/f0")));
    Measured both = FS::measure({t.path("store"), t.path("projects")});
    EXPECT_EQ(both.shared, 0);
    EXPECT_EQ(both.exclusive, du(t.root()) - allocatedSize(t.root()));
}

TEST(Walker, AFolderThatVanishesOrTurnsIntoALinkWhileQueuedIsNeitherCountedNorFollowed) {
    TempTree t;
    t.file("outside/big.bin", 1 << 20);
    for (const char* name : {"a", "b", "c"}) t.file(std::string("w/") + name + "/x.bin", 4096);
    Seen seen;
    std::string firstEntered;
    // The first subfolder entered moves one sibling away and puts a link to a big folder in
    // the place of the other; both are still in the listing that was read.
    walk(t.path("w"), seen, 1, [&](const Walker::Entry& e) {
        if (e.level != 1 || !firstEntered.empty()) return;
        firstEntered = std::string(e.name);
        std::vector<std::string> others;
        for (const char* name : {"a", "b", "c"})
            if (name != firstEntered) others.push_back(name);
        std::filesystem::rename(t.path("w/" + others[0]), t.path("gone"));
        std::filesystem::rename(t.path("w/" + others[1]), t.path("moved"));
        std::filesystem::create_symlink(t.path("outside"), t.path("w/" + others[1]));
    });
    ASSERT_FALSE(firstEntered.empty());
    EXPECT_EQ(seen.folders.size(), 2u); // the root and the first
    EXPECT_TRUE(seen.errors.empty());
    for (const auto& p : seen.others) EXPECT_EQ(p.find("big.bin"), std::string::npos) << p;
    EXPECT_LT(seen.bytes.load(), 1 << 20);
    // The link is what the folder's place holds now: met as an entry, never walked.
    EXPECT_EQ(seen.others.size(), 2u);
}

TEST(Walker, AFolderSwappedWhileItsHandleWasClosedIsNotTakenForTheOldOne) {
    TempTree t;
    t.file("outside/late/big.bin", 1 << 20);
    // A comb deeper than one thread keeps handles for: each level holds "next" and "late", and
    // the first many more, so that some of them wait while "next" is walked.
    std::string level = "w/p";
    for (int i = 0; i < 60; ++i) t.file(level + "/late" + std::to_string(i) + "/own.bin", 4096);
    for (int i = 0; i < 70; ++i) {
        level += "/next";
        t.dir(level + "/late");
    }
    Seen seen;
    bool swapped = false;
    walk(t.path("w"), seen, 1, [&](const Walker::Entry& e) {
        // At the bottom, "w/p" (whose handle was closed long ago) becomes a link elsewhere.
        if (swapped || e.level < 60) return;
        swapped = true;
        std::filesystem::rename(t.path("w/p"), t.path("old-p"));
        std::filesystem::create_symlink(t.path("outside"), t.path("w/p"));
    });
    ASSERT_TRUE(swapped);
    int late = 0;
    for (const auto& p : seen.others) {
        EXPECT_EQ(p.find("big.bin"), std::string::npos) << p;
        late += p.find("/own.bin") != std::string::npos ? 1 : 0;
    }
    if (late == 60) GTEST_SKIP() << "the listing put every sibling before the deep one: nothing waited";
}

TEST(Walker, AChainTenThousandDeepIsWalkedWithinAFewHandlesAndCountedWhole) {
    TempTree t;
    const int64_t expected = deepChain(t.path(""), 10'000, 64 * 1024);
    const int before = openHandles();
    Seen seen;
    {
        HandleLimit limit(before + 40); // far fewer handles than levels
        walk(t.root(), seen, 2);
    }
    EXPECT_EQ(openHandles(), before);
    EXPECT_EQ(seen.folders.size(), 10'001u);
    EXPECT_TRUE(seen.errors.empty());
    ASSERT_EQ(seen.others.size(), 1u);
    const std::string& bottom = *seen.others.begin();
    EXPECT_GT(bottom.size(), static_cast<std::size_t>(PATH_MAX));
    EXPECT_TRUE(bottom.ends_with("/d/d/bottom.bin"));
    EXPECT_EQ(seen.bytes.load(), expected + allocatedSize(t.root()));
    // The measure of a path that long is whole too.
    {
        HandleLimit limit(before + 40);
        EXPECT_EQ(FS::measure({t.root()}).exclusive, expected + allocatedSize(t.root()));
    }
    removeDeep(t.path("d"));
}

TEST(Walker, CancellingMidWalkStopsSoonAndLeavesNoThreadBehind) {
    TempTree t;
    for (int a = 0; a < 40; ++a)
        for (int f = 0; f < 100; ++f) t.file("w/a" + std::to_string(a) + "/f" + std::to_string(f), 10);
    const int threads = threadsNow();
    ScanToken token;
    Seen seen;
    std::atomic<bool> returned{false};
    std::atomic<int> late{0};
    Walker::Options options;
    options.threads = 2;
    options.cancel = &token;
    class Cancelling : public Recorder {
    public:
        Cancelling(Seen& s, ScanToken& t, std::atomic<bool>& r, std::atomic<int>& l)
            : Recorder(s), token(t), returned(r), late(l) {}
        void other(const Walker::Entry& e) override {
            if (returned) ++late;
            if (++count == 300) token.cancel();
            Recorder::other(e);
        }

    private:
        ScanToken& token;
        std::atomic<bool>& returned;
        std::atomic<int>& late;
        int count = 0;
    };
    (void)Walker::walk<Cancelling>({{t.path("w"), 0}}, options,
                                   [&] { return std::make_unique<Cancelling>(seen, token, returned, late); });
    returned = true;
    EXPECT_LT(seen.others.size(), 4000u / 2);
    EXPECT_GE(seen.others.size(), 300u);
    EXPECT_EQ(late.load(), 0);
    // The kernel's workers behind a thread's ring end with that thread, but the last of them may
    // still be leaving the process's list of threads when the walk returns.
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (threadsNow() != threads && std::chrono::steady_clock::now() < until) std::this_thread::yield();
    EXPECT_EQ(threadsNow(), threads);
}

TEST(Walker, AnotherMountIsNotEnteredNorABindMountThatLeadsBackUp) {
    TempTree t;
    t.file("w/own.bin", 4096);
    std::string tmpfs = t.dir("w/disk");
    if (mount("tmpfs", tmpfs.c_str(), "tmpfs", 0, "size=8m") != 0) GTEST_SKIP() << "cannot mount a tmpfs here (needs root)";
    t.file("w/disk/inside.bin", 1 << 20);
    std::string loop = t.dir("w/loop");
    const bool bound = mount(t.path("w").c_str(), loop.c_str(), nullptr, MS_BIND, nullptr) == 0;
    Seen seen;
    walk(t.path("w"), seen, 2);
    if (bound) umount(loop.c_str());
    umount(tmpfs.c_str());
    EXPECT_EQ(seen.others, (std::multiset<std::string>{t.path("w/own.bin")}));
    EXPECT_TRUE(seen.mountPoints.contains(t.path("w/disk")));
    if (bound) {
        EXPECT_TRUE(seen.mountPoints.contains(t.path("w/loop")));
    }
}

TEST(Walker, NamesThatAreNoTextAreWalkedByteForByte) {
    TempTree t;
    const std::vector<std::string> names{"line\nbreak", "\xff\xfe", "tab\there", "\x80" "folder"};
    for (const auto& n : names) t.file("w/" + n + "/inner\r", 4096);
    Seen seen;
    walk(t.path("w"), seen, 2);
    for (const auto& n : names) {
        EXPECT_TRUE(seen.folders.contains(t.path("w/" + n)));
        EXPECT_TRUE(seen.others.contains(t.path("w/" + n + "/inner\r")));
    }
    EXPECT_EQ(FS::measure({t.path("w")}).exclusive, du(t.path("w")));
}

TEST(Walker, AFolderThatMayBeReadButNotSearchedIsUnreadable) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not bind root";
    TempTree t;
    t.file("w/listable/secret.bin", 1 << 20);
    t.file("w/closed/secret.bin", 1 << 20);
    chmod(t.path("w/listable").c_str(), 0444); // names may be read, nothing in it reached
    chmod(t.path("w/closed").c_str(), 0);
    Seen seen;
    walk(t.path("w"), seen, 1);
    chmod(t.path("w/listable").c_str(), 0755);
    chmod(t.path("w/closed").c_str(), 0755);
    EXPECT_EQ(seen.errors.size(), 2u);
    EXPECT_EQ(seen.errors[t.path("w/listable")], EACCES);
    EXPECT_EQ(seen.errors[t.path("w/closed")], EACCES);
    EXPECT_TRUE(seen.others.empty());
}
