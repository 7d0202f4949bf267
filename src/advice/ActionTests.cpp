// The --test-actions check: the actions held against real processes of this machine. A check
// that this machine cannot hold is skipped with a line that says why; restarting is never tried.
#include "advice/ActionTests.h"

#include "advice/Actions.h"
#include "foundation/FS.h"
#include "foundation/PlatformWords.h"
#include "foundation/Shell.h"
#include "foundation/Text.h"
#include "platform/AppBundles.h"
#include "platform/Layout.h"
#include "platform/Probe.h"
#include "platform/RunningApp.h"
#include "platform/linux/ProcText.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

class Lines {
public:
    // "PASS", "FAIL" or "SKIP", two blanks, the check's name, ": " and the details.
    void put(const char* result, const std::string& name, const std::string& details) {
        const std::string text = std::string(result) + "  " + name + ": " + details;
        std::puts(text.c_str());
        std::fflush(stdout);
    }
    void check(const std::string& name, bool ok, const std::string& details) {
        if (!ok) passed = false;
        put(ok ? "PASS" : "FAIL", name, details);
    }
    void skip(const std::string& name, const std::string& why) { put("SKIP", name, why); }
    bool passed = true;
};

double since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// A process orphaned here comes back to this process, which can then reap it: a test process
// that stopped must not linger as a zombie that still answers.
void reap(int32_t pid) {
    int status = 0;
    while (waitpid(pid, &status, WNOHANG) < 0 && errno == EINTR) {}
}

bool alive(int32_t pid) {
    reap(pid);
    return kill(pid, 0) == 0;
}

// Starts `command` in the background through the shell, detached from the shell's own life,
// and gives its pid.
std::optional<int32_t> startInBackground(const std::string& command) {
    Shell::Output out = Shell::run("/bin/sh", {"-c", "nohup " + command + " >/dev/null 2>&1 & echo $!"}, 10);
    if (out.status != 0) return std::nullopt;
    auto pid = ProcText::number(out.text);
    if (!pid || *pid <= 1 || *pid > INT32_MAX) return std::nullopt;
    return static_cast<int32_t>(*pid);
}

// Whether the process ignores SIGTERM yet: a script that is still starting does not.
bool ignoresTerm(int32_t pid) {
    auto text = FS::readText("/proc/" + std::to_string(pid) + "/status", 1 << 16);
    if (!text) return false;
    for (const auto& row : Text::split(*text, '\n')) {
        if (!row.starts_with("SigIgn:")) continue;
        const unsigned long long mask = std::strtoull(Text::trim(row.substr(7)).c_str(), nullptr, 16);
        return (mask >> (SIGTERM - 1)) & 1;
    }
    return false;
}

void stopCheck(const Actions::Context& context, Lines& out) {
    auto sleeper = startInBackground("/bin/sleep 600");
    auto stubborn = startInBackground("/usr/bin/perl -e '$SIG{TERM}=\"IGNORE\"; sleep 600'");
    if (!sleeper || !stubborn) {
        for (auto pid : {sleeper, stubborn})
            if (pid) {
                kill(*pid, SIGKILL);
                reap(*pid);
            }
        out.check("Stop", false, "the two test processes could not be started");
        return;
    }
    for (int i = 0; i < 50 && !ignoresTerm(*stubborn); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(100));

    Leftover group;
    group.id = *sleeper;
    group.pids = {*sleeper, *stubborn};
    group.label = "sleep";
    group.cwd = "/";
    group.started = Actions::startTime(*sleeper, context).value_or(Clock::now());
    const auto start = std::chrono::steady_clock::now();
    const int stopped = Actions::stop({group}, context);
    const double seconds = since(start);
    const bool gone = !alive(*sleeper) && !alive(*stubborn);
    out.check("Stop", stopped == 2 && gone,
              Text::format("%d of 2 stopped in %.1f s, one ignored the polite stop", stopped, seconds));
    for (int32_t pid : {*sleeper, *stubborn})
        if (alive(pid)) {
            kill(pid, SIGKILL);
            reap(pid);
        }
}

