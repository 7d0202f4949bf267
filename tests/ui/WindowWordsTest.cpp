// The words and states of the window's frame, where an order of rules or an off-by-one would
// show the user something false.
#include "ui/WindowWords.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

// Words as text, so a failure prints them.
std::string str(const QVariant& v) { return v.toString().toStdString(); }

QVariantMap item(const QString& name, qint64 size, const QString& removal) {
    return {{"name", name}, {"size", size}, {"removal", removal}};
}

QStringList names(const QVariantMap& group) {
    QStringList out;
    for (const QVariant& v : group.value("items").toList()) out << v.toMap().value("name").toString();
    return out;
}

} // namespace

TEST(WindowWords, SubtitleAndRescanTipFollowTheirOrderOfRules) {
    const QVariant none;
    const QVariant fiveMinutesAgo = QDateTime::currentDateTime().addSecs(-300);
    // A clean is named before a scan, which is named by whether one came before.
    EXPECT_EQ(str(WindowWords::subtitle(true, true, fiveMinutesAgo)), "Cleaning now");
    EXPECT_EQ(str(WindowWords::subtitle(false, true, none)), "First scan");
    EXPECT_EQ(str(WindowWords::subtitle(false, true, fiveMinutesAgo)), "Scanning now");
    EXPECT_EQ(str(WindowWords::subtitle(false, false, none)), "Not scanned yet");
    EXPECT_EQ(WindowWords::subtitle(false, false, QVariant(QDateTime())), "Not scanned yet") << "an invalid date is no scan";
    EXPECT_EQ(str(WindowWords::subtitle(false, false, fiveMinutesAgo)), "Scanned 5 min ago");

    EXPECT_EQ(str(WindowWords::rescanTip(true, true, 14)), "Scanning is back when the clean finishes.");
    EXPECT_EQ(str(WindowWords::rescanTip(false, true, 14)), "Scanning. Click to stop and keep the last results.");
    EXPECT_EQ(str(WindowWords::rescanTip(false, false, 0)), "Scan again.");
    EXPECT_EQ(str(WindowWords::rescanTip(false, false, 14)), "Scan again. The last scan took 14 seconds.");
    EXPECT_EQ(str(WindowWords::rescanLabel(true)), "Stop scanning");
    EXPECT_EQ(str(WindowWords::rescanLabel(false)), "Scan again");
}

TEST(WindowWords, PillCountsACleanNeverPastItsTotalAndPrefersItOverAScan) {
    const QVariantMap scan{{"stage", "measuring"}, {"checked", 40}, {"done", 3}, {"total", 9}};
    auto clean = [](int done, int total) { return QVariantMap{{"done", done}, {"total", total}}; };

    QVariantMap p = WindowWords::pill(clean(0, 12), scan, 0.5);
    EXPECT_EQ(str(p["kind"]), "clean");
    EXPECT_EQ(str(p["text"]), "Cleaning 1 of 12");
    EXPECT_FALSE(p["stop"].toBool()) << "a clean cannot be stopped from the pill";
    EXPECT_EQ(str(WindowWords::pill(clean(12, 12), {}, {})["text"]), "Cleaning 12 of 12");
    EXPECT_DOUBLE_EQ(WindowWords::pill(clean(12, 12), {}, {})["fraction"].toDouble(), 1.0);
    EXPECT_EQ(str(WindowWords::pill(clean(0, 0), {}, {})["text"]), "Cleaning 1 of 1") << "an empty clean still reads sensibly";

    p = WindowWords::pill({}, scan, 0.426);
    EXPECT_EQ(str(p["kind"]), "scan");
    EXPECT_EQ(str(p["text"]), "Scanning · 43%");
    EXPECT_TRUE(p["stop"].toBool());
    EXPECT_EQ(str(p["tip"]), "Stops the scan and keeps the last results");
    EXPECT_EQ(str(WindowWords::pill({}, scan, {})["text"]), "Measuring 3 of 9");
    EXPECT_TRUE(WindowWords::pill({}, scan, {})["fraction"].isNull());
    EXPECT_EQ(str(WindowWords::pill({}, QVariantMap{{"stage", "finding"}}, {})["text"]), "Scanning");
    EXPECT_EQ(str(WindowWords::pill({}, {}, {})["kind"]), "");
}

