#pragma once
// The words and states of the Home tab: its heading and sentence, the three health tiles, the
// cards without advice, and the words of a piece of advice's button, impact and batch. Values
// come as QML hands them over (maps, lists, nulls for absent values), so the tab only places
// what comes back and every rule here is tested.
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class ListModel;

class HomeWords : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit HomeWords(QObject* parent = nullptr);

    // `hero` is the first advice of now (a map with reason and why), or an empty map.
    Q_INVOKABLE [[nodiscard]] static QString heading(const QStringList& slow, const QVariantMap& hero);
    Q_INVOKABLE [[nodiscard]] static QString sentence(const QStringList& slow, const QVariantMap& hero, const QVariantMap& disk);
    // "You freed {bytes} today" from 100 MB on, else empty.
    Q_INVOKABLE [[nodiscard]] static QString freedChip(qint64 freedToday);

    // The tiles: {status, tone (a palette name), value, unit, sub}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap speed(const QVariantMap& vitals, int slowCount);
    Q_INVOKABLE [[nodiscard]] static QVariantMap memory(const QVariantMap& vitals);
    Q_INVOKABLE [[nodiscard]] static QVariantMap disk(const QVariantMap& disk, bool scanned, qint64 cleanable, const QVariant& pace);
    // The tiles' bars as segments for a stacked bar: {id, value, color}.
    Q_INVOKABLE [[nodiscard]] static QVariantList processorBar(ListModel* apps, int cores, const QVariant& cpu);
    Q_INVOKABLE [[nodiscard]] static QVariantList memoryBar(const QVariantMap& vitals);
    Q_INVOKABLE [[nodiscard]] static QVariantList diskBar(const QVariantMap& disk, qint64 cleanable);

    // The card without advice: "Starting", "{n} folders looked at" or "Measuring {done} of {total}".
    Q_INVOKABLE [[nodiscard]] static QString checking(const QVariant& scanProgress);
    Q_INVOKABLE [[nodiscard]] static QString allClear(int doneToday);

    // A piece of advice's main button: {text, busy, done}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap action(const QVariantMap& rec);
    // What the advice gives back: {label, figure, segments, total}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap impact(const QVariantMap& rec, const QVariantMap& vitals, const QVariantMap& disk,
                                                        ListModel* apps, qint64 physicalMemory, int cores);
    // The safe batch's button ("Do the {n} safe ones", "Working, {done} of {total}") and its
    // pop-over over the safe advice (maps with title and action).
    Q_INVOKABLE [[nodiscard]] static QString batchButton(const QVariant& batch, int safeCount);
    Q_INVOKABLE [[nodiscard]] static QString batchTip(const QVariantList& safe);
    // Every row of a list as a map, for the rules that read a whole list.
    Q_INVOKABLE [[nodiscard]] static QVariantList rows(ListModel* list);
};
