// Every operation of the remover on paths whose way runs through a symbolic link: refused with a
// sentence, and a canary tree outside the home survives byte for byte.
#include "foundation/FS.h"
#include "platform/Layout.h"
#include "removal/Remover.h"
#include "support/TempTree.h"
#include "support/TreeListing.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

CleanItem item(std::string id, std::vector<std::string> paths, Removal removal = Removal::deleteForGood()) {
    CleanItem i;
    i.name = "Item " + id;
    i.id = std::move(id);
    i.paths = std::move(paths);
    i.removal = std::move(removal);
    return i;
}

// A home beside a canary tree, with the Linux layout, walked either way.
class RemoverLinks : public ::testing::TestWithParam<Beneath::Way> {
protected:
    TempTree tree;
    const std::string home = tree.dir("home");
    const std::string outside = tree.dir("outside");
    Layout layout = Layout::linux(home);
    Remover::Context context = [this] {
        auto c = Remover::Context::forLayout(layout, {});
        c.mountinfo = tree.path("no-mounts");
        c.way = GetParam();
        return c;
    }();
    std::string before;

    void SetUp() override {
        plantCanary(outside);
        before = treeListing(outside);
    }
    std::string path(std::string_view rel) const { return home + "/" + std::string(rel); }
    void expectCanaryWhole() const { EXPECT_EQ(treeListing(outside), before); }
};

std::string nameOf(const ::testing::TestParamInfo<Beneath::Way>& info) {
    return info.param == Beneath::Way::best ? "Kernel" : "ByHand";
}

} // namespace

TEST_P(RemoverLinks, ACleanRefusesPathsThroughALinkedFolderAboveTheItem) {
    tree.symLink(outside, "home/.cache");
    tree.symLink(outside, "home/Downloads");
    tree.file("home/.local/share/keep.txt", 10);
    auto r = Remover::run({item("cache", {path(".cache/tmpstuff")}),
                           item("deep", {path(".cache/tmpstuff/deep/er")}),
                           item("download", {path("Downloads/usrstuff/b.iso")}, Removal::trash()),
                           item("inner", {path(".cache/tmpstuff/up/lib")})},
                          {}, context);
    EXPECT_EQ(r.removed, 0);
    EXPECT_EQ(r.failures,
              (std::vector<std::string>{"Item cache: refused to touch ~/.cache/tmpstuff: ~/.cache is a symbolic link",
                                        "Item deep: refused to touch ~/.cache/tmpstuff/deep/er: ~/.cache is a symbolic link",
                                        "Item inner: refused to touch ~/.cache/tmpstuff/up/lib: ~/.cache is a symbolic link",
                                        "Item download: refused to touch ~/Downloads/usrstuff/b.iso: ~/Downloads is a symbolic link"}));
    expectCanaryWhole();
    EXPECT_FALSE(FS::exists(layout.trash)); // nothing was moved anywhere
}

TEST_P(RemoverLinks, TrashingAndPuttingBackRefuseALinkOnTheWay) {
    tree.symLink(outside, "home/Downloads");
    auto t = Remover::trash(path("Downloads/usrstuff/b.iso"), context);
    EXPECT_FALSE(t.moved);
    EXPECT_EQ(t.problem, "Sorrelin does not follow ~/Downloads: it is a symbolic link.");

    // A thing trashed honestly cannot be put back through a folder swapped for a link since.
    tree.file("home/Projects/app/notes.txt", 100);
    auto real = Remover::trash(path("Projects/app/notes.txt"), context);
    ASSERT_TRUE(real.moved) << real.problem.value_or("");
    ASSERT_EQ(std::rename(path("Projects").c_str(), path("Projects-old").c_str()), 0);
    tree.symLink(outside + "/usrstuff", "home/Projects");
    EXPECT_EQ(Remover::putBack(*real.moved, path("Projects/app/notes.txt"), context),
              "Sorrelin does not follow ~/Projects: it is a symbolic link.");
    EXPECT_TRUE(FS::isFile(*real.moved)); // still in the Trash, nothing made outside
    expectCanaryWhole();

    // Only what lies in a Trash folder comes back: an outside file named as "moved" stays put.
    EXPECT_EQ(Remover::putBack(outside + "/one", path("Projects-old/one"), context), "It is not in the Trash any more.");
    EXPECT_FALSE(FS::exists(path("Projects-old/one")));
    expectCanaryWhole();
}

TEST_P(RemoverLinks, EmptyingATrashReachedThroughALinkLeavesItAlone) {
    // ~/.local/share on another disk, holding what looks like a Trash.
    tree.text("outside/share/Trash/files/precious.txt", "keep me");
    tree.text("outside/share/Trash/info/precious.txt.trashinfo", "[Trash Info]\nPath=/x\n");
    before = treeListing(outside);
    tree.symLink(outside + "/share", "home/.local/share");
    ASSERT_EQ(layout.trash, path(".local/share/Trash"));
    EXPECT_EQ(Remover::emptyTrash(context),
              "Some things stayed in the Trash: the way to a Trash folder runs through a symbolic link.");
    expectCanaryWhole();
}

TEST_P(RemoverLinks, ALinkSwappedInAboveTheItemDuringACleanIsRefused) {
    // Two items in one cache folder; once the first is done, the folder is swapped for a link
    // to the canary, which holds an entry of the second one's name.
    tree.file("home/.cache/first/a.bin", 1000);
    tree.file("home/.cache/tmpstuff/b.bin", 1000);
    context.onReach = [&](const std::string& p) {
        if (p != path(".cache/tmpstuff")) return;
        ASSERT_EQ(std::rename(path(".cache").c_str(), path(".cache-was").c_str()), 0);
        tree.symLink(outside, "home/.cache");
    };
    auto r = Remover::run({item("first", {path(".cache/first")}), item("second", {path(".cache/tmpstuff")})}, {}, context);
    EXPECT_EQ(r.removedIDs, (std::set<std::string>{"first"}));
    EXPECT_EQ(r.failures,
              (std::vector<std::string>{"Item second: refused to touch ~/.cache/tmpstuff: ~/.cache is a symbolic link"}));
    EXPECT_FALSE(FS::exists(path(".cache-was/first")));
    EXPECT_TRUE(FS::isFile(path(".cache-was/tmpstuff/b.bin")));
    expectCanaryWhole();

    // The same swap before a single move to the Trash.
    ASSERT_EQ(unlink(path(".cache").c_str()), 0);
    ASSERT_EQ(std::rename(path(".cache-was").c_str(), path(".cache").c_str()), 0);
    auto t = Remover::trash(path(".cache/tmpstuff"), context);
    EXPECT_EQ(t.problem, "Sorrelin does not follow ~/.cache: it is a symbolic link.");
    expectCanaryWhole();
}

INSTANTIATE_TEST_SUITE_P(Ways, RemoverLinks, ::testing::Values(Beneath::Way::best, Beneath::Way::byHand), nameOf);
