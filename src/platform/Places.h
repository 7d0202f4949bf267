#pragma once
// The places of one platform that the program reads and writes, resolved for one home folder.
#include <string>
#include <vector>

enum class Platform { linux, macos };

struct Places {
    Platform platform = Platform::linux;
    std::string home;

    std::string caches;          // user caches: ~/Library/Caches | $XDG_CACHE_HOME
    std::string xdgCache;        // ~/.cache on both; on Linux the same folder as `caches`
    std::string appSupport;      // ~/Library/Application Support | $XDG_CONFIG_HOME
    std::string configHome;      // $XDG_CONFIG_HOME (~/.config) on both
    std::string dataHome;        // $XDG_DATA_HOME (~/.local/share); on macOS unused but set
    std::string stateHome;       // $XDG_STATE_HOME (~/.local/state)
    std::string containers;      // ~/Library/Containers | ~/.var/app (Flatpak)
    std::string groupContainers; // ~/Library/Group Containers | none
    std::string snapApps;        // none | ~/snap
    std::string logs;            // ~/Library/Logs | none
    std::string trash;           // ~/.Trash | $XDG_DATA_HOME/Trash
    std::string supportDir;      // the program's data files
    std::string loginItem;       // the launch agent or the autostart entry

    // The user folders (localised on Linux by user-dirs.dirs).
    std::string downloads, documents, desktop, pictures, movies, music, publicShare, templates;

    // Where installed applications are found: /Applications or the desktop-entry folders.
    std::vector<std::string> applicationDirs;
    // Candidate paths of the package manager's `brew`, in order of preference.
    std::vector<std::string> brewPaths;
    // The location text of an item that joins an app's caches with its data folder.
    std::string mergedLocation;

    [[nodiscard]] bool isLinux() const { return platform == Platform::linux; }
    [[nodiscard]] bool isMac() const { return platform == Platform::macos; }
    [[nodiscard]] std::vector<std::string> userFolders() const;
};
