#include "foundation/FS.h"
#include "storage/StorageWalkFixtures.h"
#include "support/EnvOf.h"
#include "support/FakeAppBundles.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

using namespace StorageWalk;

namespace {

// Allocated bytes of a tree by `du`, hard links once.
int64_t du(const std::string& path) {
    FILE* p = popen(("du --block-size=1 -s '" + path + "' 2>/dev/null").c_str(), "r");
    if (!p) return -1;
    long long bytes = -1;
    if (std::fscanf(p, "%lld", &bytes) != 1) bytes = -1;
    pclose(p);
    return bytes;
}

// A chain of folders "d" deeper than any path may be long, made through handles.
void deepChain(const std::string& folder, int depth) {
    int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < depth && fd >= 0; ++i) {
        mkdirat(fd, "d", 0755);
        int next = openat(fd, "d", O_RDONLY | O_DIRECTORY);
        close(fd);
        fd = next;
    }
    int file = openat(fd, "f.bin", O_WRONLY | O_CREAT, 0644);
    std::string data(50'000, 'x');
    [[maybe_unused]] auto n = write(file, data.data(), data.size());
    close(file);
    close(fd);
}

} // namespace

TEST(StorageScan, HardLinksInTwoProjectsCountOnceInBytesAndFiles) {
    TempTree home;
    home.dir("Documents/a/.git");
    home.file("Documents/a/data.bin", 3 * MiB);
    home.text("Documents/b/package.json", "{}");
    home.hardLink("Documents/a/data.bin", "Documents/b/data.bin");
    StorageReport r = walk(isolated(home.root()));
    EXPECT_TRUE(r.complete);
    EXPECT_EQ(r.files, 2); // data.bin once, package.json
    EXPECT_EQ(bytesOf(r, StorageKind::projects),
              alloc(home, "Documents/a/data.bin") + alloc(home, "Documents/a/.git") + alloc(home, "Documents/b/package.json"));
    const StorageItem* a = row(r, StorageKind::projects, home.path("Documents/a"));
    const StorageItem* b = row(r, StorageKind::projects, home.path("Documents/b"));
    ASSERT_TRUE(a && b);
    // Whichever walk met the file first holds its bytes, and only that one.
    EXPECT_EQ((a->bytes >= 3 * MiB) + (b->bytes >= 3 * MiB), 1);
    EXPECT_EQ(a->detail, "~/Documents");
    EXPECT_TRUE(a->isFolder);
    // The project folders' own blocks stay with the folder of Documents they are, and Documents'
    // own blocks with its category.
    EXPECT_EQ(bytesOf(r, StorageKind::documents),
              alloc(home, "Documents/a") + alloc(home, "Documents/b") + alloc(home, "Documents"));
}

TEST(StorageScan, APackageStoreOwnsItsLinksWhateverTheTiming) {
    TempTree home;
    for (int i = 0; i < 40; ++i) {
        std::string name = "f" + std::to_string(i);
        home.file(".pnpm-store/v3/files/" + name, 64 * 1024);
        home.hardLink(".pnpm-store/v3/files/" + name, "Documents/app/node_modules/x/" + name);
        home.file(".local/share/pnpm/store/v3/" + name, 64 * 1024);
        home.hardLink(".local/share/pnpm/store/v3/" + name, "Desktop/site/node_modules/y/" + name);
        // A folder whose name sorts before the stores, so that its walk would start first.
        home.hardLink(".pnpm-store/v3/files/" + name, "+linked/" + name);
    }
    home.text("Documents/app/package.json", "{}");
    home.text("Desktop/site/package.json", "{}");
    for (int run = 0; run < 3; ++run) {
        StorageReport r = walk(isolated(home.root()));
        const StorageItem* store = row(r, StorageKind::developer, home.path(".pnpm-store"));
        const StorageItem* xdgStore = row(r, StorageKind::developer, home.path(".local/share/pnpm/store"));
        ASSERT_TRUE(store && xdgStore);
        EXPECT_EQ(store->name, "pnpm store");
        EXPECT_EQ(xdgStore->name, "pnpm store");
        EXPECT_GE(store->bytes, 40 * 64 * 1024);
        EXPECT_GE(xdgStore->bytes, 40 * 64 * 1024);
        const StorageItem* app = row(r, StorageKind::projects, home.path("Documents/app"));
        const StorageItem* site = row(r, StorageKind::projects, home.path("Desktop/site"));
        ASSERT_TRUE(app && site);
        EXPECT_LT(app->bytes, 40 * 64 * 1024);
        EXPECT_LT(site->bytes, 40 * 64 * 1024);
        const StorageItem* linked = row(r, StorageKind::other, home.path("+linked"));
        EXPECT_TRUE(!linked || linked->bytes < 40 * 64 * 1024);
    }
}

