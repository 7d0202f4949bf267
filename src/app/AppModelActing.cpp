// From a press on a piece of advice to its done state: arming, the states of a row, fixes run
// one after another, snoozing, quitting from a notification and sending one thing to the Trash
// with an undo. Everything waits on the clock, never in a blocking sleep.
#include "app/AppModel.h"

#include "foundation/Fmt.h"
#include "foundation/Text.h"
#include "history/History.h"
#include "storage/StorageStore.h"

#include <algorithm>
#include <cmath>

// One run of fixes, taken strictly one after the other.
struct PerformRun {
    std::vector<Rec> recs;
    bool batch = false;
    std::function<void()> finished;
    std::size_t index = 0;
    std::vector<std::string> failures;
};

void AppModel::arm(const std::string& key, std::function<void()> action) {
    if (armTimer) setup.clock->cancel(*armTimer);
    armTimer.reset();
    if (armed_ == key) {
        setArmed(std::nullopt);
        if (action) action();
        return;
    }
    // Arming one control disarms whatever was armed before.
    setArmed(key);
    armTimer = setup.clock->after(4.0, this, [this, key] {
        armTimer.reset();
        if (armed_ == key) setArmed(std::nullopt);
    });
}

std::vector<CleanItem> AppModel::itemsWithIds(const std::vector<std::string>& ids) const {
    std::vector<CleanItem> out;
    for (const auto& i : items_)
        if (std::find(ids.begin(), ids.end(), i.id) != ids.end()) out.push_back(i);
    return out;
}

void AppModel::run(Rec rec) {
    // A row can't be started twice.
    if (acting_.contains(rec.id)) return;
    if (rec.arm) {
        const std::string key = "rec:" + rec.id;
        if (armed_ != key) {
            arm(key, {});
            return;
        }
    }
    setArmed(std::nullopt);
    std::vector<CleanItem> chosen;
    std::string source;
    switch (rec.action.kind) {
    case RecAction::Kind::open: showWindow(rec.action.tab); return;
    case RecAction::Kind::restart:
        showWindow(std::nullopt);
        setRestartSheet(true);
        return;
    case RecAction::Kind::quit:
    case RecAction::Kind::relaunch:
    case RecAction::Kind::stopLeftovers: perform({rec}, false); return;
    case RecAction::Kind::freeItems:
        chosen = itemsWithIds(rec.action.itemIDs);
        source = "projects";
        break;
    case RecAction::Kind::clearCaches:
        chosen = cachesToClear();
        source = "home";
        break;
    }
    if (chosen.empty()) {
        say("That is already cleared. Sorrelin measures again on the next scan.", Toast::Kind::info);
        return;
    }
    if (isCleaning()) {
        say("Sorrelin is still clearing the last batch. Try again when it finishes.", Toast::Kind::info);
        return;
    }
    snaps[rec.id] = rec;
    setActing(rec.id, RecState::busy);
    const std::string id = rec.id;
    // When every item is locked the clean refuses and the row stays busy: that is by design.
    clean(chosen, source, rec.title, [this, id](const CleanReport&) {
        setActing(id, RecState::done);
        after(1.4, [this, id] {
            setActing(id, std::nullopt);
            snaps.erase(id);
        });
    });
}

void AppModel::perform(std::vector<Rec> chosen, bool batch, std::function<void()> finished) {
    auto run = std::make_shared<PerformRun>();
    run->recs = std::move(chosen);
    run->batch = batch;
    run->finished = std::move(finished);
    performStep(run);
}

void AppModel::performStep(std::shared_ptr<PerformRun> run) {
    const std::size_t n = run->recs.size();
    if (run->index >= n) {
        if (run->batch) put(batch_, std::optional<Batch>(), &AppModel::batchChanged);
        // Only the first failure is shown, and a batch with one gives no "Done".
        if (!run->failures.empty()) say(run->failures.front(), Toast::Kind::problem);
        else if (n > 1 && run->finished) run->finished();
        return;
    }
    const Rec rec = run->recs[run->index];
    if (run->batch) put(batch_, std::optional<Batch>(Batch{static_cast<int>(run->index), static_cast<int>(n)}), &AppModel::batchChanged);
    snaps[rec.id] = rec;
    setActing(rec.id, RecState::busy);
    execute(rec, [this, run, rec, n](Actions::Outcome outcome) {
        if (!outcome.isDone()) {
            run->failures.push_back(outcome.text);
            setActing(rec.id, std::nullopt);
            snaps.erase(rec.id);
            setFailedRec(rec.id);
            after(0.8, [this, id = rec.id] {
                if (failedRec_ == id) setFailedRec(std::nullopt);
            });
            ++run->index;
            performStep(run);
            return;
        }
        setActing(rec.id, RecState::done);
        if (rec.action.kind == RecAction::Kind::quit && rec.cpuShare >= 1.0) {
            recentlyFreed_[rec.id] = Freed{rec.cpuShare, now()};
            emit recentlyFreedChanged();
        }
        if (!rec.doneChip.empty()) {
            doneToday_.push_back(rec.doneChip);
            emit doneTodayChanged();
        }
        if (n == 1) {
            const std::string& c = rec.doneChip;
            switch (rec.action.kind) {
            case RecAction::Kind::quit:
            case RecAction::Kind::stopLeftovers: say(c + ". " + Text::upperFirst(rec.effect) + ".", Toast::Kind::ok); break;
            case RecAction::Kind::relaunch: say(c + " with your tabs.", Toast::Kind::ok); break;
            default: say(c + ".", Toast::Kind::ok); break;
            }
        }
        monitor_->sample(1.2);
        after(n == 1 ? 1.2 : 0.65, [this, run, id = rec.id] {
            setActing(id, std::nullopt);
            snaps.erase(id);
            ++run->index;
            performStep(run);
        });
    });
}

