#include "FakeDesktop.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QThread>

FakeNotificationServer::FakeNotificationServer(QStringList capabilities) : caps(std::move(capabilities)) {}

bool FakeNotificationServer::serveOn(QDBusConnection b) {
    bus = b;
    return bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                              QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
           bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
}

QStringList FakeNotificationServer::GetCapabilities() { return caps; }

uint FakeNotificationServer::Notify(const QString& app, uint replaces, const QString& icon, const QString& summary,
                                    const QString& body, const QStringList& actions, const QVariantMap& hints, int timeout) {
    // A replacement keeps its id, as notification servers do.
    const uint id = replaces ? replaces : nextId++;
    posted.push_back({app, replaces, icon, summary, body, actions, hints, timeout, id});
    return id;
}

void FakeNotificationServer::CloseNotification(uint id) { close(id, 3); }

QString FakeNotificationServer::GetServerInformation(QString& vendor, QString& version, QString& protocolVersion) {
    vendor = QStringLiteral("test");
    version = QStringLiteral("1");
    protocolVersion = QStringLiteral("1.2");
    return QStringLiteral("recorder");
}

void FakeNotificationServer::press(uint id, const QString& action, const QString& token) {
    if (!token.isEmpty()) emit ActivationToken(id, token);
    emit ActionInvoked(id, action);
}

void FakeNotificationServer::close(uint id, uint reason) { emit NotificationClosed(id, reason); }

const FakeNotificationServer::Posted* FakeNotificationServer::last(const QString& summaryStart) const {
    for (auto it = posted.rbegin(); it != posted.rend(); ++it)
        if (it->summary.startsWith(summaryStart)) return &*it;
    return nullptr;
}

bool FakeTrayWatcher::serveOn(QDBusConnection bus) {
    return bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                              QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                                  QDBusConnection::ExportAllProperties) &&
           bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
}

void FakeTrayWatcher::RegisterStatusNotifierItem(const QString& service) {
    registered << service;
    emit StatusNotifierItemRegistered(service);
}

void FakeTrayWatcher::RegisterStatusNotifierHost(const QString&) { emit StatusNotifierHostRegistered(); }

bool waitFor(const std::function<bool()>& done, double seconds) {
    QDeadlineTimer deadline(qint64(seconds * 1000));
    while (!done()) {
        if (deadline.hasExpired()) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        QThread::msleep(10);
    }
    return true;
}
