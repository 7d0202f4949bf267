#pragma once
// A view of a list model that keeps the rows whose `role` equals `value` (all rows while
// `value` is empty), and of those the first `limit` (all while `limit` is below 0): the
// Storage tab's "Show 12 more" and file-kind chips. `matching` counts the rows that pass the
// filter before the limit cuts, so a view can say how many more there are.
//
// Changes of the source that keep the shown rows in place (a row's flag turning on) pass
// through as changes of those rows, so delegates keep their state; anything else rebuilds.
#include <QAbstractListModel>
#include <QPointer>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <vector>

class RowFilter : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QAbstractItemModel* source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(QString role READ role WRITE setRole NOTIFY roleChanged)
    Q_PROPERTY(QVariant value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged)
    Q_PROPERTY(int matching READ matching NOTIFY matchingChanged)
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    explicit RowFilter(QObject* parent = nullptr);

    [[nodiscard]] QAbstractItemModel* source() const { return src; }
    void setSource(QAbstractItemModel* model);
    [[nodiscard]] QString role() const { return roleName; }
    void setRole(const QString& name);
    [[nodiscard]] QVariant value() const { return wanted; }
    void setValue(const QVariant& v);
    [[nodiscard]] int limit() const { return cap; }
    void setLimit(int n);
    [[nodiscard]] int matching() const { return matched; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    // The row of the source behind a shown row; -1 outside.
    Q_INVOKABLE [[nodiscard]] int sourceRow(int row) const;

signals:
    void sourceChanged();
    void roleChanged();
    void valueChanged();
    void limitChanged();
    void matchingChanged();
    void countChanged();

private:
    [[nodiscard]] std::vector<int> pick(int& matches) const;
    void rebuild();
    void sourceDataChanged(const QModelIndex& from, const QModelIndex& to, const QList<int>& roles);

    QPointer<QAbstractItemModel> src;
    QString roleName;
    QVariant wanted;
    int cap = -1;
    int matched = 0;
    std::vector<int> rows;
};
