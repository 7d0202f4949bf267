#include "ui/WindowSnapshot.h"

#include "foundation/Log.h"
#include "ui/Pictures.h"

#include <QTimer>

WindowSnapshot::WindowSnapshot(QObject* parent) : QObject(parent) {}

void WindowSnapshot::takeIfAsked(QQuickWindow* window, double delay) {
    const QString path = qEnvironmentVariable("FENNELBOX_SNAPSHOT");
    if (path.isEmpty() || !window) return;
    take(window, path, delay);
}

void WindowSnapshot::take(QQuickWindow* window, const QString& path, double delay) {
    QPointer<QQuickWindow> target(window);
    QTimer::singleShot(static_cast<int>(delay * 1000), this, [this, target, path] {
        bool written = false;
        if (target && target->isVisible() && target->width() > 900) {
            written = Pictures::writePng(target->grabWindow(), path);
            if (written) Log::note("window snapshot written to " + path.toStdString());
        }
        emit finished(path, written);
    });
}
