#pragma once
// Tables of the storage map and the growth report: which folders become which rows of the
// map, where installed apps and the system's own files lie, and the named places of growth.
#include "history/GrowthReport.h"
#include "platform/Places.h"
#include "platform/layout/ScanTables.h"
#include "storage/StorageKind.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

struct StorageTables {
    // One row for one fixed path.
    struct Place {
        std::string path;
        StorageKind kind = StorageKind::developer;
        std::string name;
        bool first = false;
    };

    // How the storage walk treats a folder at a fixed path. Folders inside a rule's folder that
    // have rules of their own are taken out of it, so nothing is counted twice.
    struct Rule {
        enum class Action {
            unit,  // the folder is one row
            split, // each entry inside is a row of its own
            skip,  // not measured (what lies inside may still have rules)
        };
        Action action = Action::unit;
        StorageKind kind = StorageKind::appData;
        std::string name;                   // unit: the title; empty means the folder's name
        std::optional<std::string> detail;  // split: the second line of each row
        bool first = false;                 // unit: walked before every other unit
        bool findsProjects = false;         // split: look for code projects inside
        bool skipHidden = true;             // split: leave out names that start with "."
        std::set<std::string> skipNames;    // split: names left out
        std::map<std::string, std::string> names; // split: titles of folders not named after their app
        std::map<std::string, std::string> subNames; // split: titles by name, taken as they stand
        bool titlesByAppId = false;         // split: a name of three or more dot parts is an app id
        std::string unnamedSuffix;          // split: added to a title that `subNames` did not give
    };

    // Tools outside the home folder, each measured only if it is a folder.
    std::vector<Place> outsideTools;
    // Rules by absolute path. The home folder's own entries without a rule follow the home
    // rule: hidden folders are developer tools titled by `dotNames`, everything else is "other".
    std::map<std::string, Rule> rules;
    std::map<std::string, std::string> dotNames;
    // A folder under level 5 of a unit that finds projects, holding one of these, is a code
    // project (node_modules never is).
    std::vector<std::string> projectMarkers;
    // Besides the rules' own: every folder directly in the home folder that is neither hidden
    // nor a user folder finds projects (where developers keep ~/code, ~/src, ~/projects...).
    bool homeFoldersFindProjects = false;
    std::set<std::string> firstDots;     // hidden home folders walked before every other unit
    // Extra folder names under which an app, by its id, keeps its data.
    std::map<std::string, std::vector<std::string>> dataFolders;

    // Installed apps. macOS: bundles in `applicationDirs`. Linux: desktop entries, sized by
    // where they are installed.
    std::string optDir;                  // third-party apps in folders of their own
    std::string snapDesktopDir;          // desktop entries that snapd exports
    std::string snapMountDir;            // /snap/<name>/current names the current revision
    std::string snapFilesDir;            // the revisions: <name>_<revision>.snap
    std::string dpkgStatus;              // installed packages with their installed sizes
    std::string dpkgInfo;                // <package>.list: the files of each package

    // What the system downloaded by itself. macOS: one unit per entry of `assetsRoot`, titled
    // by `assetNames` and the naming rules. Linux: `assetPlaces`, and the snap revisions that
    // no app unit holds.
    std::string assetsRoot;
    std::map<std::string, std::string> assetNames;
    struct AssetRule {
        std::vector<std::string> contains; // any of these in the name
        std::string prefix;                // or the name starts with this
        std::string title;
    };
    std::vector<AssetRule> assetRules;   // in order, after `assetNames`
    std::string assetPrefix;             // removed from other names, "_" read as a blank
    std::vector<Place> assetPlaces;      // each measured whole if it is a folder
    std::string snapRevisionsTitle;      // revisions of snaps that are apps, not the current one
    std::string snapRuntimesTitle;       // snaps that are no app: bases, runtimes, snapd

    // The user's temporary folders; only the user's own files in them count.
    std::vector<Place> temporary;

    // The system's own share (Linux): packages by their installed sizes, and folders.
    std::string systemTitle;             // the packages' row
    std::string systemRoot;              // where the packages' files lie
    std::vector<Place> systemPlaces;     // measured when on the home volume
    std::string procSwaps;               // swap areas; files on the home volume are `vm`

    // Growth: named places of the home folder, by path relative to it.
    struct GrowthPlaceRule {
        bool skip = false;
        std::string key;
        std::string location;
        GrowthBucket bucket = GrowthBucket::files;
    };
    enum class GrowthNaming {
        home,      // hidden: dotNames or "{Pretty} data" as tools; others "{name}" as files
        fixed,     // the rule's own key and location
        support,   // supportNames or "{Pretty} data"; tools when in toolSupport
        cache,     // cacheNames, "{Pretty} update files" for ".ShipIt", else "{Pretty} cache"
        container, // "{Pretty} data"
    };
    // What each folder directly inside a place becomes, unless it has a place of its own.
    struct GrowthChildRule {
        GrowthNaming naming = GrowthNaming::fixed;
        std::string key;      // fixed: the key
        std::string location; // fixed: the location; otherwise the prefix of the name
        GrowthBucket bucket = GrowthBucket::appData;
    };
    std::map<std::string, GrowthPlaceRule> growthPlaces;
    std::map<std::string, GrowthChildRule> growthChildren; // "" is the home folder
    std::set<std::string> buildNames;
    std::set<std::string> toolSupport;
    std::map<std::string, std::string> supportNames;
    std::map<std::string, std::string> cacheNames;
    std::map<std::string, std::string> growthDotNames;

    // The cache folder's rows take the titles that the cleaning scan gives the same folders.
    [[nodiscard]] static StorageTables forLinux(const Places& places, const ScanTables& scan);
    [[nodiscard]] static StorageTables forMacos(const Places& places);
};
