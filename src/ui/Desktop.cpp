#include "ui/Desktop.h"

#include <QCoreApplication>

Desktop& Desktop::shared() {
    static Desktop instance;
    return instance;
}

Desktop* Desktop::create(QQmlEngine*, QJSEngine*) {
    QJSEngine::setObjectOwnership(&shared(), QJSEngine::CppOwnership);
    return &shared();
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
