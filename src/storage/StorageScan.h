#pragma once
// One walk of everything under the home folder, the installed apps and what the system keeps
// beside them, in independent units walked in parallel, turned into a StorageReport. Memory
// stays small whatever the number of files: nothing is kept per file but a key for each file
// with several hard links.
#include "foundation/ScanToken.h"
#include "foundation/Time.h"
#include "platform/AppBundles.h"
#include "platform/Layout.h"
#include "storage/LinkSet.h"
#include "storage/StorageReport.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

class StorageScan {
public:
    // One independent piece of work: one row of the map, or one part of a row.
    struct Unit {
        std::string path;
        StorageKind kind = StorageKind::other;
        std::string item; // the key of its row
        std::string name; // the row's title
        std::optional<std::string> detail{};
        bool findsProjects = false;
        bool first = false; // walked alone, before all others
        std::optional<std::string> reveal{}; // for a row keyed by something other than a path
        std::optional<int64_t> bytes{};    // a size known without a walk
        bool ownFilesOnly = false;         // count only the user's own files (shared temporary folders)
        bool countsUnreadable = true;      // false outside the home folder, where most is not ours to read
        bool selfOnly = false;             // only the folder's own blocks, no row: what it holds is split
        // A split folder: its own blocks, and each entry inside that is no folder as a row of its
        // own (its folders are units of their own), by this rule.
        const StorageTables::Rule* split = nullptr;
        friend bool operator==(const Unit&, const Unit&) = default;
    };

    // A row in the making.
    struct Entry {
        StorageKind kind = StorageKind::other;
        std::string name;
        std::optional<std::string> detail{};
        int64_t bytes = 0;
        bool isFolder = false;
        std::optional<std::string> reveal;
    };

    // What the app step knows of an app beyond its row.
    struct AppFacts {
        std::optional<std::string> bundleID;
        std::vector<std::string> names; // further folder names its data may go by
        std::optional<DesktopEntry> entry;
    };

    // The system's own share: its rows and the swap on the home volume.
    struct Volumes {
        std::vector<StorageItem> rows;
        int64_t vm = 0;
    };

    using Progress = std::function<void(const StorageReport&)>;

    static constexpr std::size_t maxBig = 60;
    static constexpr int64_t initialFloor = 100 * MB;

    // The host's layout and installed apps.
    explicit StorageScan(std::shared_ptr<ScanToken> cancel);
    // `apps` may be null: no desktop entries are read then.
    StorageScan(Layout layout, std::shared_ptr<ScanToken> cancel, const AppBundles* apps);

    // Blocks until done. `progress` gets partial reports from worker threads, twice a second,
    // never one marked complete and never after run returns. A cancelled walk still returns
    // what it measured, marked incomplete and without apps.
    [[nodiscard]] StorageReport run(const Progress& progress = {});

    // When partial reports go out: the first this long after run starts, then at this interval.
    std::chrono::milliseconds firstReport{400};
    std::chrono::milliseconds reportEvery{500};

    // The units in the order they are walked, and the app units; planned once.
    [[nodiscard]] const std::vector<Unit>& units();
    [[nodiscard]] const std::vector<Unit>& appUnits();

    // macOS: the app bundles in the application folders, one level of sub-folders searched.
    [[nodiscard]] static std::vector<std::string> appBundles(const Layout& layout);
    // The last path component less a final ".app".
    [[nodiscard]] static std::string appName(std::string_view path);
    // The identifier in a bundle's Contents/Info.plist (XML form), if any.
    [[nodiscard]] static std::optional<std::string> bundleIdentifier(const std::string& bundle);
    // The title of a macOS asset folder.
    [[nodiscard]] static std::string assetTitle(const std::string& folder, const StorageTables& tables);
    // The system's own share where it lies on the home volume; nothing when no source of it
    // could be read. `packagesShownAsApps` is left out of the packages' row.
    [[nodiscard]] static std::optional<Volumes> volumes(const Layout& layout, int64_t packagesShownAsApps);

private:
    void plan();
    void planRule(const std::string& path, const StorageTables::Rule& rule);
    void planHomeEntry(const std::string& name);
    void planApps();
    void planAssetsAndTemporary();
    void add(Unit unit);
    // Whether a unit's path may be planned: anything outside the home, or what the home rule admits.
    [[nodiscard]] bool admitted(const std::string& path) const;
    void tellApartSameTitles();
    [[nodiscard]] bool onHomeVolume(const std::string& path) const;
    [[nodiscard]] std::string splitTitle(const std::string& name, const StorageTables::Rule& rule) const;
    // Whether an entry of a split folder is a row: not hidden or left out by the rule, nor planned by a rule of its own.
    [[nodiscard]] bool splitsOff(const StorageTables::Rule& rule, const std::string& path, std::string_view name) const;

    // One walk over several units at once, on every core.
    class Walk;
    struct Tally;
    void walkUnits(const std::vector<const Unit*>& batch);
    void merge(const Unit& unit, bool isFolder, Tally& tally);
    void maybeReport();
    [[nodiscard]] StorageReport snapshot(bool complete, std::vector<AppSize> apps);
    [[nodiscard]] std::vector<AppSize> appSizes();
    [[nodiscard]] bool cancelled() const { return cancel && cancel->isCancelled(); }

    Layout layout;
    std::shared_ptr<ScanToken> cancel;
    const AppBundles* apps;
    std::string home;
    TimePoint started;
    std::chrono::steady_clock::time_point startedSteady;

    // Planning.
    bool planned = false;
    std::vector<Unit> planUnits;
    std::vector<Unit> planApps_;
    std::set<std::string> plannedPaths;
    std::map<std::string, AppFacts> appFacts;     // by app item
    std::map<std::string, std::string> appIdNames; // app id to display name, for folders named by id
    int64_t packagesShownAsApps = 0;
    uint64_t homeDevice = 0;

    // Paths that some unit or rule owns: a walk that meets one leaves it to its owner.
    struct PathHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const noexcept { return std::hash<std::string_view>{}(s); }
    };
    using PathSet = std::unordered_set<std::string, PathHash, std::equal_to<>>;
    PathSet claimed;
    PathSet claimParents; // folders that hold a claimed path
    void claim(const std::string& path);

    // Shared by the walks, under `lock`.
    std::mutex lock;
    std::map<StorageKind, int64_t> totals;
    // Rows by kind and key: a project at the top of Documents is a row of both.
    std::map<std::pair<StorageKind, std::string>, Entry> entries;
    std::map<StorageKind, int> unreadable;
    std::map<StorageKind, std::vector<std::string>> unreadableFolders;
    std::vector<BigFile> big;
    int64_t bigFloor = initialFloor;
    int files = 0;

    LinkSet links;
    std::deque<std::string> projectPaths; // of the projects the walks found, under `lock`; never moved

    // Partial reports.
    const Progress* progress = nullptr;
    std::atomic<int64_t> nextReport{0}; // steady-clock nanoseconds
    std::mutex reportLock;
};
