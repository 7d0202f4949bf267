#include "platform/layout/RemovalTables.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace {

// The folders that hold a Mac user's own data and settings. Kept on Linux as well: a home
// folder shared with a Mac, or files copied over from one, deserve the same care.
const std::vector<std::string> macosRows = {
    "/Library",
    "/Library/Caches",
    "/Library/Application Support",
    "/Library/Logs",
    "/Library/Developer",
    "/Library/Containers",
    "/Library/Group Containers",
    "/Library/LaunchAgents",
    "/Library/Preferences",
    "/Library/Mobile Documents",
    "/Library/pnpm",
    "/Documents",
    "/Desktop",
    "/Downloads",
    "/Pictures",
    "/Movies",
    "/Music",
    "/Applications",
    "/Public",
    "/.cache",
    "/.npm",
    "/.nvm",
    "/.nvm/versions",
    "/.nvm/versions/node",
    "/.ssh",
    "/.config",
    "/.local",
    "/.local/share",
    "/.Trash",
    "/Documents/GitHub",
};

// The Linux places of the same kind, as fixed names below the home folder.
const std::vector<std::string> linuxRows = {
    "/.config", "/.local", "/.local/share", "/.local/state", "/.cache", "/.var", "/.var/app", "/snap",
    "/.local/share/Trash", "/.ssh", "/.gnupg", "/.mozilla",
};

// `path` relative to `home`, beginning with "/"; absent when it is not below `home`.
std::optional<std::string> below(const std::string& home, const std::string& path) {
    if (home.empty() || path.size() <= home.size() || !path.starts_with(home) || path[home.size()] != '/')
        return std::nullopt;
    std::string rel = path.substr(home.size());
    while (rel.size() > 1 && rel.back() == '/') rel.pop_back();
    return rel;
}

void add(std::vector<std::string>& rows, const std::string& row) {
    if (std::find(rows.begin(), rows.end(), row) == rows.end()) rows.push_back(row);
}

} // namespace

RemovalTables RemovalTables::forLinux(const Places& places) {
    RemovalTables t;
    t.protectedPaths = macosRows;
    for (const auto& row : linuxRows) add(t.protectedPaths, row);
    // The places as this user has them: XDG folders moved elsewhere, localised user folders.
    std::vector<std::string> resolved = {places.configHome, places.dataHome, places.stateHome, places.xdgCache,
                                         places.caches, places.containers, places.snapApps, places.trash,
                                         places.trash + "/files", places.trash + "/info", places.supportDir};
    for (const auto& folder : places.userFolders()) resolved.push_back(folder);
    for (const auto& place : resolved)
        if (auto rel = below(places.home, place)) add(t.protectedPaths, *rel);
    return t;
}

RemovalTables RemovalTables::forMacos(const Places&) {
    RemovalTables t;
    t.protectedPaths = macosRows;
    return t;
}
