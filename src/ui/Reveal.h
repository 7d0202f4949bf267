#pragma once
// "Show in Files": opens the folder that holds a path in the desktop's file manager.
#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

class Reveal : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit Reveal(QObject* parent = nullptr);

    // The folder a file manager opens for `path`: a folder itself, else the one holding it;
    // an empty URL for an empty or relative path.
    [[nodiscard]] static QUrl folderOf(const QString& path);
    // False when there is nothing to open or no handler took it.
    Q_INVOKABLE bool show(const QString& path) const;
};
