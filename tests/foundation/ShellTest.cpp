#include "foundation/DryRun.h"
#include "foundation/Shell.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <chrono>

TEST(Shell, OneStreamForOutputAndErrorsInOrder) {
    auto out = Shell::run("/bin/sh", {"-c", "echo one; echo two >&2; echo three; exit 3"});
    EXPECT_EQ(out.status, 3);
    EXPECT_EQ(out.text, "one\ntwo\nthree\n");
}

TEST(Shell, AMegabyteOfOutputCompletes) {
    auto out = Shell::run("/bin/sh", {"-c", "head -c 3000000 /dev/zero | tr '\\0' 'a'"}, 60);
    EXPECT_EQ(out.status, 0);
    EXPECT_EQ(out.text.size(), 3'000'000u);
}

TEST(Shell, TimeoutTerminatesAndKeepsWhatWasPrinted) {
    auto start = std::chrono::steady_clock::now();
    auto out = Shell::run("/bin/sh", {"-c", "echo early; sleep 30; echo late"}, 1);
    double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(took, 20); // far below the 30 s the program wanted
    EXPECT_EQ(out.text, "early\n");
    EXPECT_NE(out.status, 0);
}

TEST(Shell, ProgramsThatIgnoreTheSignalAndChildrenHoldingThePipeStillEnd) {
    auto start = std::chrono::steady_clock::now();
    auto out = Shell::run("/bin/sh", {"-c", "trap '' TERM; echo x; (sleep 40 &) ; sleep 40"}, 1);
    double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(took, 20);
    EXPECT_EQ(out.text, "x\n");
}

TEST(Shell, NotExecutableGivesMinusOneAndADescription) {
    TempTree t;
    std::string plain = t.text("not-a-program", "hello");
    auto out = Shell::run(plain, {});
    EXPECT_EQ(out.status, -1);
    EXPECT_FALSE(out.text.empty());
    auto missing = Shell::run("/no/such/program", {});
    EXPECT_EQ(missing.status, -1);
    EXPECT_NE(missing.text.find("/no/such/program"), std::string::npos);
}

TEST(Shell, InvalidBytesAreRepairedAndPathHasPackageManagersFirst) {
    auto out = Shell::run("/usr/bin/printf", {"a\\377b"});
    EXPECT_EQ(out.text, "a\xEF\xBF\xBD" "b");
    EXPECT_TRUE(Shell::childPath("/x").ends_with(":/x"));
    EXPECT_EQ(Shell::childPath(nullptr).find(':' + std::string("/x")), std::string::npos);
    auto env = Shell::run("/bin/sh", {"-c", "echo $HOMEBREW_NO_AUTO_UPDATE"});
    EXPECT_EQ(env.text, "1\n");
}

TEST(DryRun, ModeByValue) {
    EXPECT_FALSE(DryRun::modeFor(nullptr).on);
    EXPECT_TRUE(DryRun::modeFor("").on); // set but empty still counts
    EXPECT_FALSE(DryRun::modeFor("").fails);
    EXPECT_TRUE(DryRun::modeFor("fail").fails);
    EXPECT_FALSE(DryRun::modeFor("FAIL").fails);
    EXPECT_FALSE(DryRun::modeFor("1").fails);
}
