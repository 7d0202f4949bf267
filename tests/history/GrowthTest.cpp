#include "foundation/FS.h"
#include "history/Growth.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <ctime>

namespace {

// 2025-06-16 12:00 UTC; the period starts 2025-06-03 00:00 UTC.
const TimePoint now = fromSeconds(1'750'075'200);
const TimePoint periodStart = fromSeconds(1'748'908'800);
constexpr double day = 86'400;

class UtcZone {
public:
    UtcZone() {
        if (const char* old = std::getenv("TZ")) saved = old;
        setenv("TZ", "UTC", 1);
        tzset();
    }
    ~UtcZone() {
        if (saved) setenv("TZ", saved->c_str(), 1);
        else unsetenv("TZ");
        tzset();
    }

private:
    std::optional<std::string> saved;
};

// A file of `size` bytes whose modification time (standing in for its birth) is `when`.
void bornAt(const TempTree& home, std::string_view relative, int64_t size, TimePoint when) {
    std::string p = home.file(relative, size);
    timespec times[2];
    times[0].tv_sec = Clock::to_time_t(when);
    times[0].tv_nsec = 0;
    times[1] = times[0];
    utimensat(AT_FDCWD, p.c_str(), times, AT_SYMLINK_NOFOLLOW);
}

TimePoint onDay(int index, double hours = 12) { return addSeconds(periodStart, index * day + hours * 3600); }

GrowthReport scan(const Layout& layout) { return Growth::scan(layout, now, {}, Growth::Dates::modified); }

GrowthReport scan(const TempTree& home) { return scan(Layout::linux(home.root())); }

const GrowthPlace* place(const std::vector<GrowthPlace>& places, const std::string& name) {
    for (const auto& p : places)
        if (p.name == name) return &p;
    return nullptr;
}

int64_t alloc(const TempTree& t, std::string_view relative) { return allocatedSize(t.path(relative)); }

} // namespace

TEST(Growth, FourteenDaysFromTheCalendarAndTheEdgesOfThePeriod) {
    UtcZone zone;
    TempTree home;
    bornAt(home, "Downloads/first.bin", 8192, periodStart);                      // the first instant
    bornAt(home, "Downloads/late.bin", 4096, addSeconds(periodStart, day - 1));  // just before the first midnight
    bornAt(home, "Downloads/old.bin", 4096, addSeconds(periodStart, -1));        // one second too old
    bornAt(home, "Downloads/today.bin", 4096, onDay(13, 1));
    GrowthReport r = scan(home);
    ASSERT_EQ(r.days.size(), 14u);
    EXPECT_EQ(r.days[0].date, periodStart);
    EXPECT_EQ(r.days[13].date, addSeconds(periodStart, 13 * day));
    EXPECT_EQ(r.days[0].total(), alloc(home, "Downloads/first.bin") + alloc(home, "Downloads/late.bin"));
    EXPECT_EQ(r.days[13].total(), alloc(home, "Downloads/today.bin"));
    EXPECT_EQ(r.total(), r.days[0].total() + r.days[13].total());
    EXPECT_EQ(r.days[0].buckets[static_cast<int>(GrowthBucket::files)], r.days[0].total());
    const GrowthPlace* downloads = place(r.biggest, "Downloads");
    ASSERT_TRUE(downloads);
    EXPECT_EQ(downloads->location, "~/Downloads");
    EXPECT_EQ(r.made, now);
}

TEST(Growth, AFileDatedAheadOfNowIsNewToday) {
    // Read as it stood, 2400 wrapped to 1815 and the file fell out of the period.
    UtcZone zone;
    TempTree home;
    home.file("Downloads/unpacked.bin", 8192);
    if (!home.dateAt("Downloads/unpacked.bin", 13'583'635'200)) GTEST_SKIP() << "this file system cannot hold a date in 2400";
    GrowthReport r = scan(home);
    ASSERT_EQ(r.days.size(), 14u);
    EXPECT_EQ(r.days[13].total(), alloc(home, "Downloads/unpacked.bin"));
    EXPECT_EQ(r.total(), r.days[13].total());
}

TEST(Growth, ProjectFilesPackagesAndBuildOutput) {
    UtcZone zone;
    TempTree home;
    bornAt(home, "Documents/app/package.json", 4096, onDay(5));
    bornAt(home, "Documents/app/src/main.js", 8192, onDay(5));
    bornAt(home, "Documents/app/node_modules/x/index.js", 16384, onDay(5));
    bornAt(home, "Documents/app/node_modules/x/dist/y.js", 16384, onDay(5));  // build output inside packages
    bornAt(home, "Documents/app/build/dist/z.js", 32768, onDay(5));           // dist inside build
    bornAt(home, "Documents/app/sub/package.json", 4096, onDay(5));           // no project inside a project
    bornAt(home, "notes.txt", 4096, onDay(5));                                 // directly in the home folder
    GrowthReport r = scan(home);
    const auto& top = r.days[5].top;
    const GrowthPlace* files = place(top, "app project files");
    const GrowthPlace* packages = place(top, "app packages");
    const GrowthPlace* build = place(top, "app build output");
    ASSERT_TRUE(files && packages && build);
    EXPECT_EQ(files->bytes, alloc(home, "Documents/app/package.json") + alloc(home, "Documents/app/src/main.js") +
                                alloc(home, "Documents/app/sub/package.json"));
    EXPECT_EQ(packages->bytes, alloc(home, "Documents/app/node_modules/x/index.js") +
                                   alloc(home, "Documents/app/node_modules/x/dist/y.js"));
    EXPECT_EQ(build->bytes, alloc(home, "Documents/app/build/dist/z.js"));
    EXPECT_EQ(files->location, "~/Documents/app");
    EXPECT_EQ(files->bucket, GrowthBucket::projects);
    const GrowthPlace* other = place(top, "Other");
    ASSERT_TRUE(other);
    EXPECT_EQ(other->bucket, GrowthBucket::files);
    EXPECT_EQ(r.days[5].buckets[0], files->bytes + packages->bytes + build->bytes);
}

TEST(Growth, SiblingAppsOfAWorkspaceTakeItsName) {
    UtcZone zone;
    TempTree home;
    bornAt(home, "code/shop/shop-admin/package.json", 4096, onDay(2));
    bornAt(home, "code/shop/shop-web/package.json", 4096, onDay(2));
    bornAt(home, "code/worktrees/a-cf/package.json", 4096, onDay(2));
    bornAt(home, "code/worktrees/b-cf/package.json", 4096, onDay(2));
    GrowthReport r = scan(home);
    std::vector<std::string> names;
    for (const auto& p : r.days[2].top) names.push_back(p.name + " @ " + p.location);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"a-cf project files @ ~/code/worktrees/a-cf",
                                               "b-cf project files @ ~/code/worktrees/b-cf",
                                               "shop project files @ ~/code/shop/shop-admin",
                                               "shop project files @ ~/code/shop/shop-web"}));
}

TEST(Growth, LinuxPlacesAndBuckets) {
    UtcZone zone;
    TempTree home;
    bornAt(home, ".config/Code/User/settings.json", 4096, onDay(1));
    bornAt(home, ".config/org.example.App/state", 4096, onDay(1));
    bornAt(home, ".cache/google-chrome/Default/Cache/a", 4096, onDay(1));
    bornAt(home, ".cache/some-tool/b", 4096, onDay(1));
    bornAt(home, ".local/share/Trash/files/gone.bin", 4096, onDay(1));
    bornAt(home, ".local/share/pnpm/store/v3/c", 4096, onDay(1));
    bornAt(home, ".local/bin/tool", 4096, onDay(1));
    bornAt(home, ".npm/_cacache/d", 4096, onDay(1));
    bornAt(home, ".var/app/org.gnome.Maps/data/e", 4096, onDay(1));
    bornAt(home, ".claude/projects/p/log.jsonl", 4096, onDay(1));
    bornAt(home, "Videos/clip.mkv", 4096, onDay(1));
    GrowthReport r = scan(home);
    // Ten places on one day: the day keeps five, the period six, the totals all.
    EXPECT_EQ(r.biggest.size(), 6u);
    EXPECT_EQ(r.days[1].top.size(), 5u);
    EXPECT_EQ(r.days[1].total(), 10 * alloc(home, ".npm/_cacache/d")); // the Trash is left out
    EXPECT_EQ(r.days[1].buckets[static_cast<int>(GrowthBucket::tools)], 5 * alloc(home, ".npm/_cacache/d"));
    // The cap hides some places; look at each with a home that holds it alone.
    struct Case {
        const char* file;
        const char* name;
        const char* location;
        GrowthBucket bucket;
    };
    const Case cases[] = {
        {".config/Code/User/settings.json", "VS Code data", "~/.config/Code", GrowthBucket::tools},
        {".config/org.example.App/state", "App data", "~/.config/org.example.App", GrowthBucket::appData},
        {".cache/google-chrome/Default/Cache/a", "Chrome cache", "~/.cache/google-chrome", GrowthBucket::appData},
        {".cache/some-tool/b", "Some-tool cache", "~/.cache/some-tool", GrowthBucket::appData},
        {".local/share/pnpm/store/v3/c", "pnpm package store", "~/.local/share/pnpm", GrowthBucket::tools},
        {".local/bin/tool", "Local tools", "~/.local", GrowthBucket::tools},
        {".npm/_cacache/d", "npm cache", "~/.npm", GrowthBucket::tools},
        {".var/app/org.gnome.Maps/data/e", "Maps data", "~/.var/app/org.gnome.Maps", GrowthBucket::appData},
        {".claude/projects/p/log.jsonl", "Claude Code transcripts", "~/.claude/projects", GrowthBucket::tools},
        {"Videos/clip.mkv", "Videos", "~/Videos", GrowthBucket::files},
    };
    for (const Case& c : cases) {
        TempTree alone;
        bornAt(alone, c.file, 4096, onDay(1));
        GrowthReport one = scan(alone);
        ASSERT_EQ(one.biggest.size(), 1u) << c.file;
        EXPECT_EQ(one.biggest[0].name, c.name) << c.file;
        EXPECT_EQ(one.biggest[0].location, c.location) << c.file;
        EXPECT_EQ(one.biggest[0].bucket, c.bucket) << c.file;
    }
    TempTree trash;
    bornAt(trash, ".local/share/Trash/files/gone.bin", 4096, onDay(1));
    EXPECT_EQ(scan(trash).total(), 0);
}

TEST(Growth, MacLibraryPlaces) {
    UtcZone zone;
    struct Case {
        const char* file;
        const char* name;
        const char* location;
        GrowthBucket bucket;
    };
    const Case cases[] = {
        {"Library/Application Support/com.foo.barApp/x", "BarApp data", "App Support/com.foo.barApp", GrowthBucket::appData},
        {"Library/Application Support/Code/x", "VS Code data", "App Support/Code", GrowthBucket::tools},
        {"Library/Application Support/Zed/x", "Zed data", "App Support/Zed", GrowthBucket::tools},
        {"Library/Caches/com.microsoft.VSCode.ShipIt/x", "VS Code update files", "Caches/com.microsoft.VSCode.ShipIt", GrowthBucket::appData},
        {"Library/Caches/com.other.Thing.ShipIt/x", "Thing update files", "Caches/com.other.Thing.ShipIt", GrowthBucket::appData},
        {"Library/Caches/com.other.Thing/x", "Thing cache", "Caches/com.other.Thing", GrowthBucket::appData},
        {"Library/Group Containers/group.com.x.Notes/x", "Notes data", "Containers/group.com.x.Notes", GrowthBucket::appData},
        {"Library/Preferences/x.plist", "Library", "~/Library", GrowthBucket::appData},
        {"Library/Developer/Xcode/x", "Xcode and simulators", "~/Library/Developer", GrowthBucket::tools},
        {"Movies/clip.mov", "Videos in Movies", "~/Movies", GrowthBucket::files},
        {".docker/x", "Docker data", "~/.docker", GrowthBucket::tools},
        {".foo.bar/x", "Bar data", "~/.foo.bar", GrowthBucket::tools},
    };
    for (const Case& c : cases) {
        TempTree home;
        bornAt(home, c.file, 4096, onDay(3));
        GrowthReport r = scan(Layout::macos(home.root()));
        ASSERT_EQ(r.biggest.size(), 1u) << c.file;
        EXPECT_EQ(r.biggest[0].name, c.name) << c.file;
        EXPECT_EQ(r.biggest[0].location, c.location) << c.file;
        EXPECT_EQ(r.biggest[0].bucket, c.bucket) << c.file;
    }
    for (const char* skipped : {".Trash/x", "Applications/A.app/x", "Library/Mobile Documents/x", "Library/Biome/x"}) {
        TempTree home;
        bornAt(home, skipped, 4096, onDay(3));
        EXPECT_EQ(scan(Layout::macos(home.root())).total(), 0) << skipped;
    }
}

TEST(Growth, HardLinksCountOnceAndAnEmptyPeriodIsFourteenZeroDays) {
    UtcZone zone;
    TempTree home;
    bornAt(home, "Documents/a.bin", 65536, onDay(4));
    home.hardLink("Documents/a.bin", "Downloads/b.bin");
    GrowthReport r = scan(home);
    EXPECT_EQ(r.total(), alloc(home, "Documents/a.bin"));

    TempTree empty;
    bornAt(empty, "Documents/old.txt", 4096, addSeconds(periodStart, -day));
    GrowthReport none = scan(empty);
    ASSERT_EQ(none.days.size(), 14u);
    for (const auto& d : none.days) {
        EXPECT_EQ(d.total(), 0);
        EXPECT_TRUE(d.top.empty());
    }
    EXPECT_TRUE(none.biggest.empty());
}

TEST(Growth, TopFivePerDayAndSixOverall) {
    UtcZone zone;
    TempTree home;
    for (int i = 0; i < 8; ++i)
        bornAt(home, "Folder" + std::to_string(i) + "/x", 4096 * (i + 1), onDay(6));
    GrowthReport r = scan(home);
    ASSERT_EQ(r.days[6].top.size(), 5u);
    EXPECT_EQ(r.days[6].top[0].name, "Folder7");
    EXPECT_EQ(r.days[6].top[4].name, "Folder3");
    ASSERT_EQ(r.biggest.size(), 6u);
    EXPECT_EQ(r.biggest[5].name, "Folder2");
    EXPECT_EQ(r.days[6].total(), 36 * 4096); // the day keeps all of it
}

TEST(Growth, PrettyNames) {
    EXPECT_EQ(Growth::pretty("com.foo.barApp"), "BarApp");
    EXPECT_EQ(Growth::pretty(".docker"), "Docker");
    EXPECT_EQ(Growth::pretty("plain"), "Plain");
    EXPECT_EQ(Growth::pretty("Zoom"), "Zoom");
}

TEST(Growth, BirthTimesComeFromTheFileSystem) {
    // Birth times cannot be set; a file made now must count today by its birth, even when its
    // modification time says it is years old.
    TempTree home;
    std::string p = home.file("Downloads/copied.bin", 4096);
    home.age("Downloads/copied.bin", 400 * day);
    struct statx sx {};
    ASSERT_EQ(statx(AT_FDCWD, p.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BTIME, &sx), 0);
    GrowthReport r = Growth::scan(Layout::linux(home.root()), Clock::now(), {}, Growth::Dates::birth);
    if (sx.stx_mask & STATX_BTIME) {
        EXPECT_EQ(r.days[13].total(), allocatedSize(p));
    } else {
        EXPECT_EQ(r.total(), 0); // no birth time here: the modification time decides
    }
}

TEST(Growth, ANewFileLinkedFromTwoPlacesIsBookedOnTheFirstInPathOrderEveryRun) {
    UtcZone utc;
    TempTree home;
    bornAt(home, "Videos/clip.bin", 300'000, onDay(4));
    home.hardLink("Videos/clip.bin", "Downloads/clip.bin");
    for (int i = 0; i < 40; ++i) home.file("Documents/filler" + std::to_string(i) + "/x", 100);
    for (int run = 0; run < 4; ++run) {
        GrowthReport r = scan(home);
        const GrowthPlace* downloads = place(r.biggest, "Downloads");
        ASSERT_TRUE(downloads) << run;
        EXPECT_EQ(downloads->bytes, alloc(home, "Videos/clip.bin"));
        EXPECT_FALSE(place(r.biggest, "Videos"));
        EXPECT_EQ(r.days[4].total(), alloc(home, "Videos/clip.bin"));
    }
}
