// App caches: whose each cache folder is, whether that app is open, gone or idle, and how the
// caches of one app become one row. The first group runs over a generated ~/Library, the
// second over a Linux home with ~/.cache, ~/.config and Flatpak folders.
#include "foundation/FS.h"
#include "support/FakeAppBundles.h"
#include "scan/ScannerAccess.h"
#include "support/FakeFacts.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

namespace {

constexpr double day = 86'400;

// A Chromium profile: markers, caches, and data that must stay.
void chromiumProfile(const TempTree& t, const std::string& folder) {
    t.text(folder + "/Preferences", "{}");
    t.file(folder + "/Cookies", 100);
    t.file(folder + "/Cache/data_0", 100);
    t.file(folder + "/Code Cache/js/index", 100);
    t.file(folder + "/GPUCache/data_1", 100);
    t.file(folder + "/Service Worker/CacheStorage/x", 100);
    t.file(folder + "/Service Worker/Database/keep", 100);
    t.file(folder + "/Local Storage/leveldb/keep", 100);
}

struct MacHome {
    TempTree t;
    FakeFacts facts;
    FakeAppBundles apps;
    std::string caches = t.dir("Library/Caches");
    std::string support = t.dir("Library/Application Support");

    Scanner scanner(std::vector<Scanner::RunningId> running = {}) {
        return Scanner(Layout::macos(t.root()), std::move(running), nullptr, facts, apps);
    }
};

} // namespace

TEST(MacAppCaches, BundleIdFoldersAreJudgedByTheirApp) {
    MacHome h;
    h.t.file("Library/Caches/com.acme.Tool/x", 10);
    h.t.file("Library/Caches/com.acme.Tool.ShipIt/update.zip", 10);
    h.t.file("Library/Caches/com.spotify.client/data", 10);
    h.t.file("Library/Caches/com.maker.Widget/data", 10);
    h.t.file("Library/Caches/com.apple.Safari/x", 10);
    h.t.file("Library/Caches/CloudKit/x", 10);
    h.t.file("Library/Caches/.hidden/x", 10);
    h.t.file("Library/Caches/ms-playwright/chromium/x", 10);
    h.t.file("Library/Caches/app.sorrelin.Sorrelin/x", 10);
    h.t.symLink(h.t.path("Library/Caches/com.acme.Tool"), "Library/Caches/linked");
    h.apps.install("com.spotify.client");
    h.apps.install("com.maker.Widget", "Widget Maker.app");
    auto s = h.scanner();
    auto list = ScannerTestAccess::userCaches(s);

    std::vector<std::string> ids;
    for (const auto& c : list) ids.push_back(c.id);
    EXPECT_EQ(ids, (std::vector<std::string>{"cache:com.acme.Tool", "cache:com.acme.Tool.ShipIt",
                                             "cache:com.maker.Widget", "cache:com.spotify.client"}));

    const Candidate* gone = withId(list, "cache:com.acme.Tool");
    EXPECT_EQ(gone->name, "Tool cache");
    EXPECT_EQ(gone->note, "Rebuilt as you use the app");
    EXPECT_EQ(gone->cacheKind, CacheKind::orphan);
    EXPECT_FALSE(gone->lastUsed);

    const Candidate* update = withId(list, "cache:com.acme.Tool.ShipIt");
    EXPECT_EQ(update->name, "Tool update files");
    EXPECT_EQ(update->note, "Leftovers from an app update");
    EXPECT_EQ(update->cacheKind, CacheKind::leftover);
    EXPECT_FALSE(update->lastUsed);

    // A known id takes the table's name; an installed one the name it is installed under.
    EXPECT_EQ(withId(list, "cache:com.spotify.client")->name, "Spotify cache");
    EXPECT_EQ(withId(list, "cache:com.spotify.client")->note, "Rebuilt as you use Spotify");
    EXPECT_EQ(withId(list, "cache:com.maker.Widget")->name, "Widget Maker cache");
}

