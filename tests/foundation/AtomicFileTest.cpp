// The atomic writer's sweep of the temporaries that killed writes left: only its own names,
// only plain files of this user, only those no live writer holds.
#include "foundation/AtomicFile.h"
#include "foundation/FS.h"
#include "foundation/SettingsStore.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Another process that holds an exclusive lock on `path`, as a live writer does, until released.
class LockHolder {
public:
    explicit LockHolder(const std::string& path) {
        int ready[2], release[2];
        if (pipe(ready) != 0 || pipe(release) != 0) return;
        pid = fork();
        if (pid == 0) {
            close(release[1]); // or the read below never sees the end
            close(ready[0]);
            int fd = open(path.c_str(), O_RDWR);
            char c = (fd >= 0 && flock(fd, LOCK_EX) == 0) ? 'y' : 'n';
            (void)!::write(ready[1], &c, 1);
            (void)!::read(release[0], &c, 1);
            _exit(0);
        }
        char c = 0;
        locked = ::read(ready[0], &c, 1) == 1 && c == 'y';
        close(ready[0]);
        close(ready[1]);
        close(release[0]);
        releaseEnd = release[1];
    }
    ~LockHolder() { release(); }
    void release() {
        if (pid <= 0) return;
        close(releaseEnd);
        waitpid(pid, nullptr, 0);
        pid = -1;
    }
    bool locked = false;

private:
    pid_t pid = -1;
    int releaseEnd = -1;
};

} // namespace

TEST(AtomicFile, TemporaryNamesAreTheWritersOwnOnly) {
    EXPECT_TRUE(AtomicFile::isTemporaryName(".history.json.aZ09xY", "history.json"));
    EXPECT_FALSE(AtomicFile::isTemporaryName(".history.json.aZ09x", "history.json"));
    EXPECT_FALSE(AtomicFile::isTemporaryName(".history.json.aZ09xYz", "history.json"));
    EXPECT_FALSE(AtomicFile::isTemporaryName(".history.json.aZ-9xY", "history.json"));
    EXPECT_FALSE(AtomicFile::isTemporaryName(".history.json.aZ/9xY", "history.json"));
    EXPECT_FALSE(AtomicFile::isTemporaryName("history.json.aZ09xY", "history.json"));
    EXPECT_FALSE(AtomicFile::isTemporaryName(".history.jsonXaZ09xY", "history.json"));
    EXPECT_FALSE(AtomicFile::isTemporaryName(".storage.json.aZ09xY", "history.json"));
    EXPECT_FALSE(AtomicFile::isTemporaryName(".history.json", "history.json"));
}

TEST(AtomicFile, AWriteRemovesStaleTemporariesAndNothingElse) {
    TempTree dir;
    TempTree outside;
    const std::string target = outside.text("precious", "keep me");
    dir.text("data.json", "old");
    const std::vector<std::string> stale = {".data.json.Ab12Z9", ".data.json.000000"};
    for (const auto& name : stale) dir.text(name, "half a file");
    const std::vector<std::string> others = {".data.json.Ab12Z", ".data.json.Ab12Z99", ".data.json.Ab-2Z9",
                                             "data.json.Ab12Z9", ".other.json.Ab12Z9", ".data.json.DirDir/inside"};
    for (const auto& name : others) dir.text(name, "not the writer's");
    dir.symLink(target, ".data.json.LnkLnk");
    ASSERT_EQ(mkfifo(dir.path(".data.json.FifoXX").c_str(), 0600), 0);
    dir.text(".data.json.HeldXX", "a live writer's");
    LockHolder holder(dir.path(".data.json.HeldXX"));
    ASSERT_TRUE(holder.locked);

    ASSERT_TRUE(AtomicFile::write(dir.path("data.json"), "new"));
    EXPECT_EQ(FS::readText(dir.path("data.json")), "new");
    for (const auto& name : stale) EXPECT_FALSE(FS::exists(dir.path(name))) << name;
    for (const auto& name : others) EXPECT_TRUE(FS::exists(dir.path(name))) << name;
    EXPECT_EQ(FS::readLink(dir.path(".data.json.LnkLnk")), target);
    EXPECT_EQ(FS::readText(target), "keep me");
    EXPECT_TRUE(FS::exists(dir.path(".data.json.FifoXX")));
    EXPECT_TRUE(FS::exists(dir.path(".data.json.HeldXX")));

    // Once its writer is gone, the held one is stale too.
    holder.release();
    ASSERT_TRUE(AtomicFile::write(dir.path("data.json"), "newer"));
    EXPECT_FALSE(FS::exists(dir.path(".data.json.HeldXX")));
    EXPECT_EQ(FS::readText(dir.path("data.json")), "newer");
}

TEST(AtomicFile, AnotherUsersTemporaryStays) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to give a file to another user";
    TempTree dir;
    const std::string theirs = dir.text(".data.json.Theirs", "someone else's");
    ASSERT_EQ(chown(theirs.c_str(), 65534, 65534), 0);
    ASSERT_TRUE(AtomicFile::write(dir.path("data.json"), "new"));
    EXPECT_TRUE(FS::exists(theirs));
}

TEST(AtomicFile, TheSettingsFileSweepsItsOwnTemporariesOnly) {
    TempTree dir;
    dir.text(".settings.json.k1LL3d", "{\"half");
    dir.text(".history.json.k1LL3d", "{\"half");
    SettingsStore store(dir.path("settings.json"));
    ASSERT_TRUE(store.set("loginItemOffered", true));
    EXPECT_FALSE(FS::exists(dir.path(".settings.json.k1LL3d")));
    EXPECT_TRUE(FS::exists(dir.path(".history.json.k1LL3d")));
    EXPECT_TRUE(SettingsStore(dir.path("settings.json")).boolValue("loginItemOffered"));
}

TEST(SettingsStore, AFileNestedTooDeepReadsAsEmptyAndTheNextSaveStillWorks) {
    std::string deep = "{\"prefs\":" + std::string(100'000, '[') + std::string(100'000, ']') + "}";
    EXPECT_EQ(SettingsStore::decode(deep), nlohmann::json::object());
    std::string fine = "{\"prefs\":" + std::string(SettingsStore::maxDepth - 1, '[') +
                       std::string(SettingsStore::maxDepth - 1, ']') + "}";
    EXPECT_TRUE(SettingsStore::decode(fine).contains("prefs"));
    TempTree dir;
    dir.text("settings.json", deep);
    SettingsStore store(dir.path("settings.json"));
    EXPECT_FALSE(store.value("prefs"));
    EXPECT_TRUE(store.set("scanSeconds", 4.5));
    EXPECT_EQ(SettingsStore(dir.path("settings.json")).doubleValue("scanSeconds"), 4.5);
}
