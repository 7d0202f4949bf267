// Where development tools keep bulk: package caches, test browsers, logs, the XDG cache, the
// package manager's leftovers, developer data and old Node versions. The rows themselves are
// the layout's; this file holds the rules they follow.
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "foundation/HomeBound.h"
#include "foundation/Shell.h"
#include "foundation/Text.h"
#include "scan/Scanner.h"

#include <algorithm>
#include <cstdlib>
#include <regex>

namespace {

// "v20.11.1" as {20, 11, 1}; a piece that is no number counts 0.
std::vector<long long> versionParts(const std::string& name) {
    std::string_view s = name;
    if (s.starts_with("v")) s.remove_prefix(1);
    std::vector<long long> parts;
    for (const auto& piece : Text::split(s, '.', true)) {
        char* end = nullptr;
        long long n = piece.empty() ? 0 : std::strtoll(piece.c_str(), &end, 10);
        bool whole = !piece.empty() && end == piece.c_str() + piece.size() &&
                     std::all_of(piece.begin(), piece.end(), [](char c) { return c >= '0' && c <= '9'; });
        parts.push_back(whole ? n : 0);
    }
    return parts;
}

// The default alias protects what it names: "20" keeps "v20.11.1".
bool namedByAlias(const std::string& version, const std::string& alias) {
    if (alias.empty()) return false;
    return version == alias || version == "v" + alias || version.starts_with("v" + alias + ".") ||
           version.starts_with(alias + ".");
}

} // namespace

std::optional<Candidate> Scanner::toolRow(const ScanTables::ToolRow& row) const {
    if (row.path.empty() || !HomeBound::admit(row.path, home) || !FS::isDir(row.path)) return std::nullopt;
    Candidate c;
    c.id = row.id;
    c.tier = row.tier;
    c.name = row.name;
    c.location = FS::tilde(row.path, home);
    c.note = row.note;
    c.paths = {row.path};
    c.removal = Removal::deleteForGood();
    c.defaultOn = true;
    c.minSize = row.minSize;
    if (row.tier == Tier::safe) {
        Staleness s = touchedKind(row.path);
        c.cacheKind = s.kind;
        c.lastUsed = s.date;
    }
    return c;
}

std::optional<Candidate> Scanner::npxRow() const {
    const std::string& folder = layout.scan.npxFolder;
    if (folder.empty() || !HomeBound::admit(folder, home)) return std::nullopt;
    std::vector<std::string> paths;
    int inUse = 0;
    for (const auto& name : FS::sortedChildren(folder)) {
        if (name.starts_with(".") || !HomeBound::admit(folder + "/" + name, home)) continue;
        // A tool that a running process uses must stay.
        if (busyNpx.contains(name)) {
            ++inUse;
            continue;
        }
        paths.push_back(folder + "/" + name);
    }
    if (paths.empty()) return std::nullopt;
    Candidate c;
    c.id = "npx";
    c.tier = Tier::safe;
    c.name = "npx cache";
    c.location = FS::tilde(folder, home);
    c.note = "Tools npx fetched once";
    if (inUse > 0) c.note += " · " + std::to_string(inUse) + " in use " + (inUse == 1 ? "is" : "are") + " kept";
    c.paths = std::move(paths);
    c.removal = Removal::deleteForGood();
    c.defaultOn = true;
    c.reveal = {folder};
    Staleness s = touchedKind(folder);
    c.cacheKind = s.kind;
    c.lastUsed = s.date;
    return c;
}

std::vector<Candidate> Scanner::xdgCaches() const {
    const auto& t = layout.scan;
    // Where the XDG cache is the user caches folder too, only model folders are left to this rule.
    const bool modelsOnly = layout.caches == layout.xdgCache;
    std::vector<Candidate> out;
    if (!HomeBound::admit(layout.xdgCache, home)) return out;
    for (const auto& name : FS::sortedChildren(layout.xdgCache)) {
        if (name.starts_with(".") || t.ownRowCaches.contains(name)) continue;
        if (modelsOnly && !t.modelDirs.contains(name)) continue;
        std::string path = layout.xdgCache + "/" + name;
        if (!HomeBound::admit(path, home) || !FS::isDir(path) || ownFolder(path)) continue;
        Candidate c;
        c.location = FS::tilde(path, home);
        c.paths = {path};
        if (t.modelDirs.contains(name)) {
            c.id = "models:" + name;
            c.name = Text::upperFirst(name) + " models";
            c.note = "Downloaded models. Slow to fetch again";
            c.tier = Tier::yourCall;
            c.removal = Removal::trash();
            c.defaultOn = false;
            c.minSize = 100 * MB;
        } else {
            auto named = t.xdgNames.find(name);
            c.id = "xdg:" + name;
            c.name = named != t.xdgNames.end() ? named->second : Text::upperFirst(name) + " cache";
            c.note = "Downloaded again when needed";
            c.tier = Tier::safe;
            c.removal = Removal::deleteForGood();
            c.defaultOn = true;
            Staleness s = touchedKind(path);
            c.cacheKind = s.kind;
            c.lastUsed = s.date;
        }
        out.push_back(std::move(c));
    }
    return out;
}

std::optional<Candidate> Scanner::brewRow() const {
    if (!brew) return std::nullopt;
    std::string program = *brew;
    std::string prefix = Text::replaceAll(FS::parent(program), "/bin", "");
    Candidate c;
    c.id = "brew";
    c.tier = Tier::safe;
    c.name = "Homebrew leftovers";
    c.location = "brew cleanup --prune=all"; // the command stands where a place would
    c.note = "Old versions and installer downloads";
    c.removal = Removal::command({program, "cleanup", "--prune=all"});
    c.defaultOn = true;
    c.reveal = {prefix + "/Cellar"};
    c.minSize = 20 * MB;
    c.measure = Measure::customSize([program] { return brewDryRun(program); });
    c.cacheKind = CacheKind::leftover;
    return c;
}

