// The built program's storage report over a generated home folder.
#include "foundation/Fmt.h"
#include "foundation/Text.h"
#include "support/LoopMount.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <regex>

namespace {

constexpr int64_t MiB = 1 << 20;

// "188 GB", "14.3 GB", "6 MB", "0 bytes" back to a number of bytes (as rounded for reading).
double parseBytes(const std::string& text) {
    double value = std::strtod(text.c_str(), nullptr);
    if (text.ends_with(" TB")) return value * 1e12;
    if (text.ends_with(" GB")) return value * 1e9;
    if (text.ends_with(" MB")) return value * 1e6;
    if (text.ends_with(" KB")) return value * 1e3;
    return value;
}

int lineOf(const std::vector<std::string>& lines, std::string_view part, int from = 0) {
    for (std::size_t i = static_cast<std::size_t>(from); i < lines.size(); ++i)
        if (lines[i].find(part) != std::string::npos) return static_cast<int>(i);
    return -1;
}

} // namespace

TEST(StorageE2E, PrintsTheDiskTheCategoriesTheRemainderTheBiggestFilesAndTheApps) {
    TempTree home;
    home.file("Documents/report.pdf", 200 * 1000);
    home.text("Documents/app/package.json", "{}");
    home.file("Documents/app/src/main.js", 120 * 1000);
    home.file("Downloads/movie.mp4", 101 * MiB);
    home.file("Videos/clip.mkv", 300 * 1000);
    home.file(".config/google-chrome/Default/History", MiB);
    home.file(".local/share/Trash/files/old.zip", 300 * 1000);
    home.file(".cargo/registry/cache/crate.crate", 400 * 1000);

    auto run = runProgram(SORRELIN_EXE, {"--storage"}, homeEnvironment(home.root()));
    ASSERT_EQ(run.status, 0) << run.err;
    auto lines = Text::split(run.out, '\n', true);
    ASSERT_GE(lines.size(), 10u) << run.out;

    std::smatch head;
    std::regex headLine(R"((.+) used of (.+), (.+) measured in (\d+) files, swap (.+))");
    ASSERT_TRUE(std::regex_match(lines[0], head, headLine)) << lines[0];
    ASSERT_TRUE(lines[1].starts_with("The system and the rest: ")) << lines[1];
    EXPECT_GE(std::stoll(head[4].str()), 8);
    // The categories, the swap and the remainder account for the used bytes, up to the rounding
    // of the printed figures.
    double used = parseBytes(head[1].str());
    double measured = parseBytes(head[3].str());
    double swap = parseBytes(head[5].str());
    double rest = parseBytes(lines[1].substr(std::string("The system and the rest: ").size()));
    if (swap == 0) {
        EXPECT_NEAR(measured + rest, used, 0.01 * used + 1e9) << run.out;
    }

    auto category = [&](const std::string& title) {
        for (std::size_t i = 0; i < lines.size(); ++i)
            if (lines[i].starts_with(title + " ")) return static_cast<int>(i);
        return -1;
    };
    int documents = category("Documents");
    ASSERT_GE(documents, 0) << run.out;
    EXPECT_GE(lineOf(lines, "report.pdf  · ~/Documents/report.pdf", documents), documents + 1);
    int projects = category("Code projects");
    ASSERT_GE(projects, 0) << run.out;
    EXPECT_EQ(lineOf(lines, "app  · ~/Documents", projects), projects + 1);
    int appData = category("App data");
    ASSERT_GE(appData, 0) << run.out;
    EXPECT_EQ(lineOf(lines, "Chrome  · ~/.config", appData), appData + 1);
    EXPECT_GE(category("Trash"), 0);
    EXPECT_GE(category("Videos"), 0);
    EXPECT_GE(category("Downloads"), 0);
    int developer = category("Developer tools");
    ASSERT_GE(developer, 0);
    EXPECT_EQ(lineOf(lines, "Rust packages  · ~/.cargo", developer), developer + 1);

    int biggest = lineOf(lines, "== Biggest files ==");
    ASSERT_GT(biggest, 0);
    int movie = lineOf(lines, "~/Downloads/movie.mp4", biggest);
    ASSERT_GT(movie, biggest);
    EXPECT_TRUE(lines[movie].starts_with(Fmt::bytes(101 * MiB + 0)) || lines[movie].starts_with("106 MB")) << lines[movie];
    EXPECT_NE(lines[movie].find("Videos"), std::string::npos);
    int apps = lineOf(lines, "== Apps ", biggest);
    EXPECT_GT(apps, movie);
    EXPECT_TRUE(lines[lines.size() - 2].starts_with("took ")) << run.out;
}

TEST(StorageE2E, AHomeOnAVolumeWithBlocksKeptBackShowsThemApartFromUsedAndFree) {
    LoopMount volume(64 << 20, 10);
    if (!volume.ready()) GTEST_SKIP() << volume.why();
    TempTree scratch; // the support folder stays off the volume, so nothing is written to it
    const std::string home = volume.point() + "/home";
    ASSERT_EQ(mkdir(home.c_str(), 0755), 0);
    auto env = homeEnvironment(home);
    env["SORRELIN_SUPPORT"] = scratch.path("support");
    auto df = dfOf(volume.point());
    ASSERT_TRUE(df);

    auto run = runProgram(SORRELIN_EXE, {"--storage"}, env);
    ASSERT_EQ(run.status, 0) << run.err;
    auto lines = Text::split(run.out, '\n', true);
    ASSERT_GE(lines.size(), 3u) << run.out;
    EXPECT_TRUE(lines[0].starts_with(Fmt::bytes(df->used) + " used of " + Fmt::bytes(df->size) + ", ")) << lines[0];
    EXPECT_EQ(lines[2], "Kept back for the system: " + Fmt::bytes(df->size - df->used - df->available)) << run.out;
    // The reserve is no part of what the system and the rest hold: on an empty volume that is
    // the file system's own bookkeeping, far less than the tenth kept back.
    double rest = parseBytes(lines[1].substr(std::string("The system and the rest: ").size()));
    EXPECT_LT(rest, 0.05 * static_cast<double>(df->size)) << run.out;
}
