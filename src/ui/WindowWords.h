#pragma once
// The words and states of the window's frame: the toolbar's subtitle, the rescan button and its
// tip, the activity pill, the steps of a scan, the confirm and restart dialogs and the toast's
// symbol. Each reads the model's face as QML hands it over (maps, nulls for absent values), so
// the views only place what comes back and every rule here is tested.
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class WindowWords : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit WindowWords(QObject* parent = nullptr);

    // "Cleaning now", "First scan", "Scanning now", "Not scanned yet" or "Scanned 5 min ago".
    Q_INVOKABLE [[nodiscard]] static QString subtitle(bool cleaning, bool scanning, const QVariant& lastScan);
    Q_INVOKABLE [[nodiscard]] static QString rescanLabel(bool scanning);
    // `lastScanSeconds` 0 stands for none yet.
    Q_INVOKABLE [[nodiscard]] static QString rescanTip(bool cleaning, bool scanning, int lastScanSeconds);

    // {kind: "clean" | "scan" | "", text, fraction (number or null), stop (bool), tip}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap pill(const QVariant& cleanProgress, const QVariant& scanProgress,
                                                      const QVariant& scanFraction);
    // The three rows of a scan: [{title, state: "done" | "active" | "", detail}].
    Q_INVOKABLE [[nodiscard]] static QVariantList scanSteps(const QVariant& scanProgress);

    // The confirm dialog over the selected items (maps with name, size, removal):
    // {title, line, button, bytes, groups: [{title, symbol, colour, detail, head, bytes,
    //  items: [{name, size}]}]}. Empty groups are left out.
    Q_INVOKABLE [[nodiscard]] static QVariantMap confirm(const QVariantList& items);
    // The restart dialog from the vitals: {title, since, note, rows: [{symbol, left, right}]}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap restart(const QVariantMap& vitals);

    // "checkmark", "info" or "exclamationmark" for the toast's kind.
    Q_INVOKABLE [[nodiscard]] static QString toastSymbol(const QString& kind);
};
