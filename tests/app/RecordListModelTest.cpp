// The lists the views show: a new list arrives as removals, moves, insertions and changed
// roles, never as a reset, and each state change redraws only its rows.
#include "app/RecordListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

struct Row {
    std::string key;
    int value = 0;
};

struct Lists {
    std::set<std::string> marked;
    RecordListModel<Row> model{[](const Row& r) { return r.key; },
                               {{"key", [](const Row& r) { return QVariant(QString::fromStdString(r.key)); }},
                                {"value", [](const Row& r) { return QVariant(r.value); }},
                                {"marked", [this](const Row& r) { return QVariant(marked.contains(r.key)); }}}};
};

std::vector<std::string> keys(const ListModel& m) {
    std::vector<std::string> out;
    for (int i = 0; i < m.rowCount(); ++i) out.push_back(m.get(i).value("key").toString().toStdString());
    return out;
}

} // namespace

TEST(RecordListModel, ANewListArrivesWithoutAResetWhateverChanged) {
    Lists l;
    QAbstractItemModelTester tester(&l.model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSignalSpy reset(&l.model, &QAbstractItemModel::modelReset);
    QSignalSpy changed(&l.model, &QAbstractItemModel::dataChanged);
    l.model.update({{"a", 1}, {"b", 2}, {"c", 3}, {"d", 4}});
    EXPECT_EQ(keys(l.model), (std::vector<std::string>{"a", "b", "c", "d"}));
    changed.clear();

    // Removed, moved, inserted and changed at once.
    l.model.update({{"d", 4}, {"e", 5}, {"b", 20}, {"a", 1}});
    EXPECT_EQ(keys(l.model), (std::vector<std::string>{"d", "e", "b", "a"}));
    EXPECT_EQ(l.model.get(2).value("value").toInt(), 20);
    EXPECT_EQ(reset.count(), 0);
    ASSERT_EQ(changed.count(), 1); // only b read differently
    EXPECT_EQ(changed[0][0].value<QModelIndex>().row(), 2);
    EXPECT_EQ(changed[0][2].value<QList<int>>(), QList<int>{l.model.role("value")});

    l.model.update({});
    EXPECT_EQ(l.model.rowCount(), 0);
    EXPECT_EQ(reset.count(), 0);
}

// Tens of thousands of rows (a storage walk's big-file candidates) must not cost a search of
// the list per row: keys are read a few times per row, not once per pair of rows. Rows moved
// among them still land in their places.
TEST(RecordListModel, ALongListArrivesInOnePassAndItsMovesStillLand) {
    long reads = 0;
    RecordListModel<Row> model{[&reads](const Row& r) { ++reads; return r.key; },
                               {{"key", [](const Row& r) { return QVariant(QString::fromStdString(r.key)); }}}};
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const int n = 3000;
    std::vector<Row> rows;
    for (int i = 0; i < n; ++i) rows.push_back({"k" + std::to_string(i), i});
    model.update(rows);
    EXPECT_EQ(model.rowCount(), n);
    EXPECT_LT(reads, 10L * n) << "a search per row reads keys about n*n/2 times";

    // The last row to the front, a new one in the middle, the second dropped.
    std::vector<Row> next{rows.back()};
    for (int i = 0; i < n - 1; ++i)
        if (i != 1) next.push_back(rows[static_cast<std::size_t>(i)]);
    next.insert(next.begin() + n / 2, Row{"new", -1});
    reads = 0;
    model.update(next);
    std::vector<std::string> want;
    for (const Row& r : next) want.push_back(r.key);
    EXPECT_EQ(keys(model), want);
    EXPECT_LT(reads, 20L * n);
}

TEST(RecordListModel, TouchingARowRedrawsThatRowAlone) {
    Lists l;
    l.model.update({{"a", 1}, {"b", 2}, {"c", 3}});
    QSignalSpy changed(&l.model, &QAbstractItemModel::dataChanged);
    l.marked.insert("b");
    l.model.touch("b", {l.model.role("marked")});
    l.model.touch("nobody", {l.model.role("marked")});
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].value<QModelIndex>().row(), 1);
    EXPECT_TRUE(l.model.get(1).value("marked").toBool());
    EXPECT_EQ(l.model.indexOf("c"), 2);
    EXPECT_EQ(l.model.indexOf("z"), -1);
}

TEST(RecordListModel, RowsOfOneKeyTwiceCanOnlyBeReset) {
    Lists l;
    l.model.update({{"a", 1}});
    QSignalSpy reset(&l.model, &QAbstractItemModel::modelReset);
    l.model.update({{"x", 1}, {"x", 2}});
    EXPECT_EQ(reset.count(), 1);
    EXPECT_EQ(l.model.rowCount(), 2);
}
