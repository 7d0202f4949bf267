#include "foundation/FS.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

extern char** environ;

namespace {

// A saved /proc entry: stat line, comm, links for cwd and exe, a command line.
void fakeProcess(const TempTree& t, int pid, const std::string& comm, const std::string& cwd, const std::string& exe,
                 unsigned long flags = 0x400100, std::string cmdline = {}) {
    std::string base = std::to_string(pid);
    t.text(base + "/stat", std::to_string(pid) + " (" + comm + ") S 1 1 1 0 -1 " + std::to_string(flags) +
                               " 0 0 0 0 10 5 0 0 20 0 1 0 12345 0 0\n");
    t.text(base + "/comm", comm + "\n");
    if (!cwd.empty()) t.symLink(cwd, base + "/cwd");
    if (!exe.empty()) t.symLink(exe, base + "/exe");
    t.text(base + "/cmdline", cmdline);
    t.dir(base + "/fd");
}

} // namespace

TEST(ProcFacts, ReadsOwnProcessesFromAProcTree) {
    TempTree t;
    fakeProcess(t, 10, "node", "/home/ann/proj", "/usr/bin/node");
    fakeProcess(t, 11, "my (odd) name", "/tmp", "/opt/x/bin/app (deleted)");
    fakeProcess(t, 12, "kworker/0:1", "/", "", 0x04208040); // a kernel thread
    fakeProcess(t, 13, "gone", "", "/bin/gone");              // cwd unreadable: not ours
    fakeProcess(t, 14, "self", "/", "/bin/self");
    t.dir("self-not-a-pid");

    auto list = FS::processes(t.root(), getuid(), 14);
    std::sort(list.begin(), list.end(), [](auto& a, auto& b) { return a.pid < b.pid; });
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0], (ProcInfo{10, "node", "/home/ann/proj", "/usr/bin/node"}));
    EXPECT_EQ(list[1].name, "my (odd) name");
    EXPECT_EQ(list[1].exe, "/opt/x/bin/app"); // " (deleted)" stripped

    EXPECT_TRUE(FS::processes(t.root(), getuid() + 1, 0).empty()); // another user's
}

TEST(ProcFacts, ArgumentsAndOpenPaths) {
    TempTree t;
    static const char cmdline[] = "node\0/home/ann/.npm/_npx/abc123/node_modules/.bin/tool\0--flag\0\xFF\0";
    fakeProcess(t, 20, "node", "/", "/usr/bin/node", 0x400100, std::string(cmdline, sizeof cmdline - 1));
    t.symLink("/home/ann/file.txt", "20/fd/3");
    t.symLink("socket:[1234]", "20/fd/4");
    auto args = FS::arguments(t.root(), 20);
    ASSERT_EQ(args.size(), 4u);
    EXPECT_EQ(args[1], "/home/ann/.npm/_npx/abc123/node_modules/.bin/tool");
    EXPECT_EQ(args[3], "\xEF\xBF\xBD");
    EXPECT_TRUE(FS::arguments(t.root(), 99).empty());

    auto open = FS::openPaths(t.root(), 20);
    ASSERT_TRUE(open);
    EXPECT_EQ(*open, std::vector<std::string>{"/home/ann/file.txt"});
    EXPECT_FALSE(FS::openPaths(t.root(), 99)); // cannot be read: absent, not empty
}

TEST(ProcFacts, SeesALiveChildWithItsFolderAndNeverItself) {
    TempTree t;
    std::string cwd = t.dir("work dir");
    pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        if (chdir(cwd.c_str()) != 0) _exit(1);
        execl("/bin/sleep", "sleep", "30", static_cast<char*>(nullptr));
        _exit(1);
    }
    ProcInfo found;
    for (int i = 0; i < 200 && found.pid == 0; ++i) {
        for (auto& p : FS::processes())
            if (p.pid == pid && p.name == "sleep") found = p;
        if (found.pid == 0) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    auto all = FS::processes();
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    EXPECT_EQ(found.cwd, cwd);
    EXPECT_TRUE(found.exe.ends_with("sleep"));
    EXPECT_TRUE(std::none_of(all.begin(), all.end(), [](auto& p) { return p.pid == getpid(); }));
}
