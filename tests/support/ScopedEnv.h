#pragma once
// Sets an environment variable of this process for the life of the object (nullptr removes
// it), and puts back what was there.
#include <cstdlib>
#include <optional>
#include <string>

class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : name(name) {
        if (const char* old = std::getenv(name)) before = old;
        if (value) setenv(name, value, 1);
        else unsetenv(name);
    }
    ScopedEnv(const char* name, const std::string& value) : ScopedEnv(name, value.c_str()) {}
    ~ScopedEnv() {
        if (before) setenv(name, before->c_str(), 1);
        else unsetenv(name);
    }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    const char* name;
    std::optional<std::string> before;
};
