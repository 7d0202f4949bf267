#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/Layout.h"
#include "removal/Remover.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

namespace {

CleanItem item(std::string id, std::vector<std::string> paths, Removal removal = Removal::deleteForGood(),
               int64_t size = 0) {
    CleanItem i;
    i.name = "Item " + id;
    i.id = std::move(id);
    i.paths = std::move(paths);
    i.removal = std::move(removal);
    i.size = size;
    return i;
}

std::vector<std::string> ids(const std::vector<CleanItem>& items) {
    std::vector<std::string> out;
    for (const auto& i : items) out.push_back(i.id);
    return out;
}

// A scratch home with the macOS rows, so that the paths read as the cases are written.
struct Home {
    TempTree tree;
    Remover::Context context = Remover::Context::forLayout(Layout::macos(tree.root()), {});
    std::string path(std::string_view rel) const { return tree.path(rel); }
};

} // namespace

TEST(RemoverOrder, DeletionsThenTheTrashThenCommandsKeepingTheirOrder) {
    auto ordered = Remover::order({item("t1", {}, Removal::trash()), item("c1", {}, Removal::command({"x"})),
                                   item("d1", {}), item("t2", {}, Removal::trash()), item("d2", {}),
                                   item("c2", {}, Removal::command({"y"}))});
    EXPECT_EQ(ids(ordered), (std::vector<std::string>{"d1", "d2", "t1", "t2", "c1", "c2"}));
    EXPECT_TRUE(Remover::order({}).empty());
}

TEST(RemoverRun, ACleanRemovesWhatIsSafeRefusesTheProtectedAndCountsCommandsAndMissingPaths) {
    Home h;
    h.tree.file("Library/Caches/AppX/one.bin", 5000);
    h.tree.file("Library/Caches/AppX/sub/two.bin", 7000);
    h.tree.text("Documents/proj/package.json", "{}");
    h.tree.file("Documents/proj/node_modules/pkg/index.js", 300);
    h.tree.file("outside/shared.bin", 20000);
    h.tree.hardLink("outside/shared.bin", "Documents/proj/node_modules/pkg/shared.bin");

    std::vector<std::pair<int, std::string>> calls;
    auto r = Remover::run({item("cache", {h.path("/Library/Caches/AppX")}),
                           item("project", {h.path("/Documents/proj/node_modules")}),
                           item("protected", {h.path("/Documents")}),
                           item("command", {}, Removal::command({"/bin/sh", "-c", "exit 0"})),
                           item("missing", {h.path("/Library/Caches/Nope")})},
                          [&](int done, const std::string& name) { calls.emplace_back(done, name); }, h.context);

    EXPECT_FALSE(FS::exists(h.path("/Library/Caches/AppX")));
    EXPECT_TRUE(FS::isDir(h.path("/Library/Caches")));
    EXPECT_FALSE(FS::exists(h.path("/Documents/proj/node_modules")));
    EXPECT_TRUE(FS::isFile(h.path("/Documents/proj/package.json")));
    // The hard-linked file lives on through its other link, whole.
    struct stat st {};
    ASSERT_EQ(lstat(h.path("/outside/shared.bin").c_str(), &st), 0);
    EXPECT_EQ(st.st_size, 20000);
    EXPECT_EQ(st.st_nlink, 1u);

    EXPECT_EQ(r.removed, 4);
    EXPECT_EQ(r.removedIDs, (std::set<std::string>{"cache", "project", "command", "missing"}));
    EXPECT_EQ(r.failures, std::vector<std::string>{"Item protected: refused to touch ~/Documents"});
    EXPECT_EQ(r.trashedBytes, 0);
    EXPECT_EQ(r.pretendFreed, 0);
    // One call per item before it, in order of work, and a last one with the count.
    std::vector<std::pair<int, std::string>> expected = {
        {0, "Item cache"}, {1, "Item project"}, {2, "Item protected"}, {3, "Item missing"}, {4, "Item command"}, {5, ""}};
    EXPECT_EQ(calls, expected);
}

