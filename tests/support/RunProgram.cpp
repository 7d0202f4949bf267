#include "support/RunProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

extern char** environ;

ProgramRun runProgram(const std::string& exe, const std::vector<std::string>& args,
                      const std::map<std::string, std::string>& env, double timeoutSeconds) {
    ProgramRun result;
    int outPipe[2], errPipe[2];
    if (pipe(outPipe) != 0 || pipe(errPipe) != 0) return result;
    pid_t pid = fork();
    if (pid == 0) {
        dup2(outPipe[1], 1);
        dup2(errPipe[1], 2);
        close(outPipe[0]);
        close(errPipe[0]);
        for (const auto& [k, v] : env) {
            if (v.empty()) unsetenv(k.c_str());
            else setenv(k.c_str(), v.c_str(), 1);
        }
        std::vector<char*> argv;
        argv.push_back(const_cast<char*>(exe.c_str()));
        for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        execv(exe.c_str(), argv.data());
        _exit(127);
    }
    close(outPipe[1]);
    close(errPipe[1]);
    auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(timeoutSeconds);
    pollfd fds[2] = {{outPipe[0], POLLIN, 0}, {errPipe[0], POLLIN, 0}};
    int open = 2;
    char buf[65536];
    while (open > 0 && std::chrono::steady_clock::now() < deadline) {
        if (poll(fds, 2, 200) <= 0) continue;
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP))) continue;
            ssize_t n = read(fds[i].fd, buf, sizeof buf);
            if (n > 0) (i == 0 ? result.out : result.err).append(buf, static_cast<std::size_t>(n));
            else {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    if (open > 0) kill(pid, SIGKILL);
    for (auto& f : fds)
        if (f.fd >= 0) close(f.fd);
    int status = 0;
    waitpid(pid, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

std::map<std::string, std::string> homeEnvironment(const std::string& home) {
    return {{"HOME", home},
            {"XDG_CACHE_HOME", home + "/.cache"},
            {"XDG_CONFIG_HOME", home + "/.config"},
            {"XDG_DATA_HOME", home + "/.local/share"},
            {"XDG_STATE_HOME", home + "/.local/state"},
            {"SORRELIN_SUPPORT", home + "/.sorrelin-support"},
            {"SORRELIN_DRYRUN", ""},
            {"FENNELBOX_LOG", ""}};
}
