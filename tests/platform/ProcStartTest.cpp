#include "platform/linux/ProcStart.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

namespace {

const std::string statLine = "123 (a) b) S 1 123 123 0 -1 4194304 100 0 0 0 5 3 0 0 20 0 1 0 4567 100000 200\n";

void process(const TempTree& proc, const std::string& pid, const std::string& stat, uint32_t uid) {
    proc.text(pid + "/stat", stat);
    proc.text(pid + "/status", "Name:\ta) b\nState:\tS (sleeping)\nUid:\t" + std::to_string(uid + 7) + "\t" +
                                   std::to_string(uid) + "\t" + std::to_string(uid) + "\t" + std::to_string(uid) + "\n");
}

} // namespace

TEST(ProcStart, TheStartOfAProcessOfTheUsersOwn) {
    TempTree proc;
    process(proc, "123", statLine, 1000);
    auto start = ProcStart::read(proc.root(), 123, 1000, 1'700'000'000, 100);
    ASSERT_TRUE(start);
    EXPECT_EQ(*start, addSeconds(Clock::from_time_t(1'700'000'000), 45.67));
    // The effective user decides, as it does for a snapshot.
    EXPECT_FALSE(ProcStart::read(proc.root(), 123, 1007, 1'700'000'000, 100));
    EXPECT_FALSE(ProcStart::read(proc.root(), 124, 1000, 1'700'000'000, 100));
    EXPECT_FALSE(ProcStart::read(proc.root(), 0, 1000, 1'700'000'000, 100));
}

TEST(ProcStart, AnEndedOrUnreadableProcessHasNoStart) {
    TempTree proc;
    std::string zombie = statLine;
    zombie.replace(zombie.find(" S "), 3, " Z ");
    process(proc, "200", zombie, 0);
    EXPECT_FALSE(ProcStart::read(proc.root(), 200, 0, 1'700'000'000, 100));
    process(proc, "201", "201 (cut", 0);
    EXPECT_FALSE(ProcStart::read(proc.root(), 201, 0, 1'700'000'000, 100));
    proc.text("202/stat", statLine);
    EXPECT_FALSE(ProcStart::read(proc.root(), 202, 0, 1'700'000'000, 100)); // no status: no owner known
}
