#include "support/PrivateServers.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <vector>

extern char** environ;

namespace {

// Starts `argv` with `env` added to this process's environment; the child's standard output
// is `outFd` when it is given, and `closeFd` is closed in it. Descriptors made without
// O_CLOEXEC stay open in the child. Gives the pid or -1.
pid_t spawn(std::vector<std::string> argv, const std::map<std::string, std::string>& env, int outFd, int closeFd) {
    std::vector<std::string> vars;
    for (char** e = environ; *e; ++e) {
        const std::string var = *e;
        if (!env.contains(var.substr(0, var.find('=')))) vars.push_back(var);
    }
    for (const auto& [k, v] : env) vars.push_back(k + "=" + v);
    std::vector<char*> envp, args;
    for (auto& v : vars) envp.push_back(v.data());
    envp.push_back(nullptr);
    for (auto& a : argv) args.push_back(a.data());
    args.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (outFd >= 0) posix_spawn_file_actions_adddup2(&actions, outFd, STDOUT_FILENO);
    else posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (closeFd >= 0) posix_spawn_file_actions_addclose(&actions, closeFd);
    pid_t pid = -1;
    if (posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), envp.data()) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

// The first line a child writes to `fd`, read until it closes its end or writes a newline.
std::string firstLine(int fd) {
    std::string line;
    char c;
    while (read(fd, &c, 1) == 1 && c != '\n') line += c;
    return line;
}

void end(pid_t& pid, int signal) {
    if (pid <= 0) return;
    kill(pid, signal);
    waitpid(pid, nullptr, 0);
    pid = -1;
}

} // namespace

PrivateBus::PrivateBus(const std::map<std::string, std::string>& env) {
    int fds[2];
    if (pipe(fds) != 0) return;
    pid = spawn({"dbus-daemon", "--session", "--nofork", "--print-address=1"}, env, fds[1], fds[0]);
    close(fds[1]);
    if (pid > 0) address = firstLine(fds[0]);
    close(fds[0]);
    if (address.empty()) end(pid, SIGKILL);
}

PrivateBus::~PrivateBus() { stop(); }

void PrivateBus::stop() { end(pid, SIGTERM); }

PrivateDisplay::PrivateDisplay(std::optional<int> at, const std::string& authFile, const std::string& screen) {
    int fds[2];
    if (pipe(fds) != 0) return;
    std::vector<std::string> argv = {"Xvfb"};
    if (at) argv.push_back(":" + std::to_string(*at));
    // The server writes its display number once it accepts clients.
    argv.insert(argv.end(), {"-displayfd", std::to_string(fds[1]), "-nolisten", "tcp", "-screen", "0", screen});
    if (!authFile.empty()) argv.insert(argv.end(), {"-auth", authFile});
    pid = spawn(argv, {}, -1, fds[0]);
    close(fds[1]);
    const std::string line = pid > 0 ? firstLine(fds[0]) : std::string();
    close(fds[0]);
    if (line.empty() || line.find_first_not_of("0123456789") != std::string::npos) {
        end(pid, SIGKILL);
        return;
    }
    number = std::stoi(line);
    name = ":" + line;
}

PrivateDisplay::~PrivateDisplay() { stop(); }

// SIGTERM lets the server remove its lock file and socket, so that the number is free again.
void PrivateDisplay::stop() { end(pid, SIGTERM); }

std::string xauthorityEntry(const std::string& host, int display, const std::string& cookie) {
    std::string out;
    auto be16 = [&](std::size_t v) {
        out += static_cast<char>(v >> 8 & 0xff);
        out += static_cast<char>(v & 0xff);
    };
    auto counted = [&](const std::string& s) {
        be16(s.size());
        out += s;
    };
    be16(256); // FamilyLocal
    counted(host);
    counted(std::to_string(display));
    counted("MIT-MAGIC-COOKIE-1");
    counted(cookie);
    return out;
}
