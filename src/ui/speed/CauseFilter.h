#pragma once
// The advice that gives the machine back its speed: the rows of a list of advice whose action
// quits, relaunches, stops or restarts something. Cleaning advice stays out on purpose.
#include <QSortFilterProxyModel>
#include <QStringList>

class CauseFilter : public QSortFilterProxyModel {
    Q_OBJECT

public:
    explicit CauseFilter(QObject* parent = nullptr);

    static const QStringList actions;

protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    mutable int actionRole = -1;
};