TEST(StorageScan, ProjectsAreFoundOnlyWhereTheRulesAllow) {
    TempTree home;
    home.text("Documents/ws/node_modules/package.json", "{}");           // never a project of its own
    home.dir("Documents/p/.git");
    home.text("Documents/p/sub/package.json", "{}");                     // inside a project
    home.text("Documents/deep/1/2/3/4/package.json", "{}");              // level 4
    home.text("Documents/deeper/1/2/3/4/5/package.json", "{}");          // level 5
    home.text("Downloads/dl/package.json", "{}");                        // Downloads does not look
    StorageReport r = walk(isolated(home.root()));
    const StorageCategory* projects = r.category(StorageKind::projects);
    ASSERT_TRUE(projects);
    std::vector<std::string> paths;
    for (const auto& i : projects->items) paths.push_back(i.path);
    std::sort(paths.begin(), paths.end());
    EXPECT_EQ(paths, (std::vector<std::string>{home.path("Documents/deep/1/2/3/4"), home.path("Documents/p")}));
    EXPECT_TRUE(row(r, StorageKind::documents, home.path("Documents/ws")));
    EXPECT_TRUE(row(r, StorageKind::documents, home.path("Documents/deeper")));
    EXPECT_TRUE(row(r, StorageKind::downloads, home.path("Downloads/dl")));
}

TEST(StorageScan, BigFilesPackagesAndTheFloor) {
    TempTree home;
    home.dir("Documents/app/.git");
    home.file("Documents/app/disk.sparsebundle/bands/0", 101 * MiB);
    home.file("Documents/app/disk.sparsebundle/bands/1", 1 * MiB);
    home.file("Downloads/clip.mp4", 100 * MB);
    home.file("Downloads/small.mkv", 90 * MB);
    StorageReport r = walk(isolated(home.root()));
    const BigFile* bundle = bigFile(r, home.path("Documents/app/disk.sparsebundle"));
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->category, StorageKind::projects);
    EXPECT_EQ(bundle->kind, FileKind::diskImage);
    EXPECT_EQ(bundle->name, "disk.sparsebundle");
    EXPECT_EQ(bundle->bytes, alloc(home, "Documents/app/disk.sparsebundle/bands/0") +
                                 alloc(home, "Documents/app/disk.sparsebundle/bands/1") +
                                 alloc(home, "Documents/app/disk.sparsebundle/bands"));
    EXPECT_TRUE(bundle->modified);
    EXPECT_FALSE(bigFile(r, home.path("Documents/app/disk.sparsebundle/bands/0")));
    const BigFile* clip = bigFile(r, home.path("Downloads/clip.mp4"));
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->category, StorageKind::downloads);
    EXPECT_EQ(clip->kind, FileKind::video);
    EXPECT_FALSE(bigFile(r, home.path("Downloads/small.mkv")));
    ASSERT_EQ(r.biggest.size(), 2u);
    EXPECT_GE(r.biggest[0].bytes, r.biggest[1].bytes);
}

TEST(StorageScan, CancelledBeforeTheStartGivesAnEmptyIncompleteReport) {
    TempTree home;
    home.file("Documents/a.txt", 5000);
    FakeAppBundles apps;
    home.file("Applications/Tool.AppImage", MiB);
    apps.entries = {desktopEntry("tool", home.path("share/tool.desktop"), "Tool", home.path("Applications/Tool.AppImage"))};
    auto token = ScanToken::make();
    token->cancel();
    StorageScan scan(isolated(home.root()), token, &apps);
    StorageReport r = scan.run();
    EXPECT_FALSE(r.complete);
    EXPECT_TRUE(r.apps.empty());
    EXPECT_TRUE(r.categories.empty());
    EXPECT_FALSE(r.vm);
}

TEST(StorageScan, CancelDuringTheWalkKeepsWhatWasMeasured) {
    TempTree home;
    home.file(".pnpm-store/v3/a", 2 * MiB); // walked first, alone
    home.file("Documents/a.txt", 5000);
    home.file("notes.txt", 5000);
    FakeAppBundles apps;
    auto token = ScanToken::make();
    StorageScan cancelled(isolated(home.root()), token, &apps);
    cancelled.firstReport = std::chrono::milliseconds(0);
    int partials = 0;
    // The first partial report comes as the first unit starts; cancelling there lets that unit
    // finish and stops every unit after it.
    StorageReport r = cancelled.run([&](const StorageReport& partial) {
        EXPECT_FALSE(partial.complete);
        ++partials;
        token->cancel();
    });
    EXPECT_EQ(partials, 1);
    EXPECT_FALSE(r.complete);
    EXPECT_TRUE(r.apps.empty());
    EXPECT_GE(bytesOf(r, StorageKind::developer), 2 * MiB);
    EXPECT_EQ(bytesOf(r, StorageKind::documents), 0);
    EXPECT_EQ(bytesOf(r, StorageKind::other), 0);
}

