// The built program over a Linux developer's home: code under ~/code and ~/src (one a pnpm
// workspace sharing its files with the store by hard links), Linux installers and a toolchain
// archive in Downloads, and the yarn and pnpm caches.
#include "foundation/Text.h"
#include "support/RunProgram.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int64_t MiB = 1 << 20;

struct DeveloperHome {
    TempTree home;
    DeveloperHome() {
        const std::string store = ".local/share/pnpm/store/v3/files/";
        home.file(store + "aa/lodash.js", 6 * MiB);
        home.file(store + "bb/react.js", 5 * MiB);
        home.text("code/mono/package.json", R"({"name":"mono","private":true})");
        home.text("code/mono/pnpm-workspace.yaml", "packages:\n  - apps/*\n");
        home.text("code/mono/.git/HEAD", "ref: refs/heads/main\n");
        home.text("code/mono/apps/web/package.json", R"({"name":"web"})"); // inside the workspace
        home.file("code/mono/apps/web/src/main.ts", 300 * 1000);
        home.hardLink(store + "aa/lodash.js", "code/mono/node_modules/.pnpm/lodash@4/node_modules/lodash/index.js");
        home.hardLink(store + "bb/react.js", "code/mono/node_modules/.pnpm/react@18/node_modules/react/index.js");
        home.hardLink(store + "bb/react.js", "code/mono/apps/web/node_modules/.pnpm/react@18/index.js");
        home.text("code/api/go.mod", "module example.com/api\n");
        home.file("code/api/main.go", 200 * 1000);
        home.text("src/tool/Cargo.toml", "[package]\nname = \"tool\"\n");
        home.file("src/tool/src/main.rs", 200 * 1000);
        home.text("src/py/pyproject.toml", "[project]\nname = \"py\"\n");
        home.file("src/py/app.py", 200 * 1000);
        home.file("Downloads/chrome_amd64.deb", 110 * MiB);
        home.file("Downloads/Obsidian-1.5.AppImage", 120 * MiB);
        home.file("Downloads/node-v20-linux-x64.tar.xz", 105 * MiB);
        home.file(".cache/yarn/v6/npm-lodash-4.17.21/package.tgz", 12 * MiB);
        home.file(".cache/pnpm/metadata/registry.npmjs.org/react.json", 11 * MiB);
    }
};

int lineWith(const std::vector<std::string>& lines, std::string_view part, int from = 0) {
    for (std::size_t i = static_cast<std::size_t>(std::max(from, 0)); i < lines.size(); ++i)
        if (lines[i].find(part) != std::string::npos) return static_cast<int>(i);
    return -1;
}

// The rows below a category's head line, up to the blank line that ends it.
std::vector<std::string> rowsOf(const std::vector<std::string>& lines, const std::string& title) {
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!lines[i].starts_with(title + " ")) continue;
        for (std::size_t j = i + 1; j < lines.size() && lines[j].starts_with("    "); ++j) rows.push_back(lines[j]);
        break;
    }
    return rows;
}

// "    5 MB      pnpm store  · ~/..." gives 5e6; the figure as printed, rounded for reading.
double rowBytes(const std::string& row) {
    std::string figure = Text::trim(row.substr(0, 14));
    double value = std::strtod(figure.c_str(), nullptr);
    if (figure.ends_with(" GB")) return value * 1e9;
    if (figure.ends_with(" MB")) return value * 1e6;
    if (figure.ends_with(" KB")) return value * 1e3;
    return value;
}

const std::string* rowNamed(const std::vector<std::string>& rows, std::string_view nameAndDetail) {
    for (const auto& r : rows)
        if (r.find(nameAndDetail) != std::string::npos) return &r;
    return nullptr;
}

} // namespace

TEST(DeveloperHomeE2E, StorageShowsCodeFoldersAsProjectsInstallersAndCachesByTheirNames) {
    DeveloperHome h;
    auto run = runProgram(SORRELIN_EXE, {"--storage"}, homeEnvironment(h.home.root()));
    ASSERT_EQ(run.status, 0) << run.err;
    auto lines = Text::split(run.out, '\n', true);

    auto projects = rowsOf(lines, "Code projects");
    ASSERT_EQ(projects.size(), 4u) << run.out;
    for (const char* row : {"mono  · ~/code", "api  · ~/code", "tool  · ~/src", "py  · ~/src"})
        EXPECT_TRUE(rowNamed(projects, row)) << row << "\n" << run.out;
    // The store was met first and owns the 11 MiB it shares with the workspace.
    auto tools = rowsOf(lines, "Developer tools");
    const std::string* store = rowNamed(tools, "pnpm store  · ~/.local/share/pnpm/store");
    ASSERT_TRUE(store) << run.out;
    EXPECT_GE(rowBytes(*store), 11.0 * MiB * 0.99);
    const std::string* mono = rowNamed(projects, "mono  · ~/code");
    ASSERT_TRUE(mono);
    EXPECT_LT(rowBytes(*mono), 1e6);
    // What is left of ~/code and ~/src once their projects are out is their folders' own blocks.
    for (const auto& row : rowsOf(lines, "Other files")) EXPECT_LT(rowBytes(row), 1e5) << row;

    int biggest = lineWith(lines, "== Biggest files ==");
    ASSERT_GE(biggest, 0);
    auto kindOf = [&](std::string_view file) {
        int at = lineWith(lines, file, biggest);
        return at < 0 ? std::string("(missing)") : Text::trim(lines[static_cast<std::size_t>(at)].substr(10, 13));
    };
    EXPECT_EQ(kindOf("~/Downloads/chrome_amd64.deb"), "Installers");
    EXPECT_EQ(kindOf("~/Downloads/Obsidian-1.5.AppImage"), "Installers");
    EXPECT_EQ(kindOf("~/Downloads/node-v20-linux-x64.tar.xz"), "Archives");

    auto appData = rowsOf(lines, "App data");
    EXPECT_TRUE(rowNamed(appData, "Yarn cache  · ~/.cache")) << run.out;
    EXPECT_TRUE(rowNamed(appData, "pnpm metadata cache  · ~/.cache")) << run.out;
}

TEST(DeveloperHomeE2E, ScanCallsTheSameDownloadsInstallersAndTheCachesByTheSameTitles) {
    DeveloperHome h;
    auto run = runProgram(SORRELIN_EXE, {"--scan"}, homeEnvironment(h.home.root()));
    ASSERT_EQ(run.status, 0) << run.err;
    auto lines = Text::split(run.out, '\n', true);
    auto note = [&](std::string_view name) {
        int at = lineWith(lines, name);
        return at < 0 ? std::string("(missing)") : lines[static_cast<std::size_t>(at)];
    };
    EXPECT_TRUE(note("chrome_amd64.deb").ends_with("Installer · added today")) << run.out;
    EXPECT_TRUE(note("Obsidian-1.5.AppImage").ends_with("Installer · added today")) << run.out;
    EXPECT_TRUE(note("node-v20-linux-x64.tar.xz").ends_with("Archive · added today")) << run.out;
    EXPECT_NE(note("Yarn cache").find("~/.cache/yarn"), std::string::npos) << run.out;
    EXPECT_NE(note("pnpm metadata cache").find("~/.cache/pnpm"), std::string::npos) << run.out;
}
