// The built program's cleaning report over a generated developer's home: app caches in
// ~/.cache, ~/.config and Flatpak folders, tool caches, node versions, projects, big items and
// downloads, each in its tier with its tick, kind, lock and note, and nothing else. Two real
// processes stand in for work in progress: a tool run from the npx cache, and a "node" from an
// old nvm version working inside a project.
#include "foundation/Fmt.h"
#include "foundation/Text.h"
#include "support/RunProgram.h"
#include "support/ChildProcess.h"
#include "support/TempTree.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <map>


namespace {

constexpr int64_t MiB = 1 << 20;
constexpr double day = 86'400;

// The report's rows by tier title, in printed order.
std::map<std::string, std::vector<std::string>> tiers(const std::string& out) {
    std::map<std::string, std::vector<std::string>> rows;
    std::string current;
    for (const auto& line : Text::split(out, '\n')) {
        if (line.starts_with("== ")) {
            current = line.substr(3, line.find(" · ") - 3);
            rows[current];
        } else if (!current.empty() && line.find(" free of ") == std::string::npos) {
            rows[current].push_back(line);
        }
    }
    return rows;
}

struct Row {
    std::string state, name, location, rest;
};

// Splits a report line at its fixed columns: size 8, state 4, name 32, location 56.
Row parse(const std::string& line) {
    std::vector<std::string> cols;
    std::size_t at = 0;
    auto take = [&](std::size_t width) {
        std::string col;
        std::size_t chars = 0;
        while (at < line.size() && chars < width) {
            std::size_t len = 1;
            auto c = static_cast<unsigned char>(line[at]);
            if (c >= 0xF0) len = 4;
            else if (c >= 0xE0) len = 3;
            else if (c >= 0xC0) len = 2;
            col += line.substr(at, len);
            at += len;
            ++chars;
        }
        ++at; // the blank between columns
        return Text::trim(col);
    };
    take(8);
    Row r;
    r.state = take(4);
    r.name = take(32);
    r.location = take(56);
    r.rest = at < line.size() ? line.substr(at) : "";
    return r;
}

} // namespace

