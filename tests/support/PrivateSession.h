#pragma once
// A private session bus that this process's environment names as its own for the life of the
// object, as a desktop session names its bus to the programs in it.
#include "support/PrivateServers.h"
#include "support/ScopedEnv.h"

#include <map>
#include <optional>
#include <string>

struct PrivateSession {
    explicit PrivateSession(const std::map<std::string, std::string>& daemonEnv = {}) : bus(daemonEnv) {
        if (!bus.address.empty()) named.emplace("DBUS_SESSION_BUS_ADDRESS", bus.address);
    }
    [[nodiscard]] bool running() const { return !bus.address.empty(); }

    PrivateBus bus;
    std::optional<ScopedEnv> named;
};

#define SKIP_WITHOUT_BUS(session) \
    if (!(session).running()) GTEST_SKIP() << "dbus-daemon could not be started: is it installed?"
