// The Clean tab's words and states, where a rule taken in the wrong order or a count off by one
// would tell the user something false about what a clean takes.
#include "app/ListModel.h"
#include "ui/CleanWords.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

// Words as text, so a failure prints them.
std::string str(const QVariant& v) { return v.toString().toStdString(); }

// Rows as the model's item lists hand them over, for the rules that read a whole tier.
class Rows : public ListModel {
public:
    explicit Rows(QList<QVariantMap> rows) : data_(std::move(rows)) {
        for (const auto& r : data_)
            for (const auto& key : r.keys())
                if (!keys.contains(key)) keys << key;
    }
    int rowCount(const QModelIndex& = {}) const override { return int(data_.size()); }
    QVariant data(const QModelIndex& at, int role) const override {
        return data_.value(at.row()).value(keys.value(role - Qt::UserRole - 1));
    }
    QHash<int, QByteArray> roleNames() const override {
        QHash<int, QByteArray> out;
        for (int i = 0; i < keys.size(); ++i) out.insert(Qt::UserRole + 1 + i, keys[i].toUtf8());
        return out;
    }
    int indexOf(const QString&) const override { return -1; }

private:
    QList<QVariantMap> data_;
    QStringList keys;
};

QVariantMap row(const QString& name, qint64 size, bool ticked, bool locked = false, const QString& removal = "delete") {
    return {{"name", name}, {"size", size}, {"ticked", ticked}, {"locked", locked}, {"removal", removal}, {"tier", 0}};
}

} // namespace

