// The built program's cleaning report over a generated home folder.
#include "foundation/Text.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

namespace {
constexpr int64_t MiB = 1 << 20;
}

TEST(ScanE2E, ReportsDownloadsInTheirTierWithExactColumns) {
    TempTree home;
    home.file("Downloads/ubuntu-24.04-desktop-amd64.iso", 120 * MiB);
    home.file("Downloads/holiday.mp4", 101 * MiB);
    home.file("Downloads/notes.txt", 1000);
    home.file("Downloads/installer.deb", 130 * MiB);
    home.hardLink("Downloads/installer.deb", "Documents/installer-copy.deb");

    auto run = runProgram(SORRELIN_EXE, {"--scan"}, homeEnvironment(home.root()));
    ASSERT_EQ(run.status, 0) << run.err;
    auto lines = Text::split(run.out, '\n', true);
    auto find = [&](std::string_view part) {
        for (std::size_t i = 0; i < lines.size(); ++i)
            if (lines[i].find(part) != std::string::npos) return static_cast<int>(i);
        return -1;
    };
    EXPECT_GE(find("== Safe to clear · 0 bytes · 0 items =="), 0);
    EXPECT_GE(find("== Rebuildable · 0 bytes · 0 items =="), 0);
    int yours = find("== Your call · ");
    ASSERT_GE(yours, 0);
    EXPECT_NE(lines[yours].find(" · 2 items =="), std::string::npos) << run.out;
    // Largest first: the image, then the video; the hard-linked installer frees nothing.
    const std::string& first = lines[yours + 1];
    EXPECT_EQ(first.substr(0, 8), "126 MB  ");
    EXPECT_EQ(first.substr(8, 6), "  off ");
    EXPECT_EQ(Text::graphemeCount(first.substr(0, first.find("~/Downloads"))), 8u + 1 + 4 + 1 + 32 + 1);
    EXPECT_NE(first.find("ubuntu-24.04-desktop-amd64.iso"), std::string::npos);
    EXPECT_TRUE(first.ends_with("Installer · added today"));
    EXPECT_NE(lines[yours + 2].find("Video · added today"), std::string::npos);
    EXPECT_EQ(find("installer.deb"), -1);
    EXPECT_NE(run.out.find(" free of "), std::string::npos);
    EXPECT_NE(lines[lines.size() - 2].find(" · scan took "), std::string::npos);
}
