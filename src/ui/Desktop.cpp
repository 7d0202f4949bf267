#include "ui/Desktop.h"

#include <QCoreApplication>

Desktop& Desktop::shared() {
    static Desktop instance;
    return instance;
}

Desktop* DesktopSingleton::create(QQmlEngine*, QJSEngine*) {
    Desktop* d = &Desktop::shared();
    QJSEngine::setObjectOwnership(d, QJSEngine::CppOwnership);
    return d;
}

void Desktop::setTrayAvailable(bool on) {
    if (tray == on) return;
    tray = on;
    emit trayAvailableChanged();
}

void Desktop::quit() {
    if (onQuit) onQuit();
    else QCoreApplication::quit();
}

void Desktop::closePanel() {
    if (onClosePanel) onClosePanel();
}
