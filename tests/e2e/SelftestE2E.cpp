// The built program's self-check, in a scratch folder and in one it cannot make.
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

TEST(SelftestE2E, EveryCheckPassesAndTheScratchTreeIsGone) {
    TempTree home;
    TempTree scratch;
    // A dry run in the environment does not turn the self-check's removals into pretence.
    auto env = homeEnvironment(home.root());
    env["SORRELIN_DRYRUN"] = "fail";
    auto run = runProgram(SORRELIN_EXE, {"--selftest", scratch.path("deeper/folder")}, env);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    auto lines = Text::split(run.out, '\n');
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "ALL PASSED");
    int pass = 0;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        EXPECT_TRUE(lines[i].starts_with("PASS ") || lines[i].starts_with("SKIP ")) << lines[i];
        pass += lines[i].starts_with("PASS ");
    }
    EXPECT_GE(pass, 18);
    EXPECT_NE(run.out.find("PASS a hard link held elsewhere is not counted ("), std::string::npos);
    EXPECT_NE(run.out.find(" / shared 1 MB)\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("PASS deletions go first, then the Trash, then commands\n"), std::string::npos);
    // The scratch tree is removed; the folder it was made in stays.
    EXPECT_TRUE(FS::isDir(scratch.path("deeper/folder")));
    EXPECT_TRUE(FS::children(scratch.path("deeper/folder")).empty());
}

TEST(SelftestE2E, AFolderThatCannotBeMadeFailsWithALine) {
    TempTree home;
    TempTree scratch;
    scratch.text("a-file", "x");
    auto run = runProgram(SORRELIN_EXE, {"--selftest", scratch.path("a-file/below")}, homeEnvironment(home.root()));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "FAIL made a scratch tree in " + scratch.path("a-file/below") + " (Not a directory)\nSOME FAILED\n");
}
