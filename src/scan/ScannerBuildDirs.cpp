// Build folders: one walk of the home folder finds what a reinstall brings back, and each
// project's folders become one row. Work of the last week starts unticked, and a project in
// which a process works is locked.
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "foundation/HomeBound.h"
#include "foundation/Text.h"
#include "foundation/Walker.h"
#include "scan/BuildFolders.h"
#include "scan/Scanner.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <map>

std::vector<std::string> Scanner::findBuildDirs() {
    // The walk lives off the folder listings alone: no file is asked for anything, links are not
    // followed and other volumes not entered; every decision is made before a folder is opened.
    // The home folder itself may be reached through a link.
    class Search : public Walker::Visitor {
    public:
        Search(Scanner& s, std::atomic<int>& c) : scanner(s), checked(c) {}
        std::vector<std::string> found;

        bool admit(const Walker::Entry& e) override {
            const auto& t = scanner.layout.scan;
            const int n = ++checked;
            if (n % 500 == 0) scanner.publish(false, [n](ScanProgress& p) { p.checked = std::max(p.checked, n); });
            if (e.level >= 10) return false;
            const std::string_view name = e.name;
            if (e.level == 1 && t.skipTop.contains(name)) return false;
            if (t.buildDirNames.contains(name)) return record(e.path());
            if (auto marked = t.markerDirs.find(name); marked != t.markerDirs.end())
                for (const auto& marker : marked->second)
                    if (fstatat(e.at, marker.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0) return record(e.path());
            if (name == BuildFolders::deployDir) {
                const std::string output = std::string(name) + "/" + std::string(BuildFolders::deployOutput);
                if (fstatat(e.at, output.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode))
                    record(e.path() + "/" + std::string(BuildFolders::deployOutput));
                return false;
            }
            // Hidden folders and single-document bundles are not walked.
            if (name.starts_with(".")) return false;
            return !t.bundleExts.contains(FS::extension(name));
        }
        std::optional<Walker::Enter> folder(const Walker::Entry&, int) override { return Walker::Enter{}; }
        void other(const Walker::Entry&) override {}

    private:
        Scanner& scanner;
        std::atomic<int>& checked;
        struct stat st {};
        bool record(std::string path) {
            found.push_back(std::move(path));
            return false;
        }
    };

    std::atomic<int> checked{0};
    Walker::Options options;
    options.need = Walker::Need::names;
    options.followRoot = true;
    options.cancel = cancel.get();
    std::vector<std::string> found;
    for (auto& search : Walker::walk<Search>({{home, 0}}, options, [&] { return std::make_unique<Search>(*this, checked); }))
        found.insert(found.end(), search->found.begin(), search->found.end());
    // Threads find them in no set order; a sorted list keeps every report the same.
    std::sort(found.begin(), found.end());
    // The walk follows no link, but a folder may have been swapped for one since it was met.
    std::erase_if(found, [&](const std::string& d) { return !HomeBound::admit(d, home); });
    const int total = checked;
    publish(true, [total](ScanProgress& p) { p.checked = total; });
    return found;
}

std::optional<TimePoint> Scanner::lastActivity(const std::string& root, const std::vector<std::string>& dirs) const {
    std::optional<TimePoint> newest;
    auto consider = [&](const std::string& path) {
        if (auto m = FS::mtime(path, now); m && (!newest || *m > *newest)) newest = m;
    };
    std::set<std::string> left{".DS_Store", std::string(BuildFolders::deployDir)};
    for (const auto& d : dirs) left.insert(FS::lastComponent(d));
    for (const auto& name : FS::children(root))
        if (!left.contains(name)) consider(root + "/" + name);

    const std::string git = root + "/.git";
    if (FS::isDir(git)) {
        for (const char* f : {"index", "HEAD", "FETCH_HEAD"}) consider(git + "/" + f);
    } else if (FS::isFile(git)) {
        // A worktree: ".git" names the folder that holds its index and HEAD.
        auto text = FS::readText(git, 4096);
        if (text && text->starts_with("gitdir:")) {
            std::string folder = Text::trim(std::string_view(*text).substr(7));
            for (const char* f : {"index", "HEAD"}) consider(folder + "/" + f);
        }
    }
    for (const auto& d : dirs) {
        consider(d + "/trace");
        consider(d + "/cache");
    }
    return newest;
}

std::optional<std::string> Scanner::busyReason(const std::string& root) const {
    const std::string below = root + "/";
    std::set<std::string> words;
    bool any = false;
    for (const auto& p : procs) {
        if (p.cwd != root && !p.cwd.starts_with(below)) continue;
        any = true;
        if (auto w = BuildFolders::word(p.name, layout.scan.busyWords); !w.empty()) words.insert(w);
    }
    if (!any) return std::nullopt;
    return "In use by " + BuildFolders::busyWord(words, layout.scan.busyNames) + " · kept";
}

std::vector<Candidate> Scanner::projects() {
    std::map<std::string, std::vector<std::string>> byRoot;
    for (const auto& d : buildDirs) byRoot[BuildFolders::projectRoot(d, home)].push_back(d);

    std::vector<Candidate> out;
    for (auto& [root, dirs] : byRoot) {
        std::sort(dirs.begin(), dirs.end());
        auto activity = lastActivity(root, dirs);
        Candidate c;
        c.id = "project:" + root;
        c.tier = Tier::rebuildable;
        c.name = FS::lastComponent(root);
        c.location = FS::tilde(root, home);
        c.note = BuildFolders::joinLabels(dirs);
        if (activity) c.note += " · changed " + Fmt::day(*activity, now);
        c.paths = dirs;
        c.reveal = dirs;
        c.removal = Removal::deleteForGood();
        c.minSize = 20 * MB;
        // Work of the last seven days starts unticked.
        c.defaultOn = !activity || secondsBetween(*activity, now) >= weekSeconds;
        c.lockedReason = busyReason(root);
        out.push_back(std::move(c));
    }
    return out;
}
