#pragma once
// What the Speed tab shows, worked out from the application model: the state pill, the four
// vital cards, the causes (the advice that gives speed back), the who panel and the closing
// Claude row. The tab only lays these out. Figures follow each sample of the monitor; what a
// quit just freed goes away by itself three minutes after the quit.
#include "app/AppClock.h"
#include "app/RecordListModel.h"
#include "ui/TabState.h"
#include "ui/speed/CauseFilter.h"
#include "ui/speed/WhoPanel.h"

#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <optional>

class SpeedState : public TabState {
    Q_OBJECT
    QML_ELEMENT
    // {text, symbol, tint}
    Q_PROPERTY(QVariantMap pill READ pill NOTIFY changed)
    // {value, info, sub, freed ("" when nothing was freed), segments (the bar by app)}
    Q_PROPERTY(QVariantMap processor READ processor NOTIFY changed)
    // {word, fg, bar, info, value, sub}
    Q_PROPERTY(QVariantMap memory READ memory NOTIFY changed)
    // {value, warn, sub, info}
    Q_PROPERTY(QVariantMap swap READ swap NOTIFY changed)
    // {value, unit, sub, heat {text, symbol, tint}, heatInfo}
    Q_PROPERTY(QVariantMap uptime READ uptime NOTIFY changed)
    // {info, total, scale (the longest bar's value)}
    Q_PROPERTY(QVariantMap who READ who NOTIFY changed)
    // The closing row of the causes: {name, sub, memory, share, chip, tip}, or null.
    Q_PROPERTY(QVariant claude READ claude NOTIFY changed)
    // WhoPanel rows: id name sub symbol tint appPath value label
    Q_PROPERTY(ListModel* rows READ rows CONSTANT)
    // The model's advice, only what quits, relaunches, stops or restarts.
    Q_PROPERTY(QAbstractItemModel* causes READ causes CONSTANT)
    Q_PROPERTY(int causeCount READ causeCount NOTIFY causeCountChanged)

public:
    explicit SpeedState(QObject* parent = nullptr);
    ~SpeedState() override;

    [[nodiscard]] QVariantMap pill() const { return pill_; }
    [[nodiscard]] QVariantMap processor() const { return processor_; }
    [[nodiscard]] QVariantMap memory() const { return memory_; }
    [[nodiscard]] QVariantMap swap() const { return swap_; }
    [[nodiscard]] QVariantMap uptime() const { return uptime_; }
    [[nodiscard]] QVariantMap who() const { return who_; }
    [[nodiscard]] QVariant claude() const { return claude_; }
    [[nodiscard]] ListModel* rows() { return &rowList; }
    [[nodiscard]] QAbstractItemModel* causes() { return &causeList; }
    [[nodiscard]] int causeCount() const { return causeList.rowCount(); }
    [[nodiscard]] const std::vector<WhoPanel::Row>& whoRows() const { return rowList.values(); }

signals:
    void causeCountChanged();

private:
    void attach(AppModel& model) override;
    void detach(AppModel& model) override;
    void refresh() override;
    // Looks again when the oldest freed share still counted runs out.
    void scheduleFreedExpiry();

    QVariantMap pill_, processor_, memory_, swap_, uptime_, who_;
    QVariant claude_;
    RecordListModel<WhoPanel::Row> rowList;
    CauseFilter causeList;
    std::optional<AppClock::Id> expiry;
};
