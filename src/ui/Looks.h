#pragma once
// How the core's records look, for QML: a reason's chip words, symbol and colours come from the
// advice model itself, so a chip can never disagree with the report.
#include <QObject>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class Looks : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit Looks(QObject* parent = nullptr);

    // {label, symbol, fg, bg} of a reason given by name ("slow", "memory", "disk", "wait",
    // "snoozed") or by its number in that order; an empty map for anything else.
    Q_INVOKABLE [[nodiscard]] QVariantMap reason(const QVariant& reason) const;
};
