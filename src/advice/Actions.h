#pragma once
// What the advice asks of running software: quit an app, relaunch a browser, stop leftover
// processes, ask the desktop for its restart dialog. Each action asks politely first and waits;
// then it reports plainly that the thing did not happen, or, only for leftovers that nobody
// uses, insists. An app is never forced: if it has a question on screen, the user's work
// matters more than the advice. A signal goes to a pid only after the start time read there
// equals the one noted, since pids are re-used.
//
// Each action blocks its thread while it waits (seconds, at most twenty); the `...Later` forms
// run it on a thread of its own and hand back a future, so that an event loop never waits.
#include "foundation/DryRun.h"
#include "foundation/Time.h"
#include "monitor/AppUsage.h"
#include "monitor/Leftover.h"
#include "platform/AppControl.h"
#include "platform/ProcessControl.h"
#include "platform/SessionBus.h"
#include "platform/layout/ActionTables.h"

#include <functional>
#include <future>
#include <optional>
#include <string>
#include <vector>

struct Layout;

namespace Actions {

struct Outcome {
    enum class Kind { failed, done };
    Kind kind = Kind::done;
    std::string text; // failed: the sentence for the user; done: empty

    [[nodiscard]] static Outcome done() { return {}; }
    [[nodiscard]] static Outcome failed(std::string text) { return {Kind::failed, std::move(text)}; }
    [[nodiscard]] bool isDone() const { return kind == Kind::done; }
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

// Everything the actions read and touch besides their arguments.
struct Context {
    const ProcessControl* processes = nullptr;
    const AppControl* apps = nullptr;
    const SessionBus* bus = nullptr;
    ActionTables tables;
    // The system settings app, whose helpers outlive its window, and their path pieces.
    std::string settingsPath;
    std::vector<std::string> settingsHelpers;
    // The running desktop's names (XDG_CURRENT_DESKTOP), whose restart dialog is asked first.
    std::string desktop;
    DryRun::Mode dryRun;
    // Every wait goes through here. One that returns early (a cancelled wait) counts as over.
    std::function<void(double seconds)> pause = DryRun::pause;

    // This machine, its desktop and SORRELIN_DRYRUN.
    [[nodiscard]] static Context forHost(const Layout& layout, DryRun::Mode dryRun);
};

// The process's own context, made once.
[[nodiscard]] const Context& context();

// Asks the app to quit and waits up to 8 seconds for it to end.
[[nodiscard]] Outcome quit(const AppUsage& app, const Context& context = Actions::context());
// Asks a browser to quit, waits up to 20 seconds for its processes to end, then starts it again
// with its tabs, behind the window in use.
[[nodiscard]] Outcome relaunch(const AppUsage& app, const Context& context = Actions::context());
// Stops leftover groups: the polite signal to each process, children before their parents, then
// after 2 seconds the hard one to whatever is still there. Gives how many are gone.
[[nodiscard]] int stop(const std::vector<Leftover>& leftovers, const Context& context = Actions::context());
// Asks the desktop for its own restart dialog. Nothing restarts without it.
[[nodiscard]] Outcome restart(const Context& context = Actions::context());
// When the process at `pid` started; absent when it has ended or is not the user's.
[[nodiscard]] std::optional<TimePoint> startTime(int32_t pid, const Context& context = Actions::context());

// The same, each on a thread of its own. The context is copied; what it points to must outlive the work.
[[nodiscard]] std::future<Outcome> quitLater(AppUsage app, Context context = Actions::context());
[[nodiscard]] std::future<Outcome> relaunchLater(AppUsage app, Context context = Actions::context());
[[nodiscard]] std::future<int> stopLater(std::vector<Leftover> leftovers, Context context = Actions::context());
[[nodiscard]] std::future<Outcome> restartLater(Context context = Actions::context());

} // namespace Actions