// The app of this entry once it runs, as the monitor would show it; waits up to ten seconds.
// An app that takes its Quit over the bus is ready for it only once it holds its name there.
std::optional<AppUsage> waitForApp(const DesktopEntry& entry, std::optional<int32_t> notPid,
                                   const Actions::Context& context) {
    for (int i = 0; i < 50; ++i) {
        const bool onBus = !entry.dbusActivatable || !context.bus || context.bus->hasOwner(entry.id);
        for (const auto& [pid, app] : RunningApp::current()) {
            if (app.bundlePath != entry.path || pid == notPid || !onBus) continue;
            AppUsage usage;
            usage.id = entry.path;
            usage.name = app.name.empty() ? entry.displayName() : app.name;
            usage.bundlePath = entry.path;
            usage.bundleID = app.bundleID;
            usage.mainPID = pid;
            usage.started = Probe::startTime(pid);
            for (const auto& [p, record] : Probe::snapshot().procs)
                if (record.group == entry.path || p == pid) usage.pids.push_back(p);
            return usage;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    return std::nullopt;
}

void quitAndRelaunch(const Actions::Context& context, Lines& out) {
    const Layout& layout = Layout::host();
    std::optional<DesktopEntry> entry;
    for (const auto& id : layout.actions.testApps)
        if ((entry = AppBundles::system().entry(id))) break;
    if (!entry) {
        out.skip("Quit and Relaunch", "no small app such as Calculator is installed to try them on.");
        return;
    }
    const std::string name = entry->displayName();
    const char* x11 = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    if (!(x11 && *x11) && !(wayland && *wayland)) {
        out.skip("Quit and Relaunch", "there is no desktop session to open " + name + " in.");
        return;
    }
    for (const auto& [pid, app] : RunningApp::current())
        if (app.bundlePath == entry->path) {
            out.skip("Quit and Relaunch", name + " was already open, so it is left alone.");
            return;
        }

    if (auto problem = context.apps->open(entry->path, {})) {
        out.check("Quit", false, name + " did not open: " + *problem);
        return;
    }
    auto app = waitForApp(*entry, std::nullopt, context);
    if (!app) {
        out.check("Quit", false, name + " did not open within 10 s");
        return;
    }
    auto start = std::chrono::steady_clock::now();
    Actions::Outcome quit = Actions::quit(*app, context);
    out.check("Quit", quit.isDone(), quit.isDone() ? Text::format("%s quit in %.1f s", name.c_str(), since(start)) : quit.text);
    if (!quit.isDone()) return;

    if (auto problem = context.apps->open(entry->path, {})) {
        out.check("Relaunch", false, name + " did not open: " + *problem);
        return;
    }
    auto before = waitForApp(*entry, std::nullopt, context);
    if (!before) {
        out.check("Relaunch", false, name + " did not open within 10 s");
        return;
    }
    Actions::Outcome relaunch = Actions::relaunch(*before, context);
    auto after = relaunch.isDone() ? waitForApp(*entry, before->mainPID, context) : std::nullopt;
    const bool ok = relaunch.isDone() && after && after->mainPID != before->mainPID;
    out.check("Relaunch", ok,
              ok ? Text::format("pid %d became %d", *before->mainPID, *after->mainPID)
                 : (relaunch.isDone() ? name + " did not open again within 10 s" : relaunch.text));
    // Leave the desk as it was found.
    if (after) (void)Actions::quit(*after, context);
}

} // namespace

bool ActionTests::run() {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    // The checks act for real, whatever SORRELIN_DRYRUN says.
    const Actions::Context context = Actions::Context::forHost(Layout::host(), DryRun::Mode{});
    Lines out;
    quitAndRelaunch(context, out);
    stopCheck(context, out);
    out.skip("Restart", PlatformWords::say("never run in a test, macOS restarts after its own countdown."));
    return out.passed;
}
