// Planning a storage walk: which independent units it walks, in which order.
#include "storage/StorageScan.h"

#include "foundation/FS.h"
#include "foundation/HomeBound.h"
#include "foundation/Text.h"
#include "platform/AppInstalls.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <tuple>

namespace {

bool below(const std::string& path, const std::string& folder) {
    if (folder == "/") return path.size() > 1 && path.front() == '/';
    return path.size() > folder.size() + 1 && path.starts_with(folder) && path[folder.size()] == '/';
}

// The folders in a folder, by name in ascending order: the listing's own types, a stat only where
// it has none.
std::vector<std::string> folders(const std::string& path) {
    std::vector<std::string> names;
    DIR* dir = opendir(path.c_str());
    if (!dir) return names;
    while (dirent* e = readdir(dir)) {
        std::string_view n = e->d_name;
        if (n == "." || n == "..") continue;
        bool folder = e->d_type == DT_DIR;
        if (e->d_type == DT_UNKNOWN) {
            struct stat st {};
            folder = fstatat(dirfd(dir), e->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode);
        }
        if (folder) names.emplace_back(n);
    }
    closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
}

// A name inside a folder; the root folder "/" gives "/name", never "//name".
std::string join(const std::string& folder, const std::string& name) {
    return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

} // namespace

StorageScan::StorageScan(std::shared_ptr<ScanToken> token)
    : StorageScan(Layout::host(), std::move(token), &AppBundles::system()) {}

StorageScan::StorageScan(Layout l, std::shared_ptr<ScanToken> token, const AppBundles* installed)
    : layout(std::move(l)), cancel(std::move(token)), apps(installed), home(layout.home), started(Clock::now()),
      startedSteady(std::chrono::steady_clock::now()) {
    struct stat st {};
    if (stat(home.c_str(), &st) == 0) homeDevice = static_cast<uint64_t>(st.st_dev);
}

const std::vector<StorageScan::Unit>& StorageScan::units() {
    plan();
    return planUnits;
}

const std::vector<StorageScan::Unit>& StorageScan::appUnits() {
    plan();
    return planApps_;
}

void StorageScan::claim(const std::string& path) {
    claimed.insert(path);
    claimParents.insert(FS::parent(path));
}

bool StorageScan::onHomeVolume(const std::string& path) const {
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0) return false;
    return static_cast<uint64_t>(st.st_dev) == homeDevice;
}

bool StorageScan::admitted(const std::string& path) const {
    // Outside the home lie the system's own rows (tools, downloads, temporary files), which are
    // never the home's; below it, only what is reached without a link counts as the home's.
    return !below(path, home) || HomeBound::admit(path, home);
}

void StorageScan::add(Unit unit) {
    // One unit per path, the first planned wins; and only what fills the home volume.
    if (plannedPaths.contains(unit.path) || !admitted(unit.path) || !onHomeVolume(unit.path)) return;
    plannedPaths.insert(unit.path);
    unit.countsUnreadable = below(unit.path, home);
    claim(unit.path);
    planUnits.push_back(std::move(unit));
}

bool StorageScan::splitsOff(const StorageTables::Rule& rule, const std::string& path, std::string_view name) const {
    if (rule.skipHidden && name.starts_with(".")) return false;
    if (rule.skipNames.contains(std::string(name))) return false;
    return !layout.storage.rules.contains(path + "/" + std::string(name)); // planned by its own rule
}

std::string StorageScan::splitTitle(const std::string& name, const StorageTables::Rule& rule) const {
    if (auto it = rule.subNames.find(name); it != rule.subNames.end()) return it->second;
    auto title = [&]() -> std::string {
        if (auto it = rule.names.find(name); it != rule.names.end()) return it->second;
        if (rule.titlesByAppId && std::count(name.begin(), name.end(), '.') >= 2) {
            if (auto it = appIdNames.find(name); it != appIdNames.end()) return it->second;
            if (layout.isLinux() && apps)
                if (auto entry = apps->entry(name)) return entry->displayName();
        }
        return rule.unnamedSuffix.empty() ? name : Text::upperFirst(name);
    };
    return title() + rule.unnamedSuffix;
}

