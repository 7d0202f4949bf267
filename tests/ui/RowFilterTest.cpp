#include "ui/RowFilter.h"

#include <QSignalSpy>
#include <QStandardItemModel>

#include <gtest/gtest.h>

namespace {

constexpr int kindRole = Qt::UserRole + 1;
constexpr int nameRole = Qt::UserRole + 2;

// Rows named f0, f1, ... with the kinds given.
std::unique_ptr<QStandardItemModel> files(const std::vector<QString>& kinds) {
    auto model = std::make_unique<QStandardItemModel>();
    model->setItemRoleNames({{kindRole, "kind"}, {nameRole, "name"}});
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        auto* item = new QStandardItem;
        item->setData(kinds[i], kindRole);
        item->setData(QStringLiteral("f%1").arg(i), nameRole);
        model->appendRow(item);
    }
    return model;
}

QStringList names(const RowFilter& f) {
    QStringList out;
    for (int r = 0; r < f.rowCount(); ++r) out << f.data(f.index(r), nameRole).toString();
    return out;
}

} // namespace

TEST(RowFilter, KeepsTheKindAskedForAndCutsAtTheLimitWhileCountingEveryMatch) {
    auto model = files({"video", "image", "video", "archive", "video", "video"});
    RowFilter f;
    f.setSource(model.get());
    f.setRole("kind");
    EXPECT_EQ(names(f), (QStringList{"f0", "f1", "f2", "f3", "f4", "f5"})) << "no value: every row";

    f.setValue(QStringLiteral("video"));
    EXPECT_EQ(names(f), (QStringList{"f0", "f2", "f4", "f5"}));
    f.setLimit(2);
    EXPECT_EQ(names(f), (QStringList{"f0", "f2"}));
    EXPECT_EQ(f.matching(), 4) << "the rows past the limit are still counted, for \"Show 2 more\"";
    EXPECT_EQ(f.sourceRow(1), 2);
    EXPECT_EQ(f.sourceRow(2), -1);

    f.setValue(QString());
    EXPECT_EQ(names(f), (QStringList{"f0", "f1"}));
    EXPECT_EQ(f.matching(), 6);
    f.setValue(QStringLiteral("audio"));
    EXPECT_EQ(f.rowCount(), 0);
    EXPECT_EQ(f.matching(), 0);
    // A role the source does not have matches nothing rather than everything.
    f.setValue(QStringLiteral("video"));
    f.setRole("colour");
    EXPECT_EQ(f.rowCount(), 0);
}

// A row's flag turning on (a Trash button going busy) must reach its delegate as a change of
// that row, not as a reset that would rebuild every delegate and lose their state.
TEST(RowFilter, ChangesThatKeepTheRowsPassThroughAndOthersRebuild) {
    auto model = files({"video", "image", "video"});
    RowFilter f;
    f.setSource(model.get());
    f.setRole("kind");
    f.setValue(QStringLiteral("video"));
    QSignalSpy changed(&f, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&f, &QAbstractItemModel::modelReset);

    model->item(2)->setData(QStringLiteral("g2"), nameRole);
    EXPECT_EQ(reset.count(), 0);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 1) << "source row 2 is shown as row 1";
    EXPECT_EQ(names(f), (QStringList{"f0", "g2"}));

    // A hidden row changing tells nobody.
    model->item(1)->setData(QStringLiteral("g1"), nameRole);
    EXPECT_EQ(changed.count(), 1);

    // A row that leaves the filter, rows that arrive or go: the view rebuilds.
    model->item(0)->setData(QStringLiteral("image"), kindRole);
    EXPECT_EQ(names(f), (QStringList{"g2"}));
    model->removeRow(2);
    EXPECT_EQ(f.rowCount(), 0);
    model->appendRow(new QStandardItem);
    model->item(2)->setData(QStringLiteral("video"), kindRole);
    model->item(2)->setData(QStringLiteral("new"), nameRole);
    EXPECT_EQ(names(f), (QStringList{"new"}));
    EXPECT_GE(reset.count(), 3);
    // The source going away empties the view.
    model.reset();
    EXPECT_EQ(f.rowCount(), 0);
}
