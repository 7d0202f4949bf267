#include "foundation/FS.h"
#include "platform/Layout.h"
#include "storage/FileKind.h"
#include "storage/StorageKind.h"
#include "storage/StorageReport.h"

#include <gtest/gtest.h>

namespace {

StorageItem row(std::string name, std::string path, int64_t bytes) {
    return StorageItem{std::move(name), std::move(path), bytes, true, std::nullopt, std::nullopt};
}

StorageReport sample() {
    StorageReport r;
    r.diskUsed = 1000;
    r.files = 12;
    r.categories = {
        StorageCategory{StorageKind::documents, 600, {row("work", "/h/Documents/work", 500), row("a.pdf", "/h/Documents/a.pdf", 100)}, 0, {}},
        StorageCategory{StorageKind::projects, 300, {row("work", "/h/Documents/work", 300)}, 0, {}},
        StorageCategory{StorageKind::trash, 50, {row("Trash", "/h/.Trash", 50)}, 0, {}},
    };
    r.biggest = {BigFile{"big.mov", "/h/Documents/work/big.mov", 200, FileKind::video, StorageKind::documents, {}, {}},
                 BigFile{"a.pdf", "/h/Documents/a.pdf", 100, FileKind::document, StorageKind::documents, {}, {}}};
    return r;
}

} // namespace

TEST(StorageReportMoving, FileDeepInsideARowLowersRowAndCategoryButKeepsTheRow) {
    StorageReport r = sample().moving("/h/Documents/work/deep/big.mov", 200);
    const StorageCategory* docs = r.category(StorageKind::documents);
    ASSERT_TRUE(docs);
    EXPECT_EQ(docs->bytes, 400);
    ASSERT_EQ(docs->items.size(), 2u);
    EXPECT_EQ(docs->items[0].path, "/h/Documents/work");
    EXPECT_EQ(docs->items[0].bytes, 300);
    // Only the first matching category changes, even though projects holds the same row.
    EXPECT_EQ(r.category(StorageKind::projects)->bytes, 300);
    EXPECT_EQ(r.category(StorageKind::trash)->bytes, 250);
    EXPECT_EQ(r.files, 12);
    EXPECT_EQ(r.diskUsed, 1000);
}

TEST(StorageReportMoving, RowsAtOrBelowThePathGoAndBiggestFilesBelowItToo) {
    StorageReport r = sample().moving("/h/Documents/work", 500);
    const StorageCategory* docs = r.category(StorageKind::documents);
    ASSERT_EQ(docs->items.size(), 1u);
    EXPECT_EQ(docs->items[0].path, "/h/Documents/a.pdf");
    EXPECT_EQ(docs->bytes, 100);
    ASSERT_EQ(r.biggest.size(), 1u);
    EXPECT_EQ(r.biggest[0].path, "/h/Documents/a.pdf");
    // Categories are sorted again: the Trash is now the biggest.
    EXPECT_EQ(r.categories.front().kind, StorageKind::trash);
    EXPECT_EQ(r.categories.front().bytes, 550);
}

TEST(StorageReportMoving, APathPrefixThatIsNotAFolderBoundaryDoesNotMatch) {
    StorageReport r = sample().moving("/h/Documents/wor", 10);
    EXPECT_EQ(r.category(StorageKind::documents)->bytes, 600);
    EXPECT_EQ(r.biggest.size(), 2u);
    EXPECT_EQ(r.category(StorageKind::trash)->bytes, 60);
}

TEST(StorageReportMoving, ItemInNoCategoryStillRaisesTheTrashAndBytesStopAtZero) {
    StorageReport r = sample();
    r.categories.pop_back(); // no Trash category at all
    StorageReport moved = r.moving("/elsewhere/file", 70);
    const StorageCategory* trash = moved.category(StorageKind::trash);
    ASSERT_TRUE(trash);
    EXPECT_EQ(trash->bytes, 70);
    EXPECT_TRUE(trash->items.empty());
    EXPECT_EQ(trash->unreadable, 0);
    EXPECT_EQ(moved.measured(), r.measured() + 70);

    StorageReport over = sample().moving("/h/Documents/a.pdf", 5000);
    EXPECT_EQ(over.category(StorageKind::documents)->bytes, 0);
    EXPECT_EQ(over.category(StorageKind::documents)->items.size(), 1u); // the "work" row stays
}

