// Hostile homes: linked cache and user folders, XDG variables and user-dirs.dirs that name "/",
// a home that is itself a link. The reports offer nothing outside the home, a clean of crafted
// items deletes nothing outside it, and every report measures a linked home as the folder it
// names.
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "foundation/Text.h"
#include "platform/Layout.h"
#include "removal/Remover.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"
#include "support/TreeListing.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <map>

namespace {

constexpr int64_t MiB = 1 << 20;

// Allocated, not written: the reports count blocks, and this is quick on any disk.
void allocated(const std::string& path, int64_t size) {
    int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    ASSERT_GE(fd, 0) << path;
    int e = posix_fallocate(fd, 0, size);
    if (e != 0) { // a file system without fallocate: write it
        std::string block(1 << 16, 'x');
        for (int64_t done = 0; done < size; done += static_cast<int64_t>(block.size()))
            ASSERT_GT(::write(fd, block.data(), block.size()), 0);
    }
    close(fd);
}

int lineOf(const std::vector<std::string>& lines, std::string_view part) {
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (lines[i].find(part) != std::string::npos) return static_cast<int>(i);
    return -1;
}

// A tmpfs of its own for the duration of a test, detached at the end.
struct Volume {
    std::string point;
    int error = 0;
    explicit Volume(std::string at) : point(std::move(at)) {
        if (mount("tmpfs", point.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "size=64m,mode=0755") != 0) error = errno;
    }
    ~Volume() {
        if (error == 0) umount2(point.c_str(), MNT_DETACH);
    }
};

} // namespace

TEST(HostileHomeE2E, TheScanOffersNothingOutsideTheHome) {
    struct Case {
        const char* what;
        std::function<void(TempTree&, std::map<std::string, std::string>&)> make;
        const char* logged; // a line the log must hold
    };
    const std::vector<Case> cases{
        {"~/.cache links to /", [](TempTree& h, auto&) { h.symLink("/", ".cache"); },
         "left out ~/.cache: the way to it runs through a symbolic link"},
        {"~/Downloads links to /", [](TempTree& h, auto&) { h.symLink("/", "Downloads"); },
         "left out ~/Downloads: the way to it runs through a symbolic link"},
        {"XDG_CACHE_HOME is /", [](TempTree&, auto& env) { env["XDG_CACHE_HOME"] = "/"; },
         "XDG_CACHE_HOME names /, outside the home folder"},
        {"user-dirs.dirs names /",
         [](TempTree& h, auto&) { h.text(".config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"/\"\nXDG_DOCUMENTS_DIR=\"/usr\"\n"); },
         "XDG_DOWNLOAD_DIR names /, outside the home folder"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        TempTree home;
        auto env = homeEnvironment(home.root());
        env["FENNELBOX_LOG"] = home.path("log.txt");
        c.make(home, env);
        auto run = runProgram(SORRELIN_EXE, {"--scan"}, env);
        ASSERT_EQ(run.status, 0) << run.err;
        auto lines = Text::split(run.out, '\n', true);
        // The generated home holds nothing worth clearing, so every tier is empty: "/tmp",
        // "/usr" and the rest were not offered.
        EXPECT_GE(lineOf(lines, "== Safe to clear · 0 bytes · 0 items =="), 0) << run.out;
        EXPECT_GE(lineOf(lines, "== Rebuildable · 0 bytes · 0 items =="), 0) << run.out;
        EXPECT_GE(lineOf(lines, "== Your call · 0 bytes · 0 items =="), 0) << run.out;
        EXPECT_NE(FS::readText(home.path("log.txt")).value_or("").find(c.logged), std::string::npos)
            << FS::readText(home.path("log.txt")).value_or("<no log>");
    }
}

TEST(HostileHomeE2E, ACleanOfItemsThroughLinksDeletesNothingOutsideTheHome) {
    TempTree scratch;
    Volume volume(scratch.dir("volume"));
    if (volume.error != 0)
        GTEST_SKIP() << "a tmpfs of the test's own could not be mounted (" << std::strerror(volume.error)
                     << "); mounting needs the superuser";
    const std::string home = volume.point + "/home", outside = volume.point + "/outside";
    plantCanary(outside);
    allocated(outside + "/usrstuff/big.iso", 20 * MiB);
    ASSERT_EQ(mkdir(home.c_str(), 0755), 0);
    ASSERT_EQ(mkdir((home + "/.local").c_str(), 0755), 0);
    ASSERT_EQ(symlink(outside.c_str(), (home + "/.cache").c_str()), 0);
    ASSERT_EQ(symlink(outside.c_str(), (home + "/Downloads").c_str()), 0);
    ASSERT_EQ(symlink(outside.c_str(), (home + "/.local/share").c_str()), 0);
    ASSERT_EQ(mkdir((outside + "/Trash").c_str(), 0755), 0); // looks like the Trash of ~/.local/share
    ASSERT_EQ(mkdir((outside + "/Trash/files").c_str(), 0755), 0);
    allocated(outside + "/Trash/files/kept.bin", MiB);
    const std::string before = treeListing(outside);

    // The built program first: its scan of this home offers nothing.
    auto env = homeEnvironment(home);
    auto run = runProgram(SORRELIN_EXE, {"--scan"}, env);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("== Your call · 0 bytes · 0 items =="), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("== Safe to clear · 0 bytes · 0 items =="), std::string::npos) << run.out;

    // Then a clean of crafted items, as the application runs it, with the home's own layout.
    Layout layout = Layout::linux(home, [&](const char* name) -> std::optional<std::string> {
        auto it = env.find(name);
        if (it == env.end() || it->second.empty()) return std::nullopt;
        return it->second;
    });
    auto context = Remover::Context::forLayout(layout, {});
    context.mountinfo = scratch.path("no-mounts");
    auto item = [](std::string id, std::vector<std::string> paths, Removal removal) {
        CleanItem i;
        i.id = i.name = std::move(id);
        i.paths = std::move(paths);
        i.removal = std::move(removal);
        return i;
    };
    auto r = Remover::run({item("tmp", {home + "/.cache/tmpstuff"}, Removal::deleteForGood()),
                           item("usr", {home + "/.cache/usrstuff/lib", home + "/.cache/one"}, Removal::deleteForGood()),
                           item("iso", {home + "/Downloads/usrstuff/big.iso"}, Removal::trash()),
                           item("direct", {outside + "/tmpstuff"}, Removal::deleteForGood())},
                          {}, context);
    EXPECT_EQ(r.removed, 0);
    EXPECT_EQ(r.failures.size(), 4u);
    EXPECT_NE(Remover::trash(home + "/Downloads/usrstuff/b.iso", context).problem, std::nullopt);
    EXPECT_NE(Remover::emptyTrash(context), std::nullopt);
    EXPECT_EQ(treeListing(outside), before);
}

