#include "scan/Scanner.h"

#include "foundation/FS.h"
#include "foundation/HomeBound.h"
#include "foundation/Parallel.h"
#include "platform/RunningApp.h"

#include <algorithm>
#include <chrono>

namespace {

using Steady = std::chrono::steady_clock;
constexpr auto reportGap = std::chrono::milliseconds(100);

} // namespace

const std::set<std::string, std::less<>>& Scanner::shells() {
    static const std::set<std::string, std::less<>> names{"zsh",  "-zsh",  "bash", "-bash",  "sh", "fish",
                                                          "tcsh", "csh",   "dash", "nu",     "login", "tmux",
                                                          "screen", "less", "man", "sudo", "ssh"};
    return names;
}

Scanner::Scanner(Layout layoutIn, std::vector<RunningId> runningIn, std::shared_ptr<ScanToken> cancelIn,
                 const ProcessFacts& factsIn, const AppBundles& appsIn)
    : layout(std::move(layoutIn)), running(std::move(runningIn)), cancel(std::move(cancelIn)), facts(&factsIn),
      apps(&appsIn) {
    home = layout.home;
    now = Clock::now();
    allProcs = facts->processes();
    for (const auto& p : allProcs)
        if (!shells().contains(p.name)) procs.push_back(p);
    std::vector<std::vector<std::string>> argumentLists;
    argumentLists.reserve(allProcs.size());
    for (const auto& p : allProcs) argumentLists.push_back(facts->arguments(p.pid));
    busyNpx = npxInUse(argumentLists);
    for (const auto& candidate : layout.brewPaths)
        if (FS::isExecutableFile(candidate)) {
            brew = candidate;
            break;
        }
}

Scanner::Scanner(std::vector<RunningId> runningIn, std::shared_ptr<ScanToken> cancelIn)
    : Scanner(Layout::host(), std::move(runningIn), std::move(cancelIn)) {}

Scanner::Scanner() : Scanner(runningApps(), nullptr) {}

std::set<std::string> Scanner::npxInUse(const std::vector<std::vector<std::string>>& argumentLists) {
    constexpr std::string_view marker = "/.npm/_npx/";
    std::set<std::string> busy;
    for (const auto& args : argumentLists)
        for (const auto& arg : args) {
            auto at = arg.find(marker);
            if (at == std::string::npos) continue;
            std::string_view rest = std::string_view(arg).substr(at + marker.size());
            while (!rest.empty() && rest.front() == '/') rest.remove_prefix(1);
            auto slash = rest.find('/');
            std::string_view first = rest.substr(0, slash);
            if (!first.empty()) busy.emplace(first);
        }
    return busy;
}

std::vector<Scanner::RunningId> Scanner::runningApps() {
    std::vector<RunningId> out;
    std::set<std::string> seen; // two launches of one app name it once
    for (const auto& [pid, app] : RunningApp::current())
        if (app.bundleID && seen.insert(*app.bundleID).second) out.push_back({*app.bundleID, app.name});
    return out;
}

std::optional<int64_t> Scanner::measureInHome(const std::vector<std::string>& paths) const {
    // Asked again when measuring, and once more after: a folder swapped for a link since it
    // was listed, or while it was measured, would be measured and offered as what it points to.
    // A path gone meanwhile is no reason to drop the rest.
    auto ours = [&] {
        return std::all_of(paths.begin(), paths.end(), [&](const std::string& p) {
            auto verdict = HomeBound::noted(p, home);
            return verdict == HomeBound::Verdict::inside || verdict == HomeBound::Verdict::missing;
        });
    };
    if (!ours()) return std::nullopt;
    int64_t size = FS::measure(paths, cancel.get()).exclusive;
    if (!ours()) return std::nullopt;
    return size;
}

int Scanner::checkedFolders() const {
    std::lock_guard guard(progressLock);
    return current.checked;
}

std::vector<CleanItem> Scanner::run(Report progress) {
    report = std::move(progress);
    ScanProgress first;
    {
        std::lock_guard guard(progressLock);
        current = ScanProgress{};
        lastReport = Steady::now();
        first = current;
    }
    if (report) report(first);

    std::vector<Candidate> found;
    auto append = [&](std::vector<Candidate> more) {
        for (auto& c : more) found.push_back(std::move(c));
    };
    append(userCaches());
    append(appCaches());
    append(toolCaches());
    append(developerData());

    publish(false, [](ScanProgress& p) { p.label = "Looking for build folders in your projects"; });

    buildDirs = findBuildDirs();
    append(projects());
    append(bigItems());
    append(downloads());
    append(nodeVersions());

    found = mergeSameApp(std::move(found), layout.mergedLocation);
    if (cancelled()) return {};
    return measureAll(found);
}

void Scanner::publish(bool force, const std::function<void(ScanProgress&)>& change) {
    ScanProgress copy;
    {
        std::lock_guard guard(progressLock);
        change(current);
        auto t = Steady::now();
        if (!force && t - lastReport < reportGap) return;
        lastReport = t;
        copy = current;
    }
    if (report) report(copy);
}

std::vector<CleanItem> Scanner::measureAll(const std::vector<Candidate>& candidates) {
    struct Results {
        std::mutex lock;
        std::vector<std::optional<int64_t>> sizes;
        int done = 0;
        int64_t found = 0;
    } results;
    results.sizes.assign(candidates.size(), std::nullopt);

    ScanProgress start;
    {
        std::lock_guard guard(progressLock);
        current.stage = ScanProgress::Stage::measuring;
        current.done = 0;
        current.total = static_cast<int>(candidates.size());
        current.label = candidates.empty() ? std::string() : candidates.front().name;
        lastReport = Steady::now();
        start = current;
    }
    if (report) report(start);

    const int total = static_cast<int>(candidates.size());
    parallelFor(candidates.size(), [&](std::size_t i) {
        const Candidate& c = candidates[i];
        std::optional<int64_t> size;
        if (!cancelled()) {
            if (c.measure.isTree()) size = measureInHome(c.paths);
            else size = c.measure.custom();
        }
        int done;
        int64_t found;
        {
            std::lock_guard guard(results.lock);
            results.sizes[i] = size;
            done = ++results.done;
            // Locked items never count as found.
            if (size && *size >= c.minSize && !c.lockedReason) results.found += *size;
            found = results.found;
        }
        publish(done == total, [&](ScanProgress& p) {
            // Workers finish out of order: never let the figures run backwards.
            if (done > p.done) {
                p.done = done;
                p.found = found;
            }
            p.label = c.name;
        });
    });

    if (cancelled()) return {};
    std::vector<CleanItem> items;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto& size = results.sizes[i];
        if (size && *size >= candidates[i].minSize) items.push_back(candidates[i].item(*size));
    }
    return items;
}