void AppModel::execute(const Rec& rec, std::function<void(Actions::Outcome)> done) {
    switch (rec.action.kind) {
    case RecAction::Kind::quit:
    case RecAction::Kind::relaunch: {
        const AppUsage* app = monitor_->app(rec.action.key);
        if (!app) {
            done(Actions::Outcome::failed("That app is not running any more."));
            return;
        }
        const bool quit = rec.action.kind == RecAction::Kind::quit;
        worker.run<Actions::Outcome>(
            Worker::Priority::userInitiated, this,
            [app = *app, quit, context = setup.actions] { return quit ? Actions::quit(app, context) : Actions::relaunch(app, context); },
            std::move(done));
        return;
    }
    case RecAction::Kind::stopLeftovers: {
        std::vector<Leftover> leftovers = monitor_->leftovers;
        std::set<int32_t> ids;
        for (const auto& l : leftovers) ids.insert(l.id);
        worker.run<int>(
            Worker::Priority::userInitiated, this, [leftovers, context = setup.actions] { return Actions::stop(leftovers, context); },
            [this, ids, done = std::move(done)](int) {
                monitor_->forgetLeftovers(ids);
                monitorSampled();
                monitor_->sample(0);
                done(Actions::Outcome::done());
            });
        return;
    }
    default: done(Actions::Outcome::done()); return;
    }
}

void AppModel::runSafe() {
    std::vector<Rec> chosen = safeRecs();
    if (batch_ || chosen.empty()) return;
    put(batch_, std::optional<Batch>(Batch{0, static_cast<int>(chosen.size())}), &AppModel::batchChanged);
    for (const Rec& r : chosen) setActing(r.id, RecState::queued);
    perform(chosen, true, [this, chosen] {
        double cpu = 0;
        int64_t mem = 0;
        for (const Rec& r : chosen) {
            cpu += r.cpuShare;
            mem += r.memory;
        }
        std::vector<std::string> parts;
        if (cpu >= 1.0) parts.push_back(Text::format("about %d%% of the processor", static_cast<int>(cpu)));
        if (mem >= 50 * MB) parts.push_back(Fmt::bytes(mem) + " of memory");
        const std::size_t n = chosen.size();
        std::string text = Text::format("Done: %zu %s.", n, n == 1 ? "fix" : "fixes");
        if (!parts.empty()) text += " " + Text::upperFirst(Text::join(parts, " and ")) + " back.";
        say(text, Toast::Kind::ok);
    });
}

void AppModel::snooze(Rec rec) {
    if (acting_.contains(rec.id)) return;
    history_->snooze(rec.id, tomorrowMorning(now()));
    put(snoozeTick_, snoozeTick_ + 1, &AppModel::snoozeTickChanged);
    refreshRecs();
    say(rec.title + " moved to Can wait. Sorrelin asks again tomorrow if it still matters.", Toast::Kind::info);
}

void AppModel::quitFromAlert(const std::vector<std::string>& keys) {
    std::vector<Rec> found;
    const auto current = nowRecs();
    for (const auto& key : keys) {
        auto it = std::find_if(current.begin(), current.end(), [&](const Rec& r) {
            return r.action.kind == RecAction::Kind::quit && r.action.key == key;
        });
        if (it != current.end()) found.push_back(*it);
    }
    if (!found.empty()) {
        perform(found, false);
        return;
    }
    for (const auto& key : keys) {
        const AppUsage* app = monitor_->app(key);
        if (!app) continue;
        Rec r;
        r.id = "quit:" + key;
        r.now = true;
        r.reason = RecReason::slow;
        r.title = "Quit " + app->name;
        r.doneChip = app->name + " quit";
        r.symbol = "power";
        r.tint = "pink";
        r.impact = RecImpact::cpu(key);
        r.cpuShare = std::round(app->cores / std::max(setup.cores, 1) * 100);
        r.memory = app->memory;
        r.action = RecAction::quit(key);
        found.push_back(std::move(r));
    }
    if (!found.empty()) perform(found, false);
}

