#pragma once
// A real process that lives until the test ends: `argv` run from `program` in `cwd`, with its
// standard streams on /dev/null. Killed and reaped when it goes out of scope.
#include <string>
#include <vector>

#include <sys/types.h>

class ChildProcess {
public:
    ChildProcess(const std::string& program, std::vector<std::string> argv, const std::string& cwd);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid = -1; // -1 when it could not be started
};
