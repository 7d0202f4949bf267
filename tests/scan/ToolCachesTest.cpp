// Tool caches, developer data and old Node versions, over a generated ~/Library home and a
// Linux home.
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "support/FakeAppBundles.h"
#include "scan/ScannerAccess.h"
#include "support/FakeFacts.h"
#include "support/TempTree.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

namespace {

constexpr double day = 86'400;
constexpr int64_t MiB = 1 << 20;

struct Home {
    TempTree t;
    FakeFacts facts;
    FakeAppBundles apps;
    bool mac = true;

    Layout layout() const { return mac ? Layout::macos(t.root()) : Layout::linux(t.root()); }
    Scanner scanner() { return Scanner(layout(), {}, nullptr, facts, apps); }
};

std::vector<std::string> idsOf(const std::vector<Candidate>& list) {
    std::vector<std::string> ids;
    for (const auto& c : list) ids.push_back(c.id);
    return ids;
}

const CleanItem* itemWithId(const std::vector<CleanItem>& items, const std::string& id) {
    for (const auto& i : items)
        if (i.id == id) return &i;
    return nullptr;
}

} // namespace

TEST(ToolCaches, NpxKeepsToolsInUse) {
    Home h;
    for (const char* tool : {"aaa111", "bbb222", "ccc333"}) h.t.file(std::string(".npm/_npx/") + tool + "/package.json", 10);
    h.t.file(".npm/_npx/.lock", 1);
    h.facts.procs = {{7, "node", "/w", "/usr/bin/node"}};
    h.facts.args[7] = {"node", h.t.path(".npm/_npx/bbb222/node_modules/.bin/serve")};
    auto s = h.scanner();
    auto first = ScannerTestAccess::toolCaches(s);
    auto npx = withId(first, "npx");
    ASSERT_TRUE(npx);
    EXPECT_EQ(npx->paths, (std::vector<std::string>{h.t.path(".npm/_npx/aaa111"), h.t.path(".npm/_npx/ccc333")}));
    EXPECT_EQ(npx->note, "Tools npx fetched once · 1 in use is kept");
    EXPECT_EQ(npx->reveal, std::vector<std::string>{h.t.path(".npm/_npx")});
    EXPECT_EQ(npx->location, "~/.npm/_npx");
    EXPECT_EQ(npx->cacheKind, CacheKind::active);

    auto noteWith = [&](std::set<std::string> busy) {
        s.busyNpx = std::move(busy);
        auto list = ScannerTestAccess::toolCaches(s);
        auto c = withId(list, "npx");
        return c ? c->note : std::string("no row");
    };
    EXPECT_EQ(noteWith({"aaa111", "ccc333"}), "Tools npx fetched once · 2 in use are kept");
    EXPECT_EQ(noteWith({}), "Tools npx fetched once");
    s.busyNpx = {"aaa111", "bbb222", "ccc333"};
    EXPECT_FALSE(withId(ScannerTestAccess::toolCaches(s), "npx"));
}

