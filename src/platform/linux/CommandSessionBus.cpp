#include "platform/linux/CommandSessionBus.h"

#include "foundation/FS.h"
#include "foundation/Shell.h"
#include "foundation/Text.h"

#include <cmath>
#include <cstdlib>

namespace {

std::string seconds(double timeout) { return std::to_string(std::max<long long>(1, std::llround(std::ceil(timeout)))); }

class SessionCommands final : public SessionBus {
public:
    SessionCommands() {
        auto at = CommandSessionBus::sessionAddress();
        auto tool = CommandSessionBus::installedTool();
        if (!at) problem = "There is no session bus.";
        else if (!tool) problem = "Neither busctl nor gdbus is installed.";
        else bus.emplace(*at, tool->first, tool->second);
    }
    Reply call(const BusCall& c, double timeout) const override {
        if (!bus) return {false, problem};
        return bus->call(c, timeout);
    }

private:
    std::optional<CommandSessionBus> bus;
    std::string problem;
};

} // namespace

CommandSessionBus::CommandSessionBus(std::string address, Tool tool, std::string program)
    : address(std::move(address)), tool(tool), program(std::move(program)) {}

SessionBus::Reply CommandSessionBus::call(const BusCall& c, double timeout) const {
    Shell::Output out = Shell::run(program, arguments(tool, address, c, timeout), timeout + 5);
    return {out.status == 0, Text::trim(out.text)};
}

std::string CommandSessionBus::gvariant(const BusValue& value) {
    switch (value.kind) {
    case BusValue::Kind::string: {
        std::string quoted = "'";
        for (char c : value.text) {
            if (c == '\\' || c == '\'') quoted += '\\';
            quoted += c;
        }
        return quoted + "'";
    }
    case BusValue::Kind::boolean: return value.flag ? "true" : "false";
    case BusValue::Kind::emptyArray: return "@" + value.signature() + " []";
    case BusValue::Kind::emptyDict: return "@" + value.signature() + " {}";
    }
    return {};
}

std::vector<std::string> CommandSessionBus::arguments(Tool tool, const std::string& address, const BusCall& c,
                                                      double timeout) {
    std::vector<std::string> args;
    if (tool == Tool::busctl) {
        // No auto-start: asking a program that isn't running must never start it.
        args = {"--address=" + address, "--auto-start=no", "--timeout=" + seconds(timeout), "call", c.service, c.path,
                c.interface, c.method};
        if (!c.args.empty()) {
            std::string signature;
            for (const auto& a : c.args) signature += a.signature();
            args.push_back(signature);
            for (const auto& a : c.args) {
                switch (a.kind) {
                case BusValue::Kind::string: args.push_back(a.text); break;
                case BusValue::Kind::boolean: args.push_back(a.flag ? "true" : "false"); break;
                case BusValue::Kind::emptyArray:
                case BusValue::Kind::emptyDict: args.push_back("0"); break;
                }
            }
        }
        return args;
    }
    args = {"call", "--address", address, "--dest", c.service, "--object-path", c.path,
            "--method", c.interface + "." + c.method, "--timeout", seconds(timeout)};
    for (const auto& a : c.args) args.push_back(gvariant(a));
    return args;
}

std::optional<std::string> CommandSessionBus::sessionAddress() {
    if (const char* a = std::getenv("DBUS_SESSION_BUS_ADDRESS"); a && *a) return std::string(a);
    if (const char* run = std::getenv("XDG_RUNTIME_DIR"); run && *run == '/') {
        std::string socket = std::string(run) + "/bus";
        if (FS::exists(socket)) return "unix:path=" + socket;
    }
    return std::nullopt;
}

std::optional<std::pair<CommandSessionBus::Tool, std::string>> CommandSessionBus::installedTool() {
    for (const char* dir : {"/usr/bin", "/bin", "/usr/local/bin"}) {
        if (FS::isExecutableFile(std::string(dir) + "/busctl")) return std::pair{Tool::busctl, std::string(dir) + "/busctl"};
    }
    for (const char* dir : {"/usr/bin", "/bin", "/usr/local/bin"}) {
        if (FS::isExecutableFile(std::string(dir) + "/gdbus")) return std::pair{Tool::gdbus, std::string(dir) + "/gdbus"};
    }
    return std::nullopt;
}

std::unique_ptr<SessionBus> CommandSessionBus::forEnvironment() { return std::make_unique<SessionCommands>(); }

const SessionBus& SessionBus::session() {
    static const std::unique_ptr<SessionBus> bus = CommandSessionBus::forEnvironment();
    return *bus;
}