TEST(ScanSourcesE2E, DeveloperHomeListsEachSourceInItsTier) {
    TempTree h;
    const std::string home = h.root();
    auto now = Clock::now();

    // Browsers and Electron apps: ~/.cache, ~/.config and a Flatpak's own folders.
    h.file(".cache/google-chrome/Default/Cache/Cache_Data/data_1", 15 * MiB);
    h.text(".config/google-chrome/Local State", "{}");
    h.text(".config/google-chrome/Default/Preferences", "{}");
    h.file(".config/google-chrome/Default/Code Cache/js/index", 4 * MiB);
    h.file(".config/google-chrome/Default/History", 30 * MiB); // data: stays
    h.file(".config/google-chrome/OptGuideOnDeviceModel/2025.1/weights.bin", 150 * MiB);
    h.file(".cache/mozilla/firefox/abc.default/cache2/entries/x", 12 * MiB);
    h.text(".config/Code/Local State", "{}");
    h.file(".config/Code/CachedData/1.90/x", 12 * MiB);
    h.file(".config/Code/User/workspaceStorage/big.db", 40 * MiB);
    h.text(".var/app/com.slack.Slack/config/Slack/Preferences", "{}");
    h.file(".var/app/com.slack.Slack/config/Slack/Cache/Cache_Data/x", 8 * MiB);
    h.file(".var/app/com.slack.Slack/cache/tmp/y", 4 * MiB);
    h.file(".cache/pip/http-v2/x", 20 * MiB);
    h.file(".cache/small-tool/x", 1 * MiB);
    h.file(".cache/huggingface/hub/model.safetensors", 120 * MiB);
    h.file(".cache/sorrelin/x", 20 * MiB);
    // Chrome is installed and was last seen running 40 days ago.
    h.text(".local/share/applications/google-chrome.desktop",
           "[Desktop Entry]\nType=Application\nName=Google Chrome\nExec=/opt/google/chrome/google-chrome %U\n");
    auto seen = now - std::chrono::seconds(static_cast<long long>(40 * day));
    h.text(".local/share/gnome-shell/application_state",
           "<?xml version=\"1.0\"?>\n<application-state>\n  <context id=\"\">\n"
           "    <application id=\"google-chrome.desktop\" score=\"3\" last-seen=\"" +
               std::to_string(static_cast<long long>(secondsSince1970(seen))) +
               "\"/>\n  </context>\n</application-state>\n");

    // Tools: npx with one tool in use, nvm with three versions and a default.
    h.file(".npm/_npx/aaa111/node_modules/x", 12 * MiB);
    h.file(".npm/_npx/bbb222/node_modules/x", 12 * MiB);
    h.file(".npm/_npx/ccc333/node_modules/x", 12 * MiB);
    for (const char* v : {"v16.20.2", "v18.20.4", "v20.11.1"})
        h.file(std::string(".nvm/versions/node/") + v + "/lib/libnode.so", 25 * MiB);
    h.text(".nvm/alias/default", "18\n");
    const std::string oldNode = h.path(".nvm/versions/node/v16.20.2/bin/node");
    std::filesystem::create_directories(h.path(".nvm/versions/node/v16.20.2/bin"));
    std::filesystem::copy_file("/bin/sleep", oldNode);
    chmod(oldNode.c_str(), 0755);

    // Projects.
    h.dir("code/web/.git");
    h.file("code/web/package.json", 100);
    h.file("code/web/node_modules/next/dist/x", 30 * MiB);
    h.file("code/web/.next/cache/webpack/x", 5 * MiB);
    for (const char* p : {"code/web/package.json", "code/web/.git", "code/web/.next/cache"}) h.age(p, 30 * day);
    h.dir("code/api/.git");
    h.file("code/api/packages/a/node_modules/x", 22 * MiB);
    h.file("code/api/packages/b/node_modules/y", 22 * MiB);
    h.file("code/rust/Cargo.toml", 100);
    h.file("code/rust/target/debug/app", 40 * MiB);
    h.file("code/notes/target/big.pdf", 40 * MiB); // no Cargo.toml: not a build folder
    h.file("code/py/pyproject.toml", 100);
    h.file("code/py/.venv/lib/x", 30 * MiB);
    for (const char* p : {"code/rust/Cargo.toml", "code/py/pyproject.toml"}) h.age(p, 20 * day);
    h.file("code/fresh/package.json", 100); // touched today
    h.file("code/fresh/node_modules/x", 25 * MiB);

    h.file("Downloads/ubuntu-24.04.iso", 120 * MiB);

    ChildProcess npxTool("/bin/sleep", {h.path(".npm/_npx/ccc333/node_modules/.bin/serve"), "600"}, "/");
    ChildProcess nodeInProject(oldNode, {oldNode, "600"}, h.path("code/api/packages/a"));
    ASSERT_GT(npxTool.pid, 0);
    ASSERT_GT(nodeInProject.pid, 0);

    auto env = homeEnvironment(home);
    env["XDG_DATA_DIRS"] = h.dir("usr/share"); // no applications of this machine
    auto run = runProgram(SORRELIN_EXE, {"--scan"}, env);
    ASSERT_EQ(run.status, 0) << run.err;
    auto byTier = tiers(run.out);
    std::map<std::string, Row> rows;
    std::map<std::string, std::string> tierOf;
    for (const auto& [tier, lines] : byTier)
        for (const auto& line : lines) {
            Row r = parse(line);
            rows[r.name] = r;
            tierOf[r.name] = tier;
        }
    auto expect = [&](const std::string& tier, const std::string& name, const std::string& state,
                      const std::string& location, const std::string& rest) {
        SCOPED_TRACE(name);
        auto it = rows.find(name);
        ASSERT_NE(it, rows.end()) << run.out;
        EXPECT_EQ(tierOf[name], tier);
        EXPECT_EQ(it->second.state, state);
        EXPECT_EQ(it->second.location, location);
        EXPECT_EQ(it->second.rest, rest);
    };
    const std::string today = Fmt::dayMonth(now);

    expect("Safe to clear", "Chrome cache", "on", "~/.cache and ~/.config",
           "[idle " + Fmt::dayMonth(seen) + "] Rebuilt as you browse");
    expect("Safe to clear", "Firefox cache", "on", "~/.cache/mozilla", "[orphan] Rebuilt as you browse");
    expect("Safe to clear", "VS Code cache", "on", "~/.config/Code", "[orphan] Rebuilt as you use VS Code");
    expect("Safe to clear", "Slack cache", "on", "~/.cache and ~/.config", "[orphan] Rebuilt as you use Slack");
    expect("Safe to clear", "pip cache", "on", "~/.cache/pip", "[active " + today + "] Refills on the next install");
    expect("Safe to clear", "npx cache", "on", "~/.npm/_npx",
           "[active " + today + "] Tools npx fetched once · 1 in use is kept");

    expect("Rebuildable", "web", "on", "~/code/web", "node_modules + .next · changed " + Fmt::day(now - std::chrono::seconds(30 * 86'400), now));
    expect("Rebuildable", "api", "LOCK", "~/code/api", "In use by node · kept");
    expect("Rebuildable", "rust", "on", "~/code/rust", "target · changed " + Fmt::day(now - std::chrono::seconds(20 * 86'400), now));
    expect("Rebuildable", "py", "on", "~/code/py", ".venv · changed " + Fmt::day(now - std::chrono::seconds(20 * 86'400), now));
    expect("Rebuildable", "fresh", "off", "~/code/fresh", "node_modules · changed today");

    expect("Your call", "Huggingface models", "off", "~/.cache/huggingface", "Downloaded models. Slow to fetch again");
    expect("Your call", "Chrome's built-in AI model", "off", "~/.config/google-chrome/OptGuideOnDeviceModel",
           "Comes back unless you turn it off in chrome://flags");
    expect("Your call", "Node v16.20.2", "LOCK", "~/.nvm/versions/node/v16.20.2", "Running right now · kept");
    expect("Your call", "ubuntu-24.04.iso", "off", "~/Downloads", "Installer · added today");

    // Nothing else: no small caches, no program folders, no data, no folder named target alone.
    EXPECT_EQ(byTier["Safe to clear"].size(), 6u) << run.out;
    EXPECT_EQ(byTier["Rebuildable"].size(), 5u) << run.out;
    EXPECT_EQ(byTier["Your call"].size(), 4u) << run.out;
    for (const auto& [name, row] : rows) {
        EXPECT_EQ(row.location.find("notes"), std::string::npos) << name;
        EXPECT_EQ(row.location.find("sorrelin"), std::string::npos) << name;
    }
}
