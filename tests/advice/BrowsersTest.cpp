#include "advice/Browsers.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <map>

extern char** environ;

namespace {

const MonitorTables tables = Layout::linux("/home/ann").monitor;
const TimePoint t0 = Clock::from_time_t(1'800'000'000);

class FakeReader final : public Browsers::Reader {
public:
    std::map<int32_t, ExeImage> images;
    std::optional<std::string> onDisk = "125.0.6422.60";
    std::optional<TimePoint> arrived = Clock::from_time_t(1'799'000'000);
    mutable int versionReads = 0;
    mutable std::string askedBinary, askedArgument;

    std::optional<ExeImage> image(int32_t pid) const override {
        auto it = images.find(pid);
        if (it == images.end()) return std::nullopt;
        return it->second;
    }
    std::optional<std::string> version(const std::string& binary, const std::string& argument) const override {
        ++versionReads;
        askedBinary = binary;
        askedArgument = argument;
        return onDisk;
    }
    std::optional<TimePoint> changed(const std::string&) const override { return arrived; }
};

AppUsage browser(const std::string& path, const std::string& id, int32_t mainPID, std::vector<int32_t> pids) {
    AppUsage a;
    a.id = path;
    a.bundlePath = path;
    a.bundleID = id;
    a.mainPID = mainPID;
    a.pids = std::move(pids);
    return a;
}

Snapshot holding(std::vector<int32_t> pids) {
    Snapshot s;
    for (int32_t pid : pids) s.procs[pid].pid = pid;
    return s;
}

} // namespace

TEST(Browsers, Family) {
    EXPECT_TRUE(Browsers::isBrowser(browser("/a.desktop", "google-chrome", 1, {}), tables));
    EXPECT_TRUE(Browsers::isBrowser(browser("/a.desktop", "com.brave.Browser", 1, {}), tables));
    EXPECT_TRUE(Browsers::isBrowser(browser("/a.desktop", "firefox", 1, {}), tables));
    EXPECT_FALSE(Browsers::isBrowser(browser("/a.desktop", "org.gnome.Epiphany", 1, {}), tables));
    AppUsage none = browser("/a.desktop", "x", 1, {});
    none.bundleID.reset();
    EXPECT_FALSE(Browsers::isBrowser(none, tables));
    EXPECT_TRUE(Browsers::isBrowser(browser("/Applications/Arc.app", "company.thebrowser.Browser", 1, {}),
                                    Layout::macos("/Users/ann").monitor));
}

TEST(Browsers, AnUpdateWaitsWhileEveryProcessRunsTheReplacedProgram) {
    FakeReader reader;
    reader.images = {{100, {"/opt/google/chrome/chrome", true}}, {101, {"/opt/google/chrome/chrome", true}}};
    auto app = browser("/u1/google-chrome.desktop", "google-chrome", 100, {100, 101, 102});
    auto snap = holding({100, 101}); // 102 has ended since the row was made
    auto update = Browsers::pendingUpdate(app, &snap, t0, reader, tables);
    ASSERT_TRUE(update);
    EXPECT_EQ(update->version, "125.0.6422.60");
    EXPECT_EQ(update->since, reader.arrived);
    EXPECT_EQ(reader.askedBinary, "/opt/google/chrome/chrome");
    EXPECT_EQ(reader.askedArgument, "--product-version");
}

TEST(Browsers, NoUpdate) {
    FakeReader reader;
    auto snap = holding({200, 201});
    // A process on the file now on disk: the browser counts as updated, even with an old helper.
    reader.images = {{200, {"/usr/lib/chromium/chromium", true}}, {201, {"/usr/lib/chromium/chromium", false}}};
    EXPECT_FALSE(Browsers::pendingUpdate(browser("/u2/a.desktop", "chromium", 200, {200, 201}), &snap, t0, reader, tables));
    // Nothing replaced.
    reader.images = {{200, {"/usr/lib/chromium/chromium", false}}};
    EXPECT_FALSE(Browsers::pendingUpdate(browser("/u2/b.desktop", "chromium", 200, {200}), &snap, t0, reader, tables));
    // Nothing readable (a sandboxed browser).
    reader.images.clear();
    EXPECT_FALSE(Browsers::pendingUpdate(browser("/u2/c.desktop", "chromium", 200, {200}), &snap, t0, reader, tables));
    // Not a browser of this family, no snapshot, or no version on disk.
    reader.images = {{200, {"/usr/bin/x", true}}};
    EXPECT_FALSE(Browsers::pendingUpdate(browser("/u2/d.desktop", "org.gnome.Epiphany", 200, {200}), &snap, t0, reader, tables));
    EXPECT_FALSE(Browsers::pendingUpdate(browser("/u2/e.desktop", "chromium", 200, {200}), nullptr, t0, reader, tables));
    EXPECT_EQ(reader.versionReads, 0);
    reader.onDisk.reset();
    EXPECT_FALSE(Browsers::pendingUpdate(browser("/u2/f.desktop", "chromium", 200, {200}), &snap, t0, reader, tables));
}

TEST(Browsers, WithoutAnArrivalDate) {
    FakeReader reader;
    reader.arrived.reset();
    reader.onDisk = "128.0";
    reader.images = {{300, {"/usr/lib/firefox/firefox", true}}};
    auto snap = holding({300});
    auto update = Browsers::pendingUpdate(browser("/u3/firefox.desktop", "firefox", 300, {300}), &snap, t0, reader, tables);
    ASSERT_TRUE(update);
    EXPECT_EQ(update->version, "128.0");
    EXPECT_FALSE(update->since);
    EXPECT_EQ(reader.askedArgument, "--version"); // Firefox would open a window for an unknown option
}

TEST(Browsers, AnswersKeptForTwoMinutesPerLaunch) {
    FakeReader reader;
    reader.images = {{400, {"/opt/brave/brave", true}}};
    auto snap = holding({400, 401});
    auto app = browser("/u4/brave-browser.desktop", "brave-browser", 400, {400});
    ASSERT_TRUE(Browsers::pendingUpdate(app, &snap, t0, reader, tables));
    reader.images.clear(); // restarted meanwhile, but the answer stands for 120 seconds
    EXPECT_TRUE(Browsers::pendingUpdate(app, &snap, addSeconds(t0, 119.9), reader, tables));
    EXPECT_EQ(reader.versionReads, 1);
    EXPECT_FALSE(Browsers::pendingUpdate(app, &snap, addSeconds(t0, 120), reader, tables));

    // A new main process is a new launch: asked anew at once.
    reader.images = {{401, {"/opt/brave/brave", true}}};
    auto relaunched = browser("/u4/brave-browser.desktop", "brave-browser", 401, {401});
    EXPECT_TRUE(Browsers::pendingUpdate(relaunched, &snap, addSeconds(t0, 121), reader, tables));
    EXPECT_EQ(reader.versionReads, 2);

    // The absence of an update is remembered too.
    reader.images.clear();
    auto quiet = browser("/u4/vivaldi.desktop", "vivaldi-stable", 400, {400});
    EXPECT_FALSE(Browsers::pendingUpdate(quiet, &snap, t0, reader, tables));
    reader.images = {{400, {"/opt/vivaldi/vivaldi-bin", true}}};
    EXPECT_FALSE(Browsers::pendingUpdate(quiet, &snap, addSeconds(t0, 60), reader, tables));
}

TEST(Browsers, VersionOutput) {
    EXPECT_EQ(Browsers::versionIn("124.0.6367.60\n"), "124.0.6367.60");
    EXPECT_EQ(Browsers::versionIn("Mozilla Firefox 128.0.3\n"), "128.0.3");
    EXPECT_EQ(Browsers::versionIn("[1:2:ERROR] x\nBrave Browser 1.66.118 \n"), "1.66.118");
    EXPECT_FALSE(Browsers::versionIn("unknown option\n"));
}

// The live reading: a copy of a real program is started, then replaced and removed on disk as
// a package update would do.
TEST(ExeImages, ReplacedAndDeletedPrograms) {
    TempTree t;
    std::string program = t.path("browser");
    std::filesystem::copy_file("/bin/sleep", program);
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    pid_t pid = 0;
    std::string seconds = "60";
    char* argv[] = {program.data(), seconds.data(), nullptr};
    ASSERT_EQ(posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv, environ), 0);

    auto image = ExeImages::of(pid);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->path, program);
    EXPECT_FALSE(image->stale);

    // A new file renamed over the old path: a new inode.
    std::filesystem::copy_file("/bin/sleep", program + ".new");
    std::filesystem::rename(program + ".new", program);
    image = ExeImages::of(pid);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->path, program);
    EXPECT_TRUE(image->stale);

    // Removed altogether.
    std::filesystem::remove(program);
    image = ExeImages::of(pid);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->path, program);
    EXPECT_TRUE(image->stale);

    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    EXPECT_FALSE(ExeImages::of(pid));
}
