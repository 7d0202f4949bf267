#include "ui/FileManager.h"

#include "foundation/Rendering.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace {

void openFolder(const QString& folder) {
    if (Tools::rendering || !QFileInfo::exists(folder)) return;
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

} // namespace

FileManager::FileManager(QObject* parent) : QObject(parent) {}

void FileManager::open(const QString& folder) const { openFolder(folder); }

void FileManager::show(const QString& path) const {
    if (Tools::rendering || !QFileInfo::exists(path)) return;
    const QString folder = QFileInfo(path).absolutePath();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder(folder);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
                                                       QStringLiteral("/org/freedesktop/FileManager1"),
                                                       QStringLiteral("org.freedesktop.FileManager1"),
                                                       QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    // Without a file manager on the bus the call fails at once; the folder opens instead.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, 5000));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [folder](QDBusPendingCallWatcher* w) {
        if (QDBusPendingReply<> reply = *w; reply.isError()) openFolder(folder);
        w->deleteLater();
    });
}
