#pragma once
// FENNELBOX_SNAPSHOT: a picture of the live window, written a few seconds after it appears, so
// that what a person sees on a real desktop can be compared with the rendered pictures.
#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QString>
#include <QtQml/qqmlregistration.h>

class WindowSnapshot : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit WindowSnapshot(QObject* parent = nullptr);

    // When the variable names a path: after `delay` seconds, grabs `window` (when it is still
    // visible and wider than 900 points) and writes it there as a PNG. Otherwise nothing.
    Q_INVOKABLE void takeIfAsked(QQuickWindow* window, double delay = 4.0);
    // The same with the path given, for tests.
    void take(QQuickWindow* window, const QString& path, double delay);

signals:
    // After each attempt: the path, and whether the picture was written.
    void finished(const QString& path, bool written);
};
