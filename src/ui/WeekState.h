#pragma once
// What the Week tab shows, worked out from the application model: the runway panel with its
// strip of 30 days, and the growth of the last 14 days (the chart, the picked day and the
// biggest additions). The tab only lays these out.
#include "ui/TabState.h"

#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class WeekState : public TabState {
    Q_OBJECT
    QML_ELEMENT
    // {state, symbol, tint, headline, big, line, tip, chip}
    Q_PROPERTY(QVariantMap runway READ runway NOTIFY changed)
    // 30 of {tint, hatched, opacity, tip}
    Q_PROPERTY(QVariantList cells READ cells NOTIFY changed)
    // The date under the strip's last cell.
    Q_PROPERTY(QString lastCell READ lastCell NOTIFY changed)
    // "report", "running" (no report yet) or "none"
    Q_PROPERTY(QString growthState READ growthState NOTIFY changed)
    // Four of {label, fraction}, from the lowest line up.
    Q_PROPERTY(QVariantList grid READ grid NOTIFY changed)
    // 14 of {label, fraction, segments, tip, accessible, selected, today}
    Q_PROPERTY(QVariantList bars READ bars NOTIFY changed)
    // {title, total, rows [{name, location, bytes, fraction, symbol, tint}]}
    Q_PROPERTY(QVariantMap day READ day NOTIFY changed)
    // {total, rows} as for the day
    Q_PROPERTY(QVariantMap biggest READ biggest NOTIFY changed)

public:
    explicit WeekState(QObject* parent = nullptr);

    [[nodiscard]] QVariantMap runway() const { return runway_; }
    [[nodiscard]] QVariantList cells() const { return cells_; }
    [[nodiscard]] QString lastCell() const { return lastCell_; }
    [[nodiscard]] QString growthState() const { return growthState_; }
    [[nodiscard]] QVariantList grid() const { return grid_; }
    [[nodiscard]] QVariantList bars() const { return bars_; }
    [[nodiscard]] QVariantMap day() const { return day_; }
    [[nodiscard]] QVariantMap biggest() const { return biggest_; }

    // A click on a bar: picks that day, or clears the pick when it was the day picked.
    Q_INVOKABLE void pick(int index);

private:
    void attach(AppModel& model) override;
    void refresh() override;

    QVariantMap runway_, day_, biggest_;
    QVariantList cells_, grid_, bars_;
    QString lastCell_, growthState_;
};
