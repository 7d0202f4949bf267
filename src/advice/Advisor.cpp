#include "advice/Advisor.h"

#include "foundation/Fmt.h"
#include "foundation/PlatformWords.h"
#include "foundation/Text.h"
#include "history/History.h"
#include "monitor/Monitor.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace Advisor {

namespace {

using Values = std::initializer_list<std::pair<std::string_view, std::string>>;

// A sentence of the program's own with its platform words swapped, then the values put in
// place of their "{name}"s. Values are never swapped: they are names and figures.
std::string fill(std::string_view sentence, Values values = {}, bool isTitle = false) {
    const std::string text = isTitle ? PlatformWords::title(sentence) : PlatformWords::say(sentence);
    std::string out;
    out.reserve(text.size() + 32);
    std::size_t i = 0;
    while (i < text.size()) {
        if (text[i] == '{') {
            auto close = text.find('}', i);
            if (close != std::string::npos) {
                std::string_view key(text.data() + i + 1, close - i - 1);
                auto it = std::find_if(values.begin(), values.end(), [&](const auto& v) { return v.first == key; });
                if (it != values.end()) {
                    out += it->second;
                    i = close + 1;
                    continue;
                }
            }
        }
        out += text[i++];
    }
    return out;
}

std::string title(std::string_view sentence, Values values = {}) { return fill(sentence, values, true); }

// Rule 1: each app that keeps the processor busy from the background.
void slowApps(const Situation& s, std::vector<Rec>& now) {
    const MonitorFacts& m = s.monitor;
    for (const AppUsage& app : m.slowApps) {
        const std::string& name = app.name;
        auto busyIt = m.busyMinutes.find(app.id);
        const int busy = busyIt != m.busyMinutes.end() ? busyIt->second : 0;
        const double share = app.cores / std::max(1, s.cores) * 100;
        const int percent = std::max(1, static_cast<int>(std::trunc(share)));
        const bool quiet = m.nothingToSave.contains(app.id);
        const std::string since = app.started ? " since " + Fmt::clock(*app.started, s.now) : "";

        Rec r;
        r.id = "quit:" + app.id;
        r.now = true;
        r.reason = RecReason::slow;
        r.title = title("Quit {name}", {{"name", name}});
        r.why = busy < 3 ? fill("It is keeping the processor busy in the background.")
                         : fill("It has kept the processor busy in the background for {minutes}.",
                                {{"minutes", Fmt::minutes(busy)}});
        r.effect = fill("{percent}% of the processor back", {{"percent", std::to_string(percent)}});
        r.tip = fill("{name} has used {time} of processor time{since}. ",
                     {{"name", name}, {"time", Fmt::duration(static_cast<double>(app.cpuNanos) / 1e9)}, {"since", since}}) +
                (quiet ? fill("It has nothing to save, so quitting loses nothing.")
                       : fill("If it has unsaved work, it asks you first."));
        r.actionLabel = fill("Quit {name}", {{"name", name}});
        r.shortLabel = fill("Quit");
        r.busyLabel = fill("Quitting");
        r.doneLabel = fill("Quit");
        r.doneChip = fill("{name} quit", {{"name", name}});
        r.safe = quiet;
        r.symbol = "power";
        r.tint = "pink";
        r.appPath = app.bundlePath;
        r.impact = RecImpact::cpu(app.id);
        r.cpuShare = percent;
        r.memory = app.memory;
        r.action = RecAction::quit(app.id);
        now.push_back(std::move(r));
    }
}

// Rule 2: little free space after a scan. Caches help only when there is a gigabyte of them.
void lowDisk(const Situation& s, std::vector<Rec>& now) {
    const ModelFacts& d = s.model;
    const int64_t free = d.disk.available;
    if (!d.lastScan || free >= d.warnBelow) return;
    Rec r;
    r.now = true;
    r.reason = RecReason::disk;
    if (d.safeTotal < GB) {
        const std::string cleanable = Fmt::bytes(d.cleanable);
        r.id = "space";
        r.title = title("See what can go");
        r.why = fill("Only {free} is free. {cleanable} of it can be cleared.",
                     {{"free", Fmt::bytes(free)}, {"cleanable", cleanable}});
        r.effect = fill("Up to {cleanable} of disk back", {{"cleanable", cleanable}});
        r.tip = fill("Opens Clean with everything sorted by how safe it is.");
        r.actionLabel = fill("Open Clean");
        r.shortLabel = fill("Open");
        r.safe = false;
        r.symbol = "internaldrive";
        r.tint = "amber";
        r.impact = RecImpact::disk(d.cleanable);
        r.action = RecAction::open(Tab::clean);
    } else {
        const std::string safe = Fmt::bytes(d.safeTotal);
        r.id = "caches";
        r.title = title("Clear {safe} of caches", {{"safe", safe}});
        r.why = fill("Only {free} is free. These caches refill on their own as you work.", {{"free", Fmt::bytes(free)}});
        r.effect = fill("{safe} of disk back, refilled as you work", {{"safe", safe}});
        r.tip = fill("Space is low, so every cache counts. Apps rebuild them as you use them, a little slower at first.");
        r.actionLabel = fill("Clear {safe}", {{"safe", safe}});
        r.shortLabel = fill("Clear");
        r.busyLabel = fill("Clearing");
        r.doneLabel = fill("Cleared");
        r.doneChip = fill("Caches cleared");
        r.safe = true;
        r.symbol = "custom.broom";
        r.tint = "amber";
        r.impact = RecImpact::disk(d.safeTotal);
        r.action = RecAction::clearCaches();
    }
    now.push_back(std::move(r));
}

// Rule 3: development processes that outlived their session. They hurt only when memory is tight.
void leftovers(const Situation& s, std::vector<Rec>& now, std::vector<Rec>& wait) {
    const auto& groups = s.monitor.leftovers;
    if (groups.empty()) return;
    const std::size_t n = groups.size();
    int64_t memory = 0;
    TimePoint oldest = groups.front().started;
    std::set<std::string> labelSet, projectSet;
    for (const Leftover& g : groups) {
        memory += g.memory;
        oldest = std::min(oldest, g.started);
        labelSet.insert(g.label);
        projectSet.insert(g.project);
    }
    std::vector<std::string> labels(labelSet.begin(), labelSet.end());
    if (labels.size() > 2) labels.resize(2);
    const std::vector<std::string> projects(projectSet.begin(), projectSet.end());
    const bool tight = s.monitor.vitals.pressure > 1;
    const std::string count = std::to_string(n);

    Rec r;
    r.id = "leftovers";
    r.now = tight;
    r.reason = tight ? RecReason::memory : RecReason::wait;
    r.title = title(n == 1 ? "Stop {n} leftover process" : "Stop {n} leftover processes", {{"n", count}});
    r.why = fill(n == 1 ? "{labels}, running for {age} after the session that started it ended."
                        : "{labels}, running for {age} after the session that started them ended.",
                 {{"labels", Text::join(labels, " and ")}, {"age", Fmt::age(oldest, s.now)}});
    r.effect = fill("{memory} of memory back", {{"memory", Fmt::bytes(memory)}});
    r.tip = fill("In {projects}. Nothing reads their output any more.", {{"projects", Text::join(projects, ", ")}});
    r.actionLabel = n == 1 ? fill("Stop it") : fill("Stop all {n}", {{"n", count}});
    r.shortLabel = fill("Stop");
    r.busyLabel = fill("Stopping");
    r.doneLabel = fill("Stopped");
    r.doneChip = fill("Leftovers stopped");
    r.safe = true;
    r.symbol = "custom.ghost";
    r.tint = "amber";
    r.impact = RecImpact::memory("leftovers");
    r.memory = memory;
    r.action = RecAction::stopLeftovers();
    (tight ? now : wait).push_back(std::move(r));
}

// Rule 4: the biggest browser, when memory is tight and it holds a lot, or when an update waits
// for its restart.
void browser(const Situation& s, std::vector<Rec>& now, std::vector<Rec>& wait) {
    const MonitorFacts& m = s.monitor;
    const AppUsage* row = nullptr;
    for (const AppUsage& app : m.apps)
        if (m.browsers.contains(app.id) && app.mainPID && (!row || app.memory > row->memory)) row = &app;
    if (!row) return;

    auto updateIt = m.updates.find(row->id);
    const Browsers::Update* update = updateIt != m.updates.end() ? &updateIt->second : nullptr;
    const long long days = row->started ? static_cast<long long>(std::trunc(secondsBetween(*row->started, s.now) / 86400)) : 0;
    const bool tight = row->memory >= 3 * GB && m.vitals.pressure > 1;
    if (!tight && !update) return;

    const std::string& name = row->name;
    const std::string memory = Fmt::bytes(row->memory);
    std::string why = fill("It holds {memory}", {{"memory", memory}});
    if (days >= 1)
        why += fill(days == 1 ? " after {days} day open" : " after {days} days open", {{"days", std::to_string(days)}});
    if (update) {
        why += fill(", and an update has waited");
        if (update->since) why += fill(" since {date}", {{"date", Fmt::dayMonth(*update->since)}});
        why += ".";
    } else {
        // The biggest of all that could be restarted, browsers included: the first maximum.
        const AppUsage* biggest = nullptr;
        for (const AppUsage& app : m.apps)
            if ((m.quittable.contains(app.id) || m.browsers.contains(app.id)) && (!biggest || app.memory > biggest->memory))
                biggest = &app;
        if (days < 1 && biggest && biggest->id == row->id) why += fill(", more than any other app you can restart.");
        else why += ".";
    }

    Rec r;
    r.id = "relaunch:" + row->id;
    r.now = tight;
    r.reason = tight ? RecReason::memory : RecReason::wait;
    r.title = title("Relaunch {name}", {{"name", name}});
    r.why = std::move(why);
    r.effect = tight ? fill("A fresh start for {memory}, with your tabs", {{"memory", memory}})
                     : fill("Installs the update and keeps your tabs");
    r.tip = fill("Works like {name}'s own Relaunch button: your windows and tabs reopen and the pages reload. "
                 "Finish anything you are typing first.",
                 {{"name", name}});
    r.actionLabel = fill("Relaunch {name}", {{"name", name}});
    r.shortLabel = fill("Relaunch");
    r.busyLabel = fill("Relaunching");
    r.doneLabel = fill("Relaunched");
    r.doneChip = fill("{name} relaunched", {{"name", name}});
    r.safe = false;
    r.caveat = fill("Pages reload");
    r.arm = true;
    r.symbol = "arrow.clockwise";
    r.tint = "browser";
    r.appPath = row->bundlePath;
    r.impact = RecImpact::memory(row->id);
    r.memory = row->memory;
    r.action = RecAction::relaunch(row->id);
    (tight ? now : wait).push_back(std::move(r));
}

// Rule 5: a week or more without a restart, with swap on the disk that only a restart empties.
void restart(const Situation& s, std::vector<Rec>& wait) {
    const Vitals& v = s.monitor.vitals;
    const double up = secondsBetween(v.boot, s.now);
    const long long uptimeDays = up > 0 ? static_cast<long long>(std::floor(up / 86400)) : 0;
    const bool swapHeavy =
        v.swapUsed >= 4 * GB || (v.swapTotal >= 1 && v.swapUsed >= 2 * GB && v.swapUsed * 2 >= v.swapTotal);
    if (uptimeDays < 7 || !swapHeavy) return;
    const bool reminded = s.history.restartReminder && *s.history.restartReminder > s.now;
    const std::string swap = Fmt::bytes(v.swapUsed);

    Rec r;
    r.id = "restart";
    r.now = false;
    r.reason = RecReason::wait;
    r.title = reminded ? title("Restart tonight") : title("Restart your Mac");
    r.why = fill("On for {days} days, with {swap} of swap on your disk. A restart empties it.",
                 {{"days", std::to_string(uptimeDays)}, {"swap", swap}});
    r.effect = reminded ? fill("Reminder set for tonight") : fill("Up to {swap} of disk back", {{"swap", swap}});
    r.tip = fill("macOS has written {written} of memory to your disk since {boot}. After a restart swap starts empty, "
                 "so that space comes back and apps stop waiting on the disk.",
                 {{"written", Fmt::bytes(v.swappedOut)}, {"boot", Fmt::dayMonth(v.boot)}});
    r.actionLabel = fill("Restart\u2026");
    r.shortLabel = fill("Restart\u2026");
    r.safe = false;
    r.symbol = "arrow.counterclockwise";
    r.tint = "blueText";
    r.impact = RecImpact::swap();
    r.action = RecAction::restart();
    wait.push_back(std::move(r));
}

// Rule 6: caches of apps that are gone or unused, worth clearing even with room on the disk.
void oldCaches(const Situation& s, std::vector<Rec>& wait) {
    const ModelFacts& d = s.model;
    int64_t old = 0;
    for (const CleanItem& item : d.items)
        if (item.tier == Tier::safe && !item.isLocked() && item.cacheKind && CacheKinds::isStale(*item.cacheKind))
            old += item.size;
    if (!d.lastScan || d.disk.available < d.warnBelow || old < 300 * MB) return;
    const std::string bytes = Fmt::bytes(old);

    Rec r;
    r.id = "caches";
    r.now = false;
    r.reason = RecReason::wait;
    r.title = title("Clear {old} of old caches", {{"old", bytes}});
    r.why = fill("From apps you removed or have not opened in a month, and update leftovers. Nothing you use slows down.");
    r.effect = fill("{old} of disk back, and it stays free", {{"old", bytes}});
    r.tip = fill("Caches of apps you use stay: clearing them makes those apps slower for a while, and the space comes back.");
    r.actionLabel = fill("Clear {old}", {{"old", bytes}});
    r.shortLabel = fill("Clear");
    r.busyLabel = fill("Clearing");
    r.doneLabel = fill("Cleared");
    r.doneChip = fill("Old caches cleared");
    r.safe = true;
    r.symbol = "custom.broom";
    r.tint = "amber";
    r.impact = RecImpact::disk(old);
    r.action = RecAction::clearCaches();
    wait.push_back(std::move(r));
}

// Rule 7: build folders of projects nobody touched for a week.
void idleProjects(const Situation& s, std::vector<Rec>& wait) {
    int64_t idle = 0;
    std::vector<const CleanItem*> found;
    for (const CleanItem& item : s.model.items)
        if (item.tier == Tier::rebuildable && item.id.starts_with("project:") && !item.isLocked() && item.defaultOn) {
            idle += item.size;
            found.push_back(&item);
        }
    if (idle < GB) return;
    const std::size_t k = found.size();
    const std::string bytes = Fmt::bytes(idle);
    std::vector<std::string> names, ids;
    for (const CleanItem* item : found) {
        if (names.size() < 4) names.push_back(item->name);
        ids.push_back(item->id);
    }

    Rec r;
    r.id = "idle-projects";
    r.now = false;
    r.reason = RecReason::wait;
    r.title = title("Free {idle} from idle projects", {{"idle", bytes}});
    r.why = fill(k == 1 ? "Build folders in {k} project you have not touched for a week."
                        : "Build folders in {k} projects you have not touched for a week.",
                 {{"k", std::to_string(k)}});
    r.effect = fill("{idle} of disk back, an install brings it back", {{"idle", bytes}});
    r.tip = Text::join(names, ", ") + (k < 5 ? "." : fill(" and more."));
    r.actionLabel = fill("Free {idle}", {{"idle", bytes}});
    r.shortLabel = fill("Free");
    r.busyLabel = fill("Freeing");
    r.doneLabel = fill("Freed");
    r.doneChip = fill("Idle projects freed");
    r.safe = false;
    r.arm = true;
    r.symbol = "folder";
    r.tint = "indigo";
    r.impact = RecImpact::disk(idle);
    r.action = RecAction::freeItems(std::move(ids));
    wait.push_back(std::move(r));
}

} // namespace

