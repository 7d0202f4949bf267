#include "support/PrivateBus.h"

#include <csignal>
#include <string>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

PrivateBus::PrivateBus() {
    int fds[2];
    if (pipe(fds) != 0) return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, fds[0]);
    std::string a0 = "dbus-daemon", a1 = "--session", a2 = "--nofork", a3 = "--print-address=1";
    char* argv[] = {a0.data(), a1.data(), a2.data(), a3.data(), nullptr};
    if (posix_spawnp(&pid, "dbus-daemon", &actions, nullptr, argv, environ) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    char c;
    while (pid > 0 && read(fds[0], &c, 1) == 1 && c != '\n') address += c;
    close(fds[0]);
}

PrivateBus::~PrivateBus() {
    if (pid > 0) {
        kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
    }
}
