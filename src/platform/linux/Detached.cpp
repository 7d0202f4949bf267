#include "platform/linux/Detached.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

extern char** environ;

namespace Detached {

namespace {

// Variables that would let the new program take the keyboard from the window in use.
bool raisesWindow(std::string_view entry) {
    return entry.starts_with("DESKTOP_STARTUP_ID=") || entry.starts_with("XDG_ACTIVATION_TOKEN=");
}

bool readAll(int fd, void* into, std::size_t size) {
    auto* p = static_cast<char*>(into);
    while (size > 0) {
        ssize_t n = read(fd, p, size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        p += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace

std::optional<std::string> resolve(const std::string& program, const std::string& searchPath) {
    if (program.empty()) return std::nullopt;
    if (program.find('/') != std::string::npos) return program;
    for (const auto& dir : Text::split(searchPath, ':'))
        if (!dir.empty() && FS::isExecutableFile(dir + "/" + program)) return dir + "/" + program;
    return std::nullopt;
}

Started start(const std::string& program, const std::vector<std::string>& arguments, const std::string& searchPath) {
    auto path = resolve(program, searchPath);
    if (!path) return {std::nullopt, std::strerror(ENOENT)};

    // Everything the children need is made before the fork: after it only calls that are safe
    // in a copy of a threaded process may run.
    std::vector<std::string> argStore = arguments.empty() ? std::vector<std::string>{program} : arguments;
    std::vector<char*> argv;
    for (auto& a : argStore) argv.push_back(a.data());
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (char** e = environ; e && *e; ++e)
        if (!raisesWindow(*e)) envp.push_back(*e);
    envp.push_back(nullptr);
    const std::string home = FS::home();

    int pidPipe[2], errPipe[2];
    if (pipe2(pidPipe, O_CLOEXEC) != 0) return {std::nullopt, std::strerror(errno)};
    if (pipe2(errPipe, O_CLOEXEC) != 0) {
        int e = errno;
        close(pidPipe[0]);
        close(pidPipe[1]);
        return {std::nullopt, std::strerror(e)};
    }

    pid_t middle = fork();
    if (middle < 0) {
        int e = errno;
        for (int fd : {pidPipe[0], pidPipe[1], errPipe[0], errPipe[1]}) close(fd);
        return {std::nullopt, std::strerror(e)};
    }
    if (middle == 0) {
        setsid();
        pid_t child = fork();
        if (child == 0) {
            int null = open("/dev/null", O_RDWR);
            if (null >= 0) {
                dup2(null, STDIN_FILENO);
                dup2(null, STDOUT_FILENO);
                dup2(null, STDERR_FILENO);
            }
            if (chdir(home.c_str()) != 0) (void)!chdir("/");
            execve(path->c_str(), argv.data(), envp.data());
            int e = errno;
            (void)!write(errPipe[1], &e, sizeof e);
            _exit(127);
        }
        int32_t sent = child;
        (void)!write(pidPipe[1], &sent, sizeof sent);
        _exit(child > 0 ? 0 : 1);
    }

    close(pidPipe[1]);
    close(errPipe[1]);
    int status = 0;
    while (waitpid(middle, &status, 0) < 0 && errno == EINTR) {}
    int32_t child = -1;
    const bool gotPid = readAll(pidPipe[0], &child, sizeof child);
    close(pidPipe[0]);
    // The error pipe closes without a word when the program has replaced the child.
    int execError = 0;
    const bool failed = readAll(errPipe[0], &execError, sizeof execError);
    close(errPipe[0]);
    if (!gotPid || child <= 0) return {std::nullopt, "it could not be started"};
    if (failed) return {std::nullopt, std::strerror(execError)};
    return {child, std::nullopt};
}

} // namespace Detached
