#pragma once
// A list of value records for QML, each row keyed, its roles read by small functions. A new
// list is brought in with the fewest changes a view can animate: rows that went are removed,
// rows that came are inserted, rows that moved are moved and rows that read differently get a
// dataChanged for those roles alone. No update ever resets the whole list, so a view keeps its
// scroll position and a tick never redraws more than its row.
#include "app/ListModel.h"

#include <QByteArray>
#include <QVariant>

#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

template <class T>
class RecordListModel : public ListModel {
public:
    using Key = std::function<std::string(const T&)>;
    struct Role {
        QByteArray name;
        std::function<QVariant(const T&)> value;
    };

    RecordListModel(Key key, std::vector<Role> roles, QObject* parent = nullptr)
        : ListModel(parent), key(std::move(key)), roles(std::move(roles)) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows.size());
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        const int r = role - Qt::UserRole - 1;
        if (!index.isValid() || index.row() >= rowCount() || r < 0 || r >= static_cast<int>(roles.size())) return {};
        return roles[static_cast<std::size_t>(r)].value(rows[static_cast<std::size_t>(index.row())]);
    }
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override {
        QHash<int, QByteArray> names;
        for (std::size_t i = 0; i < roles.size(); ++i) names.insert(Qt::UserRole + 1 + static_cast<int>(i), roles[i].name);
        return names;
    }
    [[nodiscard]] int indexOf(const QString& k) const override { return find(k.toStdString()); }

    [[nodiscard]] const std::vector<T>& values() const { return rows; }
    // The role number of a name; -1 when there is no such role.
    [[nodiscard]] int role(const QByteArray& name) const {
        for (std::size_t i = 0; i < roles.size(); ++i)
            if (roles[i].name == name) return Qt::UserRole + 1 + static_cast<int>(i);
        return -1;
    }
    [[nodiscard]] int find(const std::string& k) const {
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (key(rows[i]) == k) return static_cast<int>(i);
        return -1;
    }

    void update(std::vector<T> next) {
        const int before = rowCount();
        std::unordered_set<std::string> nextKeys;
        for (const T& v : next)
            if (!nextKeys.insert(key(v)).second) {
                // Two rows of one key can't be told apart: start over rather than guess.
                beginResetModel();
                rows = std::move(next);
                endResetModel();
                if (rowCount() != before) emit countChanged();
                return;
            }
        // Rows that went, in runs from the back.
        for (int i = static_cast<int>(rows.size()) - 1; i >= 0;) {
            if (nextKeys.contains(key(rows[static_cast<std::size_t>(i)]))) {
                --i;
                continue;
            }
            int first = i;
            while (first > 0 && !nextKeys.contains(key(rows[static_cast<std::size_t>(first - 1)]))) --first;
            beginRemoveRows({}, first, i);
            rows.erase(rows.begin() + first, rows.begin() + i + 1);
            endRemoveRows();
            i = first - 1;
        }
        // Then row by row: in place, moved up from further down, or new. The keys of rows not
        // yet placed tell a new row from a moved one without a search, so a list of tens of
        // thousands arrives in one pass; only a moved row is looked for.
        std::unordered_set<std::string> unplaced;
        for (const T& v : rows) unplaced.insert(key(v));
        rows.reserve(next.size());
        for (std::size_t i = 0; i < next.size(); ++i) {
            const std::string k = key(next[i]);
            const int at = static_cast<int>(i);
            const bool known = unplaced.erase(k) > 0;
            if (i >= rows.size() || key(rows[i]) != k) {
                int from = -1;
                for (std::size_t j = i + 1; known && j < rows.size() && from < 0; ++j)
                    if (key(rows[j]) == k) from = static_cast<int>(j);
                if (from > at) {
                    beginMoveRows({}, from, from, {}, at);
                    T moved = std::move(rows[static_cast<std::size_t>(from)]);
                    rows.erase(rows.begin() + from);
                    rows.insert(rows.begin() + at, std::move(moved));
                    endMoveRows();
                } else {
                    beginInsertRows({}, at, at);
                    rows.insert(rows.begin() + at, std::move(next[i]));
                    endInsertRows();
                    continue;
                }
            }
            QList<int> changed;
            for (std::size_t r = 0; r < roles.size(); ++r)
                if (roles[r].value(rows[i]) != roles[r].value(next[i])) changed.append(Qt::UserRole + 1 + static_cast<int>(r));
            rows[i] = std::move(next[i]);
            if (!changed.isEmpty()) emit dataChanged(index(at), index(at), changed);
        }
        if (rowCount() != before) emit countChanged();
    }

    // Tells the views that roles of the row with this key, which read state kept elsewhere,
    // may read differently now.
    void touch(const std::string& k, const QList<int>& which) {
        const int at = find(k);
        if (at >= 0) emit dataChanged(index(at), index(at), which);
    }
    void touchAll(const QList<int>& which) {
        if (!rows.empty()) emit dataChanged(index(0), index(rowCount() - 1), which);
    }

private:
    Key key;
    std::vector<Role> roles;
    std::vector<T> rows;
};
