#include "storage/StorageScan.h"

#include "foundation/DiskInfo.h"
#include "foundation/FS.h"
#include "foundation/Parallel.h"
#include "foundation/Text.h"
#include "platform/FileOpened.h"

#include <fts.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace {

int64_t allocated(const struct stat* st) { return static_cast<int64_t>(st->st_blocks) * 512; }

TimePoint modifiedOf(const struct stat* st) { return Clock::from_time_t(st->st_mtim.tv_sec); }

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

void StorageScan::walk(const Unit& unit) {
    if (cancelled()) return;
    maybeReport();
    int64_t floor;
    {
        std::lock_guard guard(lock);
        floor = bigFloor;
    }
    struct stat rootStat {};
    bool exists = lstat(unit.path.c_str(), &rootStat) == 0;
    bool isFolder = exists && S_ISDIR(rootStat.st_mode);

    // Everything here is the walking thread's own until the merge.
    int64_t total = 0;
    int count = 0;
    int bad = 0;
    std::vector<std::string> badPaths;
    std::vector<BigFile> found;
    struct Package {
        short level;
        int64_t bytes;
    };
    struct Project {
        short level;
        std::string path;
    };
    std::vector<Package> packages;
    std::vector<Project> projects;
    std::map<std::string, int64_t> projectBytes;

    auto add = [&](int64_t bytes) {
        if (!projects.empty()) projectBytes[projects.back().path] += bytes;
        else total += bytes;
        if (!packages.empty()) packages.back().bytes += bytes;
    };
    auto category = [&] { return projects.empty() ? unit.kind : StorageKind::projects; };
    auto countFile = [&] {
        if (++count % 4096 == 0) {
            std::lock_guard guard(lock);
            floor = bigFloor;
        }
    };
    auto leaveFolder = [&](FTSENT* e) {
        if (!projects.empty() && projects.back().level == e->fts_level) projects.pop_back();
        if (!packages.empty() && packages.back().level == e->fts_level) {
            Package p = packages.back();
            packages.pop_back();
            if (p.bytes >= floor && unit.kind != StorageKind::apps)
                found.push_back(BigFile{e->fts_name, e->fts_path, p.bytes, FileKinds::of(e->fts_path), category(),
                                        modifiedOf(e->fts_statp), std::nullopt});
            if (!packages.empty()) packages.back().bytes += p.bytes;
        }
    };

    if (unit.bytes) {
        total = *unit.bytes;
    } else if (exists) {
        std::string root = unit.path;
        char* roots[] = {root.data(), nullptr};
        if (FTS* fts = fts_open(roots, FTS_PHYSICAL | FTS_XDEV | FTS_NOCHDIR, nullptr)) {
            const dev_t device = rootStat.st_dev;
            const uid_t me = getuid();
            std::size_t seen = 0;
            while (FTSENT* e = fts_read(fts)) {
                if (++seen % 256 == 0) {
                    if (cancelled()) break;
                    maybeReport();
                }
                // A path some other unit or rule owns is left to it.
                if (e->fts_level > 0 && e->fts_parent->fts_number == 1 &&
                    claimed.contains(std::string_view(e->fts_path, e->fts_pathlen))) {
                    if (e->fts_info == FTS_D) fts_set(fts, e, FTS_SKIP);
                    continue;
                }
                const struct stat* st = e->fts_statp;
                switch (e->fts_info) {
                case FTS_D: {
                    e->fts_number = claimParents.contains(std::string_view(e->fts_path, e->fts_pathlen)) ? 1 : 0;
                    if (st->st_dev != device) break; // a mount point: fts does not go in, nor do its bytes
                    if (!unit.ownFilesOnly || st->st_uid == me) add(allocated(st));
                    if (packageName(e->fts_name, e->fts_namelen)) packages.push_back({e->fts_level, 0});
                    if (unit.findsProjects && projects.empty() && e->fts_level < 5 &&
                        std::strcmp(e->fts_name, "node_modules") != 0) {
                        std::string path(e->fts_path, e->fts_pathlen);
                        const auto& markers = layout.storage.projectMarkers;
                        if (std::any_of(markers.begin(), markers.end(),
                                        [&](const std::string& m) { return FS::exists(path + "/" + m); }))
                            projects.push_back({e->fts_level, std::move(path)});
                    }
                    break;
                }
                case FTS_DNR:
                    if (unit.countsUnreadable) {
                        ++bad;
                        if (badPaths.size() < StorageCategory::namedUnreadable) badPaths.emplace_back(e->fts_path, e->fts_pathlen);
                    }
                    leaveFolder(e);
                    break;
                case FTS_DP:
                    leaveFolder(e);
                    break;
                case FTS_F: {
                    if (unit.ownFilesOnly && st->st_uid != me) break;
                    // Hard links: the first walk to meet the file owns its bytes.
                    if (st->st_nlink >= 2 &&
                        !links.insert(LinkSet::key(static_cast<uint64_t>(st->st_ino), static_cast<uint64_t>(st->st_dev))))
                        break;
                    int64_t bytes = allocated(st);
                    add(bytes);
                    countFile();
                    if (bytes >= floor && packages.empty() && unit.kind != StorageKind::apps)
                        found.push_back(BigFile{e->fts_name, e->fts_path, bytes, FileKinds::of(e->fts_name), category(),
                                                modifiedOf(st), std::nullopt});
                    break;
                }
                case FTS_SL:
                case FTS_SLNONE:
                case FTS_DEFAULT:
                    if (unit.ownFilesOnly && st->st_uid != me) break;
                    add(allocated(st));
                    countFile();
                    break;
                case FTS_ERR:
                    if (unit.countsUnreadable) {
                        ++bad;
                        if (badPaths.size() < StorageCategory::namedUnreadable) badPaths.emplace_back(e->fts_path, e->fts_pathlen);
                    }
                    leaveFolder(e);
                    break;
                default:
                    break; // FTS_NS, FTS_DC, FTS_DOT
                }
            }
            fts_close(fts);
        }
    }

    std::lock_guard guard(lock);
    totals[unit.kind] += total;
    if (total > 0 || unit.kind == StorageKind::apps) {
        auto [it, made] = entries.try_emplace({unit.kind, unit.item});
        if (made) it->second = Entry{unit.kind, unit.name, unit.detail, 0, isFolder, unit.reveal};
        it->second.bytes += total;
    }
    for (const auto& [path, bytes] : projectBytes) {
        totals[StorageKind::projects] += bytes;
        auto [it, made] = entries.try_emplace({StorageKind::projects, path});
        if (made)
            it->second = Entry{StorageKind::projects, FS::lastComponent(path), FS::tilde(FS::parent(path), home), 0,
                               true, std::nullopt};
        it->second.bytes += bytes;
    }
    if (bad > 0) unreadable[unit.kind] += bad;
    if (!badPaths.empty()) {
        auto& named = unreadableFolders[unit.kind];
        named.insert(named.end(), std::make_move_iterator(badPaths.begin()), std::make_move_iterator(badPaths.end()));
    }
    files += count;
    if (!found.empty()) {
        big.insert(big.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
        std::sort(big.begin(), big.end(), biggerFirst);
        if (big.size() > maxBig) big.resize(maxBig);
        if (big.size() == maxBig) bigFloor = std::max(bigFloor, big.back().bytes);
    }
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
        if (u.first) walk(u);
        else rest.push_back(&u);
    }
    for (const Unit& u : planApps_) rest.push_back(&u);
    parallelFor(rest.size(), [&](std::size_t i) { walk(*rest[i]); });

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
