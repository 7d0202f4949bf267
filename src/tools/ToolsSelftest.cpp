// The --selftest check: a scratch tree held against the measuring, the guards and the removal.
// Each group of checks is one function below; groups of later subsystems join the list in
// Tools::selftest.
#include "foundation/CleanItem.h"
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "tools/Tools.h"
#include "monitor/Leftovers.h"
#include "platform/Layout.h"
#include "projects/ProjectGroups.h"
#include "removal/Eraser.h"
#include "removal/Remover.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace {

class Checks {
public:
    // One line a check. A label that ends in "(" goes on with the figures and ")".
    void check(std::string_view label, bool ok, std::string_view figures = {}) {
        if (!ok) passed = false;
        std::string line = std::string(ok ? "PASS " : "FAIL ") + std::string(label);
        if (label.ends_with("(")) line += std::string(figures) + ")";
        std::puts(line.c_str());
    }
    // A check this machine cannot hold; it does not fail the run.
    void skip(std::string_view label, std::string_view why) {
        std::string line = "SKIP " + std::string(label);
        if (label.ends_with("(")) line += std::string(why) + ")";
        std::puts(line.c_str());
    }
    bool passed = true;
};

struct Scratch {
    std::string root;

    [[nodiscard]] std::string path(std::string_view rel) const { return root + std::string(rel); }