ModelFacts ModelFacts::of(DiskInfo disk, std::vector<CleanItem> items, std::optional<TimePoint> lastScan) {
    ModelFacts f;
    f.disk = std::move(disk);
    f.lastScan = lastScan;
    for (const CleanItem& item : items) {
        if (item.isLocked()) continue;
        f.cleanable += item.size;
        if (item.tier == Tier::safe) f.safeTotal += item.size;
    }
    f.items = std::move(items);
    return f;
}

MonitorFacts MonitorFacts::of(const Monitor& monitor, TimePoint now) {
    MonitorFacts f;
    f.vitals = monitor.vitals;
    f.apps = monitor.apps;
    f.leftovers = monitor.leftovers;
    f.slowApps = monitor.slowApps();
    for (const AppUsage& app : f.slowApps) f.busyMinutes[app.id] = monitor.busyMinutes(app.id);
    const Snapshot* snapshot = monitor.latest() ? &*monitor.latest() : nullptr;
    for (const AppUsage& app : f.apps) {
        if (monitor.canQuit(app)) f.quittable.insert(app.id);
        if (monitor.nothingToSave(app)) f.nothingToSave.insert(app.id);
        if (!Browsers::isBrowser(app)) continue;
        f.browsers.insert(app.id);
        if (!app.mainPID) continue;
        if (auto update = Browsers::pendingUpdate(app, snapshot, now)) f.updates.emplace(app.id, *update);
    }
    return f;
}

HistoryFacts HistoryFacts::of(const History& history, TimePoint now) {
    HistoryFacts f;
    for (const auto& [id, until] : history.data.snoozed)
        if (history.isSnoozed(id, now)) f.snoozed.insert(id);
    f.restartReminder = history.data.restartReminder;
    return f;
}

std::vector<Rec> recommendations(const Situation& situation) {
    std::vector<Rec> now, wait;
    slowApps(situation, now);
    lowDisk(situation, now);
    leftovers(situation, now, wait);
    browser(situation, now, wait);
    restart(situation, wait);
    oldCaches(situation, wait);
    idleProjects(situation, wait);

    std::vector<Rec> all = std::move(now);
    all.insert(all.end(), std::make_move_iterator(wait.begin()), std::make_move_iterator(wait.end()));
    for (Rec& r : all)
        if (situation.history.snoozed.contains(r.id)) {
            r.now = false;
            r.reason = RecReason::snoozed;
        }
    return all;
}

} // namespace Advisor
