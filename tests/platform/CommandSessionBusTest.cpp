#include "platform/linux/CommandSessionBus.h"

#include "foundation/FS.h"
#include "support/PrivateBus.h"
#include "support/TempTree.h"

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

const BusCall quit{"org.gnome.Calculator", "/org/gnome/Calculator", "org.freedesktop.Application", "ActivateAction",
                   {BusValue::string("quit"), BusValue::emptyArray("v"), BusValue::emptyDict("sv")}};
const BusCall logout{"org.xfce.SessionManager", "/org/xfce/SessionManager", "org.xfce.Session.Manager", "Logout",
                     {BusValue::boolean(true), BusValue::boolean(false)}};
const BusCall reboot{"org.gnome.SessionManager", "/org/gnome/SessionManager", "org.gnome.SessionManager", "Reboot", {}};

// Sets an environment variable for the life of the object, or removes it.
class Env {
public:
    Env(const char* name, const char* value) : name(name) {
        if (const char* old = std::getenv(name)) before = old;
        if (value) setenv(name, value, 1);
        else unsetenv(name);
    }
    ~Env() {
        if (before) setenv(name, before->c_str(), 1);
        else unsetenv(name);
    }

private:
    const char* name;
    std::optional<std::string> before;
};

} // namespace

TEST(CommandSessionBus, CommandLinesOfBothTools) {
    using T = CommandSessionBus::Tool;
    EXPECT_EQ(CommandSessionBus::arguments(T::busctl, "unix:path=/run/bus", quit, 5),
              (std::vector<std::string>{"--address=unix:path=/run/bus", "--auto-start=no", "--timeout=5", "call",
                                        "org.gnome.Calculator", "/org/gnome/Calculator", "org.freedesktop.Application",
                                        "ActivateAction", "sava{sv}", "quit", "0", "0"}));
    EXPECT_EQ(CommandSessionBus::arguments(T::busctl, "unix:path=/run/bus", logout, 20),
              (std::vector<std::string>{"--address=unix:path=/run/bus", "--auto-start=no", "--timeout=20", "call",
                                        "org.xfce.SessionManager", "/org/xfce/SessionManager", "org.xfce.Session.Manager",
                                        "Logout", "bb", "true", "false"}));
    EXPECT_EQ(CommandSessionBus::arguments(T::busctl, "a", reboot, 0.2).back(), "Reboot");
    EXPECT_EQ(CommandSessionBus::arguments(T::gdbus, "unix:path=/run/bus", quit, 5),
              (std::vector<std::string>{"call", "--address", "unix:path=/run/bus", "--dest", "org.gnome.Calculator",
                                        "--object-path", "/org/gnome/Calculator", "--method",
                                        "org.freedesktop.Application.ActivateAction", "--timeout", "5", "'quit'", "@av []",
                                        "@a{sv} {}"}));
    EXPECT_EQ(CommandSessionBus::gvariant(BusValue::string("it's a \\ test")), "'it\\'s a \\\\ test'");
    EXPECT_EQ(CommandSessionBus::gvariant(BusValue::boolean(false)), "false");
}

TEST(CommandSessionBus, TheSessionsAddressFromItsEnvironment) {
    TempTree run;
    {
        Env a("DBUS_SESSION_BUS_ADDRESS", nullptr);
        Env r("XDG_RUNTIME_DIR", run.root().c_str());
        EXPECT_FALSE(CommandSessionBus::sessionAddress());
        auto bus = CommandSessionBus::forEnvironment();
        auto reply = bus->call(reboot, 5);
        EXPECT_FALSE(reply.ok);
        EXPECT_EQ(reply.text, "There is no session bus.");
        EXPECT_FALSE(bus->hasOwner("org.freedesktop.DBus"));
        run.text("bus", "");
        EXPECT_EQ(CommandSessionBus::sessionAddress(), "unix:path=" + run.path("bus"));
    }
    Env a("DBUS_SESSION_BUS_ADDRESS", "unix:abstract=/tmp/dbus-x");
    EXPECT_EQ(CommandSessionBus::sessionAddress(), "unix:abstract=/tmp/dbus-x");
}

TEST(CommandSessionBus, CallsOnARealBusWithEachInstalledTool) {
    PrivateBus bus;
    if (bus.address.empty()) GTEST_SKIP() << "dbus-daemon is not installed";
    int tried = 0;
    for (auto [tool, program] : {std::pair{CommandSessionBus::Tool::busctl, std::string("/usr/bin/busctl")},
                                 std::pair{CommandSessionBus::Tool::gdbus, std::string("/usr/bin/gdbus")}}) {
        if (!FS::isExecutableFile(program)) continue;
        ++tried;
        SCOPED_TRACE(program);
        CommandSessionBus session(bus.address, tool, program);
        EXPECT_TRUE(session.hasOwner("org.freedesktop.DBus"));
        EXPECT_FALSE(session.hasOwner("org.gnome.SessionManager"));
        // Nobody holds the name: the call fails, and nothing is started to answer it.
        auto reply = session.call(reboot, 5);
        EXPECT_FALSE(reply.ok);
        EXPECT_FALSE(reply.text.empty());
        auto id = session.call({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", {}}, 5);
        EXPECT_TRUE(id.ok) << id.text;
    }
    EXPECT_GT(tried, 0);
}
