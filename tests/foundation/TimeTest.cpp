#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "foundation/Time.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cmath>
#include <limits>

namespace {

constexpr int64_t june2400 = 13'583'635'200; // once read back as "Jun 13, 1815"
constexpr int64_t may2446 = 15'032'304'000;  // the last date ext4 can hold
constexpr int64_t year3000 = 32'503'680'000;

const TimePoint now = fromSeconds(1'750'000'000.25);

} // namespace

TEST(FileDate, AheadOfNowCountsAsNowAndNothingWraps) {
    EXPECT_EQ(fileDate(june2400, 0, now), now);
    EXPECT_EQ(fileDate(may2446, 999'999'999, now), now);
    EXPECT_EQ(fileDate(std::numeric_limits<int64_t>::max(), 0, now), now);
    // A second ahead is ahead too, whatever its fraction.
    EXPECT_EQ(fileDate(1'750'000'001, 0, now), now);
    EXPECT_EQ(fileDate(1'750'000'000, 500'000'000, now), now);
    // The past stands as it is, to the microsecond.
    EXPECT_EQ(fileDate(1'600'000'000, 123'456'789, now), fromSeconds(1'600'000'000.123456));
    // Before 1970 is the start of 1970: old, never a date in the future.
    EXPECT_EQ(fileDate(-1, 0, now), TimePoint{});
    EXPECT_EQ(fileDate(std::numeric_limits<int64_t>::min(), 0, now), TimePoint{});
}

TEST(FileDate, AFileOfTheYear2400ReadsAsNowThroughEveryReader) {
    TempTree tree;
    std::string file = tree.file("archive/unpacked.txt", 10);
    timespec times[2] = {{june2400, 0}, {june2400, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    struct stat st {};
    ASSERT_EQ(lstat(file.c_str(), &st), 0);
    if (st.st_mtim.tv_sec != june2400) GTEST_SKIP() << "this file system cannot hold a date in 2400";
    EXPECT_EQ(FS::mtime(file, now), now);
    // Printed, it is today's date and not one of 1815.
    EXPECT_EQ(Fmt::dayMonth(*FS::mtime(file, now)), Fmt::dayMonth(now));
}

TEST(StoredDate, OnlyTheYears1970To9999AreKept) {
    EXPECT_FALSE(storedDate(1e308));
    EXPECT_FALSE(storedDate(-1e308));
    EXPECT_FALSE(storedDate(-0.5));
    EXPECT_FALSE(storedDate(std::nan("")));
    EXPECT_FALSE(storedDate(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(storedDate(static_cast<double>(lastStoredSecond) + 1));
    EXPECT_FALSE(storedDate(static_cast<std::time_t>(-1)));
    EXPECT_FALSE(storedDate(static_cast<std::time_t>(lastStoredSecond + 1)));
    EXPECT_EQ(storedDate(0.0), TimePoint{});
    EXPECT_EQ(storedDate(static_cast<std::time_t>(lastStoredSecond)), Clock::from_time_t(lastStoredSecond));
}

TEST(StoredDate, FarDatesWithinTheRangeComeBackAsTheyWent) {
    // Past 2262 a count of nanoseconds wraps; these must come back unchanged.
    for (double s : {1'750'000'000.5, static_cast<double>(year3000), 95'617'584'000.0, static_cast<double>(lastStoredSecond)}) {
        auto date = storedDate(s);
        ASSERT_TRUE(date) << s;
        EXPECT_GT(*date, now) << s;
        EXPECT_NEAR(secondsSince1970(*date), s, 1e-3) << s;
    }
    EXPECT_LT(*storedDate(static_cast<double>(year3000)), *storedDate(static_cast<double>(lastStoredSecond)));
}
