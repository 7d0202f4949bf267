#include "foundation/FS.h"
#include "scan/Scanner.h"
#include "support/FakeFacts.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr int64_t MiB = 1 << 20;

const CleanItem* byId(const std::vector<CleanItem>& items, const std::string& id) {
    auto it = std::find_if(items.begin(), items.end(), [&](auto& i) { return i.id == id; });
    return it == items.end() ? nullptr : &*it;
}

} // namespace

TEST(Scanner, SnapshotDropsShellsAndFindsNpxInUse) {
    TempTree home;
    FakeFacts facts;
    facts.procs = {{1, "zsh", "/p", "/bin/zsh"}, {2, "node", "/p", "/usr/bin/node"}, {3, "ssh", "/", "/usr/bin/ssh"}};
    facts.args[2] = {"node", "/home/a/.npm/_npx/abc/node_modules/x", "/y/.npm/_npx/", "/z/.npm/_npx//def/"};
    Scanner s(Layout::linux(home.root()), {}, nullptr, facts);
    EXPECT_EQ(s.allProcs.size(), 3u);
    ASSERT_EQ(s.procs.size(), 1u);
    EXPECT_EQ(s.procs[0].name, "node");
    EXPECT_EQ(s.busyNpx, (std::set<std::string>{"abc", "def"}));
    EXPECT_EQ(s.home, home.root());
}

TEST(Scanner, DownloadsListsBigEntriesWithTypeAndDate) {
    TempTree home;
    home.file("Downloads/setup.dmg", 101 * MiB);
    home.file("Downloads/clip.MKV", 120 * MiB);
    home.file("Downloads/small.zip", 99 * MB);
    home.file("Downloads/.hidden.iso", 200 * MiB);
    home.file("Downloads/folder/a.bin", 110 * MiB);
    // An installer whose only other link lies elsewhere in the home frees nothing.
    home.file("Downloads/linked.iso", 150 * MiB);
    home.hardLink("Downloads/linked.iso", "Documents/kept.iso");
    FakeFacts facts;
    Scanner s(Layout::linux(home.root()), {}, nullptr, facts);
    auto items = s.run();
    ASSERT_EQ(items.size(), 3u);
    const CleanItem* dmg = byId(items, "download:setup.dmg");
    ASSERT_TRUE(dmg);
    EXPECT_EQ(dmg->tier, Tier::yourCall);
    EXPECT_EQ(dmg->note, "Installer · added today");
    EXPECT_EQ(dmg->location, "~/Downloads");
    EXPECT_TRUE(dmg->removal.isTrash());
    EXPECT_FALSE(dmg->defaultOn);
    EXPECT_EQ(dmg->paths, std::vector<std::string>{home.path("Downloads/setup.dmg")});
    EXPECT_EQ(byId(items, "download:clip.MKV")->note, "Video · added today");
    EXPECT_EQ(byId(items, "download:folder")->note, "Folder · added today");
    EXPECT_FALSE(byId(items, "download:small.zip"));
    EXPECT_FALSE(byId(items, "download:linked.iso"));
    // Listing order is the sorted listing.
    EXPECT_EQ(items[0].id, "download:clip.MKV");
}

TEST(Scanner, DownloadsFollowTheLocalisedUserFolder) {
    TempTree home;
    home.text(".config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Téléchargements\"\n");
    home.file("Téléchargements/big.tar", 101 * MiB);
    FakeFacts facts;
    auto env = [&](const char* name) -> std::optional<std::string> {
        if (std::string_view(name) == "HOME") return home.root();
        return std::nullopt;
    };
    Scanner s(Layout::linux(home.root(), env), {}, nullptr, facts);
    auto items = s.run();
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].location, "~/Téléchargements");
    EXPECT_EQ(items[0].note, "Archive · added today");
}

TEST(Scanner, ProgressEndsWithAllMeasuredAndCancelGivesNothing) {
    TempTree home;
    for (int i = 0; i < 5; ++i) home.file("Downloads/f" + std::to_string(i) + ".iso", 101 * MiB);
    FakeFacts facts;
    std::vector<ScanProgress> seen;
    std::mutex m;
    Scanner s(Layout::linux(home.root()), {}, nullptr, facts);
    auto items = s.run([&](const ScanProgress& p) {
        std::lock_guard g(m);
        seen.push_back(p);
    });
    EXPECT_EQ(items.size(), 5u);
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.front(), ScanProgress{});
    EXPECT_EQ(seen.back().stage, ScanProgress::Stage::measuring);
    EXPECT_EQ(seen.back().done, 5);
    EXPECT_EQ(seen.back().total, 5);
    EXPECT_GE(seen.back().found, 5 * 101 * MiB);

    auto token = ScanToken::make();
    token->cancel();
    Scanner cancelled(Layout::linux(home.root()), {}, token, facts);
    EXPECT_TRUE(cancelled.run().empty());
}

TEST(Scanner, EmptyHomeGivesNoItemsAndAnEmptyLabel) {
    TempTree home;
    FakeFacts facts;
    ScanProgress last;
    Scanner s(Layout::linux(home.root()), {}, nullptr, facts);
    EXPECT_TRUE(s.run([&](const ScanProgress& p) { last = p; }).empty());
    EXPECT_EQ(last.stage, ScanProgress::Stage::measuring);
    EXPECT_EQ(last.total, 0);
    EXPECT_EQ(last.label, "");
}
