#pragma once
// The QML face shared by every list the views show: a row count that QML can bind to and a
// row read as a map for the odd view that needs one outside a delegate.
#include <QAbstractListModel>
#include <QVariantMap>

class ListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int count() const { return rowCount(); }
    // Every role of one row by its name; empty outside the rows.
    Q_INVOKABLE QVariantMap get(int row) const;
    // The row that carries this key; -1 when none does.
    Q_INVOKABLE virtual int indexOf(const QString& key) const = 0;

signals:
    void countChanged();
};
