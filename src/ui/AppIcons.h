#pragma once
// Whether an app's own icon can be shown, asked before the image is requested, so that a view
// shows its symbol tile at once (and Qt logs nothing) for an app without one.
#include <QHash>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

class AppIcons : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit AppIcons(QObject* parent = nullptr);

    // True when the app at this desktop entry path (or of this desktop id) has an icon.
    Q_INVOKABLE [[nodiscard]] bool has(const QString& appPath);
    // The image address of the app's icon for an Image: empty when it has none.
    Q_INVOKABLE [[nodiscard]] QString source(const QString& appPath);

private:
    QHash<QString, bool> known;
};
