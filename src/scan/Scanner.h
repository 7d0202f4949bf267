#pragma once
// One cleaning scan: a snapshot of what runs, the sources asked in a fixed order, the
// candidates of one app merged, everything measured in parallel, the items handed back.
#include "foundation/Candidate.h"
#include "foundation/CleanItem.h"
#include "foundation/ProcInfo.h"
#include "foundation/ScanToken.h"
#include "foundation/Time.h"
#include "platform/AppBundles.h"
#include "platform/Layout.h"
#include "platform/ProcessFacts.h"
#include "scan/ScanProgress.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class Scanner {
public:
    // An app that runs now: its id (the desktop app id on Linux) and its display name.
    struct RunningId {
        std::string id;
        std::string name;
        friend bool operator==(const RunningId&, const RunningId&) = default;
    };
    using Report = std::function<void(const ScanProgress&)>;

    // Process names that say nothing about a project.
    static const std::set<std::string, std::less<>>& shells();

    Scanner(Layout layout, std::vector<RunningId> running, std::shared_ptr<ScanToken> cancel,
            const ProcessFacts& facts = ProcessFacts::system(), const AppBundles& apps = AppBundles::system());
    Scanner(std::vector<RunningId> running, std::shared_ptr<ScanToken> cancel);
    Scanner();

    // The apps running now, each with an id; read before a scan is handed the list.
    [[nodiscard]] static std::vector<RunningId> runningApps();

    // The whole scan on the calling thread. Empty when cancelled. `progress` is called on
    // worker threads, at most ten times a second, and always for the last step.
    [[nodiscard]] std::vector<CleanItem> run(Report progress = {});
    [[nodiscard]] int checkedFolders() const;

    // The snapshot, fixed when the scanner is made.
    Layout layout;
    std::string home;
    std::vector<ProcInfo> allProcs;
    std::vector<ProcInfo> procs; // allProcs less the shells
    std::vector<RunningId> running;
    std::optional<std::string> brew;
    std::set<std::string> busyNpx; // hashed folders below "/.npm/_npx/" in use
    std::shared_ptr<ScanToken> cancel;
    std::vector<std::string> buildDirs; // kept for the projects view of the same cycle
    TimePoint now;

    // Folder names below /.npm/_npx/ that any of the argument lists mentions.
    [[nodiscard]] static std::set<std::string> npxInUse(const std::vector<std::vector<std::string>>& argumentLists);
    // Candidates of one app joined, the order of first appearance kept; a joined one stands
    // at `mergedLocation`, or at the one folder that holds all its parts.
    [[nodiscard]] static std::vector<Candidate> mergeSameApp(std::vector<Candidate> candidates,
                                                             std::string_view mergedLocation = CleanItem::mergedLocation);

    // The newest of the folder's own modification date and those of its first 300 entries; a
    // date ahead of `now` counts as `now`.
    [[nodiscard]] static std::optional<TimePoint> touched(const std::string& folder, TimePoint now);
    // When the app installed at `appPath` (its entry file) was last used, if anyone recorded it.
    [[nodiscard]] static std::optional<TimePoint> lastUsed(const std::string& appPath,
                                                           const AppBundles& apps = AppBundles::system());
    // What the package manager says a clean-up would free; absent when it names no size.
    [[nodiscard]] static std::optional<int64_t> brewDryRun(const std::string& brew);
    [[nodiscard]] static std::optional<int64_t> brewFreed(std::string_view dryRunText);

private:
    friend struct ScannerTestAccess;

    // How stale a cache is, and the date that says so.
    struct Staleness {
        CacheKind kind = CacheKind::active;
        std::optional<TimePoint> date;
    };
    struct CacheLabel {
        std::string title;
        std::string note;
        std::vector<std::string> appIds;
        bool leftover = false;
    };

    // Sources, in the order the scan asks them.
    std::vector<Candidate> userCaches();
    std::vector<Candidate> appCaches();
    std::vector<Candidate> toolCaches();
    std::vector<Candidate> developerData();
    std::vector<std::string> findBuildDirs();
    std::vector<Candidate> projects();
    std::vector<Candidate> bigItems();
    std::vector<Candidate> downloads();
    std::vector<Candidate> nodeVersions();

    // App caches.
    [[nodiscard]] bool ownFolder(const std::string& path) const;
    [[nodiscard]] bool runs(const std::vector<std::string>& appIds) const;
    [[nodiscard]] Staleness kind(const std::vector<std::string>& appIds, const std::string& folder) const;
    [[nodiscard]] Staleness touchedKind(const std::string& folder) const;
    [[nodiscard]] CacheLabel cacheLabel(const std::string& name) const;
    [[nodiscard]] std::optional<std::string> appName(const std::string& appId) const;
    [[nodiscard]] std::vector<std::string> supportAppIds(const std::string& name, const std::string& pretty) const;
    void collectChromium(const std::string& folder, int depth, std::vector<std::string>& into) const;
    [[nodiscard]] std::optional<Candidate> userCache(const std::string& folder, const std::string& name) const;
    [[nodiscard]] std::optional<Candidate> flatpakCache(const std::string& appId) const;
    [[nodiscard]] std::optional<Candidate> snapCache(const std::string& snap) const;
    [[nodiscard]] std::optional<Candidate> supportCache(const std::string& folder, const std::string& name,
                                                        const std::string& id, std::vector<std::string> appIds) const;

    // Tool caches and developer data.
    [[nodiscard]] std::optional<Candidate> toolRow(const ScanTables::ToolRow& row) const;
    [[nodiscard]] std::optional<Candidate> npxRow() const;
    [[nodiscard]] std::vector<Candidate> xdgCaches() const;
    [[nodiscard]] std::optional<Candidate> brewRow() const;

    // Build folders.
    [[nodiscard]] std::optional<TimePoint> lastActivity(const std::string& root, const std::vector<std::string>& dirs) const;
    [[nodiscard]] std::optional<std::string> busyReason(const std::string& root) const;

    std::vector<CleanItem> measureAll(const std::vector<Candidate>& candidates);
    // The size of a tree candidate whose paths all lie in the home, no link on the way; absent
    // when one does not.
    [[nodiscard]] std::optional<int64_t> measureInHome(const std::vector<std::string>& paths) const;
    [[nodiscard]] std::vector<std::string> downloadNames(const std::string& folder, int64_t floor) const;
    void publish(bool force, const std::function<void(ScanProgress&)>& change);
    [[nodiscard]] bool cancelled() const { return cancel && cancel->isCancelled(); }

    const ProcessFacts* facts;
    const AppBundles* apps;
    Report report;
    mutable std::mutex progressLock;
    ScanProgress current;
    std::chrono::steady_clock::time_point lastReport{};
};
