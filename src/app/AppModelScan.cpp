// The scan and the clean: when they may start, what a second request does, what a late
// result is worth, what is measured before and after, and what the user is told.
#include "app/AppModel.h"

#include "foundation/Fmt.h"
#include "foundation/Log.h"
#include "foundation/Rendering.h"
#include "foundation/Text.h"
#include "history/History.h"

#include <algorithm>
#include <cmath>

void AppModel::scan(std::function<void()> then) {
    // Queued first and in every case, so a closure asked for during a scan or a clean waits
    // for the next scan that finishes.
    if (then) afterScan.push_back(std::move(then));
    if (isScanning() || isCleaning()) return;
    auto token = ScanToken::make();
    scanToken = token;
    setScanProgress(ScanProgress{});
    scanStarted = now();
    auto running = setup.runningApps ? setup.runningApps() : std::vector<Scanner::RunningId>{};
    AppModel* self = this;
    worker.run<AppSetup::ScanResult>(
        Worker::Priority::utility, this,
        [job = setup.scan, running = std::move(running), token, self] {
            // Reports hop to the main thread one by one; a stopped or replaced scan's never land.
            auto progress = [self, token](const ScanProgress& p) {
                Worker::post(self, [self, token, p] {
                    if (self->scanToken == token && self->scanProgress_) self->setScanProgress(p);
                });
            };
            return job(running, token, progress);
        },
        [this, token](AppSetup::ScanResult result) { finishScan(std::move(result.items), result.folders, token); });
}

void AppModel::scanIfStale(double maxAge) {
    if (lastScan_ && secondsBetween(*lastScan_, now()) < maxAge) return;
    scan();
}

void AppModel::finishScan(std::vector<CleanItem> found, int folders, const std::shared_ptr<ScanToken>& token) {
    if (!scanToken || scanToken != token || token->isCancelled()) return;
    scanToken.reset();
    if (folders >= 1 && !Tools::rendering) (void)setup.settings->set("scanFolders", folders);
    int64_t bytes = 0;
    for (const auto& i : found)
        if (!i.isLocked()) bytes += i.size;
    Log::note(Text::format("scan done: %zu items, %s cleanable", found.size(), Fmt::bytes(bytes).c_str()));
    setItems(std::move(found));
    history_->noteRefills(items_, now());
    std::set<std::string> ticks;
    for (const auto& i : items_) {
        if (i.isLocked()) continue;
        auto o = overrides_.find(i.id);
        if (o != overrides_.end() ? o->second : startsTicked(i)) ticks.insert(i.id);
    }
    setSelected(std::move(ticks));
    put(lastScan_, std::optional<TimePoint>(now()), &AppModel::lastScanChanged);
    const double took = secondsBetween(scanStarted, now());
    put(lastScanSeconds_, std::optional<int>(std::max(1, static_cast<int>(std::lround(took)))), &AppModel::lastScanSecondsChanged);
    setScanProgress(std::nullopt);
    put(freedProjects_, std::set<std::string>{}, &AppModel::freedProjectsChanged);
    refreshRecs();
    refreshDisk();
    refreshProjects(true);
    auto closures = std::exchange(afterScan, {});
    for (auto& closure : closures) closure();
    emit scanFinished();
}

void AppModel::settleForPictures(int seconds) {
    std::set<std::string> ticks;
    for (const auto& i : items_)
        if (!i.isLocked() && i.defaultOn) ticks.insert(i.id);
    setSelected(std::move(ticks));
    put(lastScan_, std::optional<TimePoint>(now()), &AppModel::lastScanChanged);
    put(lastScanSeconds_, std::optional<int>(std::max(1, seconds)), &AppModel::lastScanSecondsChanged);
    refreshDisk();
}

void AppModel::cancelScan() {
    if (!scanToken) return;
    scanToken->cancel();
    scanToken.reset();
    setScanProgress(std::nullopt);
    Log::note("scan stopped");
}

void AppModel::clean(const std::vector<CleanItem>& chosen, const std::string& source, std::optional<std::string> label,
                     std::function<void(const CleanReport&)> finished) {
    std::vector<CleanItem> targets;
    for (const auto& i : chosen)
        if (!i.isLocked()) targets.push_back(i);
    setConfirming(false);
    if (targets.empty()) {
        toastPerform = {};
        say("Nothing is ticked, so there is nothing to clear.", Toast::Kind::info);
        return;
    }
    if (isCleaning()) {
        // A clean is never queued.
        toastPerform = {};
        say("Sorrelin is still clearing the last batch. Try again when it finishes.", Toast::Kind::info);
        return;
    }
    // A clean always wins over a scan.
    if (isScanning() && scanToken) cancelScan();
    put(report_, std::optional<CleanReport>(), &AppModel::reportChanged);
    put(cleanSummary_, std::optional<CleanSummary>(), &AppModel::cleanSummaryChanged);
    std::vector<CleanItem> order = Remover::order(targets);
    cleanItemsList.update(order);
    put(cleanProgress_, std::optional<CleanProgress>(CleanProgress{0, static_cast<int>(targets.size()), order.front().name, order, source}),
        &AppModel::cleanProgressChanged);
    const int64_t before = setup.readDisk().available;
    AppModel* self = this;
    worker.run<RemovalResult>(
        Worker::Priority::userInitiated, this,
        [targets, context = setup.remover, self] {
            return Remover::run(
                targets,
                [self](int done, const std::string& name) {
                    Worker::post(self, [self, done, name] {
                        if (!self->cleanProgress_) return;
                        CleanProgress p = *self->cleanProgress_;
                        p.done = done;
                        p.label = name;
                        self->put(self->cleanProgress_, std::optional<CleanProgress>(std::move(p)), &AppModel::cleanProgressChanged);
                    });
                },
                context);
        },
        [this, targets, order, before, source, label, finished](RemovalResult result) {
            // The volume settles before it is read again: what the user is told is its own
            // difference, not the sum of the sizes.
            after(1.2, [this, targets, order, before, source, label, finished, result] {
                worker.run<int64_t>(
                    Worker::Priority::userInitiated, this, [read = setup.readDisk] { return read().available; },
                    [this, targets, order, before, source, label, finished, result](int64_t afterClean) {
                        finishClean(targets, order, result, before, afterClean, source, label, finished);
                    });
            });
        });
}