TEST(ToolCaches, RowsComeInTheirOrderWithTheirTiers) {
    Home h;
    h.t.file(".npm/_cacache/index", 10);
    h.t.file(".npm/_npx/abc/x", 10);
    h.t.file(".gradle/caches/x", 10);
    h.t.file(".cargo/registry/cache/x", 10);
    h.t.file("Library/Caches/ms-playwright/chromium/x", 10);
    h.t.file(".cache/puppeteer/chrome/x", 10);
    h.t.file(".pnpm-store/v3/x", 10);
    h.t.file("Library/pnpm/store/v3/x", 10);
    h.t.file("Library/Logs/DiagnosticReports/a.ips", 10);
    h.t.file("Library/Logs/app.log", 10);
    h.t.file(".cache/uv/x", 10);
    h.t.file(".cache/huggingface/hub/x", 10);
    h.t.file(".cache/codex-runtimes/x", 10);
    h.t.file(".bun/install/cache", 10); // a file, not a folder: no row
    h.t.age(".gradle/caches/x", 45 * day);
    h.t.age(".gradle/caches", 45 * day);
    auto s = h.scanner();
    auto list = ScannerTestAccess::toolCaches(s);
    EXPECT_EQ(idsOf(list), (std::vector<std::string>{"npm", "npx", "gradle", "cargo", "playwright", "puppeteer",
                                                     "pnpm-store:" + h.t.path("Library/pnpm/store"),
                                                     "pnpm-store:" + h.t.path(".pnpm-store"), "logs",
                                                     "xdg:codex-runtimes", "models:huggingface", "xdg:uv"}));

    const Candidate* gradle = withId(list, "gradle");
    EXPECT_EQ(gradle->cacheKind, CacheKind::idle);
    EXPECT_TRUE(gradle->lastUsed);
    const Candidate* playwright = withId(list, "playwright");
    EXPECT_EQ(playwright->tier, Tier::rebuildable);
    EXPECT_FALSE(playwright->cacheKind);
    EXPECT_TRUE(playwright->defaultOn);
    const Candidate* puppeteer = withId(list, "puppeteer");
    EXPECT_EQ(puppeteer->tier, Tier::rebuildable);
    EXPECT_EQ(puppeteer->location, "~/.cache/puppeteer");

    const Candidate* store = withId(list, "pnpm-store:" + h.t.path(".pnpm-store"));
    EXPECT_EQ(store->name, "pnpm package store");
    EXPECT_FALSE(store->cacheKind);

    // Logs: what is in the folder goes, never the folder.
    const Candidate* logs = withId(list, "logs");
    EXPECT_EQ(logs->paths, (std::vector<std::string>{h.t.path("Library/Logs/DiagnosticReports"),
                                                     h.t.path("Library/Logs/app.log")}));
    EXPECT_EQ(logs->reveal, std::vector<std::string>{h.t.path("Library/Logs")});
    EXPECT_EQ(logs->cacheKind, CacheKind::leftover);

    const Candidate* models = withId(list, "models:huggingface");
    EXPECT_EQ(models->tier, Tier::yourCall);
    EXPECT_TRUE(models->removal.isTrash());
    EXPECT_FALSE(models->defaultOn);
    EXPECT_FALSE(models->cacheKind);
    const Candidate* uv = withId(list, "xdg:uv");
    EXPECT_EQ(uv->name, "uv cache");
    EXPECT_EQ(uv->tier, Tier::safe);
    EXPECT_TRUE(uv->removal.isDelete());
    EXPECT_TRUE(uv->defaultOn);
    EXPECT_EQ(withId(list, "xdg:codex-runtimes")->name, "Codex runtimes");

    // The Linux layout has no logs folder, and its ~/.cache entries belong to the caches rule.
    h.mac = false;
    h.t.file(".local/share/pnpm/store/v3/x", 10);
    auto linux = h.scanner();
    auto linuxList = ScannerTestAccess::toolCaches(linux);
    EXPECT_FALSE(withId(linuxList, "logs"));
    EXPECT_FALSE(withId(linuxList, "xdg:uv"));
    EXPECT_TRUE(withId(linuxList, "models:huggingface"));
    EXPECT_TRUE(withId(linuxList, "pnpm-store:" + h.t.path(".local/share/pnpm/store")));
    EXPECT_FALSE(withId(linuxList, "playwright")); // ~/Library/Caches is no place here
}

TEST(ToolCaches, SizesDecideWhatIsListed) {
    Home h;
    h.t.file(".cache/foo/blob", 5 * MiB);
    h.t.file(".cache/bar/blob", 11 * MiB);
    h.t.file(".cache/torch/hub/model.pt", 50 * MiB);
    h.t.file(".cache/ollama/models/blob", 101 * MiB);
    auto s = h.scanner();
    auto items = s.run();
    EXPECT_FALSE(itemWithId(items, "xdg:foo"));
    EXPECT_TRUE(itemWithId(items, "xdg:bar"));
    EXPECT_FALSE(itemWithId(items, "models:torch"));
    ASSERT_TRUE(itemWithId(items, "models:ollama"));
    EXPECT_EQ(itemWithId(items, "models:ollama")->name, "Ollama models");
}

