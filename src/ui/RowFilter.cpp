#include "ui/RowFilter.h"

#include <algorithm>

RowFilter::RowFilter(QObject* parent) : QAbstractListModel(parent) {}

void RowFilter::setSource(QAbstractItemModel* model) {
    if (src == model) return;
    if (src) disconnect(src, nullptr, this, nullptr);
    src = model;
    if (src) {
        connect(src, &QAbstractItemModel::dataChanged, this, &RowFilter::sourceDataChanged);
        connect(src, &QAbstractItemModel::modelReset, this, &RowFilter::rebuild);
        connect(src, &QAbstractItemModel::layoutChanged, this, &RowFilter::rebuild);
        connect(src, &QAbstractItemModel::rowsInserted, this, &RowFilter::rebuild);
        connect(src, &QAbstractItemModel::rowsRemoved, this, &RowFilter::rebuild);
        connect(src, &QAbstractItemModel::rowsMoved, this, &RowFilter::rebuild);
        connect(src, &QObject::destroyed, this, &RowFilter::rebuild);
    }
    rebuild();
    emit sourceChanged();
}

void RowFilter::setRole(const QString& name) {
    if (roleName == name) return;
    roleName = name;
    rebuild();
    emit roleChanged();
}

void RowFilter::setValue(const QVariant& v) {
    if (wanted == v) return;
    wanted = v;
    rebuild();
    emit valueChanged();
}

void RowFilter::setLimit(int n) {
    if (cap == n) return;
    cap = n;
    rebuild();
    emit limitChanged();
}

std::vector<int> RowFilter::pick(int& matches) const {
    std::vector<int> out;
    matches = 0;
    if (!src) return out;
    const int n = src->rowCount();
    const bool all = !wanted.isValid() || wanted.isNull() || wanted.toString().isEmpty();
    int filterRole = -1;
    if (!all) filterRole = src->roleNames().key(roleName.toUtf8(), -1);
    for (int r = 0; r < n; ++r) {
        if (!all && (filterRole < 0 || src->index(r, 0).data(filterRole) != wanted)) continue;
        ++matches;
        if (cap < 0 || static_cast<int>(out.size()) < cap) out.push_back(r);
    }
    return out;
}

void RowFilter::rebuild() {
    int matches = 0;
    std::vector<int> next = pick(matches);
    const int before = static_cast<int>(rows.size());
    beginResetModel();
    rows = std::move(next);
    endResetModel();
    if (static_cast<int>(rows.size()) != before) emit countChanged();
    if (matched != matches) {
        matched = matches;
        emit matchingChanged();
    }
}

void RowFilter::sourceDataChanged(const QModelIndex& from, const QModelIndex& to, const QList<int>& roles) {
    int matches = 0;
    if (pick(matches) != rows || matches != matched) {
        rebuild();
        return;
    }
    // The same rows stand: tell each shown row in the changed range.
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i] >= from.row() && rows[i] <= to.row()) emit dataChanged(index(int(i)), index(int(i)), roles);
}

int RowFilter::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : static_cast<int>(rows.size()); }

QVariant RowFilter::data(const QModelIndex& index, int role) const {
    if (!src || !index.isValid() || index.row() >= static_cast<int>(rows.size())) return {};
    return src->index(rows[static_cast<std::size_t>(index.row())], 0).data(role);
}

QHash<int, QByteArray> RowFilter::roleNames() const { return src ? src->roleNames() : QHash<int, QByteArray>{}; }

int RowFilter::sourceRow(int row) const {
    if (row < 0 || row >= static_cast<int>(rows.size())) return -1;
    return rows[static_cast<std::size_t>(row)];
}
