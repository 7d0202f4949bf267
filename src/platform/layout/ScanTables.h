#pragma once
// Tables of the cleaning sources: known caches, label tables, tool rows, developer data, big
// items and build folders. Every place here is an absolute path resolved for one home folder;
// an empty path means the platform has no such place and its row gives nothing.
#include "foundation/Removal.h"
#include "foundation/Tier.h"
#include "platform/Places.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

struct ScanTables {
    using Names = std::set<std::string, std::less<>>;
    template <class T> using ByName = std::map<std::string, T, std::less<>>;

    // A folder of the user caches whose owner and wording are known. `appIds` are the ids under
    // which the owning app may be installed (one bundle id on macOS; the native and the Flatpak
    // desktop ids on Linux); empty when no app owns it.
    struct KnownCache {
        std::string title;
        std::string note;
        std::vector<std::string> appIds;
    };
    // A folder that is offered whole when it is a directory.
    struct ToolRow {
        std::string id;
        std::string name;
        std::string path;
        std::string note;
        Tier tier = Tier::safe;
        int64_t minSize = 10'000'000;
    };
    struct DeveloperRow {
        std::string id;
        std::string name;
        std::string path;
        std::string note;
        Tier tier = Tier::safe;
        Removal removal = Removal::deleteForGood();
        bool defaultOn = true;
        // Starts unticked and tells the day when touched within the last thirty days: the
        // files come back only when the device that needs them is connected again.
        bool keepWhenRecent = false;
    };
    struct BrowserModel {
        std::string id;
        std::string browser;
        std::string path;
    };
    // How a process name becomes the word that says who works in a project.
    struct BusyWord {
        enum class Match { exact, prefix, lowerPrefix };
        Match match = Match::exact;
        std::string text;
        std::string word;
    };

    // ---- App caches ----
    ByName<KnownCache> knownCaches;
    ByName<std::string> appNames;                     // app id -> display name
    ByName<std::string> supportNames;                 // folder of the app-support place -> display name
    ByName<std::vector<std::string>> supportAppIds;   // folder of the app-support place -> app ids
    Names systemCacheDirs;                            // never touched in the user caches
    std::vector<std::string> systemPrefixes;          // names with these beginnings are the system's
    Names systemSupportDirs;                          // never looked into in the app-support place
    std::vector<std::string> chromiumMarkers;         // any one marks a Chromium-shaped folder
    std::vector<std::string> chromiumCaches;          // cache folders taken out of such a folder, in order
    std::string chromiumBrowserMarker;                // a browser's own folder, above its profiles
    bool matchSupportByAppId = false;                 // an app-support folder is open when its app id runs
    Names ownFolders;                                 // the program's own folders, never offered
    std::string flatpakApps;                          // per-app folders with config/ and cache/; empty on macOS
    std::string snapApps;                             // per-snap folders with common/.cache; empty on macOS
    std::string appFileSuffix;                        // file name ending of an installed app in applicationDirs

    // ---- Tool caches ----
    std::vector<ToolRow> leadingToolRows; // before the npx row
    std::string npxFolder;
    std::vector<ToolRow> toolRows;        // after the npx row
    std::vector<std::string> pnpmStores;
    ByName<std::string> xdgNames;         // display names for folders of the XDG cache
    Names modelDirs;                      // folders of the XDG cache that hold downloaded models
    Names ownRowCaches;                   // cache folders that a tool row lists, skipped by the folder rules
    std::string brewCacheName;            // the package manager's downloads in the user caches

    // ---- Developer data ----
    std::string developerRoot; // rows count only when this is a directory; empty: no such gate
    std::vector<DeveloperRow> developerRows;
    int64_t developerMinSize = 20'000'000;

    // ---- Node versions (nvm) ----
    std::string nodeVersions;
    std::string nodeDefaultAlias;

    // ---- Big items ----
    std::string vmBundles;       // a virtual machine the desktop assistant downloads; empty if none
    std::string vmProcessPrefix; // names of the processes that run it
    std::vector<BrowserModel> browserModels;
    std::string dockerImage;
    std::vector<std::string> dockerAppPaths; // any one present means Docker is installed
    std::vector<std::string> dockerAppIds;   // or an installed app of one of these ids
    std::string deviceBackups;

    // ---- Build folders ----
    Names buildDirNames;
    ByName<std::vector<std::string>> markerDirs; // folder -> marker files, any one beside it
    Names skipTop;    // folders directly in the home folder that are not walked
    Names bundleExts; // lower-cased extensions of folders that are single documents
    std::vector<std::string> busyNames; // the order in which a word for a busy project is chosen
    std::vector<BusyWord> busyWords;    // first match wins; no match keeps the process name

    [[nodiscard]] static ScanTables forLinux(const Places& places);
    [[nodiscard]] static ScanTables forMacos(const Places& places);
};
