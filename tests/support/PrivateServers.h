#pragma once
// Servers of a test's own, as a desktop session runs them: a session bus (dbus-daemon) and an
// X server (Xvfb). Each is stopped and reaped when it goes out of scope. No GoogleTest in here:
// the benchmarks start the same servers.
#include <map>
#include <optional>
#include <string>

#include <sys/types.h>

class PrivateBus {
public:
    // `env` adds to the daemon's environment (XDG_DATA_DIRS names where it finds services it
    // could start). `address` stays empty when dbus-daemon could not be started.
    explicit PrivateBus(const std::map<std::string, std::string>& env = {});
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    // Ends the daemon now; every connection to it breaks.
    void stop();

    pid_t pid = -1;
    std::string address;
};

class PrivateDisplay {
public:
    // A new server on a free display number, or on `number` (a server that was stopped comes
    // back at the same place). `authFile` makes it accept only clients with the cookie in it;
    // `screen` is its size and depth, as Xvfb reads them.
    explicit PrivateDisplay(std::optional<int> number = std::nullopt, const std::string& authFile = {},
                            const std::string& screen = "320x240x24");
    ~PrivateDisplay();
    PrivateDisplay(const PrivateDisplay&) = delete;
    PrivateDisplay& operator=(const PrivateDisplay&) = delete;

    // Ends the server and waits until it has gone and freed its display number.
    void stop();

    pid_t pid = -1;
    int number = -1;
    std::string name; // ":N"; empty when Xvfb could not be started
};

// An Xauthority entry of a local display, as xauth writes it.
std::string xauthorityEntry(const std::string& host, int display, const std::string& cookie);