TEST(StorageScan, PartialReportsAreIncompleteAndCutToSixRows) {
    TempTree home;
    for (int i = 0; i < 10; ++i) home.file("Documents/f" + std::to_string(i), 5000 + i * 4096);
    StorageScan scan(isolated(home.root()), ScanToken::make(), nullptr);
    scan.firstReport = std::chrono::milliseconds(0);
    scan.reportEvery = std::chrono::milliseconds(0);
    std::atomic<int> partials{0};
    std::atomic<bool> returned{false};
    std::atomic<bool> lateReport{false};
    StorageReport r = scan.run([&](const StorageReport& partial) {
        if (returned) lateReport = true;
        ++partials;
        EXPECT_FALSE(partial.complete);
        if (const StorageCategory* docs = partial.category(StorageKind::documents)) {
            EXPECT_LE(docs->items.size(), 6u);
        }
        EXPECT_TRUE(partial.apps.empty());
    });
    returned = true;
    EXPECT_GE(partials.load(), 1);
    EXPECT_FALSE(lateReport);
    EXPECT_TRUE(r.complete);
    ASSERT_TRUE(r.category(StorageKind::documents));
    EXPECT_EQ(r.category(StorageKind::documents)->items.size(), 10u);
    EXPECT_EQ(r.category(StorageKind::documents)->items.front().name, "f9"); // biggest first
}

TEST(StorageScan, CompleteReportsCutCategoriesToFourteenRows) {
    TempTree home;
    for (int i = 0; i < 20; ++i) home.file("Downloads/f" + std::to_string(100 + i), 4096);
    StorageReport r = walk(isolated(home.root()));
    const StorageCategory* dl = r.category(StorageKind::downloads);
    ASSERT_TRUE(dl);
    EXPECT_EQ(dl->items.size(), 14u);
    // The category keeps every row's bytes, and the folder's own.
    EXPECT_EQ(dl->bytes, 20 * alloc(home, "Downloads/f100") + alloc(home, "Downloads"));
}

TEST(StorageScan, HomeEntriesGoToTheirKinds) {
    TempTree home;
    home.file("Documents/report.pdf", 9000);
    home.text("Documents/.DS_Store", "x");
    home.file("Videos/clip.webm", 9000);
    home.file("Music/song.flac", 9000);
    home.file("notes.txt", 9000);
    home.text(".hidden-file", "secret");
    home.file(".rustup/toolchains/x", 9000);
    home.file(".myhidden/x", 9000);
    StorageReport r = walk(isolated(home.root()));
    EXPECT_TRUE(row(r, StorageKind::documents, home.path("Documents/report.pdf")));
    EXPECT_FALSE(row(r, StorageKind::documents, home.path("Documents/.DS_Store")));
    EXPECT_TRUE(row(r, StorageKind::movies, home.path("Videos/clip.webm")));
    EXPECT_TRUE(row(r, StorageKind::music, home.path("Music/song.flac")));
    const StorageItem* notes = row(r, StorageKind::other, home.path("notes.txt"));
    ASSERT_TRUE(notes);
    EXPECT_FALSE(notes->isFolder);
    EXPECT_EQ(row(r, StorageKind::developer, home.path(".rustup"))->name, "Rust toolchains");
    EXPECT_EQ(row(r, StorageKind::developer, home.path(".myhidden"))->name, "myhidden");
    EXPECT_FALSE(row(r, StorageKind::developer, home.path(".hidden-file")));
    EXPECT_FALSE(row(r, StorageKind::other, home.path(".hidden-file")));
}

TEST(StorageScan, LocalisedUserFoldersKeepTheirKinds) {
    TempTree home;
    home.text(".config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\nXDG_VIDEOS_DIR=\"$HOME/Filme\"\n");
    home.file("Dokumente/brief.odt", 9000);
    home.file("Filme/film.mkv", 9000);
    Layout l = isolated(home.root(), [&](const char* name) -> std::optional<std::string> {
        if (std::string_view(name) == "HOME") return home.root();
        return std::nullopt;
    });
    StorageReport r = walk(l);
    EXPECT_TRUE(row(r, StorageKind::documents, home.path("Dokumente/brief.odt")));
    EXPECT_TRUE(row(r, StorageKind::movies, home.path("Filme/film.mkv")));
    EXPECT_FALSE(row(r, StorageKind::other, home.path("Dokumente")));
}