// A home folder below the temporary folder: the system share's "/tmp" row holds the file
// too, but the file is the home's, and its own row goes.
TEST(StorageReportMoving, TheRowClosestToThePathWinsOverAnOuterFolderOfAnEarlierCategory) {
    StorageReport r = sample();
    r.categories.insert(r.categories.begin(), StorageCategory{StorageKind::temporary, 5000, {row("tmp", "/h", 5000)}, 0, {}});
    StorageReport moved = r.moving("/h/Documents/a.pdf", 100);
    EXPECT_EQ(moved.category(StorageKind::temporary)->bytes, 5000);
    EXPECT_EQ(moved.category(StorageKind::temporary)->items[0].bytes, 5000);
    EXPECT_EQ(moved.category(StorageKind::documents)->bytes, 500);
    ASSERT_EQ(moved.category(StorageKind::documents)->items.size(), 1u);
    EXPECT_EQ(moved.category(StorageKind::documents)->items[0].path, "/h/Documents/work");
    // A file deep inside "work", held by rows of two categories at the same depth: the
    // earlier category, as before.
    StorageReport deep = r.moving("/h/Documents/work/deep/x.mov", 30);
    EXPECT_EQ(deep.category(StorageKind::documents)->bytes, 570);
    EXPECT_EQ(deep.category(StorageKind::projects)->bytes, 300);
    EXPECT_EQ(deep.category(StorageKind::temporary)->bytes, 5000);
}

TEST(StorageReportMoving, TheTrashCategoryItselfIsNeverTheOneLowered) {
    StorageReport r = sample().moving("/h/.Trash", 50);
    EXPECT_EQ(r.category(StorageKind::trash)->bytes, 100);
    EXPECT_EQ(r.category(StorageKind::trash)->items.size(), 1u);
}

TEST(StorageReport, RemainderNeverGoesBelowZero) {
    StorageReport r = sample();
    EXPECT_EQ(r.measured(), 950);
    EXPECT_EQ(r.remainder(1000, 20), 30);
    // Clones counted in full can make the home worth more than the used figure.
    EXPECT_EQ(r.remainder(900, 0), 0);
}

TEST(StorageItem, RevealsItsRevealElseARealPathElseNothing) {
    StorageItem asset{"Fonts", "asset:Fonts", 10, true, std::nullopt, "/System/Library/AssetsV2"};
    EXPECT_EQ(asset.revealPath(), "/System/Library/AssetsV2");
    StorageItem volume{"Startup files", "volume:Preboot", 10, true, "Preboot", std::nullopt};
    EXPECT_FALSE(volume.revealPath());
    StorageItem file{"a", "/h/a", 1, false, std::nullopt, std::nullopt};
    EXPECT_EQ(file.revealPath(), "/h/a");
}

TEST(StorageKinds, RawValuesRoundTripInOrderAndOnlyUserKindsMayBeTrashed) {
    ASSERT_EQ(StorageKinds::allCases.size(), 16u);
    for (std::size_t i = 0; i < StorageKinds::allCases.size(); ++i) {
        StorageKind k = StorageKinds::allCases[i];
        EXPECT_EQ(static_cast<std::size_t>(k), i);
        EXPECT_EQ(StorageKinds::fromRaw(StorageKinds::raw(k)), k);
    }
    EXPECT_EQ(StorageKinds::raw(StorageKind::appData), "appData");
    EXPECT_EQ(StorageKinds::raw(StorageKind::macOS), "macOS");
    EXPECT_FALSE(StorageKinds::fromRaw("Apps"));
    EXPECT_EQ(StorageKinds::title(StorageKind::macOS, Platform::macos), "macOS");
    EXPECT_EQ(StorageKinds::title(StorageKind::macOS, Platform::linux), "System");
    EXPECT_EQ(StorageKinds::title(StorageKind::assets, Platform::macos), "macOS downloads");
    int trashable = 0;
    for (StorageKind k : StorageKinds::allCases) trashable += StorageKinds::canTrash(k) ? 1 : 0;
    EXPECT_EQ(trashable, 7);
    EXPECT_FALSE(StorageKinds::canTrash(StorageKind::projects));
    EXPECT_TRUE(StorageKinds::canTrash(StorageKind::other));
}

TEST(StorageKinds, FoldersComeFromTheLayout) {
    Layout mac = Layout::macos("/Users/u");
    EXPECT_EQ(StorageKinds::folder(StorageKind::apps, mac), "/Applications");
    EXPECT_EQ(StorageKinds::folder(StorageKind::appData, mac), "/Users/u/Library");
    EXPECT_EQ(StorageKinds::folder(StorageKind::trash, mac), "/Users/u/.Trash");
    EXPECT_EQ(StorageKinds::folder(StorageKind::movies, mac), "/Users/u/Movies");
    EXPECT_FALSE(StorageKinds::folder(StorageKind::projects, mac));
    Layout lin = Layout::linux("/home/u");
    EXPECT_EQ(StorageKinds::folder(StorageKind::movies, lin), "/home/u/Videos");
    EXPECT_EQ(StorageKinds::folder(StorageKind::trash, lin), "/home/u/.local/share/Trash");
    EXPECT_FALSE(StorageKinds::folder(StorageKind::apps, lin));
}