void StorageScan::planRule(const std::string& path, const StorageTables::Rule& rule) {
    using Action = StorageTables::Rule::Action;
    switch (rule.action) {
    case Action::skip: return;
    case Action::unit:
        if (!FS::exists(path)) return;
        add(Unit{.path = path,
                 .kind = rule.kind,
                 .item = path,
                 .name = rule.name.empty() ? FS::lastComponent(path) : rule.name,
                 .first = rule.first});
        return;
    case Action::split:
        if (!admitted(path) || !FS::isDir(path)) return;
        // The folder's own blocks count towards its category, though it is no row of its own; its
        // files are rows that its own walk makes, so that a folder of a million files is no
        // million units.
        add(Unit{.path = path, .kind = rule.kind, .item = path, .name = FS::lastComponent(path), .selfOnly = true,
                 .split = &rule});
        for (const std::string& name : folders(path)) {
            if (!splitsOff(rule, path, name)) continue;
            std::string child = path + "/" + name;
            add(Unit{.path = child,
                     .kind = rule.kind,
                     .item = child,
                     .name = splitTitle(name, rule),
                     .detail = rule.detail,
                     .findsProjects = rule.findsProjects});
        }
        return;
    }
}

void StorageScan::planHomeEntry(const std::string& name) {
    const StorageTables& t = layout.storage;
    std::string path = join(home, name);
    if (auto rule = t.rules.find(path); rule != t.rules.end()) {
        planRule(path, rule->second);
    } else if (name.starts_with(".")) {
        // A hidden folder is a tool; a hidden plain file is not measured.
        if (FS::isDir(path)) {
            auto title = t.dotNames.find(name);
            add(Unit{.path = path,
                     .kind = StorageKind::developer,
                     .item = path,
                     .name = title != t.dotNames.end() ? title->second : name.substr(1),
                     .first = t.firstDots.contains(name)});
        }
    } else {
        const auto userFolders = layout.userFolders();
        const bool userFolder = std::find(userFolders.begin(), userFolders.end(), path) != userFolders.end();
        add(Unit{.path = path,
                 .kind = StorageKind::other,
                 .item = path,
                 .name = name,
                 .findsProjects = t.homeFoldersFindProjects && !userFolder});
    }
}

void StorageScan::planApps() {
    const StorageTables& t = layout.storage;
    auto addApp = [&](Unit unit, AppFacts facts) {
        if (plannedPaths.contains(unit.path) || !onHomeVolume(unit.path)) return false;
        plannedPaths.insert(unit.path);
        unit.countsUnreadable = below(unit.path, home);
        if (!unit.bytes) claim(unit.path);
        appFacts[unit.item] = std::move(facts);
        planApps_.push_back(std::move(unit));
        return true;
    };

    if (layout.isMac()) {
        for (const std::string& bundle : appBundles(layout)) {
            AppFacts facts;
            facts.bundleID = bundleIdentifier(bundle);
            if (facts.bundleID) appIdNames.emplace(*facts.bundleID, appName(bundle));
            addApp(Unit{.path = bundle, .kind = StorageKind::apps, .item = bundle, .name = appName(bundle)},
                   std::move(facts));
        }
        return;
    }
    if (!apps) return;

    std::vector<DesktopEntry> shown;
    for (const DesktopEntry& e : apps->all())
        if (!e.noDisplay && !e.hidden) shown.push_back(e);
    auto installs = AppInstalls::resolve(shown, t);
    std::set<std::string> installKeys;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const DesktopEntry& e = shown[i];
        const auto& install = installs[i];
        // Two entries of one install (a browser and its private-window launcher) are one app.
        std::string key = install ? install->key : "entry:" + e.path;
        if (!installKeys.insert(key).second) continue;
        Unit unit{.path = install ? install->path : e.path,
                  .kind = StorageKind::apps,
                  .item = e.path,
                  .name = e.displayName()};
        if (install && install->bytes) unit.bytes = install->bytes;
        else if (!install) unit.bytes = 0; // nothing on disk could be tied to it: a row without bytes
        if (install && install->path != e.path && FS::isDir(install->path)) unit.reveal = install->path;
        AppFacts facts;
        facts.bundleID = e.id;
        if (install && !install->installName.empty()) facts.names.push_back(install->installName);
        facts.entry = e;
        int64_t packageBytes = install && install->bytes ? *install->bytes : 0;
        if (addApp(std::move(unit), std::move(facts))) packagesShownAsApps += packageBytes;
    }
}