TEST(RemoverRun, RefusalsAreShownFromTheHomeFolderOnOneLineOfValidText) {
    Home h;
    h.context.home = h.tree.root();
    auto r = Remover::run({item("a", {h.path("/Documents")}), item("b", {h.path("/x")}),
                           item("c", {h.path("/Library/Caches/../../etc")}),
                           item("d", {h.path("/bad\xff name\nwith a break")})},
                          {}, h.context);
    ASSERT_EQ(r.failures.size(), 4u);
    EXPECT_EQ(r.failures[0], "Item a: refused to touch ~/Documents");
    EXPECT_EQ(r.failures[1], "Item b: refused to touch ~/x");
    EXPECT_EQ(r.failures[2], "Item c: refused to touch ~/Library/Caches/../../etc");
    EXPECT_EQ(r.failures[3], "Item d: refused to touch ~/bad\xEF\xBF\xBD name\xEF\xBF\xBDwith a break");
    for (const auto& f : r.failures) {
        EXPECT_TRUE(Text::isValidUtf8(f));
        EXPECT_EQ(f.find('\n'), std::string::npos);
    }
    EXPECT_EQ(r.removed, 0);
}

TEST(RemoverRun, AnItemStopsAtItsFirstProblemAndKeepsWhatItCleared) {
    Home h;
    h.tree.file("Library/Caches/A/f", 10);
    h.tree.file("Library/Caches/C/f", 10);
    auto r = Remover::run({item("multi", {h.path("/Library/Caches/A"), h.path("/Library"), h.path("/Library/Caches/C")}),
                           item("next", {h.path("/Library/Caches/C")})},
                          [&](int done, const std::string&) {
                              // The path after the refused one was never reached.
                              if (done == 1) {
                                  EXPECT_TRUE(FS::isFile(h.path("/Library/Caches/C/f")));
                              }
                          },
                          h.context);
    EXPECT_FALSE(FS::exists(h.path("/Library/Caches/A")));
    EXPECT_EQ(r.failures.size(), 1u);
    EXPECT_TRUE(r.failures[0].starts_with("Item multi: refused to touch ")) << r.failures[0];
    // The next item still runs.
    EXPECT_EQ(r.removedIDs, std::set<std::string>{"next"});
    EXPECT_FALSE(FS::exists(h.path("/Library/Caches/C")));
}

TEST(RemoverRun, LinksInsideAnItemAndAnItemThatIsALinkLoseOnlyTheLink) {
    Home h;
    h.tree.file("keep/inner/precious.txt", 100);
    h.tree.file("keep/top.txt", 100);
    h.tree.file("Library/Caches/App/own.bin", 100);
    h.tree.symLink(h.path("/keep"), "Library/Caches/App/to-folder");
    h.tree.symLink(h.path("/keep/top.txt"), "Library/Caches/App/to-file");
    h.tree.symLink("/nonexistent/target", "Library/Caches/App/dangling");
    h.tree.symLink(h.path("/keep/inner"), "Library/Caches/Link");
    auto r = Remover::run({item("app", {h.path("/Library/Caches/App")}), item("link", {h.path("/Library/Caches/Link/")})},
                          {}, h.context);
    EXPECT_EQ(r.removed, 2) << (r.failures.empty() ? "" : r.failures[0]);
    EXPECT_FALSE(FS::exists(h.path("/Library/Caches/App")));
    EXPECT_FALSE(FS::exists(h.path("/Library/Caches/Link")));
    EXPECT_TRUE(FS::isFile(h.path("/keep/inner/precious.txt")));
    EXPECT_TRUE(FS::isFile(h.path("/keep/top.txt")));
}