TEST(FileKinds, KindsByExtensionPackagesAndLibraries) {
    EXPECT_EQ(FileKinds::of("/a/Holiday.MOV"), FileKind::video);
    EXPECT_EQ(FileKinds::of("/a/b.tar.gz"), FileKind::archive);
    EXPECT_EQ(FileKinds::of("/a/Photos Library.photoslibrary"), FileKind::image);
    EXPECT_EQ(FileKinds::of("/a/disk.raw-disk"), FileKind::diskImage);
    EXPECT_EQ(FileKinds::of("/a/Safari.app"), FileKind::app);
    EXPECT_EQ(FileKinds::of("/a/README"), FileKind::other);
    EXPECT_EQ(FileKinds::of("/a/.mp4"), FileKind::other); // a hidden name, not an extension
    EXPECT_TRUE(FileKinds::isPackage("sparsebundle"));
    EXPECT_TRUE(FileKinds::isPackage("app"));
    EXPECT_FALSE(FileKinds::isPackage("dmg"));
    EXPECT_TRUE(FileKinds::isLibrary("logicx"));
    EXPECT_FALSE(FileKinds::isLibrary("sparsebundle"));
    for (FileKind k : FileKinds::allCases) EXPECT_EQ(FileKinds::fromRaw(FileKinds::raw(k)), k);
}

TEST(FileKinds, LinuxDownloadsReadAlikeInTheStorageMapAndTheCleaningScan) {
    // Installers of every Linux packaging, whatever the case of their extension.
    for (const char* name : {"google-chrome-stable_current_amd64.deb", "zoom.x86_64.rpm", "Obsidian-1.5.3.AppImage",
                             "app.flatpak", "org.gimp.GIMP.flatpakref", "code_1.90.snap",
                             "NVIDIA-Linux-x86_64-550.run", "setup.exe"}) {
        EXPECT_EQ(FileKinds::of(std::string("/d/") + name), FileKind::installer) << name;
        EXPECT_EQ(FileKinds::downloadWord(std::string("/d/") + name, false), "Installer") << name;
    }
    // Toolchains downloaded as archives, read by their last extension.
    for (const char* name : {"node-v20.11.1-linux-x64.tar.xz", "go1.22.linux-amd64.tar.gz", "jdk.tgz", "zig.txz",
                             "sdk.tar.bz2", "llvm.tar.zst"}) {
        EXPECT_EQ(FileKinds::of(std::string("/d/") + name), FileKind::archive) << name;
        EXPECT_EQ(FileKinds::downloadWord(std::string("/d/") + name, false), "Archive") << name;
    }
    // Install media are installers to the scan and disk images to the map; a virtual machine
    // that is a folder is neither.
    EXPECT_EQ(FileKinds::of("/d/ubuntu-24.04.iso"), FileKind::diskImage);
    EXPECT_EQ(FileKinds::downloadWord("/d/ubuntu-24.04.iso", false), "Installer");
    EXPECT_EQ(FileKinds::downloadWord("/d/Windows.utm", true), "Folder");
    EXPECT_EQ(FileKinds::downloadWord("/d/clip.webm", false), "Video");
    EXPECT_EQ(FileKinds::downloadWord("/d/Tool.app", true), "App");
    EXPECT_EQ(FileKinds::downloadWord("/d/notes.txt", false), "File");
    EXPECT_EQ(FileKinds::downloadWord("/d/unpacked", true), "Folder");
    // A name that only ends like an installer is not one.
    EXPECT_EQ(FileKinds::of("/d/run"), FileKind::other);
    EXPECT_EQ(FileKinds::of("/d/.deb"), FileKind::other);
}

TEST(FileKinds, TrashableNeedsTheHomeTheGuardAndNoLibrary) {
    auto allow = [](const std::string&) { return true; };
    auto refuse = [](const std::string&) { return false; };
    EXPECT_TRUE(FileKinds::trashable("/home/u/Movies/a.mov", "/home/u", allow));
    EXPECT_FALSE(FileKinds::trashable("/home/u/Movies/a.mov", "/home/u", refuse));
    EXPECT_FALSE(FileKinds::trashable("/home/user2/a.mov", "/home/u", allow)); // a sibling, not below
    EXPECT_FALSE(FileKinds::trashable("/home/u", "/home/u", allow));
    EXPECT_FALSE(FileKinds::trashable("/home/u/Pictures/Photos Library.PhotosLibrary", "/home/u", allow));
    EXPECT_TRUE(FileKinds::trashable("/home/u/VMs/win.utm", "/home/u", allow));
    EXPECT_FALSE(FileKinds::trashable("/home/u/a", "/home/u", nullptr));
}
