// The Home tab's words and states: which heading and sentence win, where the tiles change
// colour, and what the advice's buttons say in each of their states.
#include "ui/HomeWords.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

// Words as text, so a failure prints them.
std::string str(const QVariant& v) { return v.toString().toStdString(); }

QVariantMap rec(const QString& reason, const QString& why = "It keeps the fans going.") {
    return {{"id", "x"}, {"reason", reason}, {"why", why}};
}

const QVariantMap disk{{"name", "Data"}, {"total", qint64(500'000'000'000)}, {"available", qint64(4'000'000'000)}};

} // namespace

TEST(HomeWords, HeadingAndSentenceNameTheSlowAppsBeforeAnyAdvice) {
    EXPECT_EQ(str(HomeWords::heading({"Chat"}, rec("memory"))), "Your computer is slow right now");
    EXPECT_EQ(str(HomeWords::sentence({"Chat"}, rec("memory"), disk)), "Chat is keeping the processor busy in the background.");
    EXPECT_EQ(str(HomeWords::sentence({"Chat", "Mail"}, {}, disk)), "Chat and Mail are keeping the processor busy in the background.");
    EXPECT_EQ(str(HomeWords::sentence({"A", "B", "C"}, {}, disk)),
              "3 apps you are not using are keeping the processor busy in the background.");

    EXPECT_EQ(str(HomeWords::heading({}, {})), "Nothing urgent right now");
    EXPECT_EQ(str(HomeWords::sentence({}, {}, disk)),
              "Sorrelin keeps watching and tells you when something starts to slow your computer or fill your disk.");
    EXPECT_EQ(str(HomeWords::heading({}, rec("memory"))), "Memory is tight");
    EXPECT_EQ(str(HomeWords::sentence({}, rec("memory"), disk)),
              "Your computer is moving memory onto the disk, which makes switching apps slow.");
    EXPECT_EQ(str(HomeWords::heading({}, rec("disk"))), "Free space is running low");
    EXPECT_EQ(str(HomeWords::sentence({}, rec("disk"), disk)), "Only 4.0 GB is free on Data.");
    // Memory tight but the first advice is about something else: the heading follows the advice.
    EXPECT_EQ(str(HomeWords::heading({}, rec("wait"))), "A few things would help");
    EXPECT_EQ(str(HomeWords::sentence({}, rec("slow", "Its own why."), disk)), "Its own why.");
}

TEST(HomeWords, ChipAppearsFromAHundredMegabytesFreedToday) {
    EXPECT_EQ(str(HomeWords::freedChip(99'000'000)), "");
    EXPECT_EQ(str(HomeWords::freedChip(99'999'999)), "");
    EXPECT_EQ(str(HomeWords::freedChip(100'000'000)), "You freed 100 MB today");
}

TEST(HomeWords, SpeedTileIsBusyFromEightyAndSlowWhenAppsAreBusyInTheBackground) {
    QVariantMap v{{"cpu", 80.0}};
    EXPECT_EQ(str(HomeWords::speed(v, 0)["status"]), "Busy");
    EXPECT_EQ(str(HomeWords::speed(v, 0)["sub"]), "Busy with apps you are using");
    v["cpu"] = 79.9;
    EXPECT_EQ(str(HomeWords::speed(v, 0)["status"]), "Fine");
    EXPECT_EQ(str(HomeWords::speed(v, 0)["value"]), "80%");
    EXPECT_EQ(str(HomeWords::speed(v, 0)["sub"]), "Nothing busy in the background");
    v["cpu"] = 95.0;
    EXPECT_EQ(str(HomeWords::speed(v, 1)["status"]), "Slow") << "slow apps win over a busy processor";
    EXPECT_EQ(str(HomeWords::speed(v, 1)["sub"]), "1 app busy in the background");
    EXPECT_EQ(str(HomeWords::speed(v, 2)["sub"]), "2 apps busy in the background");
    // Before the second sample there is no figure.
    EXPECT_EQ(str(HomeWords::speed({{"cpu", QVariant()}}, 0)["value"]), "…");
    EXPECT_EQ(str(HomeWords::speed({{"cpu", QVariant()}}, 0)["status"]), "Fine");
}

