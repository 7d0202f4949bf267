// What applications keep as cache: the user caches folder taken folder by folder, and the cache
// folders inside Chromium- and Electron-shaped trees of the app-support place. Each folder is
// judged by whose app it is and whether that app is open, gone or long idle.
#include "foundation/FS.h"
#include "foundation/HomeBound.h"
#include "foundation/Text.h"
#include "scan/Scanner.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <unordered_set>

namespace {

// The last non-empty piece of a dotted name, with its first letter in upper case.
std::string lastPiece(const std::string& dotted) {
    auto pieces = Text::split(dotted, '.');
    return Text::upperFirst(pieces.empty() ? dotted : pieces.back());
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return Text::contains(Text::lower(text), Text::lower(part));
}

std::string removeIgnoringCase(const std::string& text, std::string_view part) {
    std::string lowered = Text::lower(text);
    std::string out;
    std::size_t at = 0;
    while (true) {
        auto hit = lowered.find(part, at);
        if (hit == std::string::npos) break;
        out += text.substr(at, hit - at);
        at = hit + part.size();
    }
    return out + text.substr(at);
}

std::string trimChars(const std::string& s, std::string_view chars) {
    auto first = s.find_first_not_of(chars);
    if (first == std::string::npos) return {};
    auto last = s.find_last_not_of(chars);
    return s.substr(first, last - first + 1);
}

} // namespace

bool Scanner::ownFolder(const std::string& path) const { return layout.scan.ownFolders.contains(path); }

bool Scanner::runs(const std::vector<std::string>& appIds) const {
    return std::any_of(running.begin(), running.end(), [&](const RunningId& r) {
        return std::find(appIds.begin(), appIds.end(), r.id) != appIds.end();
    });
}

