// The projects report over a generated developer's home: a workspace of four apps that install
// the same 500 packages, a project in which real processes work (a Claude session, an MCP
// server, a listening server), an idle project, and two old ones that fold into one card. A
// leftover needs an hour of age before the report names it, so the card of a project with a
// leftover is held against the same code in this process, on a real orphaned process.
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "monitor/Leftovers.h"
#include "platform/Layout.h"
#include "platform/Probe.h"
#include "projects/Projects.h"
#include "support/FakeAppBundles.h"
#include "support/RunProgram.h"
#include "support/ChildProcess.h"
#include "support/TempTree.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

extern char** environ;

namespace {

constexpr int64_t KB = 1000;
constexpr int64_t MiB = 1 << 20;
constexpr double day = 86'400;

// Real blocks without writing them: the sizes are what the scan and the package measure read.
void reserve(const std::string& path, int64_t bytes) {
    std::filesystem::create_directories(FS::parent(path));
    int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    ASSERT_GE(fd, 0) << path;
    ASSERT_EQ(posix_fallocate(fd, 0, bytes), 0) << path;
    close(fd);
}

// A copy of sleep under another name: the kernel names the process after the file.
std::string sleeper(const TempTree& h, const std::string& name) {
    std::string path = h.path("bin/" + name);
    std::filesystem::create_directories(h.path("bin"));
    std::filesystem::copy_file("/bin/sleep", path, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
}

void project(const TempTree& h, const std::string& root, const std::string& buildDir, int64_t bytes, double ageDays) {
    h.dir(root + "/.git");
    h.text(root + "/package.json", "{}");
    reserve(h.path(root + "/" + buildDir + "/blob"), bytes);
    if (ageDays > 0)
        for (const char* p : {"/package.json", "/.git"}) h.age(root + p, ageDays * day);
}

std::string lineOf(const std::vector<std::string>& lines, const std::string& name) {
    for (const auto& l : lines)
        if (l.starts_with(name + " ")) return l;
    return {};
}

} // namespace

TEST(ProjectsE2E, CardsInOrderWithTheirFiguresAndTheSharedPackages) {
    TempTree h;
    // The workspace: apps named after their folder, 500 packages each, untouched for 20 days.
    for (const char* app : {"shop-admin", "shop-web", "shop-api", "shop-docs"}) {
        const std::string root = std::string("code/shop/") + app;
        h.dir(root + "/.git");
        h.text(root + "/package.json", "{}");
        for (int i = 0; i < 500; ++i)
            reserve(h.path(root + Text::format("/node_modules/pkg-%03d/index.js", i)), 210 * KB);
        for (const char* p : {"/package.json", "/.git"}) h.age(root + p, 20 * day);
    }
    project(h, "code/api", "node_modules", 30 * MiB, 0);
    project(h, "code/site", "node_modules", 40 * MiB, 10);
    project(h, "code/old-blog", "node_modules", 25 * MiB, 90);
    project(h, "code/old-cli", "node_modules", 26 * MiB, 60);

    // Work in the api project: a Claude session, an MCP server and a server that listens.
    h.dir("code/api/src");
    ChildProcess claude(sleeper(h, "claude"), {"claude", "600"}, h.path("code/api"));
    ChildProcess mcp(sleeper(h, "mcp-server-files"), {"mcp-server-files", "600"}, h.path("code/api/src"));
    ChildProcess server("/usr/bin/perl",
                 {"perl", "-MIO::Socket::INET", "-e",
                  "my $s = IO::Socket::INET->new(Listen => 5, LocalAddr => '127.0.0.1', LocalPort => 0) or die; sleep 600"},
                 h.path("code/api"));
    ASSERT_GT(claude.pid, 0);
    ASSERT_GT(mcp.pid, 0);
    ASSERT_GT(server.pid, 0);
    // The server counts once it holds its socket.
    auto listening = [&] {
        for (const auto& fd : FS::children("/proc/" + std::to_string(server.pid) + "/fd")) {
            char link[256] = {};
            std::string at = "/proc/" + std::to_string(server.pid) + "/fd/" + fd;
            if (readlink(at.c_str(), link, sizeof link - 1) > 0 && std::string_view(link).starts_with("socket:")) return true;
        }
        return false;
    };
    for (int i = 0; i < 100 && !listening(); ++i) usleep(50'000);
    ASSERT_TRUE(listening());

    auto env = homeEnvironment(h.root());
    env["XDG_DATA_DIRS"] = h.dir("usr/share"); // no applications of this machine
    auto run = runProgram(SORRELIN_EXE, {"--projects"}, env);
    ASSERT_EQ(run.status, 0) << run.err;
    auto lines = Text::split(run.out, '\n');

    // Order: what runs, then workspaces, then single projects, then the folded old ones.
    std::vector<std::string> names;
    for (const auto& l : lines) {
        if (l.empty() || l == "Shared:") break;
        names.push_back(Text::trim(l.substr(0, 30)));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"api", "shop", "site", "Older projects"})) << run.out;

