// The storage walk measures nothing outside the home folder as the home's: user folders and
// app-data places that are links, or that XDG or user-dirs.dirs put elsewhere, plan no unit.
#include "foundation/FS.h"
#include "storage/StorageScan.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <map>

namespace {

struct Homes {
    TempTree tree;
    const std::string home = tree.dir("home");
    const std::string outside = tree.dir("outside");
    Homes() {
        tree.file("outside/usr/lib/x.so", 300000);
        tree.file("outside/tmp/junk.bin", 300000);
        tree.file("home/Music/song.flac", 200000);
        tree.file("home/.config/app/settings", 1000);
    }
    Layout layout(std::map<std::string, std::string> vars = {}) const {
        vars.emplace("HOME", home);
        Layout l = Layout::linux(home, [vars](const char* name) -> std::optional<std::string> {
            auto it = vars.find(name);
            if (it == vars.end()) return std::nullopt;
            return it->second;
        });
        // Only the home's own units: the system's rows read the machine.
        StorageTables& t = l.storage;
        t.outsideTools.clear();
        t.assetPlaces.clear();
        t.temporary.clear();
        t.snapFilesDir.clear();
        t.systemPlaces.clear();
        return l;
    }
    // The paths of the planned units.
    std::vector<std::string> planned(const Layout& l) const {
        StorageScan scan(l, ScanToken::make(), nullptr);
        std::vector<std::string> out;
        for (const auto& u : scan.units()) out.push_back(u.path);
        return out;
    }
};

bool has(const std::vector<std::string>& paths, const std::string& p) {
    return std::find(paths.begin(), paths.end(), p) != paths.end();
}

void expectNothingOutside(const std::vector<std::string>& paths, const Homes& h) {
    for (const auto& p : paths) {
        EXPECT_TRUE(p.starts_with(h.home + "/")) << p;
        EXPECT_FALSE(p.starts_with(h.outside)) << p;
    }
}

} // namespace

TEST(StorageContainment, LinkedUserAndDataFoldersPlanNoUnit) {
    Homes h;
    h.tree.symLink(h.outside, "home/Downloads");
    h.tree.symLink(h.outside, "home/.cache");
    h.tree.symLink(h.outside, "home/stuff"); // a plain top-level entry that links out
    auto paths = h.planned(h.layout());
    EXPECT_TRUE(has(paths, h.home + "/Music/song.flac"));
    EXPECT_TRUE(has(paths, h.home + "/.config/app"));
    for (const char* linked : {"/Downloads", "/.cache", "/stuff", "/Downloads/usr", "/.cache/tmp"})
        EXPECT_FALSE(has(paths, h.home + linked)) << linked;
    expectNothingOutside(paths, h);
}

TEST(StorageContainment, PlacesNamedOutsideTheHomePlanNoUnit) {
    Homes h;
    h.tree.text("home/.config/user-dirs.dirs",
                "XDG_DOWNLOAD_DIR=\"" + h.outside + "\"\nXDG_DOCUMENTS_DIR=\"/\"\n");
    auto l = h.layout({{"XDG_CACHE_HOME", "/"}, {"XDG_DATA_HOME", h.outside}});
    ASSERT_EQ(l.downloads, h.outside);
    ASSERT_EQ(l.documents, "/");
    auto paths = h.planned(l);
    EXPECT_TRUE(has(paths, h.home + "/Music/song.flac"));
    expectNothingOutside(paths, h);
}
