#include "foundation/Fmt.h"
#include "ui/Formatter.h"
#include "ui/Looks.h"

#include <QColor>
#include <QDateTime>

#include <limits>

#include <gtest/gtest.h>

TEST(Formatter, SizesAreTheCoresWordsAndBrokenNumbersReadAsZero) {
    Formatter f;
    EXPECT_EQ(f.bytes(0), "0 bytes");
    EXPECT_EQ(f.bytes(2.4e9), QString::fromStdString(Fmt::bytes(2'400'000'000)));
    EXPECT_EQ(f.bytes(20e12), "20.0 TB");
    EXPECT_EQ(f.bytes(std::numeric_limits<double>::quiet_NaN()), "0 bytes");
    EXPECT_EQ(f.bytes(-5), "0 bytes");
    // Far past the 64-bit range: the largest size, not an overflow into negatives.
    EXPECT_EQ(f.bytes(1e30), QString::fromStdString(Fmt::bytes(std::numeric_limits<int64_t>::max())));
    EXPECT_EQ(f.ram(17179869184.0), "16 GB");
    EXPECT_EQ(f.menuBytes(9.54e9), "9.5 GB");
}

TEST(Formatter, FiguresTheCoreWouldRefuseNeverReachIt) {
    Formatter f;
    // The core stops on a non-finite percent or duration; QML can produce one (0/0).
    EXPECT_EQ(f.percent(std::numeric_limits<double>::quiet_NaN()), "0%");
    EXPECT_EQ(f.percent(std::numeric_limits<double>::infinity()), "0%");
    EXPECT_EQ(f.percent(42.4), "42%");
    EXPECT_EQ(f.duration(std::numeric_limits<double>::quiet_NaN()), "0 s");
    EXPECT_EQ(f.days(1), "1 day");
}

TEST(Formatter, CountsAreGroupedByThousands) {
    Formatter f;
    EXPECT_EQ(f.grouped(0), "0");
    EXPECT_EQ(f.grouped(999), "999");
    EXPECT_EQ(f.grouped(12408), "12,408");
    EXPECT_EQ(f.grouped(1234567.9), "1,234,567");
    EXPECT_EQ(f.grouped(std::numeric_limits<double>::quiet_NaN()), "0");
}

TEST(Formatter, DatesPassThroughAndAnInvalidOneIsEmpty) {
    Formatter f;
    const QDateTime then = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    const TimePoint tp = Formatter::toTimePoint(then);
    EXPECT_EQ(f.dayMonth(then), QString::fromStdString(Fmt::dayMonth(tp)));
    EXPECT_EQ(f.ago(QDateTime::currentDateTime().addSecs(-7200)), "2 h ago");
    EXPECT_EQ(f.ago(QDateTime()), "");
    EXPECT_EQ(f.clock(QDateTime()), "");
    EXPECT_EQ(f.day(QDateTime()), "");
    // Milliseconds survive the crossing.
    EXPECT_EQ(Formatter::toTimePoint(QDateTime::fromMSecsSinceEpoch(1500)).time_since_epoch(), std::chrono::milliseconds(1500));
}

TEST(Looks, AReasonByNameOrNumberGivesTheAdviceModelsChip) {
    Looks looks;
    QVariantMap memory = looks.reason("memory");
    EXPECT_EQ(memory.value("label").toString(), "Memory tight");
    EXPECT_EQ(memory.value("symbol").toString(), "memorychip");
    EXPECT_EQ(memory.value("fg").value<QColor>(), QColor("#8DB9FA"));
    QColor bg = memory.value("bg").value<QColor>();
    EXPECT_EQ(bg.rgb() & 0xFFFFFF, QColor("#5B9BF8").rgb() & 0xFFFFFF);
    EXPECT_NEAR(bg.alphaF(), 0.15, 0.005);
    EXPECT_EQ(looks.reason(0).value("label").toString(), "Slow now");
    EXPECT_EQ(looks.reason(4).value("label").toString(), "Not now");
    EXPECT_EQ(looks.reason("snoozed").value("bg").value<QColor>(), QColor("#2A2C33"));
    for (const QVariant& bad : {QVariant("Memory"), QVariant(""), QVariant(5), QVariant(-1), QVariant()})
        EXPECT_TRUE(looks.reason(bad).isEmpty()) << bad.toString().toStdString();
}
