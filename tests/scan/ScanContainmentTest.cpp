// The scan offers nothing that lies outside the home folder or behind a symbolic link: not
// through a linked cache folder, not through XDG variables or user-dirs.dirs that name another
// place, not through entries that are links, and not after a folder was swapped for a link
// between listing and measuring.
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "scan/Scanner.h"
#include "scan/ScannerAccess.h"
#include "support/EnvOf.h"
#include "support/FakeAppBundles.h"
#include "support/FakeFacts.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

constexpr int64_t MiB = 1 << 20;

struct Homes {
    TempTree tree;
    const std::string home = tree.dir("home");
    const std::string outside = tree.dir("outside");
    FakeFacts facts;
    FakeAppBundles apps;
    Homes() {
        // What a careless scan would offer: big folders outside, and one honest cache inside.
        tree.file("outside/bigcache/blob", 12 * MiB);
        tree.file("outside/usr/share/blob", 12 * MiB);
        tree.file("outside/Videos/film.mkv", 101 * MiB);
        tree.file("home/.var/app/org.example.App/cache/blob", 12 * MiB);
    }
    std::string path(std::string_view rel) const { return home + "/" + std::string(rel); }
    Layout layout(std::map<std::string, std::string> vars = {}) const {
        vars.emplace("HOME", home);
        return Layout::linux(home, envOf(std::move(vars)));
    }
    std::vector<CleanItem> scan(const Layout& l) {
        Scanner s(l, {}, nullptr, facts, apps);
        return s.run();
    }
};

// Every path an item would touch lies below the home and is reached without a link.
void expectAllInside(const std::vector<CleanItem>& items, const Homes& h) {
    for (const auto& item : items)
        for (const auto& p : item.paths) {
            EXPECT_TRUE(p.starts_with(h.home + "/")) << item.id << " " << p;
            std::string at = h.home;
            for (const auto& piece : Text::split(p.substr(h.home.size() + 1), '/')) {
                at += "/" + piece;
                EXPECT_FALSE(FS::readLink(at)) << item.id << " reaches " << p << " through " << at;
            }
        }
}

bool offers(const std::vector<CleanItem>& items, const std::string& id) {
    return std::any_of(items.begin(), items.end(), [&](const CleanItem& i) { return i.id == id; });
}

} // namespace

TEST(ScanContainment, ALinkedCacheFolderOrDownloadsFolderOffersNothing) {
    Homes h;
    h.tree.symLink(h.outside, "home/.cache");
    h.tree.symLink(h.outside, "home/Downloads");
    auto items = h.scan(h.layout());
    EXPECT_TRUE(offers(items, "cache:flatpak:org.example.App")); // the honest one stays
    EXPECT_FALSE(offers(items, "cache:bigcache"));
    EXPECT_FALSE(offers(items, "download:Videos"));
    expectAllInside(items, h);
}

TEST(ScanContainment, PlacesThatXdgOrUserDirsPutOutsideAreLeftOut) {
    Homes h;
    h.tree.text("home/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"" + h.outside + "\"\n");
    auto l = h.layout({{"XDG_CACHE_HOME", h.outside}});
    ASSERT_EQ(l.xdgCache, h.outside);
    ASSERT_EQ(l.downloads, h.outside);
    auto items = h.scan(l);
    EXPECT_TRUE(offers(items, "cache:flatpak:org.example.App"));
    EXPECT_FALSE(offers(items, "cache:bigcache"));
    EXPECT_FALSE(offers(items, "xdg:bigcache"));
    EXPECT_FALSE(offers(items, "download:Videos"));
    expectAllInside(items, h);

    // "/" itself, as a hostile or mistaken variable names it.
    h.tree.text("home/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"/\"\n");
    auto root = h.layout({{"XDG_CACHE_HOME", "/"}});
    auto rooted = h.scan(root);
    EXPECT_TRUE(offers(rooted, "cache:flatpak:org.example.App"));
    expectAllInside(rooted, h);
}

TEST(ScanContainment, EntriesThatAreLinksAreNotFollowed) {
    Homes h;
    h.tree.symLink(h.outside + "/bigcache", "home/.cache/linked");
    h.tree.symLink(h.outside + "/bigcache", "home/.var/app/org.example.App/cache/linked");
    h.tree.symLink(h.outside + "/usr", "home/.var/app/org.other.App/cache");
    h.tree.symLink(h.outside + "/Videos", "home/Downloads/films");
    auto items = h.scan(h.layout());
    EXPECT_FALSE(offers(items, "cache:linked"));
    EXPECT_FALSE(offers(items, "cache:flatpak:org.other.App"));
    EXPECT_FALSE(offers(items, "download:films"));
    ASSERT_TRUE(offers(items, "cache:flatpak:org.example.App"));
    for (const auto& item : items) {
        if (item.id == "cache:flatpak:org.example.App") {
            EXPECT_EQ(item.paths, std::vector<std::string>{h.path(".var/app/org.example.App/cache/blob")});
        }
    }
    expectAllInside(items, h);
}

TEST(ScanContainment, AFolderSwappedForALinkBeforeItIsMeasuredIsNotOffered) {
    Homes h;
    h.tree.file("home/.cache/swapme/blob", 12 * MiB);
    h.tree.file("home/.cache/stays/blob", 12 * MiB);
    Scanner s(h.layout(), {}, nullptr, h.facts, h.apps);
    auto candidates = ScannerTestAccess::userCaches(s);
    ASSERT_TRUE(withId(candidates, "cache:swapme"));
    ASSERT_TRUE(offers(ScannerTestAccess::measureAll(s, candidates), "cache:swapme"));

    // The cache folder swapped for a link between the listing and the measuring.
    ASSERT_EQ(std::rename(h.path(".cache/swapme").c_str(), h.path("swapped-away").c_str()), 0);
    h.tree.symLink(h.outside + "/bigcache", "home/.cache/swapme");
    auto items = ScannerTestAccess::measureAll(s, candidates);
    EXPECT_FALSE(offers(items, "cache:swapme"));
    EXPECT_TRUE(offers(items, "cache:stays"));

    // The same for the folder above it: ~/.cache itself turned into a link to a copy of it.
    ASSERT_EQ(std::rename(h.path(".cache").c_str(), (h.outside + "/cache-copy").c_str()), 0);
    h.tree.symLink(h.outside + "/cache-copy", "home/.cache");
    items = ScannerTestAccess::measureAll(s, candidates);
    EXPECT_FALSE(offers(items, "cache:stays"));
    EXPECT_TRUE(offers(items, "cache:flatpak:org.example.App"));
}
