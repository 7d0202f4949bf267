#include "storage/StorageScan.h"

#include "foundation/DiskInfo.h"
#include "foundation/FS.h"
#include "foundation/Walker.h"
#include "foundation/Text.h"
#include "platform/FileOpened.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace {

// The lower-cased extension of a name, without allocating for names that have none.
bool packageName(const char* name, std::size_t length) {
    const char* dot = static_cast<const char*>(memrchr(name, '.', length));
    if (!dot || dot == name) return false;
    std::size_t n = length - static_cast<std::size_t>(dot + 1 - name);
    if (n == 0 || n > 16) return false;
    char lower[17];
    for (std::size_t i = 0; i < n; ++i) {
        char c = dot[1 + i];
        lower[i] = (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return FileKinds::isPackage(std::string_view(lower, n));
}

bool biggerFirst(const BigFile& a, const BigFile& b) {
    if (a.bytes != b.bytes) return a.bytes > b.bytes;
    return a.path < b.path;
}

} // namespace

// What one thread measured of one unit, until it is merged.
struct StorageScan::Tally {
    int64_t total = 0;
    int count = 0;
    int bad = 0;
    std::vector<std::string> badPaths; // the first of them, for the map to name
    std::vector<BigFile> found;
    std::map<std::string, int64_t> projectBytes;
    std::map<std::string, int64_t> fileRows; // a split folder's files, by name
};

// One thread's part of a walk. A folder's tag is the path of the project it lies in (or 0),
// with the lowest bit set where it holds paths that other units own.
class StorageScan::Walk : public Walker::Visitor {
public:
    Walk(StorageScan& s, const std::vector<const Unit*>& u) : scan(s), units(u) {
        std::lock_guard guard(scan.lock);
        floor = scan.bigFloor;
    }

    bool admit(const Walker::Entry& e) override {
        // A split folder's folders are units of their own.
        return !units[e.root]->split && !claimedHere(e);
    }

    std::optional<Walker::Enter> folder(const Walker::Entry& e, int fd) override {
        if (e.level == 0 && !starting()) return std::nullopt;
        if (e.level > 0 && !tick()) return std::nullopt;
        const Unit& unit = *units[e.root];
        Tally& t = tallyOf(e.root);
        const Walker::Stat& st = *e.stat;
        if (e.mountPoint) return std::nullopt; // another volume: not entered, nor its bytes
        if (!unit.ownFilesOnly || st.owner == me) add(t, e.tag, st.bytes);
        if (unit.split && e.level == 0 && !e.error)
            return Walker::Enter{scan.claimParents.contains(unit.path) ? uintptr_t(1) : 0, false};
        if (unit.selfOnly) return std::nullopt;
        if (e.error) {
            if (unit.countsUnreadable && ++t.bad <= int(StorageCategory::namedUnreadable))
                t.badPaths.push_back(e.level == 0 ? unit.path : e.path());
            return std::nullopt;
        }
        Walker::Enter enter;
        const std::string* project = projectOf(e.tag);
        if (packageName(e.name.data(), e.name.size())) {
            packages.push_back({e.level, 0});
            enter.together = true;
        }
        const auto& markers = scan.layout.storage.projectMarkers;
        if (unit.findsProjects && !project && e.level < 5 && e.name != "node_modules" &&
            std::any_of(markers.begin(), markers.end(), [&](const std::string& m) { return holds(fd, m.c_str()); })) {
            std::lock_guard guard(scan.lock);
            project = &scan.projectPaths.emplace_back(e.path());
        }
        enter.tag = reinterpret_cast<uintptr_t>(project);
        if (scan.claimParents.contains(e.level == 0 ? std::string_view(unit.path) : std::string_view(e.path())))
            enter.tag |= 1;
        return enter;
    }

    void other(const Walker::Entry& e) override {
        if (e.level == 0 && !starting()) return;
        if (e.level > 0 && (!tick() || claimedHere(e))) return;
        const Unit& unit = *units[e.root];
        if (unit.split && e.level == 1) return splitFile(unit, e);
        if (unit.selfOnly) return;
        Tally& t = tallyOf(e.root);
        const Walker::Stat& st = *e.stat;
        if (unit.ownFilesOnly && st.owner != me) return;
        if (S_ISREG(st.mode)) {
            // Hard links: the first walk to meet the file owns its bytes.
            if (st.links >= 2 && !scan.links.insert(LinkSet::key(st.inode, st.device))) return;
            add(t, e.tag, st.bytes);
            countFile(t);
            if (st.bytes >= floor && packages.empty() && unit.kind != StorageKind::apps)
                t.found.push_back(BigFile{std::string(e.name), e.path(), st.bytes, FileKinds::of(e.name),
                                          projectOf(e.tag) ? StorageKind::projects : unit.kind,
                                          fileDate(st.modified, st.modifiedNanos, scan.started), std::nullopt});
            return;
        }
        add(t, e.tag, st.bytes);
        countFile(t);
    }

    // A file of a split folder: a row of its own, as a unit of one file would be.
    void splitFile(const Unit& unit, const Walker::Entry& e) {
        if (!scan.splitsOff(*unit.split, unit.path, e.name)) return;
        const Walker::Stat& st = *e.stat;
        if (S_ISREG(st.mode) && st.links >= 2 && !scan.links.insert(LinkSet::key(st.inode, st.device))) return;
        Tally& t = tallyOf(e.root);
        if (st.bytes > 0) t.fileRows[std::string(e.name)] += st.bytes;
        countFile(t);
        if (S_ISREG(st.mode) && st.bytes >= floor && unit.kind != StorageKind::apps)
            t.found.push_back(BigFile{std::string(e.name), e.path(), st.bytes, FileKinds::of(e.name), unit.kind,
                                      fileDate(st.modified, st.modifiedNanos, scan.started), std::nullopt});
    }

    void leave(const Walker::Entry& e, uintptr_t) override {
        if (packages.empty() || packages.back().level != e.level) return;
        Package p = packages.back();
        packages.pop_back();
        const Unit& unit = *units[e.root];
        if (p.bytes >= floor && unit.kind != StorageKind::apps) {
            std::string path = e.path();
            tallyOf(e.root).found.push_back(BigFile{std::string(e.name), path, p.bytes, FileKinds::of(path),
                                                    projectOf(e.tag) ? StorageKind::projects : unit.kind,
                                                    fileDate(e.stat->modified, e.stat->modifiedNanos, scan.started), std::nullopt});
        }
        if (!packages.empty()) packages.back().bytes += p.bytes;
    }

    // Hands what this thread measured to the scan.
    void flush() {
        for (auto& [i, tally] : tallies) scan.merge(*units[i], isFolder(i), tally);
        tallies.clear();
        sinceFlush = 0;
    }

    std::vector<char> folders; // per unit: 1 a folder, 0 not, -1 not known yet

private:
    struct Package {
        int level;
        int64_t bytes;
    };

    StorageScan& scan;
    const std::vector<const Unit*>& units;
    std::unordered_map<std::size_t, Tally> tallies; // by unit, only those this thread has met
    std::vector<Package> packages; // open packages of the part this thread walks alone
    int64_t floor = initialFloor;
    std::size_t seen = 0;
    std::size_t sinceFlush = 0;
    const uid_t me = getuid();

    static const std::string* projectOf(uintptr_t tag) { return reinterpret_cast<const std::string*>(tag & ~uintptr_t(1)); }

    static bool holds(int fd, const char* name) {
        struct stat st {};
        return fd >= 0 && fstatat(fd, name, &st, AT_SYMLINK_NOFOLLOW) == 0;
    }

    bool isFolder(std::size_t i) const { return folders.size() > i && folders[i] == 1; }

    // A path some other unit or rule owns is left to it.
    bool claimedHere(const Walker::Entry& e) const { return (e.tag & 1) && scan.claimed.contains(e.path()); }

    // A unit starts: not once the walk is cancelled.
    bool starting() {
        if (scan.cancelled()) return false;
        scan.maybeReport();
        return true;
    }

    bool tick() {
        if (++seen % 256 == 0) {
            if (++sinceFlush >= 64) flush(); // what partial reports show
            scan.maybeReport();
        }
        return true;
    }

    Tally& tallyOf(std::size_t root) { return tallies[root]; }

    void add(Tally& t, uintptr_t tag, int64_t bytes) {
        if (const std::string* project = projectOf(tag)) t.projectBytes[*project] += bytes;
        else t.total += bytes;
        if (!packages.empty()) packages.back().bytes += bytes;
    }

    void countFile(Tally& t) {
        if (++t.count % 4096 == 0) {
            std::lock_guard guard(scan.lock);
            floor = scan.bigFloor;
        }
    }
};

void StorageScan::merge(const Unit& unit, bool isFolder, Tally& t) {
    std::lock_guard guard(lock);
    totals[unit.kind] += t.total;
    if (!unit.selfOnly && (t.total > 0 || unit.kind == StorageKind::apps)) {
        auto [it, made] = entries.try_emplace({unit.kind, unit.item});
        if (made) it->second = Entry{unit.kind, unit.name, unit.detail, 0, isFolder, unit.reveal};
        it->second.bytes += t.total;
    }
    for (const auto& [path, bytes] : t.projectBytes) {
        totals[StorageKind::projects] += bytes;
        auto [it, made] = entries.try_emplace({StorageKind::projects, path});
        if (made)
            it->second = Entry{StorageKind::projects, FS::lastComponent(path), FS::tilde(FS::parent(path), home), 0,
                               true, std::nullopt};
        it->second.bytes += bytes;
    }
    for (const auto& [name, bytes] : t.fileRows) {
        totals[unit.kind] += bytes;
        const std::string path = unit.path + "/" + name;
        auto [it, made] = entries.try_emplace({unit.kind, path});
        if (made) it->second = Entry{unit.kind, splitTitle(name, *unit.split), unit.split->detail, 0, false, std::nullopt};
        it->second.bytes += bytes;
    }
    if (t.bad > 0) unreadable[unit.kind] += t.bad;
    auto& named = unreadableFolders[unit.kind];
    named.insert(named.end(), std::make_move_iterator(t.badPaths.begin()), std::make_move_iterator(t.badPaths.end()));
    files += t.count;
    if (!t.found.empty()) {
        big.insert(big.end(), std::make_move_iterator(t.found.begin()), std::make_move_iterator(t.found.end()));
        std::sort(big.begin(), big.end(), biggerFirst);
        if (big.size() > maxBig) big.resize(maxBig);
        if (big.size() == maxBig) bigFloor = std::max(bigFloor, big.back().bytes);
    }
}

void StorageScan::walkUnits(const std::vector<const Unit*>& batch) {
    // Rows are folders or not by their path, whichever thread first merges their bytes.
    std::vector<char> folders(batch.size(), 0);
    std::vector<Walker::Root> roots;
    std::vector<const Unit*> walked;
    for (const Unit* u : batch) {
        struct stat st {};
        const bool isFolder = lstat(u->path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
        if (u->bytes) {
            if (cancelled()) continue;
            Tally t;
            t.total = *u->bytes;
            merge(*u, isFolder, t);
            continue;
        }
        folders[walked.size()] = isFolder ? 1 : 0;
        walked.push_back(u);
        roots.push_back({u->path, 0});
    }
    if (roots.empty()) return;
    folders.resize(walked.size());
    Walker::Options options;
    options.cancel = cancel.get();
    auto walks = Walker::walk<Walk>(roots, options, [&] {
        auto w = std::make_unique<Walk>(*this, walked);
        w->folders = folders;
        return w;
    });
    for (auto& w : walks) w->flush();
}

void StorageScan::maybeReport() {
    if (!progress || !*progress) return;
    int64_t now = std::chrono::duration_cast<std::chrono::nanoseconds>(
                      std::chrono::steady_clock::now().time_since_epoch()).count();
    if (now < nextReport.load(std::memory_order_relaxed)) return;
    std::unique_lock guard(reportLock, std::try_to_lock);
    if (!guard.owns_lock() || now < nextReport.load()) return;
    nextReport = now + std::chrono::duration_cast<std::chrono::nanoseconds>(reportEvery).count();
    if (!progress || cancelled()) return;
    (*progress)(snapshot(false, {}));
}

StorageReport StorageScan::snapshot(bool complete, std::vector<AppSize> appList) {
    DiskInfo disk = DiskInfo::of(home);
    std::map<StorageKind, int64_t> totalsCopy;
    std::map<std::pair<StorageKind, std::string>, Entry> entriesCopy;
    std::map<StorageKind, int> unreadableCopy;
    std::map<StorageKind, std::vector<std::string>> unreadableFoldersCopy;
    StorageReport r;
    {
        std::lock_guard guard(lock);
        totalsCopy = totals;
        entriesCopy = entries;
        unreadableCopy = unreadable;
        unreadableFoldersCopy = unreadableFolders;
        r.biggest = big;
        r.files = files;
    }
    std::map<StorageKind, std::vector<StorageItem>> items;
    for (auto& [key, e] : entriesCopy) {
        if (e.bytes < 1) continue;
        items[e.kind].push_back(StorageItem{e.name, key.second, e.bytes, e.isFolder, e.detail, e.reveal});
    }
    const std::size_t cut = complete ? 14 : 6;
    for (StorageKind kind : StorageKinds::allCases) {
        int64_t total = totalsCopy[kind];
        int bad = unreadableCopy[kind];
        if (total <= 0 && bad <= 0) continue;
        auto& rows = items[kind];
        std::stable_sort(rows.begin(), rows.end(),
                         [](const StorageItem& a, const StorageItem& b) { return a.bytes > b.bytes; });
        if (rows.size() > cut) rows.resize(cut);
        // Walks of one kind run side by side: the names are sorted so that a report does not
        // depend on which walk came first.
        auto& named = unreadableFoldersCopy[kind];
        std::sort(named.begin(), named.end());
        if (named.size() > StorageCategory::namedUnreadable) named.resize(StorageCategory::namedUnreadable);
        r.categories.push_back(StorageCategory{kind, total, std::move(rows), bad, std::move(named)});
    }
    std::stable_sort(r.categories.begin(), r.categories.end(),
                     [](const StorageCategory& a, const StorageCategory& b) { return a.bytes > b.bytes; });
    if (complete) {
        std::vector<std::string> paths;
        for (const auto& f : r.biggest) paths.push_back(f.path);
        auto opened = FileOpened::dates(paths);
        for (std::size_t i = 0; i < r.biggest.size(); ++i) r.biggest[i].opened = opened[i];
    }
    r.apps = std::move(appList);
    r.made = Clock::now();
    r.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - startedSteady).count();
    r.diskTotal = disk.total;
    r.diskUsed = disk.used();
    r.diskReserved = disk.reserved;
    r.complete = complete;
    return r;
}

std::vector<AppSize> StorageScan::appSizes() {
    std::vector<std::pair<std::string, Entry>> appEntries;
    std::map<std::string, int64_t> data; // lower-cased folder name to bytes
    {
        std::lock_guard guard(lock);
        for (const auto& [key, e] : entries) {
            if (e.kind == StorageKind::apps) appEntries.emplace_back(key.second, e);
            if (e.kind == StorageKind::appData) {
                std::string name = Text::lower(FS::lastComponent(key.second));
                // ~/.mozilla and ~/.cache/mozilla are one app's data.
                if (name.size() > 1 && name.front() == '.') name.erase(0, 1);
                data[name] += e.bytes;
            }
        }
    }
    std::vector<AppSize> out;
    for (const auto& [key, e] : appEntries) {
        const AppFacts* facts = nullptr;
        if (auto it = appFacts.find(key); it != appFacts.end()) facts = &it->second;
        std::set<std::string> names{Text::lower(e.name)};
        std::optional<std::string> bundleID = facts ? facts->bundleID : std::nullopt;
        if (bundleID) {
            names.insert(Text::lower(*bundleID));
            if (auto folders = layout.storage.dataFolders.find(*bundleID); folders != layout.storage.dataFolders.end())
                for (const auto& f : folders->second) names.insert(Text::lower(f));
        }
        if (facts)
            for (const auto& n : facts->names) names.insert(Text::lower(n));
        int64_t dataBytes = 0;
        for (const auto& n : names)
            if (auto it = data.find(n); it != data.end()) dataBytes += it->second;
        std::optional<TimePoint> lastUsed;
        if (facts && facts->entry && apps) lastUsed = apps->lastUsed(*facts->entry);
        out.push_back(AppSize{e.name, key, bundleID, e.bytes, dataBytes, lastUsed});
    }
    std::stable_sort(out.begin(), out.end(), [](const AppSize& a, const AppSize& b) {
        if (a.total() != b.total()) return a.total() > b.total();
        return a.name < b.name;
    });
    return out;
}

StorageReport StorageScan::run(const Progress& onProgress) {
    plan();
    progress = onProgress ? &onProgress : nullptr;
    nextReport = std::chrono::duration_cast<std::chrono::nanoseconds>(
                     (std::chrono::steady_clock::now() + firstReport).time_since_epoch())
                     .count();

    // A package store shares its files by hard links with every project, and the first walk to
    // meet a file owns its bytes: the store goes first, alone.
    std::vector<const Unit*> rest;
    for (const Unit& u : planUnits) {
        if (u.first) walkUnits({&u});
        else rest.push_back(&u);
    }
    for (const Unit& u : planApps_) rest.push_back(&u);
    walkUnits(rest);

    {
        std::lock_guard guard(reportLock); // no partial report after this point
        progress = nullptr;
    }
    bool complete = !cancelled();
    StorageReport report = snapshot(complete, complete ? appSizes() : std::vector<AppSize>{});
    if (complete) {
        if (auto v = volumes(layout, packagesShownAsApps)) {
            report.vm = v->vm;
            int64_t sum = 0;
            for (const auto& row : v->rows) sum += row.bytes;
            if (sum >= 1) {
                report.categories.push_back(StorageCategory{StorageKind::macOS, sum, v->rows, 0, {}});
                std::stable_sort(report.categories.begin(), report.categories.end(),
                                 [](const StorageCategory& a, const StorageCategory& b) { return a.bytes > b.bytes; });
            }
        }
    }
    return report;
}