TEST(HomeWords, MemoryAndDiskTilesChangeAtTheirThresholds) {
    QVariantMap v{{"pressure", 1}, {"freePercent", 42.4}, {"compressed", qint64(1'500'000'000)}, {"swapUsed", qint64(999'999'999)}};
    EXPECT_EQ(str(HomeWords::memory(v)["status"]), "Fine");
    EXPECT_EQ(str(HomeWords::memory(v)["value"]), "42%");
    EXPECT_EQ(str(HomeWords::memory(v)["sub"]), "1.5 GB squeezed to fit");
    v["pressure"] = 3;
    v["swapUsed"] = qint64(1'000'000'000);
    EXPECT_EQ(str(HomeWords::memory(v)["status"]), "Tight");
    EXPECT_EQ(str(HomeWords::memory(v)["sub"]), "1.0 GB swapped to your disk");
    v["pressure"] = 4;
    EXPECT_EQ(str(HomeWords::memory(v)["status"]), "Critical");

    auto status = [](qint64 available) {
        return str(HomeWords::disk({{"total", qint64(500'000'000'000)}, {"available", available}}, true, 0, QVariant())["status"]);
    };
    EXPECT_EQ(status(4'900'000'000), "Very low");
    EXPECT_EQ(status(5'000'000'000), "Low");
    EXPECT_EQ(status(10'000'000'000), "OK");
    EXPECT_EQ(str(HomeWords::disk(disk, false, 0, QVariant())["sub"]), "Measuring what can go");
    EXPECT_EQ(str(HomeWords::disk(disk, true, 2'000'000'000, QVariant())["sub"]), "2.0 GB can go");
    // A disk that fills comes first with its forecast, the rest lower-cased after it.
    const QVariantMap filling{{"bytesPerDay", 1e9}, {"filling", true}};
    EXPECT_EQ(str(HomeWords::disk(disk, true, 2'000'000'000, filling)["sub"]), "About 4 days at your pace, 2.0 GB can go");
    EXPECT_EQ(str(HomeWords::disk(disk, false, 0, QVariantMap{{"bytesPerDay", 9e9}, {"filling", true}})["sub"]),
              "Could fill within a day, measuring what can go");
    EXPECT_EQ(str(HomeWords::disk(disk, true, 0, QVariantMap{{"bytesPerDay", 1e9}, {"filling", false}})["sub"]), "0 bytes can go");
}

TEST(HomeWords, TheCardWithoutAdviceSaysHowFarTheFirstScanGot) {
    EXPECT_EQ(str(HomeWords::checking(QVariant())), "Starting");
    EXPECT_EQ(str(HomeWords::checking(QVariantMap{{"stage", "finding"}, {"checked", 0}})), "Starting");
    EXPECT_EQ(str(HomeWords::checking(QVariantMap{{"stage", "finding"}, {"checked", 2048}})), "2,048 folders looked at");
    EXPECT_EQ(str(HomeWords::checking(QVariantMap{{"stage", "measuring"}, {"done", 4}, {"total", 7}})), "Measuring 4 of 7");
    EXPECT_EQ(str(HomeWords::allClear(0)), "Sorrelin keeps watching and tells you when something starts to slow your computer.");
    EXPECT_TRUE(HomeWords::allClear(2).startsWith("Here is what you fixed today. "));
}

TEST(HomeWords, TheAdviceButtonFollowsItsStateThenItsArming) {
    QVariantMap r{{"actionLabel", "Quit Chat"}, {"shortLabel", "Quit"}, {"busyLabel", "Quitting"}, {"doneLabel", "Quit"}};
    EXPECT_EQ(str(HomeWords::action(r)["text"]), "Quit Chat");
    r["armed"] = true;
    EXPECT_EQ(str(HomeWords::action(r)["text"]), "Click again to quit");
    r["state"] = "queued";
    EXPECT_EQ(str(HomeWords::action(r)["text"]), "Waiting its turn") << "a state wins over the arming";
    r["state"] = "busy";
    EXPECT_EQ(str(HomeWords::action(r)["text"]), "Quitting");
    EXPECT_TRUE(HomeWords::action(r)["busy"].toBool());
    r["state"] = "done";
    EXPECT_TRUE(HomeWords::action(r)["done"].toBool());
}

TEST(HomeWords, ImpactNamesTheResourceAndItsFigure) {
    const QVariantMap vitals{{"cpu", 60.0}, {"freePercent", 50.0}, {"swapUsed", qint64(3'000'000'000)}, {"swapTotal", qint64(4'000'000'000)}};
    auto impact = [&](QVariantMap r) { return HomeWords::impact(r, vitals, disk, nullptr, 16'000'000'000, 8); };
    QVariantMap i = impact({{"impact", "cpu"}, {"cpuShare", 31.6}});
    EXPECT_EQ(str(i["label"]), "Processor");
    EXPECT_EQ(str(i["figure"]), "32%");
    i = impact({{"impact", "memory"}, {"memory", qint64(2'000'000'000)}});
    EXPECT_EQ(str(i["label"]), "Memory in use");
    EXPECT_EQ(str(i["figure"]), "2.0 GB");
    i = impact({{"impact", "disk"}, {"impactBytes", qint64(7'000'000'000)}});
    EXPECT_EQ(str(i["label"]), "Free space");
    EXPECT_EQ(str(i["figure"]), "+7.0 GB");
    // What would come back never runs past the disk's used part.
    double sum = 0;
    for (const QVariant& s : i["segments"].toList()) sum += s.toMap()["value"].toDouble();
    EXPECT_LE(sum, i["total"].toDouble());
    i = impact({{"impact", "swap"}});
    EXPECT_EQ(str(i["label"]), "Swap on your disk");
    EXPECT_EQ(str(i["figure"]), "3.0 GB");
}

TEST(HomeWords, TheBatchSaysWhatEachSafeAdviceDoes) {
    EXPECT_EQ(str(HomeWords::batchButton(QVariant(), 3)), "Do the 3 safe ones");
    EXPECT_EQ(str(HomeWords::batchButton(QVariantMap{{"done", 1}, {"total", 3}}, 0)), "Working, 1 of 3");
    EXPECT_EQ(str(HomeWords::batchButton(QVariant(), 0)), "");
    const QVariantList safe{QVariantMap{{"title", "Quit Chat"}, {"action", "quit"}},
                            QVariantMap{{"title", "Stop 3 leftover processes"}, {"action", "stopLeftovers"}},
                            QVariantMap{{"title", "Relaunch Browser"}, {"action", "relaunch"}}};
    EXPECT_EQ(str(HomeWords::batchTip(safe)),
              "Quits Chat, stops 3 leftover processes and relaunch browser. None of them has anything to save.");
    EXPECT_EQ(str(HomeWords::batchTip({safe[0]})), "Quits Chat. None of them has anything to save.");
    EXPECT_EQ(str(HomeWords::batchTip({})), "");
}
