#pragma once
// One cleaning scan: a snapshot of what runs, the sources asked in a fixed order, the
// candidates of one app merged, everything measured in parallel, the items handed back.
#include "foundation/Candidate.h"
#include "foundation/CleanItem.h"
#include "foundation/ProcInfo.h"
#include "foundation/ScanToken.h"
#include "foundation/Time.h"
#include "platform/Layout.h"
#include "platform/ProcessFacts.h"
#include "scan/ScanProgress.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
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
            const ProcessFacts& facts = ProcessFacts::system());
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
    // Candidates of one app joined, the order of first appearance kept.
    [[nodiscard]] static std::vector<Candidate> mergeSameApp(std::vector<Candidate> candidates);

private:
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

    std::vector<CleanItem> measureAll(const std::vector<Candidate>& candidates);
    void publish(bool force, const std::function<void(ScanProgress&)>& change);
    [[nodiscard]] bool cancelled() const { return cancel && cancel->isCancelled(); }

    const ProcessFacts* facts;
    Report report;
    mutable std::mutex progressLock;
    ScanProgress current;
    std::chrono::steady_clock::time_point lastReport{};
};