TEST(StorageScan, HiddenFoldersOfLinuxAppsSplitIntoTheirPlaces) {
    TempTree home;
    home.file(".config/google-chrome/Default/History", 64 * 1024);
    home.file(".config/org.example.Tool/settings", 64 * 1024);
    home.file(".cache/pip/wheels/a", 64 * 1024);
    home.file(".local/bin/tool", 64 * 1024);
    home.file(".local/share/Trash/files/old.txt", 64 * 1024);
    home.file(".local/share/evolution/mail/inbox", 64 * 1024);
    home.file(".local/share/evolution/addressbook/book", 64 * 1024);
    home.file(".local/share/flatpak/repo/objects/ab/cdef.file", 64 * 1024);
    home.file(".thunderbird/profile/Mail/Inbox", 64 * 1024);
    home.file(".var/app/org.mozilla.firefox/cache/x", 64 * 1024);
    home.file("snap/firefox/common/x", 64 * 1024);
    home.file(".mozilla/firefox/profile/places.sqlite", 64 * 1024);
    FakeAppBundles apps;
    apps.entries = {desktopEntry("org.example.Tool", home.path("share/org.example.Tool.desktop"), "Example Tool")};
    StorageReport r = walk(isolated(home.root()), &apps);

    const StorageItem* chrome = row(r, StorageKind::appData, home.path(".config/google-chrome"));
    ASSERT_TRUE(chrome);
    EXPECT_EQ(chrome->name, "Chrome");
    EXPECT_EQ(chrome->detail, "~/.config");
    EXPECT_EQ(row(r, StorageKind::appData, home.path(".config/org.example.Tool"))->name, "Example Tool");
    EXPECT_EQ(row(r, StorageKind::appData, home.path(".cache/pip"))->detail, "~/.cache");
    EXPECT_EQ(row(r, StorageKind::appData, home.path(".var/app/org.mozilla.firefox"))->detail, "~/.var/app");
    EXPECT_EQ(row(r, StorageKind::appData, home.path("snap/firefox"))->detail, "~/snap");
    EXPECT_EQ(row(r, StorageKind::appData, home.path(".mozilla"))->name, "Firefox");
    const StorageItem* evolution = row(r, StorageKind::appData, home.path(".local/share/evolution"));
    ASSERT_TRUE(evolution);
    EXPECT_EQ(evolution->detail, "~/.local/share");
    EXPECT_EQ(evolution->bytes, alloc(home, ".local/share/evolution") + alloc(home, ".local/share/evolution/addressbook") +
                                    alloc(home, ".local/share/evolution/addressbook/book"));
    EXPECT_EQ(row(r, StorageKind::mail, home.path(".local/share/evolution/mail"))->name, "Evolution");
    EXPECT_EQ(row(r, StorageKind::mail, home.path(".thunderbird"))->name, "Thunderbird");
    EXPECT_EQ(row(r, StorageKind::trash, home.path(".local/share/Trash"))->name, "Trash");
    // "Local tools" holds only what no other place claims: not the Trash, app data or Flatpak.
    const StorageItem* local = row(r, StorageKind::developer, home.path(".local"));
    ASSERT_TRUE(local);
    EXPECT_EQ(local->name, "Local tools");
    EXPECT_EQ(local->bytes, alloc(home, ".local") + alloc(home, ".local/bin") + alloc(home, ".local/bin/tool"));
    EXPECT_FALSE(row(r, StorageKind::appData, home.path(".local/share/flatpak")));
    EXPECT_FALSE(row(r, StorageKind::developer, home.path(".var")));
    EXPECT_FALSE(row(r, StorageKind::other, home.path("snap")));
}