TEST(RemoverRun, OddNamesInsideAnItemAreRemoved) {
    Home h;
    h.tree.file("Library/Caches/App/bad\xff\xfe", 10);
    h.tree.file("Library/Caches/App/line\nbreak/x", 10);
    h.tree.file("Library/Caches/App/ blank /-dash", 10);
    h.tree.file("Library/Caches/App/" + std::string(255, 'n'), 10);
    auto r = Remover::run({item("odd", {h.path("/Library/Caches/App")})}, {}, h.context);
    EXPECT_EQ(r.removed, 1);
    EXPECT_FALSE(FS::exists(h.path("/Library/Caches/App")));
}

TEST(RemoverRun, ANameLongerThanTheSystemAllowsFailsWithASentence) {
    Home h;
    h.tree.dir("Library/Caches");
    h.context.home = h.tree.root();
    auto r = Remover::run({item("long", {h.path("/Library/Caches/" + std::string(4000, 'a'))}),
                           item("long-trash", {h.path("/Library/Caches/" + std::string(4000, 'b'))}, Removal::trash())},
                          {}, h.context);
    ASSERT_EQ(r.failures.size(), 2u);
    EXPECT_TRUE(r.failures[0].starts_with("Item long: could not reach ~/Library/Caches/aaa")) << r.failures[0];
    EXPECT_TRUE(r.failures[0].ends_with(", file name too long")) << r.failures[0];
    EXPECT_TRUE(r.failures[1].starts_with("Item long-trash: Could not reach ~/Library/Caches/bbb")) << r.failures[1];
    EXPECT_TRUE(r.failures[1].ends_with(": file name too long.")) << r.failures[1];
    EXPECT_EQ(r.removed, 0);
}

TEST(RemoverRun, PathsThatVanishBeforeTheirTurnCountAsDone) {
    Home h;
    h.tree.file("Library/Caches/A/f", 10);
    h.tree.file("Library/Caches/B/f", 10);
    h.tree.file("Library/Caches/T/f", 10);
    auto r = Remover::run({item("a", {h.path("/Library/Caches/A")}), item("b", {h.path("/Library/Caches/B")}),
                           item("t", {h.path("/Library/Caches/T")}, Removal::trash(), 77)},
                          [&](int done, const std::string&) {
                              std::error_code ec;
                              if (done == 1) std::filesystem::remove_all(h.path("/Library/Caches/B"), ec);
                              if (done == 2) std::filesystem::remove_all(h.path("/Library/Caches/T"), ec);
                          },
                          h.context);
    EXPECT_EQ(r.removed, 3);
    EXPECT_TRUE(r.failures.empty());
    EXPECT_EQ(r.trashedBytes, 77); // a trash item with nothing left to move still counts as done
}

TEST(RemoverRun, FailingCommandsReportTheirLastLineOfText) {
    auto r = Remover::run(
        {item("ends-empty", {}, Removal::command({"/bin/sh", "-c", "echo first; echo '  last words  '; echo; echo '   '; exit 3"})),
         item("silent", {}, Removal::command({"/bin/sh", "-c", "exit 4"})),
         item("empty", {}, Removal::command({})),
         item("ok", {}, Removal::command({"/bin/sh", "-c", "echo fine; exit 0"})),
         item("absent", {}, Removal::command({"/no/such/program"}))},
        {}, Remover::Context::forLayout(Layout::macos("/nowhere"), {}));
    ASSERT_EQ(r.failures.size(), 3u);
    EXPECT_EQ(r.failures[0], "Item ends-empty: last words");
    EXPECT_EQ(r.failures[1], "Item silent: exited with 4");
    EXPECT_TRUE(r.failures[2].starts_with("Item absent: ")) << r.failures[2];
    EXPECT_GT(r.failures[2].size(), std::string("Item absent: ").size());
    EXPECT_EQ(r.removedIDs, (std::set<std::string>{"empty", "ok"}));
}