    // Writes `size` bytes of real data, making the folders on the way.
    bool file(std::string_view rel, std::size_t size) const {
        std::string p = path(rel);
        std::error_code ec;
        std::filesystem::create_directories(FS::parent(p), ec);
        int fd = open(p.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        if (fd < 0) return false;
        std::vector<char> chunk(std::min<std::size_t>(size, 1 << 16), 's');
        std::size_t left = size;
        bool ok = true;
        while (left > 0 && ok) {
            std::size_t n = std::min(left, chunk.size());
            ok = ::write(fd, chunk.data(), n) == static_cast<ssize_t>(n);
            left -= n;
        }
        return close(fd) == 0 && ok;
    }
    bool link(std::string_view existing, std::string_view rel) const {
        return ::link(path(existing).c_str(), path(rel).c_str()) == 0;
    }
    [[nodiscard]] int64_t allocated(std::string_view rel) const {
        struct stat st {};
        return lstat(path(rel).c_str(), &st) == 0 ? static_cast<int64_t>(st.st_blocks) * 512 : 0;
    }
};

// The tree: caches, a project with a hard link to a file kept outside it, two links inside one
// folder, and a file with a block-sharing copy.
bool build(const Scratch& s) {
    std::error_code ec;
    bool ok = s.file("/Library/Caches/AppX/one.bin", 100'000) && s.file("/Library/Caches/AppX/sub/two.bin", 200'000) &&
              s.file("/Documents/proj/package.json", 40) && s.file("/Documents/proj/node_modules/pkg/index.js", 3'000) &&
              s.file("/outside/shared.bin", 1'000'000) &&
              s.link("/outside/shared.bin", "/Documents/proj/node_modules/pkg/shared.bin") &&
              s.file("/inside/x.bin", 500'000) && s.link("/inside/x.bin", "/inside/x-again.bin") &&
              s.file("/clones/original.bin", 1'000'000);
    std::filesystem::create_directories(s.path("/clones2"), ec);
    return ok && !ec;
}

// Makes "/clones2/copy.bin" share the blocks of the original; false where the file system
// cannot.
bool reflink(const Scratch& s) {
    int from = open(s.path("/clones/original.bin").c_str(), O_RDONLY | O_CLOEXEC);
    if (from < 0) return false;
    int to = open(s.path("/clones2/copy.bin").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    bool ok = to >= 0 && ioctl(to, FICLONE, from) == 0;
    if (to >= 0) close(to);
    close(from);
    if (!ok) unlink(s.path("/clones2/copy.bin").c_str());
    return ok;
}

void measuring(Checks& c, const Scratch& s) {
    const int64_t shared = s.allocated("/outside/shared.bin");
    Measured m = FS::measure({s.path("/Documents/proj/node_modules")});
    c.check("a hard link held elsewhere is not counted (", m.shared == shared && shared > 0 && m.exclusive < shared,
            Fmt::bytes(m.exclusive) + " / shared " + Fmt::bytes(m.shared));

    const int64_t x = s.allocated("/inside/x.bin");
    m = FS::measure({s.path("/inside")});
    c.check("two links inside one item count once (", x > 0 && m.shared == 0 && m.exclusive >= x && m.exclusive < 2 * x,
            Fmt::bytes(m.exclusive));

    m = FS::measure({s.path("/outside"), s.path("/Documents/proj/node_modules")});
    c.check("selecting both sides frees the shared file (", m.shared == 0 && m.exclusive >= shared,
            Fmt::bytes(m.exclusive));

    const char* cloneLabel = "a reflinked copy of a file kept elsewhere frees nothing (";
    if (!reflink(s)) {
        c.skip(cloneLabel, "this file system has no reflinks");
        return;
    }
    const int64_t original = s.allocated("/clones/original.bin");
    m = FS::measure({s.path("/clones2")});
    c.check(cloneLabel, original > 0 && m.exclusive < original / 2, Fmt::bytes(m.exclusive));
}

void guards(Checks& c, const Scratch& s, const Remover::Context& context) {
    auto safe = [&](std::string_view path) { return Remover::isSafe(path, context); };
    c.check("refuses the root itself", !safe(s.root) && !safe(s.root + "/"));
    c.check("refuses one level below the root", !safe(s.path("/anything")) && !safe(s.path("/Library")));
    c.check("refuses protected folders", !safe(s.path("/Library/Caches")) && !safe(s.path("/Documents")));
    c.check("refuses paths outside the root", !safe("/tmp/a/b") && !safe("/"));
    c.check("refuses dot-dot tricks", !safe(s.path("/Library/Caches/../../x")) && !safe(s.root + "//Documents"));
    c.check("accepts a cache folder", safe(s.path("/Library/Caches/AppX")) && safe(s.path("/Library/Caches/AppX/")));
}

CleanItem item(std::string id, std::vector<std::string> paths, Removal removal = Removal::deleteForGood()) {
    CleanItem i;
    i.name = id;
    i.id = std::move(id);
    i.paths = std::move(paths);
    i.removal = std::move(removal);
    return i;
}

void removal(Checks& c, const Scratch& s, const Remover::Context& context) {
    std::vector<CleanItem> items = {
        item("cache", {s.path("/Library/Caches/AppX")}),
        item("project", {s.path("/Documents/proj/node_modules")}),
        item("protected", {s.path("/Documents")}),
        item("command", {}, Removal::command({"/bin/sh", "-c", "exit 0"})),
        item("missing", {s.path("/Library/Caches/Nope")}),
    };
    RemovalResult r = Remover::run(items, {}, context);
    auto removed = [&](const char* id) { return r.removedIDs.count(id) == 1; };
    c.check("deleted the cache folder", removed("cache") && !FS::exists(s.path("/Library/Caches/AppX")));
    c.check("deleted node_modules and kept the project", removed("project") &&
                                                             !FS::exists(s.path("/Documents/proj/node_modules")) &&
                                                             FS::isFile(s.path("/Documents/proj/package.json")));
    c.check("the shared file survives through its other link",
            FS::isFile(s.path("/outside/shared.bin")) && s.allocated("/outside/shared.bin") > 0);
    bool refusedLine = std::any_of(r.failures.begin(), r.failures.end(), [](const std::string& f) {
        return f.starts_with("protected: refused to touch ");
    });
    c.check("refused the protected folder", !removed("protected") && refusedLine && FS::isDir(s.path("/Documents")));
    c.check("command and missing path count as done (", removed("command") && removed("missing"),
            std::to_string(r.removed) + " of " + std::to_string(items.size()) + " done");
    c.check("removed items are named, refused ones are not",
            r.removedIDs == std::set<std::string>{"cache", "project", "command", "missing"} && r.removed == 4 &&
                r.failures.size() == 1);
}

void ordering(Checks& c) {
    auto ordered = Remover::order({item("t", {}, Removal::trash()), item("c", {}, Removal::command({"/bin/true"})),
                                   item("d", {})});
    std::vector<std::string> ids;
    for (const auto& i : ordered) ids.push_back(i.id);
    c.check("deletions go first, then the Trash, then commands", ids == std::vector<std::string>{"d", "t", "c"});
}

void words(Checks& c) {
    c.check("days read as words", Fmt::days(1) == "1 day" && Fmt::days(3) == "3 days");
    c.check("memory in binary units", Fmt::ram(int64_t(16) << 30) == "16 GB" && Fmt::ram(int64_t(8) << 30) == "8 GB");
}

// What the Projects view and the leftovers are called: a tool by its name and command, a
// module by its name, and a workspace only where its folder names its apps.
void names(Checks& c, const Scratch& s) {
    const std::string home = s.root;
    c.check("leftover label reads the tool and its command",
            Leftovers::label({"/usr/bin/node", home + "/.npm/_npx/4b2c/node_modules/.bin/wrangler", "dev", "--port", "8787"},
                             "node") == "wrangler dev");
    c.check("leftover label for a python module",
            Leftovers::label({"python3", "-m", "http.server", "8000"}, "python3") == "http.server");
    const bool named = Projects::groupName(home + "/code/shop", {home + "/code/shop/shop-admin", home + "/code/shop/shop-web"},
                                           home) == std::optional<std::string>("shop");
    const bool worktrees = !Projects::groupName(home + "/code/worktrees",
                                                {home + "/code/worktrees/a-cf", home + "/code/worktrees/b-cf"}, home);
    c.check("a group needs a folder named like its apps", named && worktrees);
}

// A fresh folder of our own below `folder`, so that nothing already there is touched.
std::optional<std::string> makeScratch(const std::string& folder, std::string& why) {
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    std::string pattern = (folder.ends_with("/") ? folder : folder + "/") + "sorrelin-selftest-XXXXXX";
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    if (!mkdtemp(buffer.data())) {
        why = std::strerror(errno);
        return std::nullopt;
    }
    char* real = realpath(buffer.data(), nullptr);
    if (!real) {
        why = std::strerror(errno);
        return std::nullopt;
    }
    std::string out = real;
    std::free(real);
    return out;
}

} // namespace

bool Tools::selftest(const std::string& folder) {
    Checks c;
    std::string why;
    auto root = folder.empty() ? std::nullopt : makeScratch(folder, why);
    if (!root) {
        c.check("made a scratch tree in " + FS::tilde(folder) + " (", false, why.empty() ? "no folder given" : why);
        std::puts("SOME FAILED");
        return false;
    }
    Scratch s{*root};
    // The removal works in the scratch tree alone, with the protected list of the layout the
    // table speaks of, and for real whatever SORRELIN_DRYRUN says.
    Remover::Context context = Remover::Context::forLayout(Layout::macos(s.root), DryRun::Mode{});
    context.allowedRoots = {s.root};

    if (!build(s)) {
        c.check("made a scratch tree in " + FS::tilde(s.root) + " (", false, std::strerror(errno));
    } else {
        measuring(c, s);
        guards(c, s, context);
        removal(c, s, context);
    }
    ordering(c);
    words(c);
    names(c, s);

    (void)Eraser::erase(s.root);
    std::puts(c.passed ? "ALL PASSED" : "SOME FAILED");
    std::fflush(stdout);
    return c.passed;
}
