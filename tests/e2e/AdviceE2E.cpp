// The built program's action self-check on real processes, and the suggestions that end the
// speed report.
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "support/PrivateServers.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

extern char** environ;

namespace {

// A calculator installed in the generated home whose program is a copy of sleep.
std::string installCalculator(const TempTree& home) {
    const std::string program = home.path("opt/calc/calculator");
    home.dir("opt/calc");
    std::filesystem::copy_file("/bin/sleep", program);
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    home.text(".local/share/applications/org.gnome.Calculator.desktop",
              "[Desktop Entry]\nType=Application\nName=Calculator\nExec=" + program + " 600\n");
    return program;
}

std::map<std::string, std::string> environment(const TempTree& home) {
    auto env = homeEnvironment(home.root());
    env["XDG_DATA_DIRS"] = home.dir("usr/share"); // no applications of this machine
    return env;
}

} // namespace

TEST(AdviceE2E, TestActionsStopsBothProcessesAndSkipsWhatItMayNotTry) {
    TempTree home;
    auto env = environment(home);
    env["SORRELIN_DRYRUN"] = "fail"; // the self-check acts for real whatever this says
    auto run = runProgram(SORRELIN_EXE, {"--test-actions"}, env, 60);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    auto lines = Text::split(run.out, '\n');
    ASSERT_EQ(lines.size(), 3u) << run.out;
    EXPECT_EQ(lines[0], "SKIP  Quit and Relaunch: no small app such as Calculator is installed to try them on.");
    std::smatch m;
    ASSERT_TRUE(std::regex_match(lines[1], m,
                                 std::regex(R"(PASS  Stop: 2 of 2 stopped in (\d+\.\d) s, one ignored the polite stop)")))
        << lines[1];
    // The one that ignored the polite signal was stopped after the two seconds it was given.
    EXPECT_GE(std::stod(m[1]), 2.0);
    EXPECT_LT(std::stod(m[1]), 10.0);
    EXPECT_EQ(lines[2], "SKIP  Restart: never run in a test, the system restarts after its own countdown.");
}

TEST(AdviceE2E, TestActionsLeavesAnOpenCalculatorAlone) {
    TempTree home;
    const std::string program = installCalculator(home);
    auto env = environment(home);
    env["DISPLAY"] = "";
    env["WAYLAND_DISPLAY"] = "";
    auto run = runProgram(SORRELIN_EXE, {"--test-actions"}, env, 60);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(run.out.starts_with("SKIP  Quit and Relaunch: there is no desktop session to open Calculator in.\n"))
        << run.out;

    std::string a0 = program, a1 = "600";
    char* argv[] = {a0.data(), a1.data(), nullptr};
    pid_t pid = 0;
    ASSERT_EQ(posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv, environ), 0);
    env["DISPLAY"] = ":97";
    run = runProgram(SORRELIN_EXE, {"--test-actions"}, env, 60);
    // Untouched: it still runs, and stops only when this test stops it.
    const bool alive = kill(pid, 0) == 0;
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(run.out.starts_with("SKIP  Quit and Relaunch: Calculator was already open, so it is left alone.\n"))
        << run.out;
    EXPECT_TRUE(alive);
}

TEST(AdviceE2E, TestActionsQuitsAndRelaunchesAnAppThroughItsOwnQuitOnTheBus) {
    PrivateBus bus;
    if (bus.address.empty()) GTEST_SKIP() << "dbus-daemon could not be started: is it installed?";
    PrivateDisplay display;
    if (display.name.empty()) GTEST_SKIP() << "Xvfb could not be started: is it installed?";
    TempTree home;
    // A calculator that quits only when asked on the bus: a polite signal would leave it open.
    const std::string log = home.path("calculator.log");
    home.text(".local/share/applications/org.gnome.Calculator.desktop",
              "[Desktop Entry]\nType=Application\nName=Calculator\nDBusActivatable=true\nExec=" SORRELIN_TESTAPP
              " org.gnome.Calculator " + log + "\n");
    auto env = environment(home);
    env["DBUS_SESSION_BUS_ADDRESS"] = bus.address;
    env["DISPLAY"] = display.name;
    env["XDG_SESSION_TYPE"] = "";
    env["WAYLAND_DISPLAY"] = "";
    auto run = runProgram(SORRELIN_EXE, {"--test-actions"}, env, 120);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    auto lines = Text::split(run.out, '\n');
    ASSERT_EQ(lines.size(), 4u) << run.out;
    EXPECT_TRUE(std::regex_match(lines[0], std::regex(R"(PASS  Quit: Calculator quit in \d+\.\d s)"))) << lines[0];
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(R"(PASS  Relaunch: pid \d+ became \d+)"))) << lines[1];
    EXPECT_TRUE(lines[2].starts_with("PASS  Stop: 2 of 2 stopped")) << lines[2];
    EXPECT_TRUE(lines[3].starts_with("SKIP  Restart: ")) << lines[3];
    // Each quit was the app's own, and the relaunched one was asked to bring its windows back.
    EXPECT_EQ(FS::readText(log).value_or(""),
              "started\nquit by its Quit action\nstarted\nquit by its Quit action\n"
              "started --restore-last-session\nquit by its Quit action\n");
}

TEST(AdviceE2E, TheSpeedReportEndsWithItsSuggestions) {
    TempTree home;
    auto run = runProgram(SORRELIN_EXE, {"--speed"}, environment(home), 60);
    ASSERT_EQ(run.status, 0) << run.err;
    auto lines = Text::split(run.out, '\n', true);
    while (!lines.empty() && lines.back().empty()) lines.pop_back();
    auto at = std::find(lines.begin(), lines.end(), "== Suggestions (no disk scan) ==");
    ASSERT_NE(at, lines.end()) << run.out;
    auto slow = std::find(lines.begin(), lines.end(), "== Slow in the background ==");
    EXPECT_LT(slow, at);
    static const std::regex suggestion(R"(\[(now|later)\] \[(Slow now|Memory tight|Disk low|Can wait|Not now)\] .+)");
    for (auto it = std::next(at); it != lines.end(); ++it) EXPECT_TRUE(std::regex_match(*it, suggestion)) << *it;
    // Without a scan behind it, no advice about the disk.
    EXPECT_EQ(run.out.find("[Disk low]"), std::string::npos);
}
