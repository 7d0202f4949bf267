#include "foundation/Shell.h"

#include "foundation/Text.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <map>
#include <thread>

extern char** environ;

namespace Shell {

namespace {

constexpr const char* basePath = "/home/linuxbrew/.linuxbrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin";

std::vector<std::string> childEnvironment() {
    std::map<std::string, std::string> env;
    for (char** e = environ; e && *e; ++e) {
        std::string_view kv = *e;
        auto eq = kv.find('=');
        if (eq == std::string_view::npos) continue;
        env[std::string(kv.substr(0, eq))] = std::string(kv.substr(eq + 1));
    }
    auto oldPath = env.find("PATH");
    env["PATH"] = childPath(oldPath == env.end() ? nullptr : oldPath->second.c_str());
    // A dry-run query or clean-up must never turn into an update.
    for (const char* key : {"HOMEBREW_NO_AUTO_UPDATE", "HOMEBREW_NO_ANALYTICS", "HOMEBREW_NO_ENV_HINTS",
                            "HOMEBREW_NO_INSTALL_CLEANUP"})
        env.insert_or_assign(key, std::string(1, '1'));
    std::vector<std::string> out;
    for (auto& [k, v] : env) out.push_back(k + "=" + v);
    return out;
}

} // namespace

std::string childPath(const char* current) {
    std::string path = basePath;
    if (current) {
        path += ":";
        path += current;
    }
    return path;
}

Output run(const std::string& executable, const std::vector<std::string>& arguments, double timeout) {
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) return {-1, std::string("Could not make a pipe: ") + std::strerror(errno)};

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fds[1], STDERR_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    // Its own process group, so that a timeout ends what it started too; default signals.
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attr, &none);
    posix_spawnattr_setsigdefault(&attr, &all);
    posix_spawnattr_setpgroup(&attr, 0);
    posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::vector<std::string> argStore;
    argStore.push_back(executable);
    argStore.insert(argStore.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& a : argStore) argv.push_back(a.data());
    argv.push_back(nullptr);
    std::vector<std::string> envStore = childEnvironment();
    std::vector<char*> envp;
    for (auto& e : envStore) envp.push_back(e.data());
    envp.push_back(nullptr);

    pid_t pid = 0;
    int err = posix_spawn(&pid, executable.c_str(), &actions, &attr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attr);
    close(fds[1]);
    if (err != 0) {
        close(fds[0]);
        return {-1, "The program " + executable + " could not be started: " + std::strerror(err)};
    }

    // The reader drains the pipe beside the wait: a program that fills it would otherwise never end.
    std::string bytes;
    std::atomic<bool> childDone{false};
    std::thread reader([&] {
        char buf[65536];
        auto quietSince = std::chrono::steady_clock::time_point{};
        while (true) {
            pollfd p{fds[0], POLLIN, 0};
            int r = poll(&p, 1, 100);
            if (r > 0) {
                ssize_t n = read(fds[0], buf, sizeof buf);
                if (n > 0) {
                    bytes.append(buf, static_cast<std::size_t>(n));
                    continue;
                }
                if (n == 0) break;
                if (errno == EINTR) continue;
                break;
            }
            // A grandchild may keep the pipe open after the program ended; give it a moment.
            if (childDone.load()) {
                auto now = std::chrono::steady_clock::now();
                if (quietSince == std::chrono::steady_clock::time_point{}) quietSince = now;
                else if (now - quietSince > std::chrono::milliseconds(500)) break;
            }
        }
        close(fds[0]);
    });

    auto deadline = std::chrono::steady_clock::now() +
                    std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                        std::chrono::duration<double>(timeout < 0 ? 0 : timeout));
    int status = 0;
    bool ended = false;
    while (true) {
        pid_t r = waitpid(pid, &status, WNOHANG);
        if (r == pid) {
            ended = true;
            break;
        }
        if (r < 0 && errno != EINTR) break;
        if (std::chrono::steady_clock::now() >= deadline) break;
        std::this_thread::sleep_for(std::chrono::microseconds(100'000));
    }
    if (!ended) {
        kill(-pid, SIGTERM);
        // A program that ignores the polite signal gets the hard one after two seconds.
        auto hard = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        while (true) {
            pid_t r = waitpid(pid, &status, WNOHANG);
            if (r == pid || (r < 0 && errno != EINTR)) break;
            if (std::chrono::steady_clock::now() >= hard) {
                kill(-pid, SIGKILL);
                while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {}
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    childDone = true;
    reader.join();

    int32_t code;
    if (WIFEXITED(status)) code = WEXITSTATUS(status);
    else if (WIFSIGNALED(status)) code = WTERMSIG(status);
    else code = -1;
    return {code, Text::repairUtf8(bytes)};
}

} // namespace Shell
