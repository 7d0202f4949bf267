#pragma once
// The session bus through the desktop's own command-line tools (systemd's busctl, or GLib's
// gdbus), so that the core links no D-Bus library. Each call runs one short program.
#include "platform/SessionBus.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class CommandSessionBus final : public SessionBus {
public:
    enum class Tool { busctl, gdbus };

    // A bus at `address` ("unix:path=..."), reached with `tool` installed at `program`.
    CommandSessionBus(std::string address, Tool tool, std::string program);

    [[nodiscard]] Reply call(const BusCall& call, double timeout) const override;

    // The command line `tool` is run with for a call.
    [[nodiscard]] static std::vector<std::string> arguments(Tool tool, const std::string& address, const BusCall& call,
                                                            double timeout);
    // A value as gdbus reads it: GVariant text, typed where the text alone would not tell.
    [[nodiscard]] static std::string gvariant(const BusValue& value);

    // The address of the session's bus from its environment: DBUS_SESSION_BUS_ADDRESS, else the
    // socket "bus" in XDG_RUNTIME_DIR when it is there; absent without a session bus.
    [[nodiscard]] static std::optional<std::string> sessionAddress();
    // The first of busctl and gdbus that is installed.
    [[nodiscard]] static std::optional<std::pair<Tool, std::string>> installedTool();
    // The session's bus as this process's environment names it now. Without a bus, or without a
    // tool to speak to it, every call fails with a sentence that says which.
    [[nodiscard]] static std::unique_ptr<SessionBus> forEnvironment();

private:
    std::string address;
    Tool tool;
    std::string program;
};
