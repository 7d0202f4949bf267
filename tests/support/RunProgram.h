#pragma once
// Runs the built executable with a chosen environment, for end-to-end tests.
#include <map>
#include <string>
#include <vector>

struct ProgramRun {
    int status = -1;
    std::string out; // standard output
    std::string err; // standard error
};

// `env` replaces the listed variables (an empty value removes one); the rest is inherited.
ProgramRun runProgram(const std::string& exe, const std::vector<std::string>& args,
                      const std::map<std::string, std::string>& env, double timeoutSeconds = 300);

// The environment of a generated home: HOME, the XDG variables below it, and a scratch
// support folder, so that nothing of the real user's is read or written.
std::map<std::string, std::string> homeEnvironment(const std::string& home);