TEST(MacAppCaches, KindFollowsRunningInstalledAndLastUsed) {
    MacHome h;
    h.t.file("Library/Caches/Google/x", 10);
    h.t.age("Library/Caches/Google/x", 90 * day);
    h.t.age("Library/Caches/Google", 90 * day);
    h.apps.install("com.google.Chrome");

    // Open now wins over a folder untouched for months.
    auto open = h.scanner({{"com.google.Chrome", "Google Chrome"}});
    auto list = ScannerTestAccess::userCaches(open);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].name, "Chrome cache");
    EXPECT_EQ(list[0].note, "Rebuilt as you browse · open now");
    EXPECT_EQ(list[0].cacheKind, CacheKind::active);
    EXPECT_EQ(list[0].lastUsed, open.now);

    // Installed, not running: the last-used date decides, a month being exactly thirty days.
    auto s = h.scanner();
    h.apps.used["com.google.Chrome"] = s.now - std::chrono::seconds(31 * 86'400);
    auto [idle, idleDate] = ScannerTestAccess::kind(s, {"com.google.Chrome"}, h.t.path("Library/Caches/Google"));
    EXPECT_EQ(idle, CacheKind::idle);
    EXPECT_EQ(idleDate, h.apps.used["com.google.Chrome"]);
    h.apps.used["com.google.Chrome"] = s.now - std::chrono::seconds(30 * 86'400);
    auto [active, activeDate] = ScannerTestAccess::kind(s, {"com.google.Chrome"}, h.t.path("Library/Caches/Google"));
    EXPECT_EQ(active, CacheKind::active);
    EXPECT_EQ(activeDate, h.apps.used["com.google.Chrome"]);

    // Installed with no last-used date: the folder's own dates decide.
    h.apps.used.clear();
    auto [byFolder, folderDate] = ScannerTestAccess::kind(s, {"com.google.Chrome"}, h.t.path("Library/Caches/Google"));
    EXPECT_EQ(byFolder, CacheKind::idle);
    ASSERT_TRUE(folderDate);
    EXPECT_NEAR(secondsBetween(*folderDate, s.now), 90 * day, 5);
}

TEST(MacAppCaches, FoldersWithoutAnAppGoByTheirDates) {
    MacHome h;
    h.t.file("Library/Caches/oldtool/a", 10);
    h.t.file("Library/Caches/oldtool/b", 10);
    h.t.age("Library/Caches/oldtool/a", 31 * day);
    h.t.age("Library/Caches/oldtool/b", 31 * day);
    h.t.age("Library/Caches/oldtool", 31 * day);
    h.t.file("Library/Caches/freshtool/a", 10);
    h.t.age("Library/Caches/freshtool", 40 * day); // a fresh entry keeps it active
    auto s = h.scanner();
    auto list = ScannerTestAccess::userCaches(s);
    const Candidate* old = withId(list, "cache:oldtool");
    ASSERT_TRUE(old);
    EXPECT_EQ(old->name, "Oldtool cache");
    EXPECT_EQ(old->note, "Rebuilt as you use it");
    EXPECT_EQ(old->cacheKind, CacheKind::idle);
    EXPECT_EQ(withId(list, "cache:freshtool")->cacheKind, CacheKind::active);

    // A folder whose date cannot be read is active, without a date.
    auto [k, date] = ScannerTestAccess::kind(s, {}, h.t.path("Library/Caches/vanished"));
    EXPECT_EQ(k, CacheKind::active);
    EXPECT_FALSE(date);
}

TEST(MacAppCaches, HomebrewDownloadsOnlyWithoutThePackageManager) {
    MacHome h;
    h.t.file("Library/Caches/Homebrew/downloads/x.tar.gz", 10);
    h.t.file("Library/Caches/SomeApp-Updater/pending.zip", 10);
    auto s = h.scanner();
    s.brew.reset();
    auto without = ScannerTestAccess::userCaches(s);
    const Candidate* brew = withId(without, "cache:Homebrew");
    ASSERT_TRUE(brew);
    EXPECT_EQ(brew->name, "Homebrew downloads");
    EXPECT_EQ(brew->cacheKind, CacheKind::leftover);
    const Candidate* updater = withId(without, "cache:SomeApp-Updater");
    ASSERT_TRUE(updater);
    EXPECT_EQ(updater->name, "SomeApp update files");
    EXPECT_EQ(updater->cacheKind, CacheKind::leftover);

    s.brew = "/opt/homebrew/bin/brew";
    EXPECT_FALSE(withId(ScannerTestAccess::userCaches(s), "cache:Homebrew"));
}

TEST(MacAppCaches, ChromiumTreesGiveOnlyTheirCacheFolders) {
    MacHome h;
    // Code: an Electron tree at the top of its folder.
    chromiumProfile(h.t, "Library/Application Support/Code");
    h.t.file("Library/Application Support/Code/User/settings.json", 10);
    h.t.file("Library/Application Support/Code/CachedData/abc/x", 10);
    h.t.file("Library/Application Support/Code/logs/20240101/main.log", 10);
    // Chrome: Google/Chrome holds Local State, its profiles lie one level deeper.
    h.t.text("Library/Application Support/Google/Chrome/Local State", "{}");
    chromiumProfile(h.t, "Library/Application Support/Google/Chrome/Default");
    chromiumProfile(h.t, "Library/Application Support/Google/Chrome/Default/Nested");
    // A non-browser tree: a depth-1 folder without Local State is not descended into.
    chromiumProfile(h.t, "Library/Application Support/Plain/Sub/Deeper");
    // Never looked into, whatever it holds.
    chromiumProfile(h.t, "Library/Application Support/Safari");
    // A plain app's support folder is never offered.
    h.t.file("Library/Application Support/Notes App/data.db", 10);
    h.apps.install("com.microsoft.VSCode");
    h.apps.install("com.google.Chrome");
    auto s = h.scanner({{"org.other", ""}});
    auto list = ScannerTestAccess::appCaches(s);

    std::vector<std::string> ids;
    for (const auto& c : list) ids.push_back(c.id);
    EXPECT_EQ(ids, (std::vector<std::string>{"appcache:Code", "appcache:Google"}));

    const std::string code = h.t.path("Library/Application Support/Code");
    const Candidate* vs = withId(list, "appcache:Code");
    EXPECT_EQ(vs->name, "VS Code cache");
    EXPECT_EQ(vs->note, "Rebuilt as you use VS Code");
    EXPECT_EQ(vs->location, "~/Library/Application Support/Code");
    EXPECT_EQ(vs->paths, (std::vector<std::string>{code + "/Cache", code + "/Code Cache", code + "/GPUCache",
                                                   code + "/CachedData", code + "/Service Worker/CacheStorage",
                                                   code + "/logs"}));

    const std::string profile = h.t.path("Library/Application Support/Google/Chrome/Default");
    const Candidate* chrome = withId(list, "appcache:Google");
    EXPECT_EQ(chrome->name, "Chrome cache");
    ASSERT_EQ(chrome->paths.size(), 4u);
    EXPECT_EQ(chrome->paths.front(), profile + "/Cache");
    for (const auto& p : chrome->paths) EXPECT_EQ(p.find("Nested"), std::string::npos) << p;
}

TEST(MacAppCaches, SupportFolderOpenByRunningName) {
    MacHome h;
    chromiumProfile(h.t, "Library/Application Support/Slack");
    h.t.file("Library/Caches/com.tinyspeck.slackmacgap/x", 10);
    h.t.age("Library/Caches/com.tinyspeck.slackmacgap/x", 60 * day);
    h.t.age("Library/Caches/com.tinyspeck.slackmacgap", 60 * day);
    h.apps.install("com.tinyspeck.slackmacgap");
    // Running under another id: the cache folder by id is idle, the support folder by name is open.
    auto s = h.scanner({{"com.tinyspeck.other", "slack"}});
    auto caches = ScannerTestAccess::userCaches(s);
    auto support = ScannerTestAccess::appCaches(s);
    ASSERT_EQ(caches.size(), 1u);
    ASSERT_EQ(support.size(), 1u);
    EXPECT_EQ(caches[0].name, "Slack cache");
    EXPECT_EQ(caches[0].cacheKind, CacheKind::idle);
    EXPECT_EQ(support[0].name, "Slack cache");
    EXPECT_EQ(support[0].note, "Rebuilt as you use Slack · open now");
    EXPECT_EQ(support[0].cacheKind, CacheKind::active);

    // One row for the app: both places' paths, the open note, the first one's kind.
    std::vector<Candidate> all = caches;
    all.insert(all.end(), support.begin(), support.end());
    auto merged = Scanner::mergeSameApp(all);
    ASSERT_EQ(merged.size(), 1u);
    EXPECT_EQ(merged[0].id, "cache:com.tinyspeck.slackmacgap");
    EXPECT_EQ(merged[0].location, "~/Library/Caches and Application Support");
    EXPECT_EQ(merged[0].note, "Rebuilt as you use Slack · open now");
    EXPECT_EQ(merged[0].cacheKind, CacheKind::idle);
    EXPECT_EQ(merged[0].paths.size(), 1u + support[0].paths.size());
    EXPECT_TRUE(merged[0].reveal.empty());
}

TEST(MacAppCaches, MergeKeepsOtherRowsApartAndInOrder) {
    Candidate a;
    a.id = "cache:x";
    a.name = "X cache";
    a.paths = {"/1"};
    a.location = "~/one";
    Candidate project;
    project.id = "project:/p";
    project.name = "X cache"; // same name, but not a cache: never merged
    Candidate b = a;
    b.id = "appcache:x";
    b.paths = {"/2"};
    b.location = "~/elsewhere/x";
    b.reveal = {"/2-folder"};
    Candidate twice = project;
    auto out = Scanner::mergeSameApp({a, project, b, twice}, "~/merged");
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(out[0].id, "cache:x");
    EXPECT_EQ(out[0].location, "~/merged");
    EXPECT_EQ(out[0].paths, (std::vector<std::string>{"/1", "/2"}));
    // One side named its own reveal: the other's paths stay revealable.
    EXPECT_EQ(out[0].reveal, (std::vector<std::string>{"/1", "/2-folder"}));
    EXPECT_EQ(out[1].id, "project:/p");
    EXPECT_EQ(out[1].location, "~/merged"); // repeated ids merge too
    EXPECT_EQ(Scanner::mergeSameApp({a})[0].location, "~/one");
    // Two folders of one cache side by side keep the folder they share as their place.
    Candidate shader = a;
    shader.location = "~/.cache/mesa_shader_cache";
    Candidate shaderDb = a;
    shaderDb.location = "~/.cache/mesa_shader_cache_db";
    EXPECT_EQ(Scanner::mergeSameApp({shader, shaderDb}, "~/merged")[0].location, "~/.cache");
}

TEST(MacAppCaches, ProgramsOwnFoldersAreNeverOffered) {
    MacHome h;
    h.t.file("Library/Caches/app.sorrelin.Sorrelin/x", 10);
    chromiumProfile(h.t, "Library/Application Support/Sorrelin");
    auto s = h.scanner();
    EXPECT_TRUE(ScannerTestAccess::userCaches(s).empty());
    EXPECT_TRUE(ScannerTestAccess::appCaches(s).empty());
}

// ---- Linux ----

namespace {

struct LinuxHome {
    TempTree t;
    FakeFacts facts;
    FakeAppBundles apps;

    Scanner scanner(std::vector<Scanner::RunningId> running = {}) {
        return Scanner(Layout::linux(t.root()), std::move(running), nullptr, facts, apps);
    }
};

std::vector<std::string> idsOf(const std::vector<Candidate>& list) {
    std::vector<std::string> ids;
    for (const auto& c : list) ids.push_back(c.id);
    return ids;
}

} // namespace

TEST(LinuxAppCaches, ACacheDatedAheadOfNowIsInUse) {
    // 2446 is as far as ext4 goes; such a cache was touched "now", never long ago.
    LinuxHome h;
    h.t.file(".cache/timewarp/a", 10);
    for (const char* p : {".cache/timewarp/a", ".cache/timewarp"})
        if (!h.t.dateAt(p, 15'032'304'000)) GTEST_SKIP() << "this file system cannot hold a date in 2446";
    auto s = h.scanner();
    const Candidate* cache = withId(ScannerTestAccess::userCaches(s), "cache:timewarp");
    ASSERT_TRUE(cache);
    EXPECT_EQ(cache->cacheKind, CacheKind::active);
    auto [kind, date] = ScannerTestAccess::kind(s, {}, h.t.path(".cache/timewarp"));
    EXPECT_EQ(kind, CacheKind::active);
    EXPECT_EQ(date, s.now);
}

TEST(LinuxAppCaches, CacheFolderEntriesAreOfferedOnceEach) {
    LinuxHome h;
    for (const char* name : {"google-chrome", "mozilla", "pip", "uv", "huggingface", "torch", "ms-playwright",
                             "puppeteer", "sorrelin", "sessions", "Homebrew", "thumbnails", "some-tool"})
        h.t.file(std::string(".cache/") + name + "/x", 10);
    h.t.file(".cache/stray-file", 10);
    auto s = h.scanner();
    s.brew = "/home/linuxbrew/.linuxbrew/bin/brew";
    auto caches = ScannerTestAccess::userCaches(s);
    EXPECT_EQ(idsOf(caches), (std::vector<std::string>{"cache:google-chrome", "cache:mozilla", "cache:pip",
                                                       "cache:some-tool", "cache:thumbnails", "cache:uv"}));
    EXPECT_EQ(withId(caches, "cache:google-chrome")->name, "Chrome cache");
    EXPECT_EQ(withId(caches, "cache:mozilla")->name, "Firefox cache");
    EXPECT_EQ(withId(caches, "cache:uv")->name, "uv cache");
    EXPECT_EQ(withId(caches, "cache:uv")->note, "Downloaded again when needed");
    EXPECT_EQ(withId(caches, "cache:some-tool")->name, "Some-tool cache");
    EXPECT_EQ(withId(caches, "cache:pip")->location, "~/.cache/pip");

    // The tool rules take the rest: models by the XDG rule, the test browsers by their rows.
    auto tools = ScannerTestAccess::toolCaches(s);
    std::vector<std::string> fromCache;
    for (const auto& c : tools)
        if (c.location.starts_with("~/.cache/")) fromCache.push_back(c.id);
    EXPECT_EQ(fromCache, (std::vector<std::string>{"playwright", "puppeteer", "models:huggingface", "models:torch"}));
    EXPECT_EQ(withId(tools, "models:huggingface")->name, "Huggingface models");
    EXPECT_EQ(withId(tools, "playwright")->tier, Tier::rebuildable);
}

TEST(LinuxAppCaches, BrowserCachesJoinTheirConfigTrees) {
    LinuxHome h;
    h.t.file(".cache/google-chrome/Default/Cache/Cache_Data/data_0", 10);
    h.t.text(".config/google-chrome/Local State", "{}");
    h.t.file(".config/google-chrome/GrShaderCache/x", 10);
    chromiumProfile(h.t, ".config/google-chrome/Default");
    chromiumProfile(h.t, ".config/google-chrome/Profile 1");
    h.t.file(".config/google-chrome/OptGuideOnDeviceModel/weights.bin", 10);
    h.t.file(".config/BraveSoftware/Brave-Browser/Local State", 10);
    chromiumProfile(h.t, ".config/BraveSoftware/Brave-Browser/Default");
    h.t.file(".config/gtk-3.0/Preferences", 10); // a desktop settings folder: never looked into
    h.t.file(".config/gtk-3.0/Cache/x", 10);
    h.apps.install("google-chrome", "Google Chrome");
    auto s = h.scanner();
    h.apps.used["google-chrome"] = s.now - std::chrono::seconds(40 * 86'400);

    auto caches = ScannerTestAccess::userCaches(s);
    auto support = ScannerTestAccess::appCaches(s);
    EXPECT_EQ(idsOf(support), (std::vector<std::string>{"appcache:BraveSoftware", "appcache:google-chrome"}));
    const Candidate* chrome = withId(support, "appcache:google-chrome");
    EXPECT_EQ(chrome->name, "Chrome cache");
    EXPECT_EQ(chrome->cacheKind, CacheKind::idle);
    // The browser's own shader cache and both profiles' caches; never the model or the data.
    const std::string config = h.t.path(".config/google-chrome");
    EXPECT_EQ(chrome->paths.front(), config + "/GrShaderCache");
    EXPECT_EQ(chrome->paths.size(), 1u + 2 * 4);
    for (const auto& p : chrome->paths) {
        EXPECT_EQ(p.find("OptGuide"), std::string::npos);
        EXPECT_EQ(p.find("Local Storage"), std::string::npos);
    }
    // Brave is not installed: its cache has lost its owner.
    EXPECT_EQ(withId(support, "appcache:BraveSoftware")->cacheKind, CacheKind::orphan);
    EXPECT_EQ(withId(support, "appcache:BraveSoftware")->name, "Brave cache");

    std::vector<Candidate> all = caches;
    all.insert(all.end(), support.begin(), support.end());
    auto merged = Scanner::mergeSameApp(all, s.layout.mergedLocation);
    const Candidate* row = withId(merged, "cache:google-chrome");
    ASSERT_TRUE(row);
    EXPECT_EQ(row->location, "~/.cache and ~/.config");
    EXPECT_EQ(row->paths.front(), h.t.path(".cache/google-chrome"));
    EXPECT_EQ(row->paths.size(), 1u + chrome->paths.size());
    EXPECT_EQ(row->cacheKind, CacheKind::idle);
    EXPECT_EQ(row->lastUsed, h.apps.used["google-chrome"]);
}

TEST(LinuxAppCaches, RunningAppsMatchByDesktopIdAndName) {
    LinuxHome h;
    chromiumProfile(h.t, ".config/Code");
    chromiumProfile(h.t, ".config/discord");
    chromiumProfile(h.t, ".config/Heynote");
    h.apps.install("code", "Visual Studio Code");
    h.apps.install("heynote", "Heynote", h.t.path(".local/share/applications/heynote.desktop"));
    // Running by desktop id under a name that the folder does not hold, and by name alone.
    auto s = h.scanner({{"code", "Visual Studio Code"}, {"com.example.Chat", "Discord"}, {"x", ""}});
    auto support = ScannerTestAccess::appCaches(s);
    ASSERT_EQ(support.size(), 3u);
    const Candidate* code = withId(support, "appcache:Code");
    EXPECT_EQ(code->name, "VS Code cache");
    EXPECT_EQ(code->note, "Rebuilt as you use VS Code · open now");
    EXPECT_EQ(code->cacheKind, CacheKind::active);
    EXPECT_EQ(withId(support, "appcache:discord")->note, "Rebuilt as you use Discord · open now");
    // Found installed under its folder's name, and judged by that app's last use.
    h.apps.used["heynote"] = s.now - std::chrono::seconds(40 * 86'400);
    auto withUse = ScannerTestAccess::appCaches(s);
    const Candidate* notes = withId(withUse, "appcache:Heynote");
    EXPECT_EQ(notes->note, "Rebuilt as you use Heynote");
    EXPECT_EQ(notes->cacheKind, CacheKind::idle);
    EXPECT_EQ(notes->lastUsed, h.apps.used["heynote"]);
}

TEST(LinuxAppCaches, SandboxedAppsKeepCachesOfTheirOwn) {
    LinuxHome h;
    chromiumProfile(h.t, ".var/app/com.discordapp.Discord/config/discord");
    h.t.file(".var/app/com.discordapp.Discord/cache/fontconfig/x", 10);
    h.t.file(".var/app/com.discordapp.Discord/cache/tmp/y", 10);
    h.t.dir(".var/app/org.empty.App/cache");
    h.t.file(".var/app/org.gone.Viewer/cache/thumbs/z", 10);
    h.t.file("snap/firefox/common/.cache/mozilla/x", 10);
    h.t.file(".cache/mozilla/y", 10);
    h.apps.install("com.discordapp.Discord", "Discord");
    h.apps.install("firefox_firefox", "Firefox");
    // The native Discord runs, not the Flatpak: the Flatpak's folders are judged on their own.
    auto s = h.scanner({{"discord", "Discord app"}, {"firefox_firefox", "Firefox"}});
    auto caches = ScannerTestAccess::userCaches(s);
    auto support = ScannerTestAccess::appCaches(s);
    EXPECT_EQ(idsOf(caches), (std::vector<std::string>{"cache:mozilla", "cache:flatpak:com.discordapp.Discord",
                                                       "cache:flatpak:org.gone.Viewer", "cache:snap:firefox"}));
    const Candidate* discord = withId(caches, "cache:flatpak:com.discordapp.Discord");
    const std::string folder = h.t.path(".var/app/com.discordapp.Discord/cache");
    EXPECT_EQ(discord->name, "Discord cache");
    // What is in the cache folder goes; the folder, which the sandbox made, stays.
    EXPECT_EQ(discord->paths, (std::vector<std::string>{folder + "/fontconfig", folder + "/tmp"}));
    EXPECT_EQ(discord->reveal, std::vector<std::string>{folder});
    EXPECT_EQ(withId(caches, "cache:flatpak:org.gone.Viewer")->name, "Viewer cache");
    EXPECT_EQ(withId(caches, "cache:flatpak:org.gone.Viewer")->cacheKind, CacheKind::orphan);
    const Candidate* snap = withId(caches, "cache:snap:firefox");
    EXPECT_EQ(snap->name, "Firefox cache");
    EXPECT_EQ(snap->note, "Rebuilt as you use Firefox · open now");

    ASSERT_EQ(support.size(), 1u);
    EXPECT_EQ(support[0].id, "appcache:com.discordapp.Discord/discord");
    EXPECT_EQ(support[0].name, "Discord cache");
    EXPECT_EQ(support[0].note, "Rebuilt as you use Discord");

    std::vector<Candidate> all = caches;
    all.insert(all.end(), support.begin(), support.end());
    auto merged = Scanner::mergeSameApp(all, s.layout.mergedLocation);
    EXPECT_EQ(idsOf(merged), (std::vector<std::string>{"cache:mozilla", "cache:flatpak:com.discordapp.Discord",
                                                       "cache:flatpak:org.gone.Viewer"}));
    // Firefox's two caches: the open note of the snap wins; both folders stay revealable.
    EXPECT_EQ(merged[0].note, "Rebuilt as you use Firefox · open now");
    EXPECT_EQ(merged[0].reveal, (std::vector<std::string>{h.t.path(".cache/mozilla"),
                                                          h.t.path("snap/firefox/common/.cache")}));
    EXPECT_EQ(merged[1].paths.size(), 2u + support[0].paths.size());
}

TEST(LinuxAppCaches, ProgramsOwnFoldersAreNeverOffered) {
    LinuxHome h;
    h.t.file(".cache/sorrelin/x", 10);
    chromiumProfile(h.t, ".config/sorrelin");
    auto s = h.scanner();
    EXPECT_TRUE(ScannerTestAccess::userCaches(s).empty());
    EXPECT_TRUE(ScannerTestAccess::appCaches(s).empty());
}
