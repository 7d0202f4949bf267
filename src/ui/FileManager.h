#pragma once
// Shows a file or folder in the desktop's file manager, as the QML singleton `FileManager`:
// the file selected in its folder where the file manager offers that over the session bus
// (org.freedesktop.FileManager1), else its folder opened.
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

class FileManager : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit FileManager(QObject* parent = nullptr);

    // Nothing happens for a path that no longer exists, nor while pictures are drawn.
    Q_INVOKABLE void show(const QString& path) const;
    // Opens a folder itself.
    Q_INVOKABLE void open(const QString& folder) const;
};