std::optional<int64_t> Scanner::brewDryRun(const std::string& brew) {
    return brewFreed(Shell::run(brew, {"cleanup", "--prune=all", "-n"}, 90).text);
}

std::optional<int64_t> Scanner::brewFreed(std::string_view text) {
    static const std::regex pattern(R"(approximately ([0-9.]+)\s*([KMGT]?B))");
    std::match_results<std::string_view::const_iterator> m;
    if (!std::regex_search(text.begin(), text.end(), m, pattern)) return std::nullopt;
    std::string number = m[1].str();
    char* end = nullptr;
    double value = std::strtod(number.c_str(), &end);
    if (number.empty() || end != number.c_str() + number.size()) return std::nullopt;
    std::string unit = m[2].str();
    double multiplier = unit == "KB"   ? 1024.0
                        : unit == "MB" ? 1048576.0
                        : unit == "GB" ? 1073741824.0
                        : unit == "TB" ? 1099511627776.0
                                       : 1.0;
    return static_cast<int64_t>(value * multiplier);
}

std::vector<Candidate> Scanner::toolCaches() {
    const auto& t = layout.scan;
    std::vector<Candidate> out;
    auto add = [&](std::optional<Candidate> c) {
        if (c) out.push_back(std::move(*c));
    };
    for (const auto& row : t.leadingToolRows) add(toolRow(row));
    add(npxRow());
    for (const auto& row : t.toolRows) add(toolRow(row));

    for (const auto& store : t.pnpmStores) {
        auto c = toolRow({"pnpm-store:" + store, "pnpm package store", store,
                          "Packages no project links to now. Downloaded again if needed", Tier::rebuildable, 20 * MB});
        add(std::move(c));
    }

    if (!layout.logs.empty() && HomeBound::admit(layout.logs, home)) {
        std::vector<std::string> paths;
        for (const auto& name : FS::sortedChildren(layout.logs))
            if (!name.starts_with(".") && HomeBound::admit(layout.logs + "/" + name, home))
                paths.push_back(layout.logs + "/" + name);
        // The folder itself stays: only what is in it is cleared.
        if (!paths.empty()) {
            Candidate c;
            c.id = "logs";
            c.tier = Tier::safe;
            c.name = "Logs and crash reports";
            c.location = FS::tilde(layout.logs, home);
            c.note = "Old log files";
            c.paths = std::move(paths);
            c.removal = Removal::deleteForGood();
            c.defaultOn = true;
            c.reveal = {layout.logs};
            c.minSize = 50 * MB;
            c.cacheKind = CacheKind::leftover;
            out.push_back(std::move(c));
        }
    }

    for (auto& c : xdgCaches()) out.push_back(std::move(c));
    add(brewRow());
    return out;
}

std::vector<Candidate> Scanner::developerData() {
    const auto& t = layout.scan;
    if (!t.developerRoot.empty() && !FS::isDir(t.developerRoot)) return {};
    std::vector<Candidate> out;
    for (const auto& row : t.developerRows) {
        if (!HomeBound::admit(row.path, home) || !FS::isDir(row.path)) continue;
        Candidate c;
        c.id = row.id;
        c.tier = row.tier;
        c.name = row.name;
        c.location = FS::tilde(row.path, home);
        c.note = row.note;
        c.paths = {row.path};
        c.removal = row.removal;
        c.defaultOn = row.defaultOn;
        c.minSize = t.developerMinSize;
        if (row.tier == Tier::safe) {
            Staleness s = touchedKind(row.path);
            c.cacheKind = s.kind;
            c.lastUsed = s.date;
        }
        if (row.keepWhenRecent)
            if (auto used = touched(row.path, now); used && secondsBetween(*used, now) < monthSeconds) {
                c.defaultOn = false;
                c.note += " · used " + Fmt::day(*used, now);
                c.lastUsed = used;
            }
        out.push_back(std::move(c));
    }
    return out;
}

std::vector<Candidate> Scanner::nodeVersions() {
    const auto& t = layout.scan;
    if (t.nodeVersions.empty() || !HomeBound::admit(t.nodeVersions, home)) return {};
    std::vector<std::string> versions;
    for (const auto& name : FS::sortedChildren(t.nodeVersions))
        if (name.starts_with("v") && HomeBound::admit(t.nodeVersions + "/" + name, home)) versions.push_back(name);
    // One version is never offered.
    if (versions.size() < 2) return {};
    std::string alias = Text::trim(FS::readText(t.nodeDefaultAlias, 4096).value_or(""));
    auto newest = *std::max_element(versions.begin(), versions.end(), [](const std::string& a, const std::string& b) {
        return versionParts(a) < versionParts(b);
    });

    std::vector<Candidate> out;
    for (const auto& version : versions) {
        if (version == newest || namedByAlias(version, alias)) continue;
        std::string path = t.nodeVersions + "/" + version;
        std::string below = path + "/";
        bool runningNow =
            std::any_of(allProcs.begin(), allProcs.end(), [&](const ProcInfo& p) { return p.exe.starts_with(below); });
        Candidate c;
        c.id = "node:" + version;
        c.tier = Tier::yourCall;
        c.name = "Node " + version;
        c.location = FS::tilde(path, home);
        c.note = "Not your default Node · nvm can install it again";
        c.paths = {path};
        c.removal = Removal::trash();
        c.defaultOn = false;
        c.minSize = 20 * MB;
        if (runningNow) c.lockedReason = "Running right now · kept";
        out.push_back(std::move(c));
    }
    return out;
}
