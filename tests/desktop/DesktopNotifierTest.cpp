// The notifier against a notification server on a private bus: what goes out, what replaces
// what, what waits for its time, and which answers come back.
#include "app/DesktopNotifier.h"
#include "app/ManualClock.h"

#include "FakeDesktop.h"
#include "support/PrivateServers.h"

#include <QDBusConnection>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <atomic>

namespace {

std::atomic<int> connections{0};

QDBusConnection connect(const PrivateBus& bus) {
    return QDBusConnection::connectToBus(QString::fromStdString(bus.address),
                                         QStringLiteral("notifier-test-%1").arg(connections++));
}

Notification lowSpace() {
    Notification n;
    n.title = QStringLiteral("Only 2 GB free on Home");
    n.body = QStringLiteral("Click to see what is using the space.");
    n.id = QStringLiteral("low-space");
    n.category = QStringLiteral("space");
    n.info = {{QStringLiteral("tab"), QStringLiteral("storage")}};
    return n;
}

Notification slow2() {
    Notification n;
    n.title = QStringLiteral("Your computer is slowing down");
    n.body = QStringLiteral("A & B <are> keeping the processor busy in the background.");
    n.id = QStringLiteral("slow");
    n.category = QStringLiteral("slow2");
    n.info = {{QStringLiteral("apps"), QStringList{QStringLiteral("/a.desktop"), QStringLiteral("/b.desktop")}}};
    return n;
}

struct Rig {
    PrivateBus bus;
    FakeNotificationServer server;
    ManualClock clock;
    std::unique_ptr<DesktopNotifier> notifier;
    bool ready = false;

    explicit Rig(QStringList caps = {QStringLiteral("actions"), QStringLiteral("body")}, bool serve = true) : server(std::move(caps)) {
        if (bus.address.empty()) return;
        if (serve && !server.serveOn(connect(bus))) return;
        notifier = std::make_unique<DesktopNotifier>(clock, connect(bus));
        ready = true;
    }
};

} // namespace

TEST(DesktopNotifier, ButtonsDesktopEntryAndAnswers) {
    Rig rig;
    if (!rig.ready) GTEST_SKIP() << "dbus-daemon is not installed or the bus refused the server";
    // Posted before the capabilities are known: it waits for them, then goes out.
    rig.notifier->post(slow2());
    ASSERT_TRUE(waitFor([&] { return rig.server.posted.size() == 1; }, 30));
    const auto& p = rig.server.posted[0];
    EXPECT_EQ(p.summary, QStringLiteral("Your computer is slowing down"));
    EXPECT_EQ(p.actions, (QStringList{"default", "Open", "quit", "Quit both", "show", "Show me"}));
    EXPECT_EQ(p.hints.value("desktop-entry").toString(), QStringLiteral("app.sorrelin.Sorrelin"));
    EXPECT_EQ(p.replaces, 0u);
    EXPECT_EQ(p.body, slow2().body); // no body markup offered: the text goes as it is
    EXPECT_TRUE(rig.notifier->available());

    QSignalSpy answers(rig.notifier.get(), &DesktopNotifier::answered);
    // Another client's notification answered: not ours, nothing happens.
    rig.server.press(p.id + 100, QStringLiteral("quit"));
    rig.server.press(p.id, QStringLiteral("quit"), QStringLiteral("token-1"));
    ASSERT_TRUE(waitFor([&] { return answers.count() == 1; }, 30));
    EXPECT_EQ(answers[0][0].toString(), QStringLiteral("quit"));
    EXPECT_EQ(answers[0][1].toString(), QStringLiteral("slow2"));
    EXPECT_EQ(answers[0][2].toMap().value("apps").toStringList(), (QStringList{"/a.desktop", "/b.desktop"}));
    EXPECT_EQ(answers[0][3].toString(), QStringLiteral("token-1"));

    // Once the user closed it, a late press of it counts for nothing.
    rig.server.close(p.id);
    rig.server.press(p.id, QStringLiteral("quit"));
    rig.notifier->post(lowSpace()); // a round trip, so the signals above have arrived
    ASSERT_TRUE(waitFor([&] { return rig.server.posted.size() == 2; }, 30));
    EXPECT_EQ(answers.count(), 1);
}

