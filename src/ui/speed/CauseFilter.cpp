#include "ui/speed/CauseFilter.h"

const QStringList CauseFilter::actions{QStringLiteral("quit"), QStringLiteral("relaunch"), QStringLiteral("stopLeftovers"),
                                       QStringLiteral("restart")};

CauseFilter::CauseFilter(QObject* parent) : QSortFilterProxyModel(parent) {
    connect(this, &QAbstractProxyModel::sourceModelChanged, this, [this] { actionRole = -1; });
}

bool CauseFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
    const QAbstractItemModel* source = sourceModel();
    if (!source) return false;
    if (actionRole < 0) actionRole = source->roleNames().key("action", -1);
    if (actionRole < 0) return false;
    return actions.contains(source->index(row, 0, parent).data(actionRole).toString());
}
