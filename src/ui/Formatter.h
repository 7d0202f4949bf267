#pragma once
// The core's wording of numbers, sizes and dates, offered to QML as `Fmt`. Views never word a
// figure themselves: every text here comes from the same functions the reports print with.
// QML numbers are doubles; anything that is not a finite number reads as 0 (or empty for dates)
// rather than reaching the core, which treats such a figure as a programming fault.
#include "foundation/Time.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <cstdint>

class Formatter : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Fmt)
    QML_SINGLETON

public:
    explicit Formatter(QObject* parent = nullptr);

    Q_INVOKABLE [[nodiscard]] QString bytes(double n) const;
    Q_INVOKABLE [[nodiscard]] QString menuBytes(double n) const;
    Q_INVOKABLE [[nodiscard]] QString ram(double n) const;
    Q_INVOKABLE [[nodiscard]] QString percent(double p) const;
    Q_INVOKABLE [[nodiscard]] QString duration(double seconds) const;
    Q_INVOKABLE [[nodiscard]] QString minutes(int m) const;
    Q_INVOKABLE [[nodiscard]] QString days(int n) const;
    // A count with thousands separators: "12,408".
    Q_INVOKABLE [[nodiscard]] QString grouped(double n) const;

    Q_INVOKABLE [[nodiscard]] QString ago(const QDateTime& date) const;
    Q_INVOKABLE [[nodiscard]] QString clock(const QDateTime& date) const;
    Q_INVOKABLE [[nodiscard]] QString dayMonth(const QDateTime& date) const;
    Q_INVOKABLE [[nodiscard]] QString age(const QDateTime& date) const;
    Q_INVOKABLE [[nodiscard]] QString day(const QDateTime& date) const;

    // A QML number as bytes: truncated, 0 for NaN, clamped to the 64-bit range.
    [[nodiscard]] static int64_t toBytes(double n);
    [[nodiscard]] static TimePoint toTimePoint(const QDateTime& date);
};
