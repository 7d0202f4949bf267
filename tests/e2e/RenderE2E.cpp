// `--render DIR` on a generated home: whatever it draws, it changes nothing of the user's.
#include "foundation/FS.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
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

} // namespace

TEST(RenderE2E, RenderingWritesNoSettingsOrDataFiles) {
    TempTree home;
    TempTree pictures;
    home.text("Downloads/notes.txt", "hello");
    auto env = homeEnvironment(home.root());
    const auto before = filesBelow(home.root());
    auto run = runProgram(SORRELIN_EXE, {"--render", pictures.root()}, env);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_EQ(filesBelow(home.root()), before);
    // Until the screens exist there is nothing to draw, and so nothing is written.
    EXPECT_TRUE(filesBelow(pictures.root()).empty());
}