void AppModel::restartNow() {
    setRestartSheet(false);
    worker.run<Actions::Outcome>(
        Worker::Priority::userInitiated, this, [context = setup.actions] { return Actions::restart(context); },
        [this](Actions::Outcome outcome) {
            if (!outcome.isDone()) say(outcome.text, Toast::Kind::problem);
        });
}

void AppModel::moveToTrash(const std::string& path, const std::string& name, int64_t bytes) {
    if (trashing_.contains(path)) return;
    setTrashing(path, true);
    worker.run<Remover::Trashed>(
        Worker::Priority::userInitiated, this, [path, context = setup.remover] { return Remover::trash(path, context); },
        [this, path, name, bytes](Remover::Trashed trashed) {
            setTrashing(path, false);
            if (trashed.problem) {
                say(name + " could not go to the Trash: " + *trashed.problem, Toast::Kind::problem);
                return;
            }
            std::optional<StorageReport> before = storage_;
            if (storage_) {
                setStorage(storage_->moving(path, bytes));
                StorageStore::save(*storage_, setup.supportDir);
            }
            std::vector<CleanItem> left;
            for (const auto& i : items_) {
                const bool gone = std::any_of(i.paths.begin(), i.paths.end(), [&](const std::string& p) {
                    return p == path || p.starts_with(path + "/");
                });
                if (!gone) left.push_back(i);
            }
            setItems(std::move(left));
            // The undo puts the report back as it was, and the item list comes back with the next scan.
            say(name + " is in the Trash. Empty it to get " + Fmt::bytes(bytes) + " back.", Toast::Kind::ok, std::string("Undo"),
                [this, moved = trashed.moved, path, name, before] {
                    if (!moved) return;
                    if (auto problem = Remover::putBack(*moved, path, setup.remover)) {
                        say(name + " could not be put back: " + *problem, Toast::Kind::problem);
                        return;
                    }
                    setStorage(before);
                    if (before) StorageStore::save(*before, setup.supportDir);
                    say(name + " is back where it was.", Toast::Kind::ok);
                });
        });
}

void AppModel::armTrash(const QString& path, const QString& name, qint64 bytes) {
    arm("trash:" + path.toStdString(), [this, p = path.toStdString(), n = name.toStdString(), bytes] { moveToTrash(p, n, bytes); });
}

void AppModel::armQuickClean() {
    arm("menu", [this] { cleanSafeNow(QStringLiteral("menu")); });
}

void AppModel::armFreeProject(const QString& cardId) {
    const std::string id = cardId.toStdString();
    arm("proj:" + id, [this, id] {
        auto card = std::find_if(projects_.begin(), projects_.end(), [&](const ProjectCard& c) { return c.id == id; });
        if (card == projects_.end()) return;
        const auto chosen = itemsWithIds(card->idleItemIDs);
        clean(chosen, "projects", Text::format("%zu build folders", chosen.size()), [this, id](const CleanReport&) {
            auto next = freedProjects_;
            next.insert(id);
            put(freedProjects_, std::move(next), &AppModel::freedProjectsChanged);
            projectsList.touch(id, {projectsList.role("freed")});
        });
    });
}

void AppModel::stopProjectLeftovers(const QString& cardId) {
    auto card = std::find_if(projects_.begin(), projects_.end(), [&](const ProjectCard& c) { return c.id == cardId.toStdString(); });
    if (card == projects_.end() || card->leftovers.empty()) return;
    std::vector<Leftover> leftovers = card->leftovers;
    std::set<int32_t> ids;
    int64_t memory = 0;
    for (const auto& l : leftovers) {
        ids.insert(l.id);
        memory += l.memory;
    }
    worker.run<int>(
        Worker::Priority::userInitiated, this, [leftovers, context = setup.actions] { return Actions::stop(leftovers, context); },
        [this, ids, memory, name = card->name](int stopped) {
            monitor_->forgetLeftovers(ids);
            monitorSampled();
            if (stopped < 1) {
                say("Those processes would not stop.", Toast::Kind::problem);
            } else {
                std::string text = Text::format("Stopped %d %s in %s.", stopped, stopped == 1 ? "leftover" : "leftovers", name.c_str());
                if (memory > 0) text += " " + Fmt::bytes(memory) + " of memory back.";
                say(text, Toast::Kind::ok);
            }
            refreshProjects(false);
        });
}
