#include "advice/Actions.h"

#include "foundation/PlatformWords.h"
#include "foundation/Text.h"
#include "platform/Layout.h"

#include <signal.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <thread>

namespace Actions {

namespace {

// A process as it was noted: a later process at the same pid starts at another time.
struct Noted {
    int32_t pid = 0;
    TimePoint start{};
};

// Sends `number` to `pid` only if the process there is still the one noted. The process is held
// before its start is read, so the signal reaches the process that was checked or none at all.
bool signalChecked(const Context& c, const Noted& target, int number) {
    auto hold = c.processes->hold(target.pid);
    if (!hold) return false;
    auto start = c.processes->startTime(target.pid);
    if (!start || *start != target.start) return false;
    return hold->signal(number);
}

bool ended(const Context& c, const Noted& target) {
    auto start = c.processes->startTime(target.pid);
    return !start || *start != target.start;
}

// The app's own process as it runs now; absent when it has gone, or when its pid has passed to
// another process since the app was seen.
std::optional<Noted> mainProcess(const AppUsage& app, const Context& c) {
    if (!app.mainPID) return std::nullopt;
    auto start = c.processes->startTime(*app.mainPID);
    if (!start || (app.started && *app.started != *start)) return std::nullopt;
    return Noted{*app.mainPID, *start};
}

// The processes of the app that are there now, each with its start.
std::vector<Noted> note(const std::vector<int32_t>& pids, const Context& c) {
    std::vector<Noted> out;
    for (int32_t pid : pids)
        if (auto start = c.processes->startTime(pid)) out.push_back({pid, *start});
    return out;
}

// Out-of-process panes of the system settings app: they don't end with its window.
std::vector<Noted> settingsHelpers(const AppUsage& app, const Noted& main, const Context& c) {
    std::vector<Noted> helpers;
    if (c.settingsPath.empty() || app.bundlePath != c.settingsPath) return helpers;
    for (int32_t pid : app.pids) {
        if (pid == main.pid) continue;
        auto start = c.processes->startTime(pid);
        if (!start) continue;
        const std::string path = c.processes->path(pid);
        if (std::any_of(c.settingsHelpers.begin(), c.settingsHelpers.end(),
                        [&](const std::string& piece) { return !piece.empty() && Text::contains(path, piece); }))
            helpers.push_back({pid, *start});
    }
    return helpers;
}

// The polite request: the app's own Quit, else its windows' close buttons, else the signal it
// takes as Quit. The Chromium family takes an interrupt as Quit and is sent one at once; a
// browser to relaunch never has its windows closed one by one, since it would then restore only
// the last of them.
void askToQuit(const AppUsage& app, const Noted& main, const Context& c, bool relaunching) {
    if (c.apps && c.apps->quitAction(app.bundlePath)) return;
    const bool interrupt = app.bundleID && c.tables.quitByInterrupt.contains(*app.bundleID);
    if (!interrupt && !relaunching && c.apps) {
        std::set<int32_t> pids(app.pids.begin(), app.pids.end());
        pids.insert(main.pid);
        if (c.apps->closeWindows(pids) > 0) return;
    }
    (void)signalChecked(c, main, interrupt ? SIGINT : SIGTERM);
}

// Waits in steps of 200 milliseconds, at most `steps` of them, until `done` holds.
bool waitFor(const Context& c, int steps, const std::function<bool()>& done) {
    for (int i = 0; i < steps; ++i) {
        if (done()) return true;
        c.pause(0.2);
    }
    return done();
}

std::string notRunning(const AppUsage& app) { return app.name + " is not running any more."; }

template <typename T, typename Work>
std::future<T> later(Work work) {
    std::packaged_task<T()> task(std::move(work));
    std::future<T> result = task.get_future();
    std::thread(std::move(task)).detach();
    return result;
}

} // namespace

Context Context::forHost(const Layout& layout, DryRun::Mode dryRun) {
    Context c;
    c.processes = &ProcessControl::live();
    c.apps = &AppControl::live();
    c.bus = &SessionBus::session();
    c.tables = layout.actions;
    c.settingsPath = layout.monitor.settingsPath;
    c.settingsHelpers = layout.monitor.settingsHelpers;
    if (const char* desktop = std::getenv("XDG_CURRENT_DESKTOP")) c.desktop = desktop;
    c.dryRun = dryRun;
    return c;
}

const Context& context() {
    static const Context c = Context::forHost(Layout::host(), DryRun::Mode{DryRun::on(), DryRun::fails()});
    return c;
}

std::optional<TimePoint> startTime(int32_t pid, const Context& c) { return c.processes->startTime(pid); }

Outcome quit(const AppUsage& app, const Context& c) {
    if (c.dryRun.on) {
        c.pause(1.1);
        return c.dryRun.fails ? Outcome::failed(app.name + " did not quit (dry run).") : Outcome::done();
    }
    auto main = mainProcess(app, c);
    if (!main) return Outcome::failed(notRunning(app));
    const std::vector<Noted> helpers = settingsHelpers(app, *main, c);

    askToQuit(app, *main, c, false);
    if (!waitFor(c, 40, [&] { return ended(c, *main); }))
        return Outcome::failed(app.name + " did not quit. It may be asking you something in its window.");
    if (helpers.empty()) return Outcome::done();
    // Most helpers end with their app; what is left gets the polite signal.
    c.pause(1.5);
    for (const Noted& helper : helpers) (void)signalChecked(c, helper, SIGTERM);
    return Outcome::done();
}

Outcome relaunch(const AppUsage& app, const Context& c) {
    if (c.dryRun.on) {
        c.pause(2.2);
        return c.dryRun.fails ? Outcome::failed(app.name + " did not quit (dry run).") : Outcome::done();
    }
    auto main = mainProcess(app, c);
    if (!main || !app.bundlePath) return Outcome::failed(notRunning(app));
    // A browser closes many processes; the new one must not find the old one still holding its
    // profile, or it would hand its start over to it and end.
    const std::vector<Noted> all = note(app.pids, c);

    askToQuit(app, *main, c, true);
    (void)waitFor(c, 100, [&] {
        return ended(c, *main) && std::all_of(all.begin(), all.end(), [&](const Noted& n) { return ended(c, n); });
    });
    if (!ended(c, *main))
        return Outcome::failed(app.name + " did not quit. A page may be asking about unsaved changes.");
    c.pause(0.6);
    if (auto problem = c.apps ? c.apps->open(*app.bundlePath, {"--restore-last-session"})
                              : std::optional<std::string>("nothing can open apps here"))
        return Outcome::failed(app.name + " quit but did not open again: " + *problem);
    return Outcome::done();
}

int stop(const std::vector<Leftover>& leftovers, const Context& c) {
    if (c.dryRun.on) {
        c.pause(2.0);
        if (c.dryRun.fails) return 0;
        int count = 0;
        for (const Leftover& l : leftovers) count += static_cast<int>(l.pids.size());
        return count;
    }
    // Each group's root comes first in its list; a pid that has already gone is no target.
    std::vector<Noted> targets;
    for (const Leftover& l : leftovers)
        for (const Noted& n : note(l.pids, c)) targets.push_back(n);
    if (targets.empty()) return 0;

    // Children before their parents, so that a parent does not restart a child it saw end.
    for (auto it = targets.rbegin(); it != targets.rend(); ++it) (void)signalChecked(c, *it, SIGTERM);
    c.pause(2.0);
    for (const Noted& target : targets)
        if (!ended(c, target)) (void)signalChecked(c, target, SIGKILL);
    c.pause(0.3);
    return static_cast<int>(std::count_if(targets.begin(), targets.end(), [&](const Noted& n) { return ended(c, n); }));
}

Outcome restart(const Context& c) {
    if (c.dryRun.on)
        return c.dryRun.fails ? Outcome::failed(PlatformWords::say("macOS did not open its restart dialog (dry run)."))
                              : Outcome::done();
    // The running desktop's dialog first; any other that answers will do.
    std::vector<const ActionTables::RestartDialog*> order;
    const std::vector<std::string> running = Text::split(c.desktop, ':');
    auto ours = [&](const ActionTables::RestartDialog& d) {
        return std::any_of(running.begin(), running.end(),
                           [&](const std::string& name) { return Text::lower(name) == Text::lower(d.desktop); });
    };
    for (const auto& d : c.tables.restartDialogs)
        if (ours(d)) order.push_back(&d);
    for (const auto& d : c.tables.restartDialogs)
        if (!ours(d)) order.push_back(&d);
    if (c.bus)
        for (const auto* d : order)
            if (c.bus->hasOwner(d->call.service) && c.bus->call(d->call, 20).ok) return Outcome::done();
    return Outcome::failed(PlatformWords::say("macOS did not open its restart dialog. Use Restart in the Apple menu."));
}

std::future<Outcome> quitLater(AppUsage app, Context context) {
    return later<Outcome>([app = std::move(app), context = std::move(context)] { return quit(app, context); });
}

std::future<Outcome> relaunchLater(AppUsage app, Context context) {
    return later<Outcome>([app = std::move(app), context = std::move(context)] { return relaunch(app, context); });
}

std::future<int> stopLater(std::vector<Leftover> leftovers, Context context) {
    return later<int>([leftovers = std::move(leftovers), context = std::move(context)] { return stop(leftovers, context); });
}

std::future<Outcome> restartLater(Context context) {
    return later<Outcome>([context = std::move(context)] { return restart(context); });
}

} // namespace Actions
