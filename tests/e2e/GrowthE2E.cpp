// The built program's growth report over a generated home folder.
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "foundation/Text.h"
#include "history/Calendar.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <map>

namespace {

// The day the file system says a file came into being: its birth time where it keeps one,
// else its modification time. Birth times cannot be set, so a file made by this test is born
// today wherever they exist, whatever modification time it is given.
TimePoint bornOn(const std::string& path) {
    struct statx sx {};
    statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BTIME | STATX_MTIME, &sx);
    const statx_timestamp& t = (sx.stx_mask & STATX_BTIME) ? sx.stx_btime : sx.stx_mtime;
    return *Calendar::startOfDay(Clock::from_time_t(t.tv_sec));
}

int lineOf(const std::vector<std::string>& lines, std::string_view part, int from = 0) {
    for (std::size_t i = static_cast<std::size_t>(from); i < lines.size(); ++i)
        if (lines[i].find(part) != std::string::npos) return static_cast<int>(i);
    return -1;
}

} // namespace

TEST(GrowthE2E, BooksEachNewFileOnItsDayAndPlace) {
    TempTree home;
    struct Made {
        std::string relative;
        int64_t size;
        double daysAgo;
        std::string place;
    };
    const std::vector<Made> made{
        {"Downloads/a.bin", 3'000'000, 0, "Downloads  · ~/Downloads"},
        {"Documents/app/package.json", 2'000'000, 2, "app project files  · ~/Documents/app"},
        {".npm/_cacache/index", 1'000'000, 5, "npm cache  · ~/.npm"},
        {"Music/old.flac", 500'000, 40, "Music  · ~/Music"},
    };
    std::map<TimePoint, int64_t> perDay;
    for (const auto& m : made) {
        std::string p = home.file(m.relative, m.size);
        home.age(m.relative, m.daysAgo * 86'400 + 60);
        TimePoint day = bornOn(p);
        if (day >= *Calendar::dayStart(Clock::now(), -13)) perDay[day] += allocatedSize(p);
    }

    auto run = runProgram(SORRELIN_EXE, {"--growth"}, homeEnvironment(home.root()));
    ASSERT_EQ(run.status, 0) << run.err;
    auto lines = Text::split(run.out, '\n', true);
    int biggest = lineOf(lines, "Biggest in 14 days (");
    ASSERT_GT(biggest, 0) << run.out;
    int dayLines = 0;
    for (int i = 0; i < biggest; ++i) dayLines += !lines[i].empty() && !lines[i].starts_with(" ") ? 1 : 0;
    EXPECT_EQ(dayLines, 14) << run.out;

    int64_t total = 0;
    for (const auto& [day, bytes] : perDay) {
        int at = -1;
        for (int i = 0; i < biggest; ++i)
            if (!lines[i].starts_with(" ") && lines[i].starts_with(Fmt::dayMonth(day) + " ")) at = i;
        ASSERT_GE(at, 0) << Fmt::dayMonth(day) << "\n" << run.out;
        EXPECT_NE(lines[at].find(Fmt::bytes(bytes)), std::string::npos) << lines[at];
        total += bytes;
    }
    const TimePoint periodStart = *Calendar::dayStart(Clock::now(), -13);
    std::map<TimePoint, int> shownThatDay; // a day line lists its three biggest places
    for (const auto& m : made) { // in falling size
        TimePoint day = bornOn(home.path(m.relative));
        if (day < periodStart) {
            EXPECT_EQ(lineOf(lines, m.place), -1) << m.place; // older than the period
            continue;
        }
        EXPECT_GT(lineOf(lines, m.place, biggest), biggest) << m.place;
        if (++shownThatDay[day] > 3) continue;
        int at = lineOf(lines, m.place);
        ASSERT_GE(at, 0) << m.place << "\n" << run.out;
        ASSERT_LT(at, biggest) << m.place << "\n" << run.out;
        // The place stands under the line of the day its file was born.
        int dayLine = at;
        while (dayLine > 0 && lines[dayLine].starts_with(" ")) --dayLine;
        EXPECT_TRUE(lines[dayLine].starts_with(Fmt::dayMonth(day) + " ")) << lines[dayLine];
    }
    EXPECT_NE(lines[biggest].find("(" + Fmt::bytes(total) + " in all)"), std::string::npos) << lines[biggest];
    EXPECT_TRUE(lines[lines.size() - 2].starts_with("took ")) << run.out;
    // The report is kept in the history file.
    auto history = FS::readText(home.path(".sorrelin-support/history.json"));
    ASSERT_TRUE(history);
    EXPECT_NE(history->find("\"growth\""), std::string::npos);
}
