#pragma once
// The platform's words for the desktop itself, as the QML singleton `Words`: a sentence that
// names the Mac, macOS or the Finder reads as this platform says it ("Show in Files"). Views
// pass such sentences through here before putting a name or a figure into them.
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

class Words : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit Words(QObject* parent = nullptr);

    Q_INVOKABLE [[nodiscard]] QString say(const QString& sentence) const;
    Q_INVOKABLE [[nodiscard]] QString title(const QString& label) const;
};