TEST(StorageScan, LinuxAppsBySizeOnDiskWithTheirData) {
    TempTree home;
    FakeAppBundles apps;
    // An AppImage kept in ~/Applications.
    home.file("Applications/Tool.AppImage", 2 * MiB);
    home.file("Applications/notes.txt", 5000);
    apps.entries.push_back(desktopEntry("tool", home.path("share/applications/tool.desktop"), "Tool",
                                        home.path("Applications/Tool.AppImage")));
    // A Flatpak app installed for the user, with its data under ~/.var/app.
    home.file(".local/share/flatpak/app/org.gnome.Maps/current/files/bin/maps", MiB);
    home.text(".local/share/flatpak/exports/share/applications/org.gnome.Maps.desktop", "");
    DesktopEntry maps = desktopEntry("org.gnome.Maps", home.path(".local/share/flatpak/exports/share/applications/org.gnome.Maps.desktop"),
                                     "Maps", "/usr/bin/flatpak");
    maps.flatpak = "org.gnome.Maps";
    apps.entries.push_back(maps);
    home.file(".var/app/org.gnome.Maps/data/tiles", MiB);
    // A third-party app in a folder of its own, and its launcher for a private window.
    home.file("opt/vendor/browser/browser-bin", MiB);
    apps.entries.push_back(desktopEntry("vendor-browser", home.path("share/applications/vendor-browser.desktop"), "Browser",
                                        home.path("opt/vendor/browser/browser-bin")));
    apps.entries.push_back(desktopEntry("vendor-browser-private", home.path("share/applications/vendor-private.desktop"),
                                        "Browser (private)", home.path("opt/vendor/browser/browser-bin")));
    home.file(".config/vendor-browser/Default/x", 3 * MiB);
    // A distribution package, sized by the package database.
    home.text("share/applications/editor.desktop", "[Desktop Entry]\n");
    home.file("bin/editor", 4096);
    home.text("dpkg/status", "Package: editor\nStatus: install ok installed\nArchitecture: amd64\nInstalled-Size: 2048\n\n"
                             "Package: gone\nStatus: deinstall ok config-files\nInstalled-Size: 99\n");
    home.text("dpkg/info/editor.list", "/.\n" + home.path("share/applications/editor.desktop") + "\n");
    apps.entries.push_back(desktopEntry("editor", home.path("share/applications/editor.desktop"), "Editor", home.path("bin/editor")));
    // Helpers that are not shown in menus are no apps.
    DesktopEntry helper = desktopEntry("helper", home.path("share/applications/helper.desktop"), "Helper", home.path("bin/editor"));
    helper.noDisplay = true;
    apps.entries.push_back(helper);
    apps.used["tool"] = fromSeconds(1'700'000'000);

    Layout l = isolated(home.root());
    l.storage.optDir = home.path("opt");
    l.storage.dpkgStatus = home.path("dpkg/status");
    l.storage.dpkgInfo = home.path("dpkg/info");
    StorageReport r = walk(l, &apps);

    auto app = [&](const std::string& name) -> const AppSize* {
        for (const auto& a : r.apps)
            if (a.name == name) return &a;
        return nullptr;
    };
    ASSERT_EQ(r.apps.size(), 4u);
    const AppSize* tool = app("Tool");
    ASSERT_TRUE(tool);
    EXPECT_EQ(tool->appBytes, alloc(home, "Applications/Tool.AppImage"));
    EXPECT_EQ(tool->path, home.path("share/applications/tool.desktop"));
    EXPECT_EQ(tool->lastUsed, fromSeconds(1'700'000'000));
    EXPECT_EQ(tool->bundleID, "tool");
    // The AppImage is the app's; the rest of the folder stays in "other".
    EXPECT_EQ(row(r, StorageKind::other, home.path("Applications"))->bytes,
              alloc(home, "Applications") + alloc(home, "Applications/notes.txt"));
    const AppSize* mapsApp = app("Maps");
    ASSERT_TRUE(mapsApp);
    EXPECT_GE(mapsApp->appBytes, MiB);
    EXPECT_EQ(mapsApp->dataBytes, row(r, StorageKind::appData, home.path(".var/app/org.gnome.Maps"))->bytes);
    const AppSize* browser = app("Browser");
    ASSERT_TRUE(browser);
    EXPECT_GE(browser->appBytes, MiB);
    EXPECT_EQ(browser->dataBytes, row(r, StorageKind::appData, home.path(".config/vendor-browser"))->bytes);
    EXPECT_FALSE(app("Browser (private)"));
    const AppSize* editor = app("Editor");
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->appBytes, 2048 * 1024);
    EXPECT_FALSE(app("Helper"));
    // Biggest first, by app and data together.
    for (std::size_t i = 1; i < r.apps.size(); ++i) EXPECT_GE(r.apps[i - 1].total(), r.apps[i].total());
    // The apps category holds the same bytes, and the folder under opt is not "other" twice.
    EXPECT_EQ(bytesOf(r, StorageKind::apps), tool->appBytes + mapsApp->appBytes + browser->appBytes + editor->appBytes);
    const StorageItem* opt = row(r, StorageKind::other, home.path("opt"));
    ASSERT_TRUE(opt);
    EXPECT_LT(opt->bytes, MiB);
}

TEST(StorageScan, MacLibraryAppsAndAssets) {
    TempTree home;
    home.file("Library/Mail/V10/x", 9000);
    home.file("Library/Developer/Xcode/DerivedData/x", 9000);
    home.file("Library/Developer/CoreSimulator/Devices/x", 9000);
    home.file("Library/Caches/com.example.App/x", 9000);
    home.file("Library/Application Support/Google/Chrome/x", 9000);
    home.file("Library/Application Support/Example/x", 9000);
    home.file("Library/Mobile Documents/x", 9000);
    home.file("Library/Preferences/x.plist", 9000);
    home.file("Library/pnpm/store/v3/x", 9000);
    home.file(".Trash/old.zip", 9000);
    home.text("Applications/Example.app/Contents/Info.plist",
              "<plist><dict>\n<key>CFBundleIdentifier</key>\n  <string>com.example.App</string>\n</dict></plist>");
    home.file("Applications/Example.app/Contents/MacOS/Example", 101 * MiB);
    home.file("Applications/Utilities/Tool.app/Contents/MacOS/Tool", 9000);
    home.file("Applications/readme.txt", 9000);
    home.file("assets/com_apple_MobileAsset_Font7/a", 9000);
    home.file("assets/com_apple_MobileAsset_Font8/b", 9000);
    home.file("assets/com_apple_MobileAsset_Foo_Bar/c", 9000);
    home.file("assets/com_apple_MobileAsset_UAF_Summarization/d", 9000);

    Layout l = Layout::macos(home.root());
    l.applicationDirs = {home.path("Applications")};
    l.storage.outsideTools.clear();
    l.storage.assetsRoot = home.path("assets");
    StorageReport r = walk(l);

    EXPECT_EQ(row(r, StorageKind::mail, home.path("Library/Mail"))->name, "Mail");
    EXPECT_EQ(row(r, StorageKind::developer, home.path("Library/Developer/Xcode"))->name, "Xcode builds and device support");
    EXPECT_EQ(row(r, StorageKind::developer, home.path("Library/Developer/CoreSimulator"))->name, "Simulators");
    const StorageItem* cache = row(r, StorageKind::appData, home.path("Library/Caches/com.example.App"));
    ASSERT_TRUE(cache);
    EXPECT_EQ(cache->name, "Example");
    EXPECT_EQ(cache->detail, "Caches");
    EXPECT_EQ(row(r, StorageKind::appData, home.path("Library/Application Support/Google"))->name, "Chrome");
    EXPECT_EQ(row(r, StorageKind::appData, home.path("Library/Preferences"))->name, "Preferences");
    EXPECT_FALSE(row(r, StorageKind::appData, home.path("Library/Mobile Documents")));
    EXPECT_EQ(row(r, StorageKind::developer, home.path("Library/pnpm"))->name, "pnpm store");
    EXPECT_TRUE(row(r, StorageKind::trash, home.path(".Trash")));
    EXPECT_FALSE(row(r, StorageKind::other, home.path("Applications")));

    ASSERT_EQ(r.apps.size(), 2u);
    EXPECT_EQ(r.apps[0].name, "Example");
    EXPECT_EQ(r.apps[0].bundleID, "com.example.App");
    EXPECT_EQ(r.apps[0].dataBytes, row(r, StorageKind::appData, home.path("Library/Caches/com.example.App"))->bytes +
                                       row(r, StorageKind::appData, home.path("Library/Application Support/Example"))->bytes);
    EXPECT_EQ(r.apps[1].name, "Tool");
    EXPECT_TRUE(r.biggest.empty()); // an app bundle is a package of kind apps: no big file in it

    const StorageCategory* assets = r.category(StorageKind::assets);
    ASSERT_TRUE(assets);
    ASSERT_EQ(assets->items.size(), 3u);
    const StorageItem* fonts = row(r, StorageKind::assets, "asset:Fonts");
    ASSERT_TRUE(fonts);
    EXPECT_EQ(fonts->bytes, alloc(home, "assets/com_apple_MobileAsset_Font7") + alloc(home, "assets/com_apple_MobileAsset_Font7/a") +
                                alloc(home, "assets/com_apple_MobileAsset_Font8") + alloc(home, "assets/com_apple_MobileAsset_Font8/b"));
    EXPECT_EQ(fonts->revealPath(), "/System/Library/AssetsV2");
    EXPECT_TRUE(row(r, StorageKind::assets, "asset:Foo Bar"));
    EXPECT_TRUE(row(r, StorageKind::assets, "asset:Apple Intelligence models"));
}

TEST(StorageScan, MacAssetTitles) {
    const StorageTables t = Layout::macos("/Users/u").storage;
    EXPECT_EQ(StorageScan::assetTitle("com_apple_MobileAsset_iOSSimulatorRuntime", t), "iOS Simulator runtime");
    EXPECT_EQ(StorageScan::assetTitle("com_apple_MobileAsset_SiriUnderstanding", t), "Speech and Siri");
    EXPECT_EQ(StorageScan::assetTitle("com_apple_MobileAsset_UAF_X", t), "Apple Intelligence models");
    EXPECT_EQ(StorageScan::assetTitle("com_apple_MobileAsset_DeveloperDocumentation", t), "Xcode documentation");
    EXPECT_EQ(StorageScan::assetTitle("com_apple_MobileAsset_LinguisticData", t), "Language and translation");
    EXPECT_EQ(StorageScan::assetTitle("com_apple_MobileAsset_Foo_Bar", t), "Foo Bar");
    EXPECT_EQ(StorageScan::appName("/Applications/Safari.app"), "Safari");
    EXPECT_EQ(StorageScan::appName("/Applications/Tool"), "Tool");
}

TEST(StorageScan, TheSystemShareAndTheSwapOnTheHomeVolume) {
    TempTree home;
    home.file("swapfile", 2 * MiB);
    home.text("swaps", "Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n" + home.path("swapfile") +
                           "\tfile\t\t2048\t\t1024\t\t-2\n/dev/zram0\tpartition\t8000000\t\t4000\t\t100\n"
                           "/dev/sda3\tpartition\t4000000\t\t0\t\t-3\n");
    home.text("status", "Package: a\nStatus: install ok installed\nInstalled-Size: 1000\n\n"
                        "Package: b\nStatus: install ok installed\nInstalled-Size: 3000\n\n"
                        "Package: c\nStatus: deinstall ok config-files\nInstalled-Size: 5000\n");
    TempTree outside; // beside the home folder, on its volume
    outside.file("boot/vmlinuz", 64 * 1024);
    Layout l = isolated(home.root());
    l.storage.procSwaps = home.path("swaps");
    l.storage.dpkgStatus = home.path("status");
    l.storage.systemRoot = outside.root();
    l.storage.systemPlaces = {{outside.path("boot"), StorageKind::macOS, "Startup files"}};
    auto v = StorageScan::volumes(l, 1000 * 1024);
    ASSERT_TRUE(v);
    EXPECT_EQ(v->vm, alloc(home, "swapfile"));
    ASSERT_EQ(v->rows.size(), 2u);
    EXPECT_EQ(v->rows[0].name, "The system");
    EXPECT_EQ(v->rows[0].bytes, 3000 * 1024); // packages less what the apps rows show
    EXPECT_EQ(v->rows[1].name, "Startup files");
    EXPECT_EQ(v->rows[1].bytes, allocatedSize(outside.path("boot")) + allocatedSize(outside.path("boot/vmlinuz")));

    // A complete walk adds the rows as one category and keeps the swap beside them.
    StorageReport r = walk(l);
    EXPECT_EQ(r.vm, alloc(home, "swapfile"));
    const StorageCategory* system = r.category(StorageKind::macOS);
    ASSERT_TRUE(system);
    EXPECT_EQ(system->bytes, 4000 * 1024 + v->rows[1].bytes);

    Layout none = isolated(home.root());
    EXPECT_FALSE(StorageScan::volumes(none, 0)); // no source could be read
}

TEST(StorageScan, CategoriesTheSwapAndTheRemainderAddUpToTheUsedBytes) {
    TempTree home;
    home.file("Documents/a", 5000);
    home.file("notes.txt", 7000);
    home.file(".tool/x", 9000);
    StorageReport r = walk(isolated(home.root()));
    EXPECT_EQ(r.measured(), alloc(home, "") + alloc(home, "Documents") + alloc(home, "Documents/a") + alloc(home, "notes.txt") +
                                alloc(home, ".tool") + alloc(home, ".tool/x"));
    struct statvfs vfs {};
    ASSERT_EQ(statvfs(home.root().c_str(), &vfs), 0);
    EXPECT_EQ(r.diskTotal, static_cast<int64_t>(vfs.f_blocks) * static_cast<int64_t>(vfs.f_frsize));
    const auto blockSize = static_cast<int64_t>(vfs.f_frsize);
    int64_t used = (static_cast<int64_t>(vfs.f_blocks) - static_cast<int64_t>(vfs.f_bfree)) * blockSize;
    int64_t reserved = (static_cast<int64_t>(vfs.f_bfree) - static_cast<int64_t>(vfs.f_bavail)) * blockSize;
    // Other programs write meanwhile: the used figure is the volume's, give or take their work.
    // The blocks kept back for root are not in it.
    EXPECT_NEAR(static_cast<double>(r.diskUsed), static_cast<double>(used), 2e9);
    EXPECT_NEAR(static_cast<double>(r.diskReserved), static_cast<double>(reserved), 2e9);
    int64_t swap = 123 * MiB;
    EXPECT_EQ(r.measured() + swap + r.remainder(r.diskUsed, swap), r.diskUsed);
}

TEST(StorageScan, UnreadableFoldersAreCountedAndTheRestGoesOn) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not stop the superuser";
    TempTree home;
    home.file("Documents/open/a", 5000);
    home.file("Documents/shut/b", 5000);
    home.file("Documents/listable/c", 5000);
    home.file("Documents/deep/er/d", 5000);
    chmod(home.path("Documents/shut").c_str(), 0);
    chmod(home.path("Documents/listable").c_str(), 0444); // its names can be read, nothing in it reached
    chmod(home.path("Documents/deep/er").c_str(), 0);
    StorageReport r = walk(isolated(home.root()));
    chmod(home.path("Documents/shut").c_str(), 0755);
    chmod(home.path("Documents/listable").c_str(), 0755);
    chmod(home.path("Documents/deep/er").c_str(), 0755);
    ASSERT_TRUE(r.category(StorageKind::documents));
    EXPECT_EQ(r.category(StorageKind::documents)->unreadable, 3);
    // The map names them, in path order, whichever walk met them first.
    EXPECT_EQ(r.category(StorageKind::documents)->unreadableFolders,
              (std::vector<std::string>{home.path("Documents/deep/er"), home.path("Documents/listable"),
                                        home.path("Documents/shut")}));
    EXPECT_TRUE(row(r, StorageKind::documents, home.path("Documents/open")));
}

namespace {

// The paths of the units planned for `layout`.
std::vector<std::string> plannedPaths(const Layout& layout) {
    StorageScan scan(layout, ScanToken::make(), nullptr);
    std::vector<std::string> out;
    for (const auto& u : scan.units()) out.push_back(u.path);
    return out;
}

bool has(const std::vector<std::string>& paths, const std::string& p) {
    return std::find(paths.begin(), paths.end(), p) != paths.end();
}

// Only the home and units below it, none of them in `outside`.
void expectNothingOutside(const std::vector<std::string>& paths, const std::string& home, const std::string& outside) {
    for (const auto& p : paths) {
        EXPECT_TRUE(p == home || p.starts_with(home + "/")) << p;
        EXPECT_FALSE(p.starts_with(outside)) << p;
    }
}

} // namespace

// Nothing outside the home is measured as the home's: user folders and app-data places that
// are links, or that XDG or user-dirs.dirs put elsewhere, plan no unit.
TEST(StorageScan, LinkedUserAndDataFoldersPlanNoUnit) {
    TempTree t;
    const std::string home = t.dir("home"), outside = t.dir("outside");
    t.file("outside/usr/lib/x.so", 300000);
    t.file("home/Music/song.flac", 200000);
    t.file("home/.config/app/settings", 1000);
    t.symLink(outside, "home/Downloads");
    t.symLink(outside, "home/.cache");
    t.symLink(outside, "home/stuff"); // a plain top-level entry that links out
    auto paths = plannedPaths(isolated(home, envOf({{"HOME", home}})));
    EXPECT_TRUE(has(paths, home + "/Music"));
    EXPECT_TRUE(has(paths, home + "/.config/app"));
    for (const char* linked : {"/Downloads", "/.cache", "/stuff", "/Downloads/usr", "/.cache/usr"})
        EXPECT_FALSE(has(paths, home + linked)) << linked;
    expectNothingOutside(paths, home, outside);
}

TEST(StorageScan, PlacesNamedOutsideTheHomePlanNoUnit) {
    TempTree t;
    const std::string home = t.dir("home"), outside = t.dir("outside");
    t.file("outside/usr/lib/x.so", 300000);
    t.file("home/Music/song.flac", 200000);
    t.text("home/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"" + outside + "\"\nXDG_DOCUMENTS_DIR=\"/\"\n");
    Layout l = isolated(home, envOf({{"HOME", home}, {"XDG_CACHE_HOME", "/"}, {"XDG_DATA_HOME", outside}}));
    ASSERT_EQ(l.downloads, outside);
    ASSERT_EQ(l.documents, "/");
    auto paths = plannedPaths(l);
    EXPECT_TRUE(has(paths, home + "/Music"));
    expectNothingOutside(paths, home, outside);
}

TEST(StorageScan, AHomesTotalEqualsDuToTheByteWithItsFoldersOwnBlocksLinksAndADeepChain) {
    TempTree home;
    home.file("notes.txt", 7000);
    home.file("Documents/report.pdf", 90'000);
    home.text("Documents/app/package.json", "{}");
    home.file("Documents/app/src/main.js", 20'000);
    home.file("Downloads/setup.deb", 300'000);
    home.file("Videos/clip.webm", 200'000);
    home.file(".cache/pip/wheels/w.whl", 40'000);
    home.file(".config/tool/settings.json", 3000);
    home.file(".local/share/tool/db", 60'000);
    home.file(".local/bin/tool", 30'000);
    home.file(".cargo/registry/x.crate", 50'000);
    for (int i = 0; i < 30; ++i) {
        home.file(".pnpm-store/v3/f" + std::to_string(i), 16'384);
        home.hardLink(".pnpm-store/v3/f" + std::to_string(i), "Documents/app/node_modules/p/f" + std::to_string(i));
        home.hardLink(".pnpm-store/v3/f" + std::to_string(i), "code/other/node_modules/p/f" + std::to_string(i));
    }
    // Deeper than a path may be long: reached through handles and counted.
    deepChain(home.dir("Documents/deep"), 3000);
    StorageReport r = walk(isolated(home.root()));
    EXPECT_EQ(r.measured(), du(home.root()));
    EXPECT_GE(row(r, StorageKind::documents, home.path("Documents/deep"))->bytes, 3000 * 4096);
    // The temporary tree's own clean-up reads every path whole, which takes long at this depth.
    [[maybe_unused]] int status = std::system(("rm -rf '" + home.path("Documents/deep") + "'").c_str());
}

TEST(StorageScan, AHomeAtTheRootCountsTheTemporaryFoldersOnceAndTheSystemPlacesNotAgain) {
    Layout l = isolated("/");
    l.storage.temporary = Layout::linux("/").storage.temporary;
    StorageScan scan(l, ScanToken::make(), nullptr);
    int tmp = 0;
    for (const auto& u : scan.units()) {
        EXPECT_FALSE(u.path.starts_with("//")) << u.path;
        tmp += u.path == "/tmp" ? 1 : 0;
    }
    EXPECT_EQ(tmp, 1);
    // A system place inside the home folder is measured by the home's own units: no second row.
    TempTree home;
    home.file("boot/vmlinuz", 64 * 1024);
    home.file("var/log/syslog", 64 * 1024);
    Layout inside = isolated(home.root());
    inside.storage.systemPlaces = {{home.path("boot"), StorageKind::macOS, "Startup files"},
                                   {home.path("var/log"), StorageKind::macOS, "System logs"}};
    auto v = StorageScan::volumes(inside, 0);
    EXPECT_TRUE(!v || v->rows.empty());
    StorageReport r = walk(inside);
    EXPECT_EQ(r.measured(), du(home.root()));
}
