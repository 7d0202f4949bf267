#include "app/BusReply.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QTimer>

namespace BusReply {

QDBusMessage await(const QDBusConnection& bus, const QDBusMessage& call, int ms) {
    QDBusPendingCall pending = bus.asyncCall(call, ms);
    QEventLoop loop;
    QDBusPendingCallWatcher watcher(pending);
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    // The bus library ends the call at its limit; this timer is the guard should it not.
    QTimer::singleShot(ms + 1000, &loop, &QEventLoop::quit);
    // Checked after the watcher exists: an answer that came before is not waited for.
    if (!pending.isFinished()) loop.exec(QEventLoop::ExcludeUserInputEvents);
    if (!pending.isFinished())
        return call.createErrorReply(QDBusError::Timeout, QStringLiteral("no answer within %1 ms").arg(ms));
    return pending.reply();
}

} // namespace BusReply
