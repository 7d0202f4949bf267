// Names that would drive the terminal (escape sequences, line feeds, carriage returns) or are
// not UTF-8 at all, in files, project folders and a running process: every report shows them
// as visible escapes, keeps one line per row and keeps its columns.
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "support/ChildProcess.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

constexpr int64_t MiB = 1 << 20;

const std::string titleName = "title\x1b]0;owned\x07.iso";
const std::string titleShown = "title\\e]0;owned\\x07.iso";
const std::string feedName = "two\nlines.iso";
const std::string feedShown = "two\\nlines.iso";
const std::string returnName = "over\rwrite.iso";
const std::string returnShown = "over\\rwrite.iso";
const std::string brokenName = "bad\xff\xfe.iso";
const std::string brokenShown = "bad\xEF\xBF\xBD\xEF\xBF\xBD.iso";
const std::string projectName = "proj\x1b[1mX\nY\xC2\x9B";
const std::string projectShown = "proj\\e[1mX\\nY\\u009b";

// Big downloads under the odd names, and a code project under one.
void oddHome(const TempTree& home) {
    for (const auto& name : {titleName, feedName, returnName, brokenName}) home.reserved("Downloads/" + name, 101 * MiB);
    home.dir("code/" + projectName + "/.git");
    home.text("code/" + projectName + "/package.json", "{}");
    home.reserved("code/" + projectName + "/node_modules/left-pad/blob", 30 * MiB);
}

// Nothing in the output moves the cursor, changes colours or turns text around: line feeds end
// lines, and every other character is one that shows.
::testing::AssertionResult inert(const std::string& out) {
    if (!Text::isValidUtf8(out)) return ::testing::AssertionFailure() << "invalid UTF-8 in the output";
    for (std::size_t i = 0; i < out.size();) {
        auto b = [&](std::size_t k) { return static_cast<char32_t>(static_cast<unsigned char>(out[i + k])); };
        std::size_t n = b(0) < 0x80 ? 1 : b(0) < 0xE0 ? 2 : b(0) < 0xF0 ? 3 : 4;
        char32_t c = n == 1 ? b(0)
                     : n == 2 ? ((b(0) & 0x1F) << 6) | (b(1) & 0x3F)
                     : n == 3 ? ((b(0) & 0x0F) << 12) | ((b(1) & 0x3F) << 6) | (b(2) & 0x3F)
                              : ((b(0) & 0x07) << 18) | ((b(1) & 0x3F) << 12) | ((b(2) & 0x3F) << 6) | (b(3) & 0x3F);
        bool control = (c < 0x20 && c != '\n') || c == 0x7F || (c >= 0x80 && c <= 0x9F) ||
                       (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
        if (control)
            return ::testing::AssertionFailure() << "U+" << std::hex << static_cast<unsigned>(c) << " at byte " << std::dec
                                                 << i << ": " << Text::visible(out.substr(i > 40 ? i - 40 : 0, 80));
        i += n;
    }
    return ::testing::AssertionSuccess();
}

std::vector<std::string> linesWith(const std::string& out, const std::string& part) {
    std::vector<std::string> found;
    for (auto& line : Text::split(out, '\n', true))
        if (line.find(part) != std::string::npos) found.push_back(line);
    return found;
}

} // namespace

TEST(OddNamesE2E, ScanShowsEscapesInFixedColumns) {
    TempTree home;
    oddHome(home);
    auto run = runProgram(SORRELIN_EXE, {"--scan"}, homeEnvironment(home.root()));
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(inert(run.out));
    for (const auto& shown : {titleShown, feedShown, returnShown, brokenShown}) {
        auto lines = linesWith(run.out, shown);
        ASSERT_EQ(lines.size(), 1u) << shown << "\n" << Text::visible(run.out);
        const std::string& line = lines[0];
        // Size, state, then the name in 32 columns: the location starts at the same place on
        // every line, whatever the name holds.
        EXPECT_EQ(Text::graphemeCount(line.substr(0, line.find("~/Downloads"))), 8u + 1 + 4 + 1 + 32 + 1) << line;
        EXPECT_TRUE(line.substr(14, 32).starts_with(shown)) << line;
    }
}

TEST(OddNamesE2E, StorageShowsEscapesInRowsAndBiggestFiles) {
    TempTree home;
    oddHome(home);
    auto run = runProgram(SORRELIN_EXE, {"--storage"}, homeEnvironment(home.root()));
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(inert(run.out));
    for (const auto& shown : {titleShown, feedShown, returnShown, brokenShown}) {
        // Once as a row of Downloads, once among the biggest files.
        EXPECT_EQ(linesWith(run.out, "~/Downloads/" + shown).size(), 2u) << shown << "\n" << Text::visible(run.out);
    }
}

TEST(OddNamesE2E, ProjectsAndGrowthShowTheProjectNameEscaped) {
    TempTree home;
    oddHome(home);
    auto projects = runProgram(SORRELIN_EXE, {"--projects"}, homeEnvironment(home.root()));
    ASSERT_EQ(projects.status, 0) << projects.err;
    EXPECT_TRUE(inert(projects.out));
    auto cards = linesWith(projects.out, projectShown);
    ASSERT_EQ(cards.size(), 1u) << Text::visible(projects.out);
    EXPECT_TRUE(cards[0].starts_with(projectShown)) << cards[0];
    // The name column is 30 characters wide, escapes and all, then " running" or " idle   ".
    EXPECT_EQ(Text::graphemeCount(cards[0].substr(0, cards[0].find(" mem "))), 30u + 8) << cards[0];

    auto growth = runProgram(SORRELIN_EXE, {"--growth"}, homeEnvironment(home.root()));
    ASSERT_EQ(growth.status, 0) << growth.err;
    EXPECT_TRUE(inert(growth.out));
    EXPECT_FALSE(linesWith(growth.out, projectShown).empty()) << Text::visible(growth.out);
}

TEST(OddNamesE2E, SpeedShowsAProcessNameEscaped) {
    TempTree home;
    // The kernel names a process after its program's file: a copy of sleep under an odd name.
    const std::string name = "z\x1b[2J\n\r\xff";
    const std::string program = home.path("bin/" + name);
    std::filesystem::create_directories(home.path("bin"));
    std::filesystem::copy_file("/bin/sleep", program);
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    ChildProcess sleeper(program, {name, "600"}, home.root());
    ASSERT_GT(sleeper.pid, 0);
    auto comm = FS::readText("/proc/" + std::to_string(sleeper.pid) + "/comm");
    ASSERT_EQ(comm, name + "\n");

    auto run = runProgram(SORRELIN_EXE, {"--speed"}, homeEnvironment(home.root()), 60);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(inert(run.out));
    const std::string shown = "z\\e[2J\\n\\r\xEF\xBF\xBD";
    auto rows = linesWith(run.out, shown);
    ASSERT_FALSE(rows.empty()) << Text::visible(run.out);
    const std::string column = shown + std::string(30 - Text::graphemeCount(shown), ' ');
    for (const auto& row : rows) EXPECT_TRUE(row.starts_with(column)) << row;
}
