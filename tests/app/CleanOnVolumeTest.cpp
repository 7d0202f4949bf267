// A real clean through the model on a volume of its own: what the report says the disk gained
// is what the volume gained, what stays is exactly what was not to go, and what went to the
// Trash can be put back.
#include "AppHarness.h"

#include "foundation/FS.h"
#include "removal/Remover.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <sys/mount.h>
#include <sys/statvfs.h>

namespace {

// A tmpfs mounted on a fresh folder for the test, unmounted at the end.
class Volume {
public:
    explicit Volume(const std::string& at, const char* options = "size=256m") : path(at) {
        std::filesystem::create_directories(path);
        if (::mount("tmpfs", path.c_str(), "tmpfs", 0, options) == 0) mounted = true;
        else problem = std::strerror(errno);
    }
    ~Volume() {
        if (mounted) ::umount2(path.c_str(), MNT_DETACH);
    }
    [[nodiscard]] int64_t available() const {
        struct statvfs s {};
        if (::statvfs(path.c_str(), &s) != 0) return -1;
        return static_cast<int64_t>(s.f_bavail) * static_cast<int64_t>(s.f_frsize);
    }
    bool remountReadOnly() { return ::mount("tmpfs", path.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) == 0; }

    std::string path;
    bool mounted = false;
    std::string problem;
};

const CleanItem* byId(const std::vector<CleanItem>& items, const std::string& id) {
    for (const auto& i : items)
        if (i.id == id) return &i;
    return nullptr;
}

} // namespace

TEST(CleanOnVolume, FreedIsTheVolumesGainAndOnlyWhatWasTickedGoes) {
    AppHarness h;
    Volume volume(h.home.root()); // the whole generated home lies on its own volume
    if (!volume.mounted) GTEST_SKIP() << "mounting a tmpfs was refused (" << volume.problem << "); this needs root";
    const std::string root = h.home.root();
    h.home.file(".cache/oldtool/a/blob", 12 * MB);
    h.home.file(".cache/oldtool/b/blob", 3 * MB);
    h.home.file(".cache/newtool/blob", 11 * MB);
    h.home.file(".cache/kepttool/blob", 14 * MB);
    projectIn(h.home, "code/app", 21 * MB);
    projectIn(h.home, "code/busy", 22 * MB);
    h.home.file("Downloads/installer.iso", 101 * 1024 * 1024);
    h.facts.procs = {{4242, "node", root + "/code/busy", "/usr/bin/node"}};

    AppModel& m = h.make([&](AppSetup& s) { s.readDisk = [root] { return DiskInfo::of(root); }; });
    ASSERT_TRUE(h.scanToEnd());
    const CleanItem* old = byId(m.items(), "cache:oldtool");
    const CleanItem* kept = byId(m.items(), "cache:kepttool");
    const CleanItem* iso = byId(m.items(), "download:installer.iso");
    ASSERT_TRUE(old && kept && iso);
    ASSERT_EQ(m.items().size(), 6u);
    const CleanItem* busy = nullptr;
    for (const auto& i : m.items())
        if (i.isLocked()) busy = &i;
    ASSERT_TRUE(busy);

    // The small volume is low on space, so every cache starts ticked; one is unticked by hand,
    // the locked build folder can't be ticked, and the installer goes to the Trash.
    m.toggle(*kept);
    m.toggle(*iso);
    m.setAll(Tier::rebuildable, true);
    std::set<std::string> removedIds;
    int64_t deletedBytes = 0;
    for (const auto& i : m.selectedItems()) {
        removedIds.insert(i.id);
        if (i.removal.isDelete()) deletedBytes += i.size;
    }
    ASSERT_EQ(removedIds.size(), 4u);
    EXPECT_FALSE(removedIds.contains(kept->id));
    EXPECT_FALSE(removedIds.contains(busy->id));
    const std::string keptPath = kept->paths.front(), busyPath = busy->paths.front(), isoPath = iso->paths.front();
    const int64_t isoSize = iso->size;

    const int64_t before = volume.available();
    m.cleanSelected();
    ASSERT_TRUE(h.finishClean());
    const int64_t gain = volume.available() - before;
    ASSERT_TRUE(m.report());
    const CleanReport& r = *m.report();
    EXPECT_TRUE(r.failures.empty()) << r.failures.front();
    EXPECT_EQ(r.removedCount, 4);
    EXPECT_EQ(r.freed, gain);
    EXPECT_NEAR(static_cast<double>(r.freed), static_cast<double>(deletedBytes), deletedBytes * 0.01);
    EXPECT_EQ(r.trashed, isoSize);
    ASSERT_TRUE(m.cleanSummary());
    EXPECT_EQ(m.cleanSummary()->before, before);

    // Left on disk: exactly what was not ticked and what is locked.
    EXPECT_TRUE(FS::isDir(keptPath));
    EXPECT_TRUE(FS::isDir(busyPath));
    EXPECT_FALSE(FS::exists(root + "/.cache/oldtool"));
    EXPECT_FALSE(FS::exists(root + "/.cache/newtool"));
    EXPECT_FALSE(FS::exists(root + "/code/app/node_modules"));
    EXPECT_TRUE(FS::isFile(root + "/code/app/package.json"));
    EXPECT_FALSE(FS::exists(isoPath));
    EXPECT_EQ(m.items().size(), 2u);

    // The Trash entry goes back where it was.
    const std::string trashed = root + "/.local/share/Trash/files/installer.iso";
    ASSERT_TRUE(FS::isFile(trashed));
    EXPECT_EQ(Remover::putBack(trashed, isoPath, m.environment().remover), std::nullopt);
    EXPECT_TRUE(FS::isFile(isoPath));
    EXPECT_FALSE(FS::exists(root + "/.local/share/Trash/info/installer.iso.trashinfo"));
}

TEST(CleanOnVolume, ATrashOnAReadOnlyVolumeGivesItsSentenceAndTouchesNothing) {
    AppHarness h;
    Volume volume(h.home.path("Media"), "size=16m");
    if (!volume.mounted) GTEST_SKIP() << "mounting a tmpfs was refused (" << volume.problem << "); this needs root";
    const std::string film = h.home.file("Media/film.mkv", 1 * MB);
    if (!volume.remountReadOnly()) GTEST_SKIP() << "remounting the tmpfs read-only was refused";
    AppModel& m = h.make();
    m.moveToTrash(film, "film.mkv", 1 * MB);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return m.trashing().empty(); }));
    ASSERT_TRUE(m.toast());
    EXPECT_TRUE(m.toast()->text.starts_with("film.mkv could not go to the Trash: ")) << m.toast()->text;
    EXPECT_EQ(m.toast()->kind, Toast::Kind::problem);
    EXPECT_TRUE(FS::isFile(film));
    EXPECT_FALSE(m.storage());
}
