// Build folders: one walk of the home folder finds what a reinstall brings back, and each
// project's folders become one row. Work of the last week starts unticked, and a project in
// which a process works is locked.
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "foundation/HomeBound.h"
#include "foundation/Text.h"
#include "scan/BuildFolders.h"
#include "scan/Scanner.h"

#include <algorithm>
#include <map>

std::vector<std::string> Scanner::findBuildDirs() {
    const auto& t = layout.scan;
    std::vector<std::string> found;
    int checked = 0;
    // No stat of files: entries come from the directory listings alone (the C library still
    // stats each directory to report it), links are not followed, other volumes not entered.
    // The home folder itself may be reached through a link.
    const int options = FTS_NOCHDIR | FTS_NOSTAT | FTS_PHYSICAL | FTS_XDEV | FTS_COMFOLLOW;
    FS::walk(home, options, [this] { return cancelled(); }, [&](FTS* fts, FTSENT* e) {
        if (e->fts_info != FTS_D || e->fts_level < 1) return;
        ++checked;
        if (checked % 500 == 0) publish(false, [&](ScanProgress& p) { p.checked = checked; });
        auto skip = [&] { fts_set(fts, e, FTS_SKIP); };
        if (e->fts_level >= 10) return skip();
        std::string_view name(e->fts_name, e->fts_namelen);
        if (e->fts_level == 1 && t.skipTop.contains(name)) return skip();
        std::string path(e->fts_path, e->fts_pathlen);
        if (t.buildDirNames.contains(name)) {
            found.push_back(std::move(path));
            return skip();
        }
        if (auto marked = t.markerDirs.find(name); marked != t.markerDirs.end()) {
            std::string parent = path.substr(0, path.size() - name.size());
            for (const auto& marker : marked->second)
                if (FS::exists(parent + marker)) {
                    found.push_back(std::move(path));
                    return skip();
                }
        }
        if (name == BuildFolders::deployDir) {
            std::string output = path + "/" + std::string(BuildFolders::deployOutput);
            if (FS::isDir(output)) found.push_back(std::move(output));
            return skip();
        }
        // Hidden folders and single-document bundles are not walked.
        if (name.starts_with(".")) return skip();
        if (t.bundleExts.contains(FS::extension(name))) return skip();
    });
    publish(true, [&](ScanProgress& p) { p.checked = checked; });
    // The walk follows no link, but a folder may have been swapped for one since it was met.
    std::erase_if(found, [&](const std::string& d) { return !HomeBound::admit(d, home); });
    return found;
}

std::optional<TimePoint> Scanner::lastActivity(const std::string& root, const std::vector<std::string>& dirs) const {
    std::optional<TimePoint> newest;
    auto consider = [&](const std::string& path) {
        if (auto m = FS::mtime(path); m && (!newest || *m > *newest)) newest = m;
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