TEST(ToolCaches, PackageManagerDryRun) {
    EXPECT_EQ(Scanner::brewFreed("==> This operation would free approximately 1.5GB of disk space."), 1610612736);
    EXPECT_EQ(Scanner::brewFreed("would free approximately 12 MB"), 12 * 1048576);
    EXPECT_EQ(Scanner::brewFreed("approximately 300KB"), 300 * 1024);
    EXPECT_EQ(Scanner::brewFreed("approximately 7B"), 7);
    EXPECT_EQ(Scanner::brewFreed("approximately 1.2.3GB"), std::nullopt);
    EXPECT_EQ(Scanner::brewFreed(""), std::nullopt);
    EXPECT_EQ(Scanner::brewFreed("Removing: /opt/homebrew/Cellar/x (12 files)"), std::nullopt);

    // The row runs the real program inside the measuring and shows what it says.
    Home h;
    std::string brew = h.t.text("homebrew/bin/brew",
                                "#!/bin/sh\n"
                                "[ \"$1 $2 $3\" = \"cleanup --prune=all -n\" ] || exit 2\n"
                                "echo 'Would remove: /x (3 files, 1.2MB)'\n"
                                "echo '==> This operation would free approximately 1.5GB of disk space.'\n");
    chmod(brew.c_str(), 0755);
    EXPECT_EQ(Scanner::brewDryRun(brew), 1610612736);

    auto s = h.scanner();
    s.brew = brew;
    auto rows = ScannerTestAccess::toolCaches(s);
    auto row = withId(rows, "brew");
    ASSERT_TRUE(row);
    EXPECT_EQ(row->location, "brew cleanup --prune=all");
    EXPECT_EQ(row->removal, Removal::command({brew, "cleanup", "--prune=all"}));
    EXPECT_EQ(row->reveal, std::vector<std::string>{h.t.path("homebrew/Cellar")});
    EXPECT_TRUE(row->paths.empty());
    EXPECT_EQ(row->cacheKind, CacheKind::leftover);
    auto items = s.run();
    const CleanItem* item = itemWithId(items, "brew");
    ASSERT_TRUE(item);
    EXPECT_EQ(item->size, 1610612736);

    // Nothing to clean: the row disappears.
    h.t.text("homebrew/bin/brew", "#!/bin/sh\necho 'Nothing to clean'\n");
    auto none = s.run();
    EXPECT_FALSE(itemWithId(none, "brew"));
}

TEST(DeveloperData, XcodeRowsAndDeviceSupportUse) {
    Home h;
    h.t.file("Library/Developer/Xcode/DerivedData/App-abc/x", 10);
    h.t.file("Library/Developer/Xcode/Archives/2024/x", 10);
    h.t.file("Library/Developer/CoreSimulator/Devices/UUID/x", 10);
    h.t.file("Library/Developer/Xcode/iOS DeviceSupport/17.0/x", 10);
    h.t.age("Library/Developer/Xcode/iOS DeviceSupport/17.0/x", day);
    h.t.age("Library/Developer/Xcode/iOS DeviceSupport/17.0", day);
    h.t.age("Library/Developer/Xcode/iOS DeviceSupport", day);
    auto s = h.scanner();
    auto list = ScannerTestAccess::developerData(s);
    EXPECT_EQ(idsOf(list), (std::vector<std::string>{"xcode-derived", "device-support", "xcode-archives", "simulators"}));

    const Candidate* derived = withId(list, "xcode-derived");
    EXPECT_EQ(derived->cacheKind, CacheKind::active);
    EXPECT_TRUE(derived->defaultOn);
    const Candidate* archives = withId(list, "xcode-archives");
    EXPECT_TRUE(archives->removal.isTrash());
    EXPECT_FALSE(archives->defaultOn);
    EXPECT_FALSE(archives->cacheKind);

    // A device used yesterday: its files start unticked and say when.
    const Candidate* support = withId(list, "device-support");
    EXPECT_EQ(support->tier, Tier::rebuildable);
    EXPECT_FALSE(support->defaultOn);
    ASSERT_TRUE(support->lastUsed);
    EXPECT_EQ(support->note, "Copied again when a device connects · used " + Fmt::day(*support->lastUsed, s.now));
    EXPECT_NE(support->note.find(" · used "), std::string::npos);

    // Used 40 days ago: ticked, no date.
    h.t.age("Library/Developer/Xcode/iOS DeviceSupport/17.0/x", 40 * day);
    h.t.age("Library/Developer/Xcode/iOS DeviceSupport/17.0", 40 * day);
    h.t.age("Library/Developer/Xcode/iOS DeviceSupport", 40 * day);
    auto later = ScannerTestAccess::developerData(s);
    const Candidate* old = withId(later, "device-support");
    EXPECT_TRUE(old->defaultOn);
    EXPECT_FALSE(old->lastUsed);
    EXPECT_EQ(old->note, "Copied again when a device connects");
}

