// The slower jobs besides the cleaning scan: measuring the home folder, the growth of the last
// 14 days and the project cards, each with its busy mark, its copies and its staleness check.
#include "app/AppModel.h"

#include "foundation/Log.h"
#include "foundation/Text.h"
#include "history/Growth.h"
#include "history/History.h"
#include "projects/Projects.h"
#include "storage/StorageScan.h"
#include "storage/StorageStore.h"

void AppModel::measureStorage() {
    if (storageBusy_) return;
    auto token = ScanToken::make();
    storageToken = token;
    put(storageBusy_, true, &AppModel::storageBusyChanged);
    setStorageLive(std::nullopt);
    AppModel* self = this;
    worker.run<StorageReport>(
        Worker::Priority::utility, this,
        [layout = setup.layout, bundles = setup.bundles, token, self] {
            StorageScan walk(layout, token, bundles);
            return walk.run([self, token](const StorageReport& partial) {
                Worker::post(self, [self, token, partial] {
                    if (self->storageToken == token && self->storageBusy_) self->setStorageLive(partial);
                });
            });
        },
        [this, token](StorageReport report) {
            // A walk that was stopped or replaced is dropped whole.
            if (storageToken != token) return;
            storageToken.reset();
            put(storageBusy_, false, &AppModel::storageBusyChanged);
            setStorageLive(std::nullopt);
            if (report.complete) {
                setStorage(report);
                StorageStore::save(report, setup.supportDir);
            }
            Log::note(Text::format("storage measured in %.1f s, %d files", report.seconds, report.files));
        });
}

void AppModel::measureStorageIfStale(double maxAge) {
    if (storage_ && secondsBetween(storage_->made, now()) < maxAge) return;
    measureStorage();
}

void AppModel::stopStorage() {
    if (storageToken) storageToken->cancel();
    storageToken.reset();
    put(storageBusy_, false, &AppModel::storageBusyChanged);
    setStorageLive(std::nullopt);
}

void AppModel::refreshGrowth() {
    if (growthRunning_) return;
    put(growthRunning_, true, &AppModel::growthRunningChanged);
    worker.run<GrowthReport>(
        Worker::Priority::background, this, [layout = setup.layout, at = now()] { return Growth::scan(layout, at); },
        [this](GrowthReport report) {
            setGrowth(report);
            put(growthRunning_, false, &AppModel::growthRunningChanged);
            // A day picked on the old report means nothing in the new one.
            setWeekDay(std::nullopt);
            history_->setGrowth(report);
        });
}

void AppModel::refreshGrowthIfStale(double maxAge) {
    if (growth_ && secondsBetween(growth_->made, now()) < maxAge) return;
    refreshGrowth();
}

void AppModel::refreshProjects(bool wanted) {
    if (projectsBusy_) return;
    // Before the monitor's first sample there is nothing to build from; the next caller tries again.
    const auto& snapshot = monitor_->latest();
    if (!snapshot) return;
    put(projectsBusy_, true, &AppModel::projectsBusyChanged);
    worker.run<std::vector<ProjectCard>>(
        Worker::Priority::utility, this,
        [items = items_, snap = *snapshot, leftovers = monitor_->leftovers, at = now(), probe = setup.probe,
         layout = setup.layout, bundles = setup.bundles] { return Projects::build(items, snap, leftovers, at, *probe, layout, *bundles); },
        [this, wanted](std::vector<ProjectCard> cards) {
            setProjects(cards);
            put(projectsBusy_, false, &AppModel::projectsBusyChanged);
            const bool first = !shared_ && !sharedChecked_;
            put(sharedChecked_, true, &AppModel::sharedCheckedChanged);
            // The shared-workspace check walks project folders, so it doesn't run on every refresh.
            if (!wanted && !first) return;
            worker.run<std::optional<SharedPackages>>(
                Worker::Priority::utility, this,
                [cards = std::move(cards)] {
                    std::optional<SharedPackages> best;
                    for (const ProjectCard& card : cards) {
                        if (card.apps.size() < 3) continue;
                        auto found = Projects::sharedPackages(card);
                        if (found && (!best || found->today - found->shared > best->today - best->shared)) best = found;
                    }
                    return best;
                },
                [this](std::optional<SharedPackages> best) { put(shared_, std::move(best), &AppModel::sharedChanged); });
        });
}
