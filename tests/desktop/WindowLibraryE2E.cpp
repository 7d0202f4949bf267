// The one program and its window's library: the reports never load the window, the installed
// program finds the installed library, and a library that is missing or broken is one clear
// line and status 127, never a crash.
#include "foundation/FS.h"
#include "launch/AppLibrary.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include <dlfcn.h>

namespace {

namespace fs = std::filesystem;

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// The library under an installed prefix, wherever LIBDIR put it; empty when there is none.
std::string installedLibrary(const std::string& prefix) {
    for (const auto& entry : fs::recursive_directory_iterator(prefix))
        if (entry.path().filename() == AppLibrary::fileName) return entry.path().string();
    return {};
}

// A program on its own in `tree`/bin, with `beside` (if any) copied next to it as its library.
std::string loneProgram(const TempTree& tree, const std::string& beside = {}) {
    const std::string exe = tree.dir("bin") + "/sorrelin";
    fs::copy_file(SORRELIN_EXE, exe);
    if (!beside.empty()) fs::copy_file(beside, tree.path(std::string("bin/") + AppLibrary::fileName));
    return exe;
}

// What a start that cannot load the library must give: status 127, one line naming the file,
// and nothing on standard output.
void expectOneLineRefusal(const ProgramRun& run, const std::string& naming) {
    EXPECT_EQ(run.status, AppLibrary::notLoaded) << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    EXPECT_TRUE(contains(run.err, "the window cannot start")) << run.err;
    EXPECT_TRUE(contains(run.err, naming)) << run.err;
    EXPECT_EQ(run.out, "");
}

std::map<std::string, std::string> offscreen(std::map<std::string, std::string> env) {
    env["QT_QPA_PLATFORM"] = "offscreen";
    return env;
}

} // namespace

TEST(WindowLibraryE2E, TheReportsLoadNeitherQtNorTheWindow) {
    TempTree home;
    auto env = homeEnvironment(home.root());
    env["LD_DEBUG"] = "files";
    for (const char* report : {"--scan", "--growth", "--storage"}) {
        const ProgramRun run = runProgram(SORRELIN_EXE, {report}, env);
        ASSERT_EQ(run.status, 0) << report << "\n" << run.err;
        EXPECT_FALSE(contains(run.err, "libQt6")) << report;
        EXPECT_FALSE(contains(run.err, AppLibrary::fileName)) << report;
    }
    // The same trace of a picture job names both, so the absence above is not the trace's.
    const ProgramRun icon = runProgram(SORRELIN_EXE, {"--make-icon", home.path("icons")}, offscreen(env));
    ASSERT_EQ(icon.status, 0);
    EXPECT_TRUE(contains(icon.err, "libQt6Gui"));
    EXPECT_TRUE(contains(icon.err, AppLibrary::fileName));
}

TEST(WindowLibraryE2E, TheInstalledProgramStartsTheInstalledLibraryAndReportsWithoutIt) {
    TempTree tree;
    const std::string prefix = tree.dir("prefix");
    ASSERT_EQ(runProgram(SORRELIN_CMAKE, {"--install", SORRELIN_BUILD, "--prefix", prefix}, {}, 300).status, 0);
    const std::string exe = prefix + "/bin/sorrelin";
    const std::string library = installedLibrary(prefix);
    ASSERT_FALSE(library.empty()) << "no " << AppLibrary::fileName << " under " << prefix;
    EXPECT_EQ(fs::path(library).parent_path().filename(), "sorrelin");
    const auto env = offscreen(homeEnvironment(tree.dir("home")));

    // The window's code draws the icon: the installed program reached its library.
    const ProgramRun drawn = runProgram(exe, {"--make-icon", tree.path("icons")}, env);
    ASSERT_EQ(drawn.status, 0) << drawn.err;
    EXPECT_TRUE(fs::is_regular_file(tree.path("icons/hicolor/scalable/apps/app.sorrelin.Sorrelin.svg")));

    // Without it (a package split in two, half removed), the window refuses plainly and the
    // reports run as before: nothing reached back into the build folder.
    fs::remove(library);
    const ProgramRun refused = runProgram(exe, {"--make-icon", tree.path("again")}, env);
    expectOneLineRefusal(refused, AppLibrary::fileName);
    EXPECT_FALSE(fs::exists(tree.path("again")));
    const ProgramRun scan = runProgram(exe, {"--scan"}, env);
    EXPECT_EQ(scan.status, 0) << scan.err;
    EXPECT_TRUE(contains(scan.out, "== Safe to clear")) << scan.out;
}

TEST(WindowLibraryE2E, ALibraryMissingBrokenOrForeignIsOneLineAndStatus127) {
    {
        TempTree tree;
        const std::string exe = loneProgram(tree);
        // A start with no job, as from the desktop entry: the library is looked for before anything
        // else, display or not.
        expectOneLineRefusal(runProgram(exe, {}, offscreen(homeEnvironment(tree.dir("home"))), 60),
                             std::string(AppLibrary::fileName) + " is neither in " + tree.path("bin"));
        expectOneLineRefusal(runProgram(exe, {"--background"}, {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}}, 60),
                             AppLibrary::fileName);
        const ProgramRun growth = runProgram(exe, {"--growth"}, homeEnvironment(tree.dir("home")));
        EXPECT_EQ(growth.status, 0) << growth.err;
    }
    {
        // Cut short, as by a full disk during an update.
        TempTree tree;
        const std::string broken = tree.text("broken.so", "\x7f" "ELF");
        const std::string exe = loneProgram(tree, broken);
        expectOneLineRefusal(runProgram(exe, {"--render", tree.path("pictures")}, offscreen(homeEnvironment(tree.dir("home"))), 60),
                             tree.path(std::string("bin/") + AppLibrary::fileName));
    }
    {
        // A real shared object that is not this build's window: the C library's math.
        Dl_info math{};
        ASSERT_NE(dladdr(reinterpret_cast<void*>(static_cast<double (*)(double)>(&::cos)), &math), 0);
        const std::string foreign = math.dli_fname;
        TempTree tree;
        const std::string exe = loneProgram(tree, foreign);
        expectOneLineRefusal(runProgram(exe, {"--make-icon", tree.path("icons")}, offscreen(homeEnvironment(tree.dir("home"))), 60),
                             std::string("no ") + AppLibrary::entryName);
    }
}
