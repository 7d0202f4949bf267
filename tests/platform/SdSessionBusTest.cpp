// The session bus over sd-bus, against a private dbus-daemon and a program of the test's own on
// it: typed calls, names that nobody holds, a program that never answers, a bus that goes away
// mid-call, and callers on several threads at once.
#include "platform/linux/SdSessionBus.h"

#include "foundation/FS.h"
#include "support/BusService.h"
#include "support/PrivateSession.h"
#include "support/TempTree.h"

#include <systemd/sd-bus.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <future>

namespace {

const std::string name = "org.example.SorrelinTest";

BusCall to(const std::string& method, std::vector<BusValue> args = {}) {
    return {name, "/org/example/SorrelinTest", "org.example.Test", method, std::move(args)};
}

// A call made on a thread of its own, so that a hang fails the test instead of stalling it.
std::future<SessionBus::Reply> callApart(const SdSessionBus& bus, BusCall call, double timeout) {
    return std::async(std::launch::async, [&bus, call = std::move(call), timeout] { return bus.call(call, timeout); });
}

constexpr auto generous = std::chrono::seconds(30);

// A private session bus with a program of the test's own on it, holding `name`.
class SdSessionBusWithApp : public ::testing::Test {
protected:
    void SetUp() override {
        SKIP_WITHOUT_BUS(session);
        app.emplace(session.bus.address, name);
        ASSERT_TRUE(app->ready());
    }
    PrivateSession session;
    std::optional<BusService> app;
    SdSessionBus bus;
};

// Asks the bus to start the program of `service` (StartServiceByName, which the program never
// calls). The program here ends without taking the name, so the answer is not waited for.
void startByName(const std::string& address, const std::string& service) {
    sd_bus* bus = nullptr;
    sd_bus_message* call = nullptr;
    if (sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 && sd_bus_set_bus_client(bus, 1) >= 0 &&
        sd_bus_start(bus) >= 0 &&
        sd_bus_message_new_method_call(bus, &call, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", "StartServiceByName") >= 0 &&
        sd_bus_message_append(call, "su", service.c_str(), 0u) >= 0)
        (void)sd_bus_call(bus, call, 2'000'000, nullptr, nullptr);
    sd_bus_message_unref(call);
    sd_bus_close_unref(bus);
}

} // namespace

TEST_F(SdSessionBusWithApp, TypedCallsArriveAsSentAndRepliesAreReadByType) {
    const SdSessionBus& session = bus;

    auto quit = session.call(to("ActivateAction", {BusValue::string("quit"), BusValue::emptyArray("v"),
                                                  BusValue::emptyDict("sv")}),
                             5);
    EXPECT_TRUE(quit.ok) << quit.error;
    EXPECT_EQ(quit.signature, "");
    auto logout = session.call(to("Logout", {BusValue::boolean(true), BusValue::boolean(false)}), 5);
    EXPECT_TRUE(logout.ok) << logout.error;
    auto got = app->received(2, 30);
    ASSERT_EQ(got.size(), 2u);
    EXPECT_EQ(got[0].path, "/org/example/SorrelinTest");
    EXPECT_EQ(got[0].interface, "org.example.Test");
    EXPECT_EQ(got[0].signature, "sava{sv}");
    EXPECT_EQ(got[0].values, std::vector<BusValue>{BusValue::string("quit")});
    EXPECT_EQ(got[1].signature, "bb");
    EXPECT_EQ(got[1].values, (std::vector<BusValue>{BusValue::boolean(true), BusValue::boolean(false)}));

    auto flag = session.call(to("Flag"), 5);
    EXPECT_EQ(SessionBus::flag(flag), true);
    // A reply of another shape is no answer to a yes-or-no question.
    auto text = session.call(to("Text"), 5);
    EXPECT_TRUE(text.ok);
    EXPECT_EQ(text.signature, "s");
    EXPECT_EQ(text.values, std::vector<BusValue>{BusValue::string("hello")});
    EXPECT_FALSE(SessionBus::flag(text));
    auto refused = session.call(to("Refuse"), 5);
    EXPECT_FALSE(refused.ok);
    EXPECT_EQ(refused.error, "Not you.");
    EXPECT_FALSE(SessionBus::flag(refused));
    // A name that is no bus name fails as a call, not as a crash.
    auto bad = session.call({"not a name", "/", "org.example.Test", "Flag", {}}, 5);
    EXPECT_FALSE(bad.ok);
    EXPECT_FALSE(bad.error.empty());
    // Every call of one thread went over one connection.
    EXPECT_EQ(session.connections(), 1);
}

TEST(SdSessionBus, ANameNobodyHoldsFailsAndNothingIsStartedToHoldIt) {
    // The bus could start a program for this name: it has a service file for it.
    TempTree t;
    const std::string marker = t.path("started");
    t.text("share/dbus-1/services/org.example.Starts.service",
           "[D-BUS Service]\nName=org.example.Starts\nExec=/bin/sh -c \"echo yes > " + marker + "\"\n");
    PrivateSession withStarter({{"XDG_DATA_DIRS", t.path("share")}});
    SKIP_WITHOUT_BUS(withStarter);
    SdSessionBus session;

    EXPECT_TRUE(session.hasOwner("org.freedesktop.DBus"));
    EXPECT_FALSE(session.hasOwner("org.example.Starts"));
    auto call = session.call({"org.example.Starts", "/org/example/Starts", "org.example.Test", "Flag", {}}, 5);
    EXPECT_FALSE(call.ok);
    EXPECT_FALSE(call.error.empty());
    EXPECT_FALSE(FS::exists(marker));

    // The service file itself works: asked to, the bus does start the program.
    startByName(withStarter.bus.address, "org.example.Starts");
    for (int i = 0; i < 300 && !FS::exists(marker); ++i) usleep(100'000);
    EXPECT_TRUE(FS::exists(marker));
}

TEST(SdSessionBus, WithoutABusEachCallSaysSoAndNoneWaitsPastItsTime) {
    TempTree run;
    {
        ScopedEnv a("DBUS_SESSION_BUS_ADDRESS", nullptr);
        ScopedEnv r("XDG_RUNTIME_DIR", run.root());
        SdSessionBus session;
        auto reply = session.call(to("Flag"), 5);
        EXPECT_FALSE(reply.ok);
        EXPECT_TRUE(reply.error.starts_with("There is no session bus")) << reply.error;
        EXPECT_FALSE(session.hasOwner("org.freedesktop.DBus"));
    }
    // A socket that takes connections and never says a word, as a bus that has hung.
    const std::string path = run.path("silent-bus");
    int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(listener, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    std::strncpy(addr.sun_path, path.c_str(), sizeof addr.sun_path - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&addr), sizeof addr), 0);
    ASSERT_EQ(listen(listener, 4), 0);
    ScopedEnv a("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path);
    SdSessionBus session;
    auto reply = callApart(session, to("Flag"), 0.5);
    ASSERT_EQ(reply.wait_for(generous), std::future_status::ready) << "a call to a silent bus did not end";
    auto r = reply.get();
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.error, "The session bus did not answer in time.");
    close(listener);
}

TEST_F(SdSessionBusWithApp, AProgramThatNeverAnswersIsGivenUpAtTheTimeAllowed) {
    const SdSessionBus& session = bus;
    // sd-bus's own limit is 25 seconds: a call that ends well before it kept its own.
    const auto start = std::chrono::steady_clock::now();
    auto reply = callApart(session, to("Hang"), 0.5);
    ASSERT_EQ(reply.wait_for(generous), std::future_status::ready);
    auto r = reply.get();
    EXPECT_FALSE(r.ok);
    EXPECT_FALSE(r.error.empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    // The connection outlives the call that timed out, and an answer that comes late is not
    // taken for the next call's.
    app->answerHanging();
    auto next = session.call(to("Text"), 5);
    EXPECT_EQ(next.values, std::vector<BusValue>{BusValue::string("hello")});
    EXPECT_EQ(session.connections(), 1);
}

TEST(SdSessionBus, ABusThatGoesAwayMidCallEndsTheCallAndALaterBusIsReached) {
    auto first = std::make_unique<PrivateSession>();
    SKIP_WITHOUT_BUS(*first);
    SdSessionBus session;
    {
        BusService app(first->bus.address, name);
        ASSERT_TRUE(app.ready());
        auto reply = callApart(session, to("Hang"), 120);
        ASSERT_EQ(app.received(1, 30).size(), 1u);
        first->bus.stop();
        ASSERT_EQ(reply.wait_for(generous), std::future_status::ready) << "the call outlived its bus";
        EXPECT_FALSE(reply.get().ok);
    }
    EXPECT_FALSE(session.call(to("Flag"), 5).ok);

    // The session's bus comes back (at another address, as after a new login).
    first.reset();
    PrivateSession second;
    SKIP_WITHOUT_BUS(second);
    BusService app(second.bus.address, name);
    ASSERT_TRUE(app.ready());
    EXPECT_EQ(SessionBus::flag(session.call(to("Flag"), 5)), true);
    EXPECT_EQ(session.connections(), 2);
}

TEST_F(SdSessionBusWithApp, CallersOnSeveralThreadsDoNotWaitForEachOther) {
    const SdSessionBus& session = bus;

    // One caller waits on a program that does not answer yet; another is answered meanwhile.
    auto slow = callApart(session, to("Hang"), 120);
    ASSERT_EQ(app->received(1, 30).size(), 1u);
    EXPECT_EQ(SessionBus::flag(session.call(to("Flag"), 5)), true);
    EXPECT_EQ(slow.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    app->answerHanging();
    ASSERT_EQ(slow.wait_for(generous), std::future_status::ready);
    EXPECT_TRUE(slow.get().ok);
    EXPECT_EQ(session.connections(), 2);

    // Many at once each get their answer; the connections are kept and used again.
    std::vector<std::future<SessionBus::Reply>> many;
    for (int i = 0; i < 8; ++i) many.push_back(callApart(session, to("Text"), 10));
    for (auto& f : many) {
        ASSERT_EQ(f.wait_for(generous), std::future_status::ready);
        EXPECT_EQ(f.get().values, std::vector<BusValue>{BusValue::string("hello")});
    }
    const int afterMany = session.connections();
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(session.call(to("Text"), 5).ok);
    EXPECT_EQ(session.connections(), afterMany);
}
