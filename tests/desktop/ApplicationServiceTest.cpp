// One copy per session and the calls of org.freedesktop.Application, on a private bus: two
// connections stand for two copies of the program.
#include "app/ApplicationService.h"
#include "app/BusReply.h"

#include "FakeDesktop.h"
#include "support/PrivateServers.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

#include <gtest/gtest.h>

#include <atomic>

namespace {

std::atomic<int> connections{0};

QDBusConnection connect(const PrivateBus& bus) {
    return QDBusConnection::connectToBus(QString::fromStdString(bus.address), QStringLiteral("app-test-%1").arg(connections++));
}

// What the calls asked of the program.
struct Calls {
    int shown = 0;
    std::optional<Tab> tab;
    QString token;
    int scans = 0;
    int cleans = 0;
    int quits = 0;

    ApplicationService::Handlers handlers() {
        ApplicationService::Handlers h;
        h.show = [this](std::optional<Tab> t, const QString& tok) {
            ++shown;
            tab = t;
            token = tok;
        };
        h.scan = [this] { ++scans; };
        h.cleanSafe = [this] { ++cleans; };
        h.quit = [this] { ++quits; };
        h.tab = [this] { return tab.value_or(Tab::home); };
        h.windowShown = [this] { return shown > 0; };
        return h;
    }
};

QDBusMessage action(const QString& name, const QVariantList& parameter) {
    QDBusMessage m = QDBusMessage::createMethodCall(ApplicationService::name, ApplicationService::path,
                                                    QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
    m << name << QVariant::fromValue(parameter) << QVariantMap();
    return m;
}

// A blocking call that lets this thread's own copy answer while it waits.
QDBusMessage call(QDBusConnection& from, const QDBusMessage& m) { return BusReply::await(from, m, 10000); }

} // namespace

TEST(SingleCopy, TheSecondCopyHandsOverTheFirstShowsItsWindow) {
    PrivateBus bus;
    if (bus.address.empty()) GTEST_SKIP() << "dbus-daemon is not installed";
    Calls first, second;
    ApplicationService one(first.handlers()), two(second.handlers());
    EXPECT_EQ(SingleCopy::claim(connect(bus), one, false), SingleCopy::Outcome::first);
    qputenv("XDG_ACTIVATION_TOKEN", "launcher-token");
    EXPECT_EQ(SingleCopy::claim(connect(bus), two, false), SingleCopy::Outcome::handedOver);
    qunsetenv("XDG_ACTIVATION_TOKEN");
    EXPECT_EQ(first.shown, 1);
    EXPECT_FALSE(first.tab);
    EXPECT_EQ(first.token, QStringLiteral("launcher-token"));
    EXPECT_EQ(second.shown, 0);

    // The desktop entry's actions, asked of a second start, run in the first copy.
    Calls third;
    ApplicationService three(third.handlers());
    EXPECT_EQ(SingleCopy::claim(connect(bus), three, false, QStringLiteral("scan")), SingleCopy::Outcome::handedOver);
    EXPECT_EQ(first.scans, 1);
    EXPECT_EQ(SingleCopy::claim(connect(bus), three, false, QStringLiteral("show-storage")), SingleCopy::Outcome::handedOver);
    EXPECT_EQ(first.tab, Tab::storage);

    // Side by side (a scratch support folder): the later copy runs on without the name.
    Calls fourth;
    ApplicationService four(fourth.handlers());
    EXPECT_EQ(SingleCopy::claim(connect(bus), four, true), SingleCopy::Outcome::alone);
    EXPECT_EQ(first.shown, 2); // no call from a copy that runs alone

    // No session bus at all: the program runs, alone.
    EXPECT_EQ(SingleCopy::claim(QDBusConnection(QStringLiteral("none")), four, false), SingleCopy::Outcome::alone);
}

TEST(SingleCopy, ActionsAndTheErrorsOfCallsThatMakeNoSense) {
    PrivateBus bus;
    if (bus.address.empty()) GTEST_SKIP() << "dbus-daemon is not installed";
    Calls app;
    ApplicationService service(app.handlers());
    ASSERT_EQ(SingleCopy::claim(connect(bus), service, false), SingleCopy::Outcome::first);
    QDBusConnection caller = connect(bus);

    QDBusMessage ok = call(caller, action("show-tab", {QVariant::fromValue(QDBusVariant(QStringLiteral("storage")))}));
    EXPECT_EQ(ok.type(), QDBusMessage::ReplyMessage) << ok.errorMessage().toStdString();
    EXPECT_EQ(app.tab, Tab::storage);
    QDBusMessage get = QDBusMessage::createMethodCall(ApplicationService::name, ApplicationService::path,
                                                      QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << QStringLiteral("app.sorrelin.Sorrelin.State") << QStringLiteral("Tab");
    const QDBusMessage tab = call(caller, get);
    ASSERT_EQ(tab.type(), QDBusMessage::ReplyMessage) << tab.errorMessage().toStdString();
    EXPECT_EQ(tab.arguments().value(0).value<QDBusVariant>().variant().toString(), QStringLiteral("storage"));

    EXPECT_EQ(call(caller, action("scan", {})).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call(caller, action("clean-safe", {})).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(app.scans, 1);
    EXPECT_EQ(app.cleans, 1);

    // Each of these gets an error reply and changes nothing.
    const std::vector<QDBusMessage> wrong{
        action("empty-the-disk", {}),                                                    // no such action
        action("show-tab", {}),                                                          // no tab
        action("show-tab", {QVariant::fromValue(QDBusVariant(7))}),                      // a number
        action("show-tab", {QVariant::fromValue(QDBusVariant(QStringLiteral("Storage")))}), // not as the titles read
        action("show-tab", {QVariant::fromValue(QDBusVariant(QStringLiteral("../storage")))}),
        action("scan", {QVariant::fromValue(QDBusVariant(QStringLiteral("now")))}),      // takes nothing
        action("show-nothing", {}),
    };
    for (const auto& m : wrong) {
        const QDBusMessage reply = call(caller, m);
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage) << m.arguments().value(0).toString().toStdString();
    }
    // A call whose arguments have the wrong types: no such method with that signature.
    QDBusMessage typed = QDBusMessage::createMethodCall(ApplicationService::name, ApplicationService::path,
                                                        QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
    typed << QStringLiteral("show-tab") << QStringLiteral("storage");
    EXPECT_EQ(call(caller, typed).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(app.scans, 1);
    EXPECT_EQ(app.shown, 1);
    EXPECT_EQ(app.tab, Tab::storage);

    // Quit answers first, then ends the program.
    EXPECT_EQ(call(caller, action("quit", {})).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(waitFor([&] { return app.quits == 1; }, 30));
}