    const std::string api = lineOf(lines, "api");
    EXPECT_TRUE(std::regex_search(api, std::regex(R"(^api +running mem \d+ (KB|MB) build 3\d MB idle 0 bytes )"
                                                  R"(claude 1 mcp 1 ports 1 editors 0 changed today$)")))
        << api;
    const std::string shop = lineOf(lines, "shop");
    EXPECT_TRUE(std::regex_search(shop, std::regex(R"(^shop +idle +mem 0 bytes build 4\d\d MB idle 4\d\d MB )"
                                                   R"(claude 0 mcp 0 ports 0 editors 0 changed \w{3} \d+(, \d{4})?$)")))
        << shop;
    const std::string site = lineOf(lines, "site");
    EXPECT_TRUE(std::regex_search(site, std::regex(R"(^site +idle +mem 0 bytes build 4\d MB idle 4\d MB .* changed \w{3} \d+(, \d{4})?$)")))
        << site;
    const std::string older = lineOf(lines, "Older projects");
    EXPECT_TRUE(std::regex_search(older, std::regex(R"(^Older projects +idle +mem 0 bytes build 5\d MB idle 5\d MB )")))
        << older;
    EXPECT_EQ(older.find("leftover"), std::string::npos) << older;

    // Four apps of one kind: what one shared install would save.
    auto shared = std::find(lines.begin(), lines.end(), "Shared:");
    ASSERT_NE(shared, lines.end()) << run.out;
    ASSERT_NE(std::next(shared), lines.end()) << run.out;
    EXPECT_TRUE(std::regex_match(*std::next(shared),
                                 std::regex(R"(4 apps carry the same 500 packages: today 4\d\d MB, one copy 1\d\d MB)")))
        << *std::next(shared);
}

// A development server whose terminal went away: its project's card comes after the running
// ones and names it, whatever the card's size.
TEST(ProjectsE2E, ARealOrphanedProcessMakesItsProjectsCardALeftoverCard) {
    TempTree h;
    const std::string home = h.root();
    h.dir("code/tool/.git");
    h.dir("code/tool/scripts");
    h.dir("code/web/.git");
    const std::string node = sleeper(h, "node");
    ChildProcess working(node, {"node", "600"}, h.path("code/web"));
    ASSERT_GT(working.pid, 0);

    // The orphan: started by a child that ends at once, so that it is adopted.
    int pipeFds[2];
    ASSERT_EQ(pipe(pipeFds), 0);
    pid_t middle = fork();
    ASSERT_GE(middle, 0);
    if (middle == 0) {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        for (int fd = 0; fd < 3; ++fd) posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", O_RDWR, 0);
        posix_spawn_file_actions_addclose(&actions, pipeFds[0]);
        posix_spawn_file_actions_addclose(&actions, pipeFds[1]);
        std::string dir = h.path("code/tool/scripts");
        posix_spawn_file_actions_addchdir_np(&actions, dir.c_str());
        std::string a0 = node, a1 = "600";
        char* argv[] = {a0.data(), a1.data(), nullptr};
        pid_t orphan = -1;
        posix_spawn(&orphan, node.c_str(), &actions, nullptr, argv, environ);
        (void)!write(pipeFds[1], &orphan, sizeof orphan);
        _exit(0);
    }
    close(pipeFds[1]);
    pid_t orphan = -1;
    ASSERT_EQ(read(pipeFds[0], &orphan, sizeof orphan), static_cast<ssize_t>(sizeof orphan));
    close(pipeFds[0]);
    waitpid(middle, nullptr, 0);
    ASSERT_GT(orphan, 0);
    struct Killer {
        pid_t pid;
        ~Killer() { kill(pid, SIGKILL); }
    } killer{orphan};

    Snapshot snapshot = Probe::snapshot();
    auto it = snapshot.procs.find(orphan);
    ASSERT_NE(it, snapshot.procs.end());
    if (it->second.ppid != 1 && Probe::name(it->second.ppid) != "systemd")
        GTEST_SKIP() << "orphans on this machine go to " << Probe::name(it->second.ppid) << ", not to init";

    const Layout layout = Layout::linux(home);
    FakeAppBundles none;
    auto leftovers = Leftovers::find(snapshot, {}, {}, 0, ProbeSource::live(), layout, none);
    ASSERT_EQ(leftovers.size(), 1u);
    EXPECT_EQ(leftovers[0].id, orphan);
    EXPECT_EQ(leftovers[0].project, "tool");

    auto cards = Projects::build({}, snapshot, leftovers, Clock::now(), ProbeSource::live(), layout, none);
    ASSERT_EQ(cards.size(), 2u);
    EXPECT_EQ(cards[0].name, "web");
    EXPECT_TRUE(cards[0].running);
    EXPECT_TRUE(cards[0].leftovers.empty());
    EXPECT_EQ(cards[1].name, "tool");
    EXPECT_FALSE(cards[1].running); // a leftover is no work in progress
    ASSERT_EQ(cards[1].leftovers.size(), 1u);
    EXPECT_EQ(cards[1].leftovers[0].id, orphan);
    EXPECT_EQ(cards[1].memory, 0);
}