std::optional<TimePoint> Scanner::touched(const std::string& folder, TimePoint now) {
    // Shallow on purpose: the folder itself and its first 300 entries tell enough.
    auto newest = FS::mtime(folder, now);
    DIR* dir = opendir(folder.c_str());
    if (!dir) return newest;
    int seen = 0;
    while (dirent* e = readdir(dir)) {
        std::string_view n = e->d_name;
        if (n == "." || n == "..") continue;
        if (++seen > 300) break;
        struct stat st {};
        if (fstatat(dirfd(dir), e->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0) continue;
        TimePoint t = fileDate(st.st_mtim, now);
        if (!newest || t > *newest) newest = t;
    }
    closedir(dir);
    return newest;
}

std::optional<TimePoint> Scanner::lastUsed(const std::string& appPath, const AppBundles& apps) {
    auto entry = apps.entryAt(appPath);
    if (!entry) return std::nullopt;
    return apps.lastUsed(*entry);
}

Scanner::Staleness Scanner::touchedKind(const std::string& folder) const {
    auto t = touched(folder, now);
    bool idle = t && secondsBetween(*t, now) > monthSeconds;
    return {idle ? CacheKind::idle : CacheKind::active, t};
}

Scanner::Staleness Scanner::kind(const std::vector<std::string>& appIds, const std::string& folder) const {
    if (!appIds.empty()) {
        if (runs(appIds)) return {CacheKind::active, now};
        bool installed = false;
        std::optional<TimePoint> used;
        for (const auto& id : appIds) {
            auto entry = apps->entry(id);
            if (!entry) continue;
            installed = true;
            if (auto d = apps->lastUsed(*entry); d && (!used || *d > *used)) used = d;
        }
        // The cache's owner has gone.
        if (!installed) return {CacheKind::orphan, std::nullopt};
        if (used) return {secondsBetween(*used, now) > monthSeconds ? CacheKind::idle : CacheKind::active, used};
    }
    return touchedKind(folder);
}

std::optional<std::string> Scanner::appName(const std::string& appId) const {
    if (auto it = layout.scan.appNames.find(appId); it != layout.scan.appNames.end()) return it->second;
    auto entry = apps->entry(appId);
    if (!entry) return std::nullopt;
    std::string name = entry->displayName();
    if (name.ends_with(".app")) name.resize(name.size() - 4);
    if (name.empty()) return std::nullopt;
    return name;
}

Scanner::CacheLabel Scanner::cacheLabel(const std::string& name) const {
    const auto& t = layout.scan;
    if (auto it = t.knownCaches.find(name); it != t.knownCaches.end()) {
        const auto& row = it->second;
        bool leftover = name == t.brewCacheName || row.note.starts_with("Leftovers");
        return {row.title, row.note, row.appIds, leftover};
    }
    const std::string update = "Leftovers from an app update";
    constexpr std::string_view shipIt = ".ShipIt";
    if (name.size() > shipIt.size() && name.ends_with(shipIt)) {
        std::string base = name.substr(0, name.size() - shipIt.size());
        std::string word = appName(base).value_or(lastPiece(base));
        return {word + " update files", update, {}, true};
    }
    if (Text::lower(name).ends_with("updater")) {
        std::string word = Text::upperFirst(trimChars(removeIgnoringCase(name, "updater"), "@-_. "));
        return {word + " update files", update, {}, true};
    }
    if (name.find('.') != std::string::npos) {
        if (auto word = appName(name)) return {*word + " cache", "Rebuilt as you use " + *word, {name}, false};
        return {lastPiece(name) + " cache", "Rebuilt as you use the app", {name}, false};
    }
    return {Text::upperFirst(name) + " cache", "Rebuilt as you use it", {}, false};
}

std::vector<std::string> Scanner::supportAppIds(const std::string& name, const std::string& pretty) const {
    const auto& t = layout.scan;
    if (auto it = t.supportAppIds.find(name); it != t.supportAppIds.end()) return it->second;
    if (name.find('.') != std::string::npos && Text::split(name, '.', true).size() >= 3) {
        auto pieces = Text::split(name, '.', true);
        if (std::none_of(pieces.begin(), pieces.end(), [](const std::string& p) { return p.empty(); })) return {name};
    }
    // An app installed under the folder's name.
    std::vector<std::string> tries{pretty, name};
    if (std::string lower = Text::lower(name); lower != name) tries.push_back(lower);
    for (const auto& word : tries)
        for (const auto& dir : layout.applicationDirs)
            if (auto entry = apps->entryAt(dir + "/" + word + t.appFileSuffix); entry && !entry->id.empty())
                return {entry->id};
    return {};
}

void Scanner::collectChromium(const std::string& folder, int depth, std::vector<std::string>& into) const {
    const auto& t = layout.scan;
    auto names = FS::children(folder);
    std::unordered_set<std::string> present(names.begin(), names.end());
    if (std::any_of(t.chromiumMarkers.begin(), t.chromiumMarkers.end(),
                    [&](const std::string& m) { return present.contains(m); }))
        for (const auto& cache : t.chromiumCaches)
            if (HomeBound::admit(folder + "/" + cache, home) && FS::isDir(folder + "/" + cache))
                into.push_back(folder + "/" + cache);
    // Reaches a browser's profiles (Google/Chrome/Default) and no deeper.
    if (depth >= 2) return;
    if (depth == 1 && !present.contains(t.chromiumBrowserMarker)) return;
    for (const auto& child : names) {
        if (child.starts_with(".")) continue;
        bool cacheOrItsParent = std::any_of(t.chromiumCaches.begin(), t.chromiumCaches.end(), [&](const std::string& c) {
            return c == child || (c.size() > child.size() && c.starts_with(child) && c[child.size()] == '/');
        });
        if (cacheOrItsParent) continue;
        std::string path = folder + "/" + child;
        if (FS::isDir(path)) collectChromium(path, depth + 1, into);
    }
}

std::optional<Candidate> Scanner::userCache(const std::string& path, const std::string& name) const {
    CacheLabel label = cacheLabel(name);
    Candidate c;
    c.id = "cache:" + name;
    c.tier = Tier::safe;
    c.name = label.title;
    c.location = FS::tilde(path, home);
    c.note = label.note;
    if (runs(label.appIds)) c.note += " · open now";
    Staleness s = label.leftover ? Staleness{CacheKind::leftover, std::nullopt} : kind(label.appIds, path);
    c.paths = {path};
    c.removal = Removal::deleteForGood();
    c.defaultOn = true;
    c.cacheKind = s.kind;
    c.lastUsed = s.date;
    return c;
}

std::optional<Candidate> Scanner::flatpakCache(const std::string& appId) const {
    // A sandboxed app's cache folder is made again by its runtime only at start; what is in it
    // goes, the folder stays.
    std::string folder = layout.scan.flatpakApps + "/" + appId + "/cache";
    if (!HomeBound::admit(folder, home) || !FS::isDir(folder)) return std::nullopt;
    std::vector<std::string> paths;
    for (const auto& name : FS::sortedChildren(folder))
        if (!name.starts_with(".") && HomeBound::admit(folder + "/" + name, home)) paths.push_back(folder + "/" + name);
    if (paths.empty()) return std::nullopt;
    auto c = userCache(folder, appId);
    c->id = "cache:flatpak:" + appId;
    c->paths = std::move(paths);
    c->reveal = {folder};
    return c;
}

std::optional<Candidate> Scanner::snapCache(const std::string& snap) const {
    // A snap's own XDG cache; the folder stays, as with a sandboxed app.
    std::string folder = layout.scan.snapApps + "/" + snap + "/common/.cache";
    if (!HomeBound::admit(folder, home) || !FS::isDir(folder)) return std::nullopt;
    std::vector<std::string> paths;
    for (const auto& name : FS::sortedChildren(folder))
        if (!name.starts_with(".") && HomeBound::admit(folder + "/" + name, home)) paths.push_back(folder + "/" + name);
    if (paths.empty()) return std::nullopt;
    // The desktop id of a snap's main app is "<snap>_<snap>".
    const std::string appId = snap + "_" + snap;
    const auto& names = layout.scan.appNames;
    auto known = names.find(snap);
    std::string word = known != names.end() ? known->second : appName(appId).value_or(Text::upperFirst(snap));
    Staleness s = kind({appId}, folder);
    Candidate c;
    c.id = "cache:snap:" + snap;
    c.tier = Tier::safe;
    c.name = word + " cache";
    c.location = FS::tilde(folder, home);
    c.note = "Rebuilt as you use " + word + (runs({appId}) ? " · open now" : "");
    c.paths = std::move(paths);
    c.removal = Removal::deleteForGood();
    c.defaultOn = true;
    c.reveal = {folder};
    c.cacheKind = s.kind;
    c.lastUsed = s.date;
    return c;
}

std::vector<Candidate> Scanner::userCaches() {
    const auto& t = layout.scan;
    // Where the user caches are the XDG cache too, model folders are offered by the XDG rule.
    const bool xdgToo = layout.caches == layout.xdgCache;
    std::vector<Candidate> out;
    const bool cachesOurs = HomeBound::admit(layout.caches, home);
    for (const auto& name : cachesOurs ? FS::sortedChildren(layout.caches) : std::vector<std::string>{}) {
        std::string path = layout.caches + "/" + name;
        if (!HomeBound::admit(path, home) || !FS::isDir(path)) continue;
        if (name.starts_with(".")) continue;
        if (std::any_of(t.systemPrefixes.begin(), t.systemPrefixes.end(),
                        [&](const std::string& p) { return name.starts_with(p); }))
            continue;
        if (t.systemCacheDirs.contains(name) || t.ownRowCaches.contains(name) || ownFolder(path)) continue;
        // The package manager's own clean-up is offered instead.
        if (brew && name == t.brewCacheName) continue;
        if (xdgToo && t.modelDirs.contains(name)) continue;
        if (auto c = userCache(path, name)) out.push_back(std::move(*c));
    }
    if (!t.flatpakApps.empty() && HomeBound::admit(t.flatpakApps, home))
        for (const auto& appId : FS::sortedChildren(t.flatpakApps))
            if (auto c = flatpakCache(appId)) out.push_back(std::move(*c));
    if (!t.snapApps.empty() && HomeBound::admit(t.snapApps, home))
        for (const auto& snap : FS::sortedChildren(t.snapApps))
            if (auto c = snapCache(snap)) out.push_back(std::move(*c));
    return out;
}

std::optional<Candidate> Scanner::supportCache(const std::string& path, const std::string& name, const std::string& id,
                                               std::vector<std::string> appIds) const {
    std::vector<std::string> found;
    collectChromium(path, 0, found);
    // A plain app's folder is never offered: only recognised cache folders are cleared here.
    if (found.empty()) return std::nullopt;
    const auto& t = layout.scan;
    auto named = t.supportNames.find(name);
    std::string pretty = named != t.supportNames.end() ? named->second : name;
    if (appIds.empty()) appIds = supportAppIds(name, pretty);

    // An app without a name must not match every folder.
    bool open = std::any_of(running.begin(), running.end(), [&](const RunningId& r) {
        return !r.name.empty() && (containsIgnoringCase(name, r.name) || containsIgnoringCase(pretty, r.name));
    });
    if (!open && t.matchSupportByAppId) open = runs(appIds);
    Staleness s = open ? Staleness{CacheKind::active, now} : kind(appIds, path);

    Candidate c;
    c.id = id;
    c.tier = Tier::safe;
    c.name = pretty + " cache";
    c.location = FS::tilde(path, home);
    c.note = "Rebuilt as you use " + pretty + (open ? " · open now" : "");
    c.paths = std::move(found);
    c.removal = Removal::deleteForGood();
    c.defaultOn = true;
    c.cacheKind = s.kind;
    c.lastUsed = s.date;
    return c;
}

std::vector<Candidate> Scanner::appCaches() {
    const auto& t = layout.scan;
    auto skipped = [&](const std::string& name) {
        return name.starts_with(".") || t.systemSupportDirs.contains(name) ||
               std::any_of(t.systemPrefixes.begin(), t.systemPrefixes.end(),
                           [&](const std::string& p) { return name.starts_with(p); });
    };
    std::vector<Candidate> out;
    const bool supportOurs = HomeBound::admit(layout.appSupport, home);
    for (const auto& name : supportOurs ? FS::sortedChildren(layout.appSupport) : std::vector<std::string>{}) {
        if (skipped(name)) continue;
        std::string path = layout.appSupport + "/" + name;
        if (!HomeBound::admit(path, home) || !FS::isDir(path) || ownFolder(path)) continue;
        if (auto c = supportCache(path, name, "appcache:" + name, {})) out.push_back(std::move(*c));
    }
    // A sandboxed app's own config folder belongs to that app alone.
    if (!t.flatpakApps.empty() && HomeBound::admit(t.flatpakApps, home))
        for (const auto& appId : FS::sortedChildren(t.flatpakApps)) {
            std::string config = t.flatpakApps + "/" + appId + "/config";
            if (!HomeBound::admit(config, home)) continue;
            for (const auto& name : FS::sortedChildren(config)) {
                if (skipped(name)) continue;
                std::string path = config + "/" + name;
                if (!HomeBound::admit(path, home) || !FS::isDir(path)) continue;
                if (auto c = supportCache(path, name, "appcache:" + appId + "/" + name, {appId}))
                    out.push_back(std::move(*c));
            }
        }
    return out;
}

std::vector<Candidate> Scanner::mergeSameApp(std::vector<Candidate> candidates, std::string_view mergedLocation) {
    std::map<std::string, Candidate> byKey;
    std::vector<std::string> order;
    std::set<std::string> merged;
    std::map<std::string, std::set<std::string>> parents; // by key: the folders holding its parts
    for (auto& c : candidates) {
        bool cache = c.id.starts_with("cache:") || c.id.starts_with("appcache:");
        std::string key = cache ? "merge|" + c.name : "id|" + c.id;
        if (cache) parents[key].insert(FS::parent(c.location));
        auto it = byKey.find(key);
        if (it == byKey.end()) {
            order.push_back(key);
            byKey.emplace(key, std::move(c));
            continue;
        }
        Candidate& kept = it->second;
        // An empty reveal means "the paths": once either side names its own, both are spelled out.
        if (!kept.reveal.empty() || !c.reveal.empty()) {
            if (kept.reveal.empty()) kept.reveal = kept.paths;
            const auto& more = c.reveal.empty() ? c.paths : c.reveal;
            kept.reveal.insert(kept.reveal.end(), more.begin(), more.end());
        }
        kept.paths.insert(kept.paths.end(), c.paths.begin(), c.paths.end());
        if (!Text::contains(kept.note, "open now") && Text::contains(c.note, "open now")) kept.note = c.note;
        merged.insert(key);
    }
    std::vector<Candidate> out;
    out.reserve(order.size());
    for (const auto& key : order) {
        Candidate& c = byKey.at(key);
        // Two folders of one cache side by side ("Graphics shader cache") stand where they are.
        if (merged.contains(key))
            c.location = parents[key].size() == 1 && !parents[key].begin()->empty() ? *parents[key].begin()
                                                                                    : std::string(mergedLocation);
        out.push_back(std::move(c));
    }
    return out;
}
