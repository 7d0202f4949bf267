// The live process control against real children of this test: the start time a signal is
// checked against, the hold that keeps a signal from reaching a later process at the same pid,
// and what an ended process reads as.
#include "advice/Actions.h"
#include "platform/Layout.h"
#include "platform/Probe.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

extern char** environ;

namespace {

pid_t spawnSleep() {
    std::string a0 = "sleep", a1 = "600";
    char* argv[] = {a0.data(), a1.data(), nullptr};
    pid_t pid = -1;
    if (posix_spawn(&pid, "/bin/sleep", nullptr, nullptr, argv, environ) != 0) return -1;
    return pid;
}

// True when the child stops on SIGSTOP rather than having died of an earlier signal: whatever
// was sent before it is already pending, so the report tells which came first.
bool stopsNormally(pid_t pid) {
    kill(pid, SIGSTOP);
    int status = 0;
    if (waitpid(pid, &status, WUNTRACED) != pid) return false;
    return WIFSTOPPED(status);
}

void finish(pid_t pid) {
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
}

Actions::Context live() {
    Actions::Context c = Actions::Context::forHost(Layout::host(), DryRun::Mode{});
    c.pause = [](double) {};
    return c;
}

} // namespace

TEST(ActionsLive, TheStartTimeIsTheSnapshotsAndEndsWithTheProcess) {
    pid_t pid = spawnSleep();
    ASSERT_GT(pid, 0);
    auto start = Actions::startTime(pid, live());
    ASSERT_TRUE(start);
    Snapshot snapshot = Probe::snapshot();
    ASSERT_TRUE(snapshot.procs.contains(pid));
    EXPECT_EQ(snapshot.procs.at(pid).start, *start);

    // Dead but not yet reaped: it has ended, whatever /proc still shows.
    kill(pid, SIGKILL);
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(Actions::startTime(pid, live()));
    waitpid(pid, nullptr, 0);
    EXPECT_FALSE(Actions::startTime(pid, live()));
    EXPECT_FALSE(Actions::startTime(0, live()));
    EXPECT_FALSE(Actions::startTime(-1, live()));
}

TEST(ActionsLive, AProcessWhosePidWasReusedGetsNoSignal) {
    pid_t pid = spawnSleep();
    ASSERT_GT(pid, 0);
    auto start = Actions::startTime(pid, live());
    ASSERT_TRUE(start);
    // The app was seen with another start: its pid now names another process.
    AppUsage seen;
    seen.name = "Sleeper";
    seen.id = "proc:sleep";
    seen.mainPID = pid;
    seen.pids = {pid};
    seen.started = addSeconds(*start, -1);
    EXPECT_EQ(Actions::quit(seen, live()), Actions::Outcome::failed("Sleeper is not running any more."));
    EXPECT_TRUE(stopsNormally(pid));
    kill(pid, SIGCONT);
    finish(pid);
}

TEST(ActionsLive, AHeldProcessIsSignalledAndAnEndedOneCannotBeHeld) {
    const ProcessControl& control = ProcessControl::live();
    pid_t pid = spawnSleep();
    ASSERT_GT(pid, 0);
    auto hold = control.hold(pid);
    ASSERT_TRUE(hold);
    EXPECT_TRUE(hold->signal(SIGSTOP));
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, WUNTRACED), pid);
    EXPECT_TRUE(WIFSTOPPED(status));
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    // The hold outlives the process: nothing that takes the pid later can be reached through it.
    EXPECT_FALSE(hold->signal(SIGTERM));
    EXPECT_FALSE(control.hold(pid));
}

TEST(ActionsLive, StopEndsARealGroupByTheirNotedStarts) {
    pid_t a = spawnSleep(), b = spawnSleep();
    ASSERT_GT(a, 0);
    ASSERT_GT(b, 0);
    Leftover group;
    group.id = a;
    group.pids = {a, b};
    // The polite signal ends both: no wait is needed for the count, which is read after it.
    auto c = live();
    c.pause = [&](double s) {
        siginfo_t info{};
        if (s == 2.0)
            for (pid_t p : {a, b}) waitid(P_PID, static_cast<id_t>(p), &info, WEXITED | WNOWAIT);
    };
    EXPECT_EQ(Actions::stop({group}, c), 2);
    int status = 0;
    ASSERT_EQ(waitpid(a, &status, 0), a);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    ASSERT_EQ(waitpid(b, &status, 0), b);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}