TEST(DeveloperData, NothingWithoutTheDeveloperFolderAndLinuxRows) {
    Home h;
    h.t.text("Library/Developer", "not a folder");
    auto s = h.scanner();
    EXPECT_TRUE(ScannerTestAccess::developerData(s).empty());

    h.mac = false;
    h.t.file(".android/avd/Pixel_8.avd/userdata.img", 10);
    h.t.file("Android/Sdk/system-images/android-34/google_apis/x86_64/system.img", 10);
    h.t.file(".gradle/wrapper/dists/gradle-8.5-bin/x", 10);
    auto linux = h.scanner();
    auto list = ScannerTestAccess::developerData(linux);
    EXPECT_EQ(idsOf(list), (std::vector<std::string>{"gradle-dists", "android-images", "android-avd"}));
    // Your call goes to the Trash and starts unticked; the rest is deleted and starts ticked.
    for (const auto& c : list) {
        EXPECT_EQ(c.removal.isTrash(), c.tier == Tier::yourCall) << c.id;
        EXPECT_EQ(c.defaultOn, c.tier != Tier::yourCall) << c.id;
    }
    EXPECT_EQ(withId(list, "android-avd")->location, "~/.android/avd");
}

TEST(NodeVersions, NewestAndDefaultStay) {
    Home h;
    auto versions = [&](std::vector<std::string> names, const std::string& alias) {
        TempTree fresh;
        for (const auto& n : names) fresh.file(".nvm/versions/node/" + n + "/bin/node", 10);
        if (!alias.empty()) fresh.text(".nvm/alias/default", alias);
        Scanner s(Layout::macos(fresh.root()), {}, nullptr, h.facts, h.apps);
        std::vector<std::string> offered;
        for (const auto& c : ScannerTestAccess::nodeVersions(s)) offered.push_back(c.id);
        return offered;
    };
    EXPECT_EQ(versions({"v18.0.0", "v20.0.0"}, "18\n"), std::vector<std::string>{});
    EXPECT_EQ(versions({"v20.0.0"}, ""), std::vector<std::string>{});
    EXPECT_EQ(versions({"v16.20.2", "v18.19.0", "v20.11.1"}, "v18.19.0"), std::vector<std::string>{"node:v16.20.2"});
    // An alias "20" protects "v20.11.1", not "v2.0.0" nor "v200.1.0".
    EXPECT_EQ(versions({"v20.11.1", "v2.0.0", "v200.1.0"}, "20"), std::vector<std::string>{"node:v2.0.0"});
    // Numeric order, not text order: v9 is older than v10; a piece that is no number counts 0.
    EXPECT_EQ(versions({"v9.11.2", "v10.0.0", "v10.0.x"}, ""), (std::vector<std::string>{"node:v10.0.x", "node:v9.11.2"}));
    // Names not beginning with "v" are not versions.
    EXPECT_EQ(versions({"v18.0.0", "system", "lts"}, ""), std::vector<std::string>{});
}

TEST(NodeVersions, RunningVersionIsLockedAndNotFound) {
    Home h;
    h.t.file(".nvm/versions/node/v18.0.0/bin/node", 25 * MiB);
    h.t.file(".nvm/versions/node/v16.0.0/bin/node", 25 * MiB);
    h.t.file(".nvm/versions/node/v20.0.0/bin/node", 25 * MiB);
    h.facts.procs = {{9, "node", "/w", h.t.path(".nvm/versions/node/v18.0.0/bin/node")},
                     {10, "other", "/w", h.t.path(".nvm/versions/node/v16.0.0-extra/bin/node")}};
    ScanProgress last;
    auto s = h.scanner();
    auto items = s.run([&](const ScanProgress& p) { last = p; });
    const CleanItem* running = itemWithId(items, "node:v18.0.0");
    ASSERT_TRUE(running);
    EXPECT_EQ(running->lockedReason, "Running right now · kept");
    EXPECT_FALSE(running->defaultOn);
    EXPECT_EQ(running->name, "Node v18.0.0");
    EXPECT_EQ(running->note, "Not your default Node · nvm can install it again");
    const CleanItem* idle = itemWithId(items, "node:v16.0.0");
    ASSERT_TRUE(idle);
    EXPECT_FALSE(idle->lockedReason);
    EXPECT_TRUE(idle->removal.isTrash());
    EXPECT_FALSE(itemWithId(items, "node:v20.0.0"));
    // Only the unlocked version counts as found.
    EXPECT_EQ(last.found, idle->size);
}
