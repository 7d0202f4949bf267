#pragma once
// The words and states of the Clean tab: the headline, the tier tiles and headers, the rows'
// badges, the footer, the scan and clean in progress, and what a clean gave back. Rows come as
// QML hands them over (maps with the item roles), lists as the model's list models, so the
// views only place what comes back and every rule here is tested.
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class ListModel;

class CleanWords : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit CleanWords(QObject* parent = nullptr);

    // The rows a tier shows before "{n} more": 7 items are all shown, 8 show as 6 and "2 more".
    static constexpr int preview = 6;

    // "Measuring what can go", "Up to {size} can go" or "Nothing left to clean".
    Q_INVOKABLE [[nodiscard]] static QString headline(bool scanned, qint64 cleanable);
    // The disk ring: [{id, value, color, striped}] for "other", "swap", "safe", "rebuild",
    // "yours" and "free", each at least 0 and together the disk's total. Swap and the tiers
    // are taken out of the used space; what they claim beyond it is cut, never the free part.
    Q_INVOKABLE [[nodiscard]] static QVariantList ring(const QVariantMap& disk, qint64 swap, qint64 safe, qint64 rebuild,
                                                       qint64 yours);
    // "Tick something to see what you would get back" or "Clearing what is ticked leaves {size} free".
    Q_INVOKABLE [[nodiscard]] static QString tickLine(qint64 ticked, qint64 available);

    // One tier over its list of items: {tier, title, symbol, colour, tip, count, total, ticked,
    // tickedCount, allTicked, noneTicked, line (the tile's), a11y (the tile's), select (the
    // header's button), empty (the rows' text with no items)}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap tier(int tier, ListModel* items, bool firstScan);
    // How many rows of `count` a tier shows, and whether a "more" row follows.
    Q_INVOKABLE [[nodiscard]] static int shownRows(int count, bool expanded);
    // The row for the items from `from` on: {title, line, size}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap more(ListModel* items, int from);

    // The first badge that applies to a row: {text, symbol, tip, style}, or an empty map.
    Q_INVOKABLE [[nodiscard]] static QVariantMap badge(const QVariantMap& row);
    // What assistive tools read for a row's state.
    Q_INVOKABLE [[nodiscard]] static QString rowState(const QVariantMap& row);
    // "Show {name} in Files" for the row's menu.
    Q_INVOKABLE [[nodiscard]] static QString revealLabel(const QString& name);

    // The footer over the selected items (maps with size and removal): {first, second}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap footer(const QVariantList& selected, bool nudge);
    // The second line of the bar over old results while a scan runs.
    Q_INVOKABLE [[nodiscard]] static QString updating(const QVariant& scanProgress);
    // The first scan's line: "Measuring {label}" while measuring, else empty.
    Q_INVOKABLE [[nodiscard]] static QString scanning(const QVariant& scanProgress);

    // The clean at work over its items: {headline, line, rows: [{name, state}]}, state being
    // "waiting", "working", "done" or "trash".
    Q_INVOKABLE [[nodiscard]] static QVariantMap running(const QVariant& cleanProgress, ListModel* items);
    // A clean's sheet when it ended: {headline, subline, failed, failures, emptyLabel, trashed}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap done(const QVariant& cleanSummary, ListModel* items, bool emptying);
    // The banner of a clean reported outside the sheet: {headline, line, failed, failures, empty}.
    Q_INVOKABLE [[nodiscard]] static QVariantMap banner(const QVariant& report, bool emptying);
};
