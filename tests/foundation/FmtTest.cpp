#include "foundation/Fmt.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

TimePoint localDate(int year, int month, int day, int hour = 12, int minute = 0) {
    std::tm t{};
    t.tm_year = year - 1900;
    t.tm_mon = month - 1;
    t.tm_mday = day;
    t.tm_hour = hour;
    t.tm_min = minute;
    t.tm_isdst = -1;
    return Clock::from_time_t(std::mktime(&t));
}

TimePoint secondsBefore(TimePoint now, double s) { return addSeconds(now, -s); }

} // namespace

TEST(Fmt, BytesThresholdsAndPrintfRounding) {
    EXPECT_EQ(Fmt::bytes(0), "0 bytes");
    EXPECT_EQ(Fmt::bytes(-5), "0 bytes");
    EXPECT_EQ(Fmt::bytes(999), "999 bytes");
    EXPECT_EQ(Fmt::bytes(1000), "1 KB");
    EXPECT_EQ(Fmt::bytes(999'999), "1000 KB"); // printf rounding, not promoted to MB
    EXPECT_EQ(Fmt::bytes(1'000'000), "1 MB");
    EXPECT_EQ(Fmt::bytes(999'999'999), "1000 MB");
    EXPECT_EQ(Fmt::bytes(1'000'000'000), "1.0 GB");
    EXPECT_EQ(Fmt::bytes(99'999'999'999), "100.0 GB");
    EXPECT_EQ(Fmt::bytes(100'000'000'000), "100 GB");
    EXPECT_EQ(Fmt::bytes(1'000'000'000'000), "1.0 TB");
    EXPECT_EQ(Fmt::bytes(2'345'000'000'000), "2.3 TB");
}

TEST(Fmt, MenuBytesKeepsOneUnit) {
    EXPECT_EQ(Fmt::menuBytes(-1), "0.0 GB");
    EXPECT_EQ(Fmt::menuBytes(9'990'000'000), "10.0 GB"); // the test is on the unrounded value
    EXPECT_EQ(Fmt::menuBytes(10'000'000'000), "10 GB");
    EXPECT_EQ(Fmt::menuBytes(3'000'000'000'000), "3000 GB");
}

TEST(Fmt, AgoCutsTowardsZero) {
    TimePoint now = localDate(2026, 3, 10, 15);
    EXPECT_EQ(Fmt::ago(secondsBefore(now, 59.9), now), "just now");
    EXPECT_EQ(Fmt::ago(addSeconds(now, 500), now), "just now"); // the future too
    EXPECT_EQ(Fmt::ago(secondsBefore(now, 60), now), "1 min ago");
    EXPECT_EQ(Fmt::ago(secondsBefore(now, 3599), now), "59 min ago");
    EXPECT_EQ(Fmt::ago(secondsBefore(now, 3600), now), "1 h ago");
    EXPECT_EQ(Fmt::ago(secondsBefore(now, 36 * 3600), now), "yesterday");
    EXPECT_EQ(Fmt::ago(secondsBefore(now, 47 * 3600), now), "yesterday");
    EXPECT_EQ(Fmt::ago(secondsBefore(now, 48 * 3600), now), "2 days ago");
}

TEST(Fmt, AgeReadsAMomentAsAMinute) {
    TimePoint now = localDate(2026, 3, 10, 15);
    EXPECT_EQ(Fmt::age(secondsBefore(now, 30), now), "1 minute");
    EXPECT_EQ(Fmt::age(secondsBefore(now, 119), now), "1 minute");
    EXPECT_EQ(Fmt::age(secondsBefore(now, 120), now), "2 minutes");
    EXPECT_EQ(Fmt::age(secondsBefore(now, 3600), now), "1 hour");
    EXPECT_EQ(Fmt::age(secondsBefore(now, 36 * 3600), now), "36 hours");
    EXPECT_EQ(Fmt::age(secondsBefore(now, 47 * 3600 + 3599), now), "47 hours");
    EXPECT_EQ(Fmt::age(secondsBefore(now, 48 * 3600), now), "2 days");
}

TEST(Fmt, DurationRoundsHalfAwayFromZero) {
    EXPECT_EQ(Fmt::duration(0.4), "0 s");
    EXPECT_EQ(Fmt::duration(59.4), "59 s");
    EXPECT_EQ(Fmt::duration(59.5), "1 min");
    EXPECT_EQ(Fmt::duration(3599), "59 min");
    EXPECT_EQ(Fmt::duration(3659), "1 h");
    EXPECT_EQ(Fmt::duration(3660), "1 h 1 min");
    EXPECT_EQ(Fmt::duration(7322), "2 h 2 min");
}

TEST(Fmt, MinutesDaysRamPercent) {
    EXPECT_EQ(Fmt::minutes(0), "0 minutes");
    EXPECT_EQ(Fmt::minutes(1), "1 minute");
    EXPECT_EQ(Fmt::minutes(59), "59 minutes");
    EXPECT_EQ(Fmt::minutes(60), "1 h");
    EXPECT_EQ(Fmt::minutes(61), "1 h 1 min");
    EXPECT_EQ(Fmt::days(1), "1 day");
    EXPECT_EQ(Fmt::days(3), "3 days");
    EXPECT_EQ(Fmt::days(0), "0 days");
    constexpr int64_t GiB = int64_t(1) << 30;
    EXPECT_EQ(Fmt::ram(16 * GiB), "16 GB");
    EXPECT_EQ(Fmt::ram(8 * GiB), "8 GB");
    EXPECT_EQ(Fmt::ram(static_cast<int64_t>(15.97 * GiB)), "16 GB");
    EXPECT_EQ(Fmt::ram(static_cast<int64_t>(15.5 * GiB)), "15.5 GB");
    EXPECT_EQ(Fmt::ram(-3), "0 GB");
    EXPECT_EQ(Fmt::percent(0), "0%");
    EXPECT_EQ(Fmt::percent(-2), "0%");
    EXPECT_EQ(Fmt::percent(0.4), "under 1%");
    EXPECT_EQ(Fmt::percent(2.5), "3%"); // half away from zero, not to even
    EXPECT_EQ(Fmt::percent(99.6), "100%");
}

TEST(Fmt, CalendarDates) {
    TimePoint now = localDate(2026, 3, 10, 15, 7);
    EXPECT_EQ(Fmt::clock(localDate(2026, 3, 10, 9, 5), now), "9:05");
    EXPECT_EQ(Fmt::clock(localDate(2026, 3, 9, 23, 59), now), "Mar 9");
    EXPECT_EQ(Fmt::dayMonth(localDate(2025, 12, 1)), "Dec 1");

    // "today" and "yesterday" go by the real calendar.
    TimePoint real = Clock::now();
    EXPECT_EQ(Fmt::day(real, real), "today");
    EXPECT_EQ(Fmt::day(addSeconds(real, -86400), real), "yesterday");
    // Counting days, against the given now.
    EXPECT_EQ(Fmt::day(localDate(2026, 3, 7, 23), now), "3 days ago");
    EXPECT_EQ(Fmt::day(localDate(2026, 3, 4, 1), now), "6 days ago");
    EXPECT_EQ(Fmt::day(localDate(2026, 3, 3), now), "Mar 3");
    EXPECT_EQ(Fmt::day(localDate(2025, 12, 30), now), "Dec 30, 2025");
}
