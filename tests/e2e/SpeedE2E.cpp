// The built program's speed report with an installed app running and busy.
#include "foundation/Text.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <regex>

extern char** environ;

TEST(SpeedE2E, HeadLineSectionsAndAnInstalledAppByItsProgram) {
    TempTree home;
    // An app of its own folder whose program is a copy of the shell, kept busy.
    std::string program = home.path("opt/Busy/busy");
    home.dir("opt/Busy");
    std::filesystem::copy_file("/bin/sh", program);
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    home.text(".local/share/applications/org.example.Busy.desktop",
              "[Desktop Entry]\nType=Application\nName=Busy Bee\nExec=" + program + " %U\n");

    std::string dashC = "-c", loop = "while :; do :; done";
    char* argv[] = {program.data(), dashC.data(), loop.data(), nullptr};
    pid_t pid = 0;
    ASSERT_EQ(posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv, environ), 0);

    auto run = runProgram(SORRELIN_EXE, {"--speed"}, homeEnvironment(home.root()), 60);
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    ASSERT_EQ(run.status, 0) << run.err;

    auto lines = Text::split(run.out, '\n', true);
    ASSERT_GE(lines.size(), 2u);
    static const std::regex head(
        R"(Processor \d+% busy · memory \d+% free, pressure [124] · compressed .+ · swap .+ of .+ · written .+ · up \d+ days · thermal [0-3])");
    EXPECT_TRUE(std::regex_match(lines[0], head)) << lines[0];
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(R"(\d+ processes of yours, .+ of memory in them)"))) << lines[1];
    auto section = [&](const std::string& title) {
        for (std::size_t i = 0; i < lines.size(); ++i)
            if (lines[i] == title) return static_cast<int>(i);
        return -1;
    };
    int cpu = section("== By processor ==");
    int memory = section("== By memory ==");
    int leftovers = section("== Leftovers ==");
    int slow = section("== Slow in the background ==");
    ASSERT_TRUE(cpu > 1 && memory > cpu && leftovers > memory && slow > leftovers) << run.out;

    // The busy program is the installed app, under its entry's name, not kept.
    bool found = false;
    for (int i = cpu + 1; i < memory; ++i)
        if (lines[i].starts_with("Busy Bee")) {
            found = true;
            EXPECT_TRUE(std::regex_search(lines[i], std::regex(R"(\d+%)"))) << lines[i];
            EXPECT_EQ(lines[i].find("kept"), std::string::npos) << lines[i];
        }
    EXPECT_TRUE(found) << run.out;
    found = false;
    for (int i = memory + 1; i < leftovers; ++i)
        if (lines[i].starts_with("Busy Bee")) found = lines[i].ends_with("started today");
    EXPECT_TRUE(found) << run.out;
}
