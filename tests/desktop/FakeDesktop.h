#pragma once
// What a desktop session offers the program on its bus, played by the test itself: a
// notification server that writes down each Notify and lets the test press a button
// (ActionInvoked), and a StatusNotifierWatcher that writes down each tray item. The real
// daemons draw on a screen the test cannot press; these answer on the bus exactly as those do.
#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <string>
#include <vector>

class FakeNotificationServer : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Posted {
        QString app;
        uint replaces = 0;
        QString icon;
        QString summary;
        QString body;
        QStringList actions; // flat: key, label, key, label...
        QVariantMap hints;
        int timeout = 0;
        uint id = 0; // the id this server gave it
    };

    explicit FakeNotificationServer(QStringList capabilities = {QStringLiteral("actions"), QStringLiteral("body")});
    // Takes the well-known name on `bus`; false when it cannot.
    bool serveOn(QDBusConnection bus);

    std::vector<Posted> posted;
    QStringList caps;

    // The user pressed `action` (or the body: "default") on notification `id`.
    void press(uint id, const QString& action, const QString& token = {});
    void close(uint id, uint reason = 2);
    [[nodiscard]] const Posted* last(const QString& summaryStart = {}) const;

public slots:
    QStringList GetCapabilities();
    uint Notify(const QString& app, uint replaces, const QString& icon, const QString& summary, const QString& body,
                const QStringList& actions, const QVariantMap& hints, int timeout);
    void CloseNotification(uint id);
    QString GetServerInformation(QString& vendor, QString& version, QString& protocolVersion);

signals:
    void ActionInvoked(uint id, const QString& action);
    void NotificationClosed(uint id, uint reason);
    void ActivationToken(uint id, const QString& token);

private:
    QDBusConnection bus{QString()};
    uint nextId = 1;
};

class FakeTrayWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    bool serveOn(QDBusConnection bus);
    [[nodiscard]] bool hostRegistered() const { return true; }
    [[nodiscard]] int protocolVersion() const { return 0; }
    [[nodiscard]] QStringList items() const { return registered; }
    QStringList registered; // the service names the items gave

public slots:
    void RegisterStatusNotifierItem(const QString& service);
    void RegisterStatusNotifierHost(const QString& service);

signals:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();
};

// Runs the event loop until `done` holds, at most `seconds`; false on a timeout.
[[nodiscard]] bool waitFor(const std::function<bool()>& done, double seconds);
