// Facts asked in one call must be the facts asked name by name: each answer in its own slot,
// relative to the folder asked about, a link's own facts rather than its target's, and a
// missing name an error of its own that spoils none of the others.
#include "foundation/StatBatch.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace {

struct Folder {
    int fd = -1;
    explicit Folder(const std::string& path) : fd(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}
    ~Folder() {
        if (fd >= 0) close(fd);
    }
};

constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
constexpr unsigned mask = STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_INO | STATX_BLOCKS | STATX_MTIME;

} // namespace

TEST(StatBatch, EveryAnswerMatchesStatxNameByNameThroughManyRoundsOfTheRing) {
    TempTree t;
    std::vector<std::string> names;
    for (int i = 0; i < 120; ++i) {
        names.push_back("f" + std::to_string(i));
        t.file("a/" + names.back(), 4096 * (i % 7));
    }
    t.dir("a/sub");
    t.file("a/big", 1 << 20);
    t.symLink(t.path("a/big"), "a/link"); // its own facts, not the big file's
    t.hardLink("a/f1", "a/f1-again");
    names.insert(names.end(), {"sub", "link", "f1-again", "missing", "big"});
    ASSERT_LE(names.size(), StatBatch::capacity);
    Folder a(t.path("a"));
    ASSERT_GE(a.fd, 0);

    std::vector<const char*> asked;
    for (const auto& n : names) asked.push_back(n.c_str());
    std::vector<struct statx> facts(names.size());
    std::vector<int> errors(names.size(), -1);
    StatBatch batch;
    // Many rounds, so that the ring's slots wrap around several times.
    for (int round = 0; round < 12; ++round) {
        facts.assign(names.size(), {});
        errors.assign(names.size(), -1);
        if (!batch.ask(a.fd, asked.data(), static_cast<unsigned>(asked.size()), flags, mask, facts.data(), errors.data()))
            GTEST_SKIP() << "the kernel offers no io_uring ring here: the walks ask name by name";
        for (std::size_t i = 0; i < names.size(); ++i) {
            struct statx one {};
            const int error = statx(a.fd, asked[i], flags, mask, &one) == 0 ? 0 : errno;
            ASSERT_EQ(errors[i], error) << names[i] << " in round " << round;
            if (error) continue;
            EXPECT_EQ(facts[i].stx_ino, one.stx_ino) << names[i];
            EXPECT_EQ(facts[i].stx_mode, one.stx_mode) << names[i];
            EXPECT_EQ(facts[i].stx_blocks, one.stx_blocks) << names[i];
            EXPECT_EQ(facts[i].stx_nlink, one.stx_nlink) << names[i];
        }
    }
    EXPECT_EQ(errors[names.size() - 2], ENOENT);
    EXPECT_TRUE(S_ISLNK(facts[names.size() - 4].stx_mode));
    EXPECT_TRUE(S_ISDIR(facts[names.size() - 5].stx_mode));
    EXPECT_EQ(facts[names.size() - 3].stx_nlink, 2u);
}

TEST(StatBatch, NamesAreLookedUpInTheFolderAskedAboutAndOversizedAsksAreRefused) {
    TempTree t;
    t.file("one/x", 0);
    t.file("two/x", 1 << 20);
    Folder one(t.path("one"));
    Folder two(t.path("two"));
    const char* name = "x";
    StatBatch batch;
    struct statx facts[2] {};
    int errors[2] = {-1, -1};
    if (!batch.ask(one.fd, &name, 1, flags, mask, &facts[0], &errors[0]))
        GTEST_SKIP() << "the kernel offers no io_uring ring here: the walks ask name by name";
    ASSERT_TRUE(batch.ask(two.fd, &name, 1, flags, mask, &facts[1], &errors[1]));
    EXPECT_EQ(errors[0], 0);
    EXPECT_EQ(errors[1], 0);
    EXPECT_EQ(facts[0].stx_blocks, 0u);
    EXPECT_GE(facts[1].stx_blocks * 512, 1u << 20);

    // More than one call holds: nothing is asked, so the caller asks name by name.
    std::vector<const char*> many(StatBatch::capacity + 1, name);
    std::vector<struct statx> out(many.size());
    std::vector<int> why(many.size(), -1);
    EXPECT_FALSE(batch.ask(one.fd, many.data(), static_cast<unsigned>(many.size()), flags, mask, out.data(), why.data()));
    EXPECT_EQ(why[0], -1);
    EXPECT_TRUE(batch.ask(one.fd, many.data(), 0, flags, mask, out.data(), why.data()));
}
