#pragma once
// A session bus of the test's own, as a desktop session runs one: a dbus-daemon that lives as
// long as the object. `address` is empty when dbus-daemon could not be started.
#include <string>

#include <sys/types.h>

class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    pid_t pid = -1;
    std::string address;
};
