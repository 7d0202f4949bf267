// `--render DIR` on a generated home: the pictures of the screens at the window's size, and
// nothing of the user's changed by making them.
#include "foundation/FS.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace {

// Every file below `root`, as paths relative to it.
std::vector<std::string> filesBelow(const std::string& root) {
    std::vector<std::string> out;
    for (const auto& e : std::filesystem::recursive_directory_iterator(root))
        if (!e.is_directory()) out.push_back(std::filesystem::relative(e.path(), root).string());
    std::sort(out.begin(), out.end());
    return out;
}

// Width and height from a PNG's header, or {0, 0} when the file is not a PNG.
std::pair<int, int> pngSize(const std::string& path) {
    unsigned char head[24] = {};
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return {0, 0};
    const size_t got = std::fread(head, 1, sizeof head, f);
    std::fclose(f);
    const unsigned char magic[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    if (got < sizeof head || !std::equal(magic, magic + 8, head)) return {0, 0};
    auto be = [&](int at) { return (head[at] << 24) | (head[at + 1] << 16) | (head[at + 2] << 8) | head[at + 3]; };
    return {be(16), be(20)};
}

} // namespace

TEST(RenderE2E, WritesEveryScreenAtTheWindowSizeAndChangesNothingOfTheUsers) {
    TempTree home;
    TempTree pictures;
    home.text("Downloads/notes.txt", "hello");
    home.file(".cache/oldtool/blob", 3 << 20);
    home.text("code/site/package.json", "{}");
    home.dir("code/site/.git");
    home.file("code/site/node_modules/pkg/index.js", 2 << 20);
    home.file("Videos/trip.mp4", 3 << 20);
    auto env = homeEnvironment(home.root());
    // The log lies outside the home, which must come out of the run unchanged.
    env["FENNELBOX_LOG"] = pictures.path("render.log");
    const auto before = filesBelow(home.root());
    auto run = runProgram(SORRELIN_EXE, {"--render", pictures.root(), "--no-growth"}, env);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_EQ(filesBelow(home.root()), before) << "rendering wrote into the home folder";
    // No storage walk was stored, so the Storage picture's map is measured for it, and the
    // walk it made is not kept.
    const std::string log = FS::readText(pictures.path("render.log"), 1 << 20).value_or("");
    EXPECT_NE(log.find("storage measured in"), std::string::npos) << log;

    const auto written = filesBelow(pictures.root());
    for (const char* name : {"Home.png", "Storage.png", "Clean.png", "Projects.png", "Speed.png", "Week.png", "confirm.png",
                             "restart.png"}) {
        EXPECT_TRUE(std::find(written.begin(), written.end(), name) != written.end()) << name << " missing\n" << run.err;
        // 1060 by 760 points at a pixel ratio of 2.
        EXPECT_EQ(pngSize(pictures.path(name)), std::make_pair(2120, 1520)) << name;
    }
    // The tray panel, 340 points wide and as tall as its sections, before and after the scan.
    for (const char* name : {"menu.png", "menu-first.png"}) {
        EXPECT_TRUE(std::find(written.begin(), written.end(), name) != written.end()) << name << " missing\n" << run.err;
        EXPECT_EQ(pngSize(pictures.path(name)).first, 680) << name;
    }
}