void StorageScan::planAssetsAndTemporary() {
    const StorageTables& t = layout.storage;
    if (!t.assetsRoot.empty()) {
        auto reveal = StorageKinds::folder(StorageKind::assets, layout);
        for (const std::string& name : FS::sortedChildren(t.assetsRoot)) {
            if (name.starts_with(".")) continue;
            std::string title = assetTitle(name, t);
            add(Unit{.path = t.assetsRoot + "/" + name,
                     .kind = StorageKind::assets,
                     .item = "asset:" + title,
                     .name = title,
                     .reveal = reveal});
        }
    }
    for (const auto& place : t.assetPlaces)
        if (FS::isDir(place.path))
            add(Unit{.path = place.path,
                     .kind = StorageKind::assets,
                     .item = "asset:" + place.name,
                     .name = place.name,
                     .reveal = place.path});
    if (!t.snapFilesDir.empty()) {
        // Revisions no app unit holds: older ones of apps, and snaps that are no app at all.
        std::set<std::string> appSnaps;
        for (const auto& [item, facts] : appFacts)
            if (facts.entry)
                if (auto snap = AppInstalls::snapName(*facts.entry, t)) appSnaps.insert(*snap);
        for (const std::string& name : FS::sortedChildren(t.snapFilesDir)) {
            auto snap = AppInstalls::snapOfFile(name);
            std::string path = t.snapFilesDir + "/" + name;
            if (!snap || !FS::isFile(path)) continue;
            const std::string& title = appSnaps.contains(*snap) ? t.snapRevisionsTitle : t.snapRuntimesTitle;
            add(Unit{.path = path,
                     .kind = StorageKind::assets,
                     .item = "asset:" + title,
                     .name = title,
                     .reveal = t.snapFilesDir});
        }
    }
    for (const auto& place : t.temporary) {
        if (!FS::isDir(place.path)) continue;
        add(Unit{.path = place.path,
                 .kind = StorageKind::temporary,
                 .item = place.path,
                 .name = place.name,
                 .ownFilesOnly = true});
    }
}

void StorageScan::plan() {
    if (planned) return;
    planned = true;
    const StorageTables& t = layout.storage;

    // Everything a rule names belongs to that rule, and the home folder to the home units: a walk
    // elsewhere that meets one of them leaves it alone.
    claim(home);
    for (const auto& [path, rule] : t.rules) claim(path);

    // Apps are resolved first: what they hold is theirs, and folders named by an app id take
    // the app's name. They are walked last.
    planApps();

    for (const auto& tool : t.outsideTools)
        if (FS::isDir(tool.path))
            add(Unit{.path = tool.path, .kind = tool.kind, .item = tool.path, .name = tool.name, .first = tool.first});

    planAssetsAndTemporary();

    std::set<std::string> ruled;
    auto planRulesBelow = [&](const std::string& folder) {
        const std::string prefix = folder + "/";
        for (auto it = t.rules.lower_bound(prefix); it != t.rules.end() && it->first.starts_with(prefix); ++it)
            if (ruled.insert(it->first).second) planRule(it->first, it->second);
    };
    // The home folder's own blocks are its "other" files'.
    if (FS::isDir(home))
        add(Unit{.path = home, .kind = StorageKind::other, .item = home, .name = FS::lastComponent(home), .selfOnly = true});
    for (const std::string& name : FS::sortedChildren(home)) {
        ruled.insert(join(home, name));
        planHomeEntry(name);
        planRulesBelow(join(home, name));
    }
    // Rules for places that XDG or user-dirs.dirs put outside the home are not planned: what
    // lies there is not the home's (the layout has noted them in the log).
    tellApartSameTitles();
}

void StorageScan::tellApartSameTitles() {
    // Two places under one title and one second line ("Graphics shader cache · ~/.cache" for
    // two folders) would read as one: each gets its own location instead.
    std::map<std::tuple<StorageKind, std::string, std::optional<std::string>>, std::set<std::string>> rows;
    for (const Unit& u : planUnits)
        if (!u.selfOnly) rows[{u.kind, u.name, u.detail}].insert(u.item);
    for (Unit& u : planUnits)
        if (!u.selfOnly && u.item.starts_with("/") && rows[{u.kind, u.name, u.detail}].size() > 1) u.detail = FS::tilde(u.path, home);
}