TEST(DesktopNotifier, ALaterPostOfTheSameKindReplacesTheEarlierOne) {
    Rig rig;
    if (!rig.ready) GTEST_SKIP() << "dbus-daemon is not installed or the bus refused the server";
    rig.notifier->post(lowSpace());
    ASSERT_TRUE(waitFor([&] { return rig.server.posted.size() == 1; }, 30));
    rig.notifier->post(slow2());
    ASSERT_TRUE(waitFor([&] { return rig.server.posted.size() == 2; }, 30));
    Notification again = lowSpace();
    again.title = QStringLiteral("Only 1 GB free on Home");
    rig.notifier->post(again);
    ASSERT_TRUE(waitFor([&] { return rig.server.posted.size() == 3; }, 30));
    EXPECT_EQ(rig.server.posted[1].replaces, 0u);                       // another kind: a new one
    EXPECT_EQ(rig.server.posted[2].replaces, rig.server.posted[0].id); // the same kind: replaced
}

TEST(DesktopNotifier, AServerWithoutActionsGetsNoButtonsAndMarkupIsEscapedWhereRead) {
    Rig rig({QStringLiteral("body"), QStringLiteral("body-markup")});
    if (!rig.ready) GTEST_SKIP() << "dbus-daemon is not installed or the bus refused the server";
    rig.notifier->post(slow2());
    ASSERT_TRUE(waitFor([&] { return rig.server.posted.size() == 1; }, 30));
    EXPECT_TRUE(rig.server.posted[0].actions.isEmpty());
    EXPECT_EQ(rig.server.posted[0].body, QStringLiteral("A &amp; B &lt;are&gt; keeping the processor busy in the background."));
}

TEST(DesktopNotifier, NothingAtAllWithoutAServiceOrWithoutABus) {
    Rig rig({}, /*serve*/ false);
    if (!rig.ready) GTEST_SKIP() << "dbus-daemon is not installed";
    QSignalSpy known(rig.notifier.get(), &DesktopNotifier::availabilityKnown);
    rig.notifier->post(lowSpace());
    ASSERT_TRUE(waitFor([&] { return known.count() == 1; }, 30));
    EXPECT_FALSE(known[0][0].toBool());
    EXPECT_FALSE(rig.notifier->available());
    rig.notifier->post(lowSpace()); // dropped at once, no call, no failure

    ManualClock clock;
    DesktopNotifier offline(clock, QDBusConnection(QStringLiteral("no-such-connection")));
    offline.post(lowSpace());
    EXPECT_FALSE(offline.available());
}

TEST(DesktopNotifier, AReminderWaitsForItsTimeAndANewOneTakesItsPlace) {
    Rig rig;
    if (!rig.ready) GTEST_SKIP() << "dbus-daemon is not installed or the bus refused the server";
    ASSERT_TRUE(waitFor([&] { return rig.notifier->available(); }, 30));
    Notification reminder;
    reminder.title = QStringLiteral("Restart your computer tonight?");
    reminder.id = QStringLiteral("restart-reminder");
    reminder.category = QStringLiteral("restart");
    reminder.at = addSeconds(rig.clock.now(), 3 * 3600);
    rig.notifier->post(reminder);
    // Taken in steps of at most a minute, so a machine that slept still delivers on time.
    EXPECT_LE(rig.clock.nextDue().value_or(0), 60.0);
    rig.clock.advance(3 * 3600 - 120);
    QCoreApplication::processEvents();
    EXPECT_TRUE(rig.server.posted.empty());

    // Set again for later: the first time passes without a post.
    reminder.at = addSeconds(rig.clock.now(), 7200);
    rig.notifier->post(reminder);
    rig.clock.advance(600);
    QCoreApplication::processEvents();
    EXPECT_TRUE(rig.server.posted.empty());
    rig.clock.advance(7200);
    ASSERT_TRUE(waitFor([&] { return rig.server.posted.size() == 1; }, 30));
    EXPECT_EQ(rig.server.posted[0].actions, (QStringList{"default", "Open", "restart", "Restart…"}));
    EXPECT_EQ(rig.clock.pending(), 0u);
}