TEST(RemoverRun, ADryRunTouchesNothingAndPausesByTheSize) {
    for (bool fails : {false, true}) {
        Home h;
        h.tree.file("Library/Caches/A/f", 10);
        h.tree.file("Library/Caches/B/f", 10);
        h.tree.file("Library/Caches/C/f", 10);
        h.context.dryRun = {true, fails};
        std::vector<double> pauses;
        h.context.pause = [&](double s) { pauses.push_back(s); };
        auto r = Remover::run({item("t", {h.path("/Library/Caches/C")}, Removal::trash(), 4'000'000'000),
                               item("a", {h.path("/Library/Caches/A")}, Removal::deleteForGood(), 800'000'000),
                               item("c", {}, Removal::command({"/bin/sh", "-c", "exit 9"}), 0),
                               item("b", {h.path("/Library/Caches/B")}, Removal::deleteForGood(), 20'000'000'000)},
                              {}, h.context);
        EXPECT_TRUE(FS::isFile(h.path("/Library/Caches/A/f")));
        EXPECT_TRUE(FS::isFile(h.path("/Library/Caches/B/f")));
        EXPECT_TRUE(FS::isFile(h.path("/Library/Caches/C/f")));
        // In order of work: a (0.1 s), b (capped at 1.2 s), t (0.5 s), c; each plus 0.35 s.
        ASSERT_EQ(pauses.size(), 4u);
        EXPECT_DOUBLE_EQ(pauses[0], 0.1 + 0.35);
        EXPECT_DOUBLE_EQ(pauses[1], 1.2 + 0.35);
        EXPECT_DOUBLE_EQ(pauses[2], 0.5 + 0.35);
        EXPECT_DOUBLE_EQ(pauses[3], 0.35);
        if (!fails) {
            EXPECT_EQ(r.removed, 4);
            EXPECT_TRUE(r.failures.empty());
            EXPECT_EQ(r.pretendFreed, 20'800'000'000);
            EXPECT_EQ(r.trashedBytes, 4'000'000'000);
        } else {
            // Indices 1 and 3 of the order of work fail; 0 and 2 succeed.
            EXPECT_EQ(r.failures, (std::vector<std::string>{"Item b: dry run, pretended to fail",
                                                            "Item c: dry run, pretended to fail"}));
            EXPECT_EQ(r.removedIDs, (std::set<std::string>{"a", "t"}));
            EXPECT_EQ(r.pretendFreed, 800'000'000);
            EXPECT_EQ(r.trashedBytes, 4'000'000'000);
        }
    }
}

namespace {

// Keeps recreating files in `folder` (and the folder) until stopped, as a running app would,
// from a few threads so that the folder is seldom empty.
struct Recreator {
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    explicit Recreator(const std::string& folder) {
        for (int k = 0; k < 3; ++k)
            threads.emplace_back([this, folder, k] {
                std::string file = folder + "/file" + std::to_string(k);
                while (!stop.load()) {
                    mkdir(folder.c_str(), 0755);
                    int fd = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
                    if (fd >= 0) close(fd);
                }
            });
    }
    ~Recreator() {
        stop = true;
        for (auto& t : threads) t.join();
    }
};

} // namespace

TEST(RemoverRun, SomethingRecreatedWhileDeletingEndsPartlyCleared) {
    for (bool open : {true, false}) {
        // The writers may lose the race now and then; rounds make the outcome certain.
        std::optional<std::string> failure;
        for (int round = 0; round < 40 && !failure; ++round) {
            Home h;
            h.tree.file("Library/Caches/Busy/old.bin", 1000);
            CleanItem busy = item("busy", {h.path("/Library/Caches/Busy")});
            busy.note = open ? "open now · 3 MB" : "used 2 days ago";
            RemovalResult r;
            {
                Recreator writer(h.path("/Library/Caches/Busy"));
                r = Remover::run({busy}, {}, h.context);
            }
            EXPECT_FALSE(FS::exists(h.path("/Library/Caches/Busy/old.bin")));
            if (!r.failures.empty()) failure = r.failures[0];
        }
        ASSERT_TRUE(failure.has_value());
        EXPECT_EQ(*failure, open ? "Item busy: partly cleared, the app is still open"
                                 : "Item busy: partly cleared, something is still writing to it");
    }
}