void AppModel::finishClean(const std::vector<CleanItem>& targets, const std::vector<CleanItem>& order, RemovalResult result,
                           int64_t before, int64_t afterClean, const std::string& source, const std::optional<std::string>& label,
                           const std::function<void(const CleanReport&)>& finished) {
    for (const auto& i : targets) overrides_.erase(i.id);
    const int64_t freed = setup.remover.dryRun.on ? result.pretendFreed : std::max<int64_t>(afterClean - before, 0);
    CleanReport made{freed, result.removed, result.trashedBytes, result.failures, afterClean, now(), source};
    put(report_, std::optional<CleanReport>(made), &AppModel::reportChanged);
    history_->recordClean(freed, label.value_or(std::to_string(targets.size()) + " items"), now());
    std::vector<CleanItem> cleared;
    for (const auto& i : targets)
        if (result.removedIDs.contains(i.id)) cleared.push_back(i);
    history_->recordCacheClears(cleared, now());
    emit historyChanged();
    emit paceChanged();

    // Items that failed stay listed.
    std::vector<CleanItem> left;
    for (const auto& i : items_)
        if (!result.removedIDs.contains(i.id)) left.push_back(i);
    setItems(std::move(left));
    auto ticks = selected_;
    for (const auto& id : result.removedIDs) ticks.erase(id);
    setSelected(std::move(ticks));

    put(cleanProgress_, std::optional<CleanProgress>(), &AppModel::cleanProgressChanged);
    if (source == "window")
        put(cleanSummary_, std::optional<CleanSummary>(CleanSummary{made, before, order}), &AppModel::cleanSummaryChanged);

    if (source == "home") {
        doneToday_.push_back("Caches cleared");
        emit doneTodayChanged();
        say("Freed " + Fmt::bytes(freed) + ". Apps refill their caches as you use them.", Toast::Kind::ok);
    } else if (source == "projects") {
        say("Freed " + Fmt::bytes(freed) + ". The next install brings the packages back.", Toast::Kind::ok);
    } else if (source == "menu" && !result.failures.empty()) {
        say(Text::format("%zu of %zu could not be fully cleared.", result.failures.size(), targets.size()), Toast::Kind::problem);
    }
    refreshDisk();
    refreshProjects(false);
    if (finished) finished(made);
    emit cleanFinished();
}

void AppModel::cleanSelected() { clean(selectedItems(), "window"); }

void AppModel::cleanSafeNow(const QString& source) { clean(cachesToClear(), source.toStdString(), std::string("Caches")); }

void AppModel::emptyTrash() {
    if (emptyingTrash_) return;
    put(emptyingTrash_, true, &AppModel::emptyingTrashChanged);
    const int64_t before = setup.readDisk().available;
    worker.run<std::optional<std::string>>(
        Worker::Priority::userInitiated, this, [context = setup.remover] { return Remover::emptyTrash(context); },
        [this, before](std::optional<std::string> problem) {
            after(1.0, [this, before, problem] {
                worker.run<int64_t>(
                    Worker::Priority::userInitiated, this, [read = setup.readDisk] { return read().available; },
                    [this, before, problem](int64_t afterEmpty) {
                        put(emptyingTrash_, false, &AppModel::emptyingTrashChanged);
                        // The gain hangs on the report: with none, nothing is recorded.
                        if (report_) {
                            CleanReport r = *report_;
                            if (problem) {
                                r.failures.push_back("Empty Trash: " + *problem);
                            } else {
                                const int64_t gained = std::max<int64_t>(afterEmpty - before, 0);
                                r.freed += gained;
                                r.trashed = 0;
                                r.availableAfter = afterEmpty;
                                history_->recordClean(gained, "Trash", now());
                                emit historyChanged();
                            }
                            put(report_, std::optional<CleanReport>(std::move(r)), &AppModel::reportChanged);
                        }
                        refreshDisk();
                    });
            });
        });
}

void AppModel::dismissReport() { put(report_, std::optional<CleanReport>(), &AppModel::reportChanged); }

void AppModel::dismissSummary() { put(cleanSummary_, std::optional<CleanSummary>(), &AppModel::cleanSummaryChanged); }