TEST(WindowWords, ScanStepsMarkWhatIsDoneAndWhatRuns) {
    auto states = [](const QVariant& progress) {
        QStringList out;
        for (const QVariant& v : WindowWords::scanSteps(progress)) out << v.toMap().value("state").toString();
        return out;
    };
    EXPECT_EQ(states(QVariantMap{{"stage", "finding"}, {"checked", 0}}), QStringList({"active", "", ""}));
    EXPECT_EQ(states(QVariantMap{{"stage", "finding"}, {"checked", 1}}), QStringList({"done", "active", ""}));
    EXPECT_EQ(states(QVariantMap{{"stage", "measuring"}, {"checked", 0}, {"done", 2}, {"total", 5}}),
              QStringList({"done", "done", "active"}));

    const QVariantList rows = WindowWords::scanSteps(QVariantMap{{"stage", "finding"}, {"checked", 12345}});
    EXPECT_EQ(str(rows[1].toMap()["detail"]), "12,345 folders");
    EXPECT_EQ(str(rows[2].toMap()["detail"]), "");
    const QVariantList measuring = WindowWords::scanSteps(QVariantMap{{"stage", "measuring"}, {"done", 2}, {"total", 5}});
    EXPECT_EQ(str(measuring[2].toMap()["detail"]), "2 of 5");
    EXPECT_EQ(str(measuring[0].toMap()["title"]), "Caches and app data");
    EXPECT_EQ(str(measuring[1].toMap()["title"]), "Projects and build folders");
    EXPECT_EQ(str(measuring[2].toMap()["title"]), "Measuring sizes");
}

TEST(WindowWords, ConfirmSplitsDeletionsFromTheTrashLargestFirst) {
    QVariantMap c = WindowWords::confirm({item("Small cache", 1000, "delete"), item("Old video", 5'000'000'000, "trash"),
                                          item("Big cache", 3'000'000'000, "delete"), item("Tool", 0, "command")});
    EXPECT_EQ(str(c["title"]), "Free 8.0 GB?");
    EXPECT_EQ(str(c["button"]), "Free 8.0 GB");
    EXPECT_EQ(str(c["line"]), "Caches and build folders are deleted. The rest goes to the Trash.");
    const QVariantList groups = c["groups"].toList();
    ASSERT_EQ(groups.size(), 2);
    const QVariantMap deleted = groups[0].toMap(), trashed = groups[1].toMap();
    EXPECT_EQ(str(deleted["title"]), "Deleted now");
    EXPECT_EQ(str(deleted["head"]), "3 items") << "a command is deleted now too";
    EXPECT_EQ(names(deleted), QStringList({"Big cache", "Small cache", "Tool"}));
    EXPECT_EQ(str(trashed["title"]), "Moved to the Trash");
    EXPECT_EQ(str(trashed["head"]), "1 item");
    EXPECT_EQ(str(trashed["detail"]), "you can still get it back");

    // Only caches: one group and the line that says they come back.
    c = WindowWords::confirm({item("Cache", 2'000'000, "delete")});
    ASSERT_EQ(c["groups"].toList().size(), 1);
    EXPECT_EQ(str(c["groups"].toList()[0].toMap()["title"]), "Deleted now");
    EXPECT_EQ(str(c["line"]), "Everything here comes back on its own when it is needed.");
    // Only the Trash: its group alone.
    c = WindowWords::confirm({item("Video", 2'000'000, "trash")});
    ASSERT_EQ(c["groups"].toList().size(), 1);
    EXPECT_EQ(str(c["groups"].toList()[0].toMap()["title"]), "Moved to the Trash");
    // A negative size from a broken row counts as nothing rather than taking from the total.
    c = WindowWords::confirm({item("Broken", -5'000'000, "delete"), item("Cache", 2'000'000, "delete")});
    EXPECT_EQ(c["bytes"].toLongLong(), 2'000'000);
}

TEST(WindowWords, RestartTellsDaysOrHoursUpAndWhatSwapGivesBack) {
    const QDateTime now = QDateTime::currentDateTime();
    QVariantMap vitals{{"boot", now.addSecs(-3 * 86400 - 600)}, {"swapUsed", qint64(2'000'000'000)}, {"swappedOut", qint64(9'000'000'000)}};
    QVariantMap r = WindowWords::restart(vitals);
    EXPECT_EQ(str(r["title"]), "Restart your computer?");
    EXPECT_TRUE(r["since"].toString().startsWith("On since ")) << r["since"].toString().toStdString();
    EXPECT_TRUE(r["since"].toString().endsWith(", 3 days ago.")) << r["since"].toString().toStdString();
    EXPECT_FALSE(r["note"].toString().contains("macOS"));
    const QVariantList rows = r["rows"].toList();
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(str(rows[0].toMap()["right"]), "2.0 GB");
    EXPECT_EQ(str(rows[1].toMap()["right"]), "9.0 GB");
    EXPECT_EQ(str(rows[2].toMap()["right"]), "Up to 2.0 GB back");

    vitals["boot"] = now.addSecs(-86400 - 60);
    EXPECT_TRUE(WindowWords::restart(vitals)["since"].toString().endsWith(", 1 day ago."));
    vitals["boot"] = now.addSecs(-5 * 3600 - 60);
    EXPECT_TRUE(WindowWords::restart(vitals)["since"].toString().startsWith("On for 5 hours, since "));
    vitals["boot"] = now.addSecs(-3600 - 60);
    EXPECT_TRUE(WindowWords::restart(vitals)["since"].toString().startsWith("On for 1 hour, since "));
}