TEST(CleanWords, HeadlineAndTickLineSayWhatTheScanFoundAndWhatTicksLeave) {
    EXPECT_EQ(str(CleanWords::headline(false, 5'000'000'000)), "Measuring what can go");
    EXPECT_EQ(str(CleanWords::headline(true, 5'000'000'000)), "Up to 5.0 GB can go");
    EXPECT_TRUE(CleanWords::headline(true, 1).startsWith("Up to ")) << "a single byte still can go";
    EXPECT_EQ(str(CleanWords::headline(true, 0)), "Nothing left to clean");
    EXPECT_EQ(str(CleanWords::tickLine(0, 10'000'000'000)), "Tick something to see what you would get back");
    EXPECT_EQ(str(CleanWords::tickLine(2'000'000'000, 10'000'000'000)), "Clearing what is ticked leaves 12.0 GB free");
}

TEST(CleanWords, TierCountsOnlyWhatCanBeClearedAndWordsItsTicks) {
    Rows mixed({row("a", 3'000'000, true), row("b", 2'000'000, false), row("busy", 9'000'000, false, true)});
    QVariantMap t = CleanWords::tier(0, &mixed, false);
    EXPECT_EQ(str(t["title"]), "Safe to clear");
    EXPECT_EQ(str(t["symbol"]), "custom.broom");
    EXPECT_EQ(t["count"], 3);
    EXPECT_EQ(t["total"].toLongLong(), 5'000'000) << "a locked item is never offered, so never counted";
    EXPECT_EQ(str(t["line"]), "3 MB ticked");
    EXPECT_EQ(str(t["select"]), "Select all");
    EXPECT_EQ(str(t["a11y"]), "Tick all Safe to clear");

    // All that can be ticked is ticked: the locked row does not hold "All ticked" back.
    Rows all({row("a", 3'000'000, true), row("busy", 9'000'000, false, true)});
    t = CleanWords::tier(1, &all, false);
    EXPECT_EQ(str(t["line"]), "All ticked");
    EXPECT_EQ(str(t["select"]), "Deselect all");
    EXPECT_EQ(str(t["a11y"]), "Untick all Rebuildable");

    Rows none({row("a", 3'000'000, false)});
    EXPECT_EQ(str(CleanWords::tier(2, &none, false)["line"]), "None ticked");
    // Only locked items: nothing to tick, and no button that claims to tick them.
    Rows locked({row("busy", 9'000'000, false, true)});
    t = CleanWords::tier(2, &locked, false);
    EXPECT_EQ(str(t["line"]), "None ticked");
    EXPECT_FALSE(t["allTicked"].toBool());
    EXPECT_EQ(t["open"], 0);

    Rows empty({});
    EXPECT_EQ(str(CleanWords::tier(0, &empty, false)["line"]), "Nothing here");
    EXPECT_EQ(str(CleanWords::tier(0, &empty, false)["empty"]), "Nothing left to clear here.");
    EXPECT_EQ(str(CleanWords::tier(0, &empty, true)["line"]), "Measuring…");
    EXPECT_EQ(str(CleanWords::tier(0, nullptr, true)["empty"]), "Measuring…");
    EXPECT_EQ(str(CleanWords::tier(7, nullptr, false)["title"]), "Safe to clear") << "an unknown tier falls back, never crashes";
}

TEST(CleanWords, LongTiersFoldAfterSixButNeverIntoOneMore) {
    EXPECT_EQ(CleanWords::shownRows(6, false), 6);
    EXPECT_EQ(CleanWords::shownRows(7, false), 7) << "a \"1 more\" row never appears";
    EXPECT_EQ(CleanWords::shownRows(8, false), 6);
    EXPECT_EQ(CleanWords::shownRows(40, true), 40);
    EXPECT_EQ(CleanWords::shownRows(0, false), 0);

    QList<QVariantMap> rows;
    for (int i = 0; i < 6; ++i) rows << row(QString::number(i), 1'000'000, false);
    rows << row("x", 2'000'000, true) << row("y", 3'000'000, false) << row("z", 4'000'000, false, true);
    Rows list(rows);
    QVariantMap m = CleanWords::more(&list, 6);
    EXPECT_EQ(str(m["title"]), "3 more");
    EXPECT_EQ(str(m["line"]), "1 ticked");
    EXPECT_EQ(str(m["size"]), "9 MB");
    Rows ticked({row("a", 1, true), row("b", 1, true), row("busy", 1, false, true)});
    EXPECT_EQ(str(CleanWords::more(&ticked, 0)["line"]), "All ticked");
}

TEST(CleanWords, TheFirstBadgeThatAppliesWins) {
    QVariantMap r{{"name", "Chrome cache"}, {"removal", "delete"}};
    EXPECT_TRUE(CleanWords::badge(r).isEmpty());

    r["recentLabel"] = "Changed yesterday";
    EXPECT_EQ(str(CleanWords::badge(r)["text"]), "Changed yesterday");
    EXPECT_EQ(str(CleanWords::badge(r)["tip"]), "You worked on this yesterday, so it starts unticked. Tick it if you are done with it.");
    r["recentLabel"] = "Changed today";
    EXPECT_TRUE(CleanWords::badge(r)["tip"].toString().contains("this today,"));

    r["removal"] = "trash";
    EXPECT_EQ(str(CleanWords::badge(r)["text"]), "To Trash");
    r["cacheKind"] = "idle";
    r["lastUsed"] = QDateTime(QDate(2026, 3, 4), QTime(12, 0));
    EXPECT_EQ(str(CleanWords::badge(r)["text"]), "Unused since Mar 4") << "a stale Trash item shows its kind, not \"To Trash\"";
    r["lastUsed"] = QVariant();
    EXPECT_EQ(str(CleanWords::badge(r)["text"]), "Unused");
    r["cacheKind"] = "leftover";
    EXPECT_EQ(str(CleanWords::badge(r)["text"]), "Leftovers");
    r["cacheKind"] = "orphan";
    EXPECT_EQ(str(CleanWords::badge(r)["text"]), "App removed");
    EXPECT_FALSE(CleanWords::badge(r)["tip"].toString().contains("Mac"));

    r["isOpen"] = true;
    EXPECT_EQ(str(CleanWords::badge(r)["text"]), "Open");
    EXPECT_EQ(str(CleanWords::badge(r)["tip"]), "Chrome is open, so a little of this refills right away. Quit it first for a full clean.");
    r["refillNote"] = "Refilled 2 GB within a day";
    EXPECT_EQ(str(CleanWords::badge(r)["text"]), "Refills fast");
    EXPECT_TRUE(CleanWords::badge(r)["tip"].toString().startsWith("Refilled 2 GB within a day. Clearing it again"));
    r["lockedReason"] = "node runs here · since 9:40";
    EXPECT_EQ(str(CleanWords::badge(r)["text"]), "In use") << "a lock wins over everything";
    EXPECT_EQ(CleanWords::badge(r)["tip"],
              "node runs here. since 9:40. Sorrelin never touches a folder something is running in.");
}

TEST(CleanWords, FooterCountsDeletionsAndTrashSeparately) {
    EXPECT_EQ(str(CleanWords::footer({}, false)["first"]), "Nothing ticked");
    EXPECT_EQ(str(CleanWords::footer({}, false)["second"]), "Tick what you want gone");
    EXPECT_EQ(str(CleanWords::footer({}, true)["second"]), "Tick something in the list first");

    const QVariantMap cache = row("c", 2'000'000, true), film = row("f", 3'000'000, true, false, "trash"),
                      tool = row("t", 0, true, false, "command");
    EXPECT_EQ(str(CleanWords::footer({cache}, true)["second"]), "1 item. All of it comes back on its own.");
    EXPECT_EQ(str(CleanWords::footer({cache, tool}, false)["second"]), "2 items. All of it comes back on its own.");
    EXPECT_EQ(str(CleanWords::footer({film}, false)["second"]), "1 item goes to the Trash.");
    EXPECT_EQ(str(CleanWords::footer({film, film}, false)["second"]), "2 items go to the Trash.");
    EXPECT_EQ(str(CleanWords::footer({cache, tool, film}, false)["second"]), "2 deleted, 1 to the Trash.");
    // The sum of the ticked sizes, never a new measurement.
    EXPECT_EQ(str(CleanWords::footer({cache, film}, false)["first"]), "5 MB ticked");
}

TEST(CleanWords, ScanAndCleanInProgressSayWhereTheyAre) {
    EXPECT_EQ(str(CleanWords::updating(QVariantMap{{"stage", "finding"}, {"checked", 0}})), "Looking for caches");
    EXPECT_EQ(str(CleanWords::updating(QVariantMap{{"stage", "finding"}, {"checked", 4321}})), "Looking through 4,321 folders");
    EXPECT_EQ(str(CleanWords::updating(QVariantMap{{"stage", "measuring"}, {"done", 3}, {"total", 8}})), "Measuring 3 of 8");
    EXPECT_EQ(str(CleanWords::scanning(QVariantMap{{"stage", "measuring"}, {"label", "node_modules"}})), "Measuring node_modules");
    EXPECT_EQ(str(CleanWords::scanning(QVariantMap{{"stage", "finding"}})), "");

    Rows items({row("Cache", 1'000'000, true), row("Film", 2'000'000, true, false, "trash"), row("Last", 3'000'000, true)});
    QVariantMap r = CleanWords::running(QVariantMap{{"done", 2}, {"total", 3}, {"label", "Last"}}, &items);
    EXPECT_EQ(str(r["headline"]), "Clearing 6 MB");
    EXPECT_EQ(str(r["line"]), "2 of 3, Last");
    QStringList states;
    for (const QVariant& v : r["rows"].toList()) states << v.toMap()["state"].toString();
    EXPECT_EQ(states, QStringList({"done", "trash", "working"}));
    EXPECT_EQ(str(CleanWords::running(QVariantMap{{"done", 3}, {"total", 3}, {"label", "Last"}}, &items)["line"]), "3 of 3, finishing up");
    EXPECT_EQ(str(CleanWords::running(QVariantMap{{"done", 1}, {"total", 3}, {"label", ""}}, &items)["line"]), "1 of 3, finishing up");
}

TEST(CleanWords, WhatACleanGaveBackNamesTheTrashOrTheRefill) {
    auto summary = [](qint64 trashed, QStringList failures) {
        return QVariantMap{{"report", QVariantMap{{"freed", qint64(4'000'000'000)}, {"trashed", trashed}, {"failures", failures},
                                                  {"availableAfter", qint64(50'000'000'000)}}},
                           {"before", qint64(46'000'000'000)}};
    };
    Rows safe({row("Cache", 1, true)});
    QVariantMap d = CleanWords::done(summary(0, {}), &safe, false);
    EXPECT_EQ(str(d["headline"]), "Freed 4.0 GB");
    EXPECT_EQ(str(d["subline"]), "You have 50.0 GB free now. Apps refill their caches as you use them.");
    EXPECT_EQ(str(d["failed"]), "");

    QVariantMap dry = summary(0, {});
    dry["dryRun"] = true;
    EXPECT_EQ(str(CleanWords::done(dry, &safe, false)["subline"]), "You have 50.0 GB free now. Apps refill their caches as you use them.")
        << "a dry run counts from before, plus what it pretended";
    dry["before"] = qint64(40'000'000'000);
    EXPECT_TRUE(CleanWords::done(dry, &safe, false)["subline"].toString().startsWith("You have 44.0 GB free now."));

    Rows built({QVariantMap{{"name", "node_modules"}, {"tier", 1}}});
    EXPECT_EQ(str(CleanWords::done(summary(0, {}), &built, false)["subline"]), "You have 50.0 GB free now.");
    d = CleanWords::done(summary(1'000'000'000, {"a: busy", "b: gone"}), &safe, false);
    EXPECT_EQ(str(d["subline"]), "You have 50.0 GB free now. 1.0 GB is in the Trash until you empty it.") << "the Trash wins over the refill";
    EXPECT_EQ(str(d["failed"]), "2 not fully cleared");
    EXPECT_EQ(str(d["emptyLabel"]), "Empty Trash, 1.0 GB");
    EXPECT_EQ(str(CleanWords::done(summary(1'000'000'000, {}), &safe, true)["emptyLabel"]), "Emptying the Trash");

    QVariantMap b = CleanWords::banner(summary(0, {"x"})["report"], false);
    EXPECT_EQ(str(b["headline"]), "Freed 4.0 GB");
    EXPECT_EQ(str(b["line"]), "You have 50.0 GB free now.");
    EXPECT_EQ(str(b["failed"]), "1 not fully removed");
    b = CleanWords::banner(summary(2'000'000'000, {})["report"], true);
    EXPECT_EQ(str(b["line"]), "2.0 GB is in the Trash. Empty it to get that space too.");
    EXPECT_EQ(str(b["empty"]), "Emptying");
}

TEST(CleanWords, TheRingAddsUpToTheDiskWhateverTheFiguresClaim) {
    auto sum = [](const QVariantList& parts) {
        double s = 0;
        for (const QVariant& p : parts) {
            EXPECT_GE(p.toMap()["value"].toDouble(), 0) << p.toMap()["id"].toString().toStdString();
            s += p.toMap()["value"].toDouble();
        }
        return s;
    };
    const QVariantMap disk{{"total", qint64(100)}, {"available", qint64(30)}};
    QVariantList parts = CleanWords::ring(disk, 10, 5, 5, 5);
    EXPECT_EQ(sum(parts), 100);
    EXPECT_EQ(parts[0].toMap()["value"].toDouble(), 45); // the rest of the used space
    EXPECT_TRUE(parts[1].toMap()["striped"].toBool());
    // Tiers that claim more than is used (hard links, a stale scan) are cut, never the free part.
    parts = CleanWords::ring(disk, 50, 40, 40, 40);
    EXPECT_EQ(sum(parts), 100);
    EXPECT_EQ(parts[5].toMap()["value"].toDouble(), 30);
    EXPECT_EQ(parts[0].toMap()["value"].toDouble(), 0);
    // A disk that reports more free than it holds.
    EXPECT_EQ(sum(CleanWords::ring({{"total", qint64(100)}, {"available", qint64(500)}}, 0, 0, 0, 0)), 100);
}