TEST(HostileHomeE2E, AHomeThatIsALinkIsMeasuredAlikeByEveryReport) {
    TempTree tree;
    const std::string real = tree.dir("data/me");
    tree.symLink(real, "home/me");
    const std::string linked = tree.path("home/me");
    tree.file("data/me/Documents/report.bin", 3'000'000);
    tree.dir("data/me/Downloads");
    allocated(real + "/Downloads/disk.iso", 101 * MiB);
    const int64_t report = allocatedSize(real + "/Documents/report.bin");
    auto env = homeEnvironment(linked);

    auto growth = runProgram(SORRELIN_EXE, {"--growth"}, env);
    ASSERT_EQ(growth.status, 0) << growth.err;
    auto glines = Text::split(growth.out, '\n', true);
    int biggest = lineOf(glines, "Biggest in 14 days (");
    ASSERT_GE(biggest, 0) << growth.out;
    EXPECT_EQ(glines[biggest].find("(0 bytes in all)"), std::string::npos) << growth.out;
    EXPECT_GE(lineOf(glines, "Documents  · ~/Documents"), 0) << growth.out;
    EXPECT_GE(lineOf(glines, "Downloads  · ~/Downloads"), 0) << growth.out;

    auto scan = runProgram(SORRELIN_EXE, {"--scan"}, env);
    ASSERT_EQ(scan.status, 0) << scan.err;
    auto slines = Text::split(scan.out, '\n', true);
    int iso = lineOf(slines, "disk.iso");
    ASSERT_GE(iso, 0) << scan.out;
    EXPECT_NE(slines[iso].find("~/Downloads"), std::string::npos) << slines[iso];

    auto storage = runProgram(SORRELIN_EXE, {"--storage"}, env);
    ASSERT_EQ(storage.status, 0) << storage.err;
    EXPECT_NE(storage.out.find(Fmt::bytes(report)), std::string::npos) << storage.out;
    EXPECT_NE(storage.out.find("disk.iso"), std::string::npos) << storage.out;
    EXPECT_EQ(storage.out.find(linked), std::string::npos) << storage.out; // shown from "~", not the link
}
