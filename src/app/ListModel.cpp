#include "app/ListModel.h"

QVariantMap ListModel::get(int row) const {
    QVariantMap out;
    if (row < 0 || row >= rowCount()) return out;
    const QModelIndex at = index(row);
    const auto names = roleNames();
    for (auto it = names.begin(); it != names.end(); ++it) out.insert(QString::fromUtf8(it.value()), data(at, it.key()));
    return out;
}
