// The probe against the machine it runs on. These read state that the test itself set up a
// moment before; nothing waits for the system to change.
#include "platform/Probe.h"

#include "foundation/Shell.h"
#include "foundation/Text.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

extern char** environ;

namespace {

class Child {
public:
    Child() {
        std::string program = "/bin/sleep", seconds = "60";
        char* argv[] = {program.data(), seconds.data(), nullptr};
        if (posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv, environ) != 0) pid = 0;
    }
    ~Child() {
        if (pid <= 0) return;
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
    pid_t pid = 0;
};

int boundSocket(int type, bool listening, int& port) {
    int fd = socket(AF_INET, type, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
    if (listening) listen(fd, 1);
    socklen_t len = sizeof addr;
    getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len);
    port = ntohs(addr.sin_port);
    return fd;
}

} // namespace

TEST(LiveProbe, SnapshotHoldsTheUsersProcessesButNotItself) {
    Child child;
    ASSERT_GT(child.pid, 0);
    auto before = Clock::now();
    auto snap = Probe::snapshot();
    EXPECT_FALSE(snap.procs.contains(getpid()));
    ASSERT_TRUE(snap.procs.contains(child.pid));
    const ProcRecord& r = snap.procs.at(child.pid);
    EXPECT_EQ(r.ppid, getpid());
    EXPECT_EQ(r.name, "sleep");
    EXPECT_EQ(std::filesystem::canonical(r.exe), std::filesystem::canonical("/bin/sleep"));
    EXPECT_EQ(r.responsible, child.pid);
    EXPECT_GT(r.footprint, 0);
    // Started moments ago (boot time is whole seconds, so allow a few).
    EXPECT_LT(std::abs(secondsBetween(r.start, before)), 5.0);
    EXPECT_GE(snap.date, before);
    // No kernel threads: they all descend from pid 2.
    for (const auto& [pid, rec] : snap.procs) {
        EXPECT_NE(pid, 2);
        EXPECT_NE(rec.ppid, 2) << rec.name;
    }
}

TEST(LiveProbe, AgreesWithPs) {
    // Every process present in two snapshots around a `ps` run is listed by `ps` for this user.
    auto first = Probe::snapshot();
    auto ps = Shell::run("/bin/ps", {"-e", "-o", "pid=,euid=,ppid="}, 30);
    auto second = Probe::snapshot();
    ASSERT_EQ(ps.status, 0) << ps.text;
    std::set<int32_t> listed;
    for (const auto& line : Text::split(ps.text, '\n')) {
        auto f = Text::split(line, ' ');
        if (f.size() != 3) continue;
        int32_t pid = std::stoi(f[0]), ppid = std::stoi(f[2]);
        uint32_t euid = static_cast<uint32_t>(std::stoul(f[1]));
        if (euid == getuid() && pid != 2 && ppid != 2) listed.insert(pid);
    }
    int stable = 0;
    for (const auto& [pid, r] : first.procs)
        if (second.procs.contains(pid)) {
            ++stable;
            EXPECT_TRUE(listed.contains(pid)) << pid << " " << r.name;
        }
    EXPECT_GT(stable, 0);
    EXPECT_TRUE(listed.contains(getpid())); // ps sees the test; the probe leaves it out
}

TEST(LiveProbe, SystemReadingAndPerProcessFacts) {
    auto r = Probe::system();
    EXPECT_GT(r.cpuTotal, r.cpuBusy);
    EXPECT_GE(r.freePercent, 0);
    EXPECT_LE(r.freePercent, 100);
    EXPECT_TRUE(r.pressureLevel == 1 || r.pressureLevel == 2 || r.pressureLevel == 4);
    EXPECT_LT(r.bootDate, Clock::now());
    EXPECT_GT(Probe::cores(), 0);
    EXPECT_GT(Probe::physicalMemory(), 0);
    EXPECT_GT(Probe::pageSize(), 0);

    EXPECT_EQ(Probe::cwd(getpid()), std::filesystem::current_path().string());
    EXPECT_FALSE(Probe::name(getpid()).empty());
    EXPECT_FALSE(Probe::path(getpid()).empty());
    auto pids = Probe::allPids();
    EXPECT_NE(std::find(pids.begin(), pids.end(), getpid()), pids.end());
}

TEST(LiveProbe, ListeningPortsOfAProcess) {
    int tcpPort = 0, udpPort = 0, otherPort = 0;
    int tcp = boundSocket(SOCK_STREAM, true, tcpPort);
    int udp = boundSocket(SOCK_DGRAM, false, udpPort);
    int bound = boundSocket(SOCK_STREAM, false, otherPort); // bound, not listening
    auto ports = Probe::listeningPorts(getpid());
    EXPECT_NE(std::find(ports.begin(), ports.end(), tcpPort), ports.end());
    EXPECT_EQ(std::find(ports.begin(), ports.end(), udpPort), ports.end());
    EXPECT_EQ(std::find(ports.begin(), ports.end(), otherPort), ports.end());
    EXPECT_TRUE(std::is_sorted(ports.begin(), ports.end()));
    close(tcp);
    close(udp);
    close(bound);
    Child child;
    EXPECT_TRUE(Probe::listeningPorts(child.pid).empty());
}
