#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/Layout.h"
#include "platform/Trash.h"
#include "removal/Remover.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>

namespace {

TimePoint localTime(int year, int month, int day, int hour, int minute, int second) {
    std::tm tm {};
    tm.tm_year = year - 1900;
    tm.tm_mon = month - 1;
    tm.tm_mday = day;
    tm.tm_hour = hour;
    tm.tm_min = minute;
    tm.tm_sec = second;
    tm.tm_isdst = -1;
    return Clock::from_time_t(std::mktime(&tm));
}

// A scratch home with the Linux layout; its Trash does not exist yet.
struct Home {
    TempTree tree;
    Layout layout = Layout::linux(tree.root());
    Remover::Context context = [this] {
        auto c = Remover::Context::forLayout(layout, {});
        c.mountinfo = tree.path("no-mounts"); // the machine's other Trash folders stay out of it
        return c;
    }();
    std::string path(std::string_view rel) const { return tree.path(rel); }
    std::string infoOf(const std::string& moved) const {
        return layout.trash + "/info/" + FS::lastComponent(moved) + ".trashinfo";
    }
};

std::string read(const std::string& path) { return FS::readText(path).value_or("<unreadable>"); }

// The Path= value of a .trashinfo, decoded as a file manager does.
std::string originalOf(const std::string& infoFile) {
    for (const auto& line : Text::split(read(infoFile), '\n'))
        if (line.starts_with("Path=")) return Trash::percentDecode(line.substr(5));
    return "";
}

} // namespace

TEST(TrashFormat, InfoFilesAreWhatFileManagersRead) {
    auto when = localTime(2024, 3, 5, 14, 7, 9);
    EXPECT_EQ(Trash::info("/home/ann/My Files/caf\xC3\xA9\n.txt", when),
              "[Trash Info]\nPath=/home/ann/My%20Files/caf%C3%A9%0A.txt\nDeletionDate=2024-03-05T14:07:09\n");
    // A mount's Trash keeps the path from the mount's top.
    EXPECT_EQ(Trash::info("photos/a.jpg", when), "[Trash Info]\nPath=photos/a.jpg\nDeletionDate=2024-03-05T14:07:09\n");
}

TEST(TrashFormat, PercentEncodingKeepsOnlyPlainBytes) {
    EXPECT_EQ(Trash::percentEncode("/a b/%/x-y_z.~/#?&=+:@"), "/a%20b/%25/x-y_z.~/%23%3F%26%3D%2B%3A%40");
    EXPECT_EQ(Trash::percentEncode("bad\xff\xfe"), "bad%FF%FE");
    EXPECT_EQ(Trash::percentEncode(std::string("nul\0x", 5)), "nul%00x");
    for (std::string s : {"/home/ann/a b/\xC3\xBC\n\t%41", "bad\xff", "100%", "%zz%4"})
        EXPECT_EQ(Trash::percentDecode(Trash::percentEncode(s)), s) << s;
    EXPECT_EQ(Trash::percentDecode("%zz%4"), "%zz%4"); // broken escapes stay as they are
    EXPECT_EQ(Trash::percentDecode("%c3%a9"), "\xC3\xA9");
}

TEST(TrashFormat, EntryNamesKeepTheKindAndFitWithTheirInfoFile) {
    EXPECT_EQ(Trash::entryName("photo.jpg", 1), "photo.jpg");
    EXPECT_EQ(Trash::entryName("photo.jpg", 2), "photo.2.jpg");
    EXPECT_EQ(Trash::entryName("archive.tar.gz", 12), "archive.tar.12.gz");
    EXPECT_EQ(Trash::entryName(".bashrc", 2), ".bashrc.2");
    EXPECT_EQ(Trash::entryName("folder", 3), "folder.3");
    // What follows a dot far back is no kind of file.
    EXPECT_EQ(Trash::entryName("v1.0-release-notes-for-everyone", 2), "v1.0-release-notes-for-everyone.2");
    std::string longName = std::string(250, 'a') + ".txt";
    for (int n : {1, 7, 1234}) {
        std::string e = Trash::entryName(longName, n);
        EXPECT_LE(e.size() + 10, 255u) << n;
        EXPECT_TRUE(e.ends_with(".txt")) << e;
    }
    std::string accents;
    for (int i = 0; i < 130; ++i) accents += "\xC3\xA9";
    std::string cut = Trash::entryName(accents, 2);
    EXPECT_LE(cut.size() + 10, 255u);
    EXPECT_TRUE(Text::isValidUtf8(cut));
    EXPECT_TRUE(cut.ends_with(".2"));
}

TEST(TrashFormat, MountsAreReadFromMountinfo) {
    std::string text =
        "22 1 0:21 / /proc rw,nosuid,nodev,noexec,relatime shared:5 - proc proc rw\n"
        "25 1 254:1 / / rw,relatime shared:1 - ext4 /dev/vda1 rw\n"
        "40 25 8:17 / /media/ann/My\\040Disk rw,nosuid shared:20 master:3 - vfat /dev/sdb1 rw,uid=1000\n"
        "41 25 8:18 / /media/ann/cd ro,nosuid - iso9660 /dev/sr0 ro\n"
        "42 25 8:19 / /mnt/snap rw - btrfs /dev/sdc1 ro,space_cache\n"
        "garbage line\n"
        "\n";
    auto m = Trash::mounts(text);
    ASSERT_EQ(m.size(), 4u);
    EXPECT_EQ(m[0].point, "/");
    EXPECT_TRUE(m[0].writable);
    EXPECT_EQ(m[1].point, "/media/ann/My Disk");
    EXPECT_TRUE(m[1].writable);
    EXPECT_EQ(m[2].point, "/media/ann/cd");
    EXPECT_FALSE(m[2].writable);
    EXPECT_FALSE(m[3].writable); // read-only by its file system's own options
}

TEST(RemoverTrash, MovesIntoAFreshTrashWithAnInfoFileFirst) {
    Home h;
    std::string original = h.tree.text("Downloads/odd names/caf\xC3\xA9 \n\xff.txt", "hello");
    ASSERT_FALSE(FS::exists(h.layout.trash));
    auto before = Clock::now();
    auto t = Remover::trash(original, h.context);
    ASSERT_TRUE(t.moved) << t.problem.value_or("");
    EXPECT_FALSE(t.problem);
    EXPECT_EQ(*t.moved, h.layout.trash + "/files/caf\xC3\xA9 \n\xff.txt");
    EXPECT_EQ(read(*t.moved), "hello");
    EXPECT_FALSE(FS::exists(original));

    struct stat st {};
    ASSERT_EQ(stat(h.layout.trash.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0700u);
    std::string info = read(h.infoOf(*t.moved));
    ASSERT_TRUE(info.starts_with("[Trash Info]\nPath=")) << info;
    EXPECT_EQ(originalOf(h.infoOf(*t.moved)), original);
    EXPECT_NE(info.find("/odd%20names/caf%C3%A9%20%0A%FF.txt\n"), std::string::npos) << info;
    // The date is this moment's local time.
    auto at = info.find("DeletionDate=");
    ASSERT_NE(at, std::string::npos);
    std::tm tm {};
    ASSERT_NE(strptime(info.c_str() + at + 13, "%Y-%m-%dT%H:%M:%S", &tm), nullptr);
    tm.tm_isdst = -1;
    double off = secondsBetween(before, Clock::from_time_t(std::mktime(&tm)));
    EXPECT_GT(off, -2);
    EXPECT_LT(off, 2);
}

TEST(RemoverTrash, ThingsOfOneNameGetTheirOwnEntries) {
    Home h;
    std::string a = h.tree.text("Projects/a/report.pdf", "first");
    std::string b = h.tree.text("Projects/b/report.pdf", "second");
    std::string c = h.tree.text("Projects/c/report.pdf", "third");
    // A file manager that stopped half-way left an entry without its info file.
    h.tree.text(".local/share/Trash/files/report.2.pdf", "stale");
    auto ta = Remover::trash(a, h.context);
    auto tb = Remover::trash(b, h.context);
    auto tc = Remover::trash(c, h.context);
    ASSERT_TRUE(ta.moved && tb.moved && tc.moved);
    EXPECT_EQ(FS::lastComponent(*ta.moved), "report.pdf");
    EXPECT_EQ(FS::lastComponent(*tb.moved), "report.3.pdf");
    EXPECT_EQ(FS::lastComponent(*tc.moved), "report.4.pdf");
    EXPECT_EQ(read(h.path(".local/share/Trash/files/report.2.pdf")), "stale");
    EXPECT_FALSE(FS::exists(h.path(".local/share/Trash/info/report.2.pdf.trashinfo")));
    EXPECT_EQ(originalOf(h.infoOf(*tb.moved)), b);
    EXPECT_EQ(originalOf(h.infoOf(*tc.moved)), c);

    // Each goes back to its own place.
    EXPECT_FALSE(Remover::putBack(*tc.moved, c, h.context));
    EXPECT_FALSE(Remover::putBack(*ta.moved, a, h.context));
    EXPECT_EQ(read(a), "first");
    EXPECT_EQ(read(c), "third");
    EXPECT_FALSE(FS::exists(h.infoOf(*ta.moved)));
    EXPECT_FALSE(FS::exists(*ta.moved));
    EXPECT_TRUE(FS::exists(h.infoOf(*tb.moved)));
}

TEST(RemoverTrash, PuttingBackOverSomethingNewIsRefusedAndMovesNothing) {
    Home h;
    std::string original = h.tree.text("Projects/app/build.log", "old");
    auto t = Remover::trash(original, h.context);
    ASSERT_TRUE(t.moved);
    h.tree.text("Projects/app/build.log", "new");
    EXPECT_EQ(Remover::putBack(*t.moved, original, h.context), "Something new is already where it was.");
    EXPECT_EQ(read(original), "new");
    EXPECT_EQ(read(*t.moved), "old");
    EXPECT_TRUE(FS::exists(h.infoOf(*t.moved)));
    // A link standing there, even a broken one, is something new as well.
    std::filesystem::remove(original);
    h.tree.symLink("/nowhere", "Projects/app/build.log");
    EXPECT_EQ(Remover::putBack(*t.moved, original, h.context), "Something new is already where it was.");
    EXPECT_EQ(read(*t.moved), "old");
}

TEST(RemoverTrash, PuttingBackRemakesTheFolderAndAnswersWhenTheEntryIsGone) {
    Home h;
    std::string original = h.tree.text("Projects/app/sub/notes.txt", "n");
    auto t = Remover::trash(h.path("Projects/app/sub"), h.context);
    ASSERT_TRUE(t.moved);
    std::filesystem::remove_all(h.path("Projects/app"));
    EXPECT_FALSE(Remover::putBack(*t.moved, h.path("Projects/app/sub"), h.context));
    EXPECT_EQ(read(original), "n");
    EXPECT_EQ(Remover::putBack(*t.moved, h.path("Projects/app/sub2"), h.context), "It is not in the Trash any more.");
    EXPECT_EQ(Remover::putBack(*t.moved, "/etc/sub", h.context), "Sorrelin only moves things inside your own folders.");
}

TEST(RemoverTrash, ALinkGoesToTheTrashAsALink) {
    Home h;
    h.tree.text("Projects/target/keep.txt", "k");
    std::string link = h.tree.symLink(h.path("Projects/target"), "Projects/app/link");
    auto t = Remover::trash(link, h.context);
    ASSERT_TRUE(t.moved);
    std::error_code ec;
    EXPECT_TRUE(std::filesystem::is_symlink(*t.moved, ec));
    EXPECT_EQ(read(h.path("Projects/target/keep.txt")), "k");
    EXPECT_FALSE(FS::exists(link));
}

TEST(RemoverTrash, GuardsMissingThingsAndTheTrashItself) {
    Home h;
    h.tree.text("Projects/a/x", "x");
    EXPECT_EQ(Remover::trash(h.path("Projects"), h.context).problem, "Sorrelin only moves things inside your own folders.");
    EXPECT_EQ(Remover::trash("/etc/passwd", h.context).problem, "Sorrelin only moves things inside your own folders.");
    EXPECT_EQ(Remover::trash(h.path("Projects/a/none"), h.context).problem, "It is not there any more.");
    auto t = Remover::trash(h.path("Projects/a/x"), h.context);
    ASSERT_TRUE(t.moved);
    auto again = Remover::trash(*t.moved, h.context);
    EXPECT_FALSE(again.moved);
    EXPECT_EQ(again.problem, "It is in the Trash already.");
    EXPECT_TRUE(FS::exists(*t.moved));
    h.tree.dir("Projects/a");
    auto tooLong = Remover::trash(h.path("Projects/a/" + std::string(4000, 'z')), h.context);
    EXPECT_FALSE(tooLong.moved);
    EXPECT_TRUE(tooLong.problem && tooLong.problem->ends_with(": file name too long.")) << tooLong.problem.value_or("");
}

TEST(RemoverTrash, AReadOnlyTrashGivesAClearSentenceAndLeavesTheThing) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not bind the superuser";
    Home h;
    std::string original = h.tree.text("Projects/a/x", "x");
    h.tree.dir(".local/share/Trash/info");
    h.tree.dir(".local/share/Trash/files");
    chmod(h.path(".local/share/Trash/info").c_str(), 0500);
    auto t = Remover::trash(original, h.context);
    EXPECT_FALSE(t.moved);
    EXPECT_EQ(t.problem, "Could not write to the Trash folder ~/.local/share/Trash: permission denied.");
    EXPECT_EQ(read(original), "x");

    Home fresh;
    std::string other = fresh.tree.text("Projects/a/y", "y");
    chmod(fresh.tree.dir(".local/share").c_str(), 0500);
    auto u = Remover::trash(other, fresh.context);
    EXPECT_EQ(u.problem, "Could not make the Trash folder ~/.local/share/Trash: permission denied.");
    EXPECT_EQ(read(other), "y");
}

TEST(RemoverTrash, EmptyingClearsWhatFileManagersAndSorrelinPutThere) {
    Home h;
    h.tree.text("outside/keep.txt", "k");
    // Left by a file manager: a file, a folder holding a link out of the Trash, their info
    // files and the cache of folder sizes.
    h.tree.text(".local/share/Trash/files/doc.txt", "d");
    h.tree.text(".local/share/Trash/files/folder/inner.txt", "i");
    h.tree.symLink(h.path("outside"), ".local/share/Trash/files/folder/out");
    h.tree.text(".local/share/Trash/info/doc.txt.trashinfo", "[Trash Info]\nPath=/x/doc.txt\nDeletionDate=2020-01-01T00:00:00\n");
    h.tree.text(".local/share/Trash/info/folder.trashinfo", "[Trash Info]\nPath=/x/folder\nDeletionDate=2020-01-01T00:00:00\n");
    h.tree.text(".local/share/Trash/directorysizes", "4096 1577836800 folder\n");
    auto t = Remover::trash(h.tree.text("Projects/a/mine.txt", "m"), h.context);
    ASSERT_TRUE(t.moved);
    // Another mount's Trash, and one on a read-only mount that stays as it is.
    std::string uid = std::to_string(geteuid());
    h.tree.text("disk/.Trash-" + uid + "/files/big.iso", "b");
    h.tree.text("disk/.Trash-" + uid + "/info/big.iso.trashinfo", "[Trash Info]\nPath=big.iso\n");
    h.tree.text("cd/.Trash-" + uid + "/files/old.iso", "o");
    h.tree.text("mounts", "25 1 254:1 / " + h.path("disk") + " rw,relatime - ext4 /dev/vdb rw\n" +
                              "26 1 254:2 / " + h.path("cd") + " ro,relatime - iso9660 /dev/sr0 ro\n");
    h.context.mountinfo = h.path("mounts");

    EXPECT_EQ(Remover::emptyTrash(h.context), std::nullopt);
    EXPECT_TRUE(FS::children(h.layout.trash + "/files").empty());
    EXPECT_TRUE(FS::children(h.layout.trash + "/info").empty());
    EXPECT_FALSE(FS::exists(h.layout.trash + "/directorysizes"));
    EXPECT_TRUE(FS::isDir(h.layout.trash));
    EXPECT_TRUE(FS::children(h.path("disk/.Trash-" + uid + "/files")).empty());
    EXPECT_TRUE(FS::children(h.path("disk/.Trash-" + uid + "/info")).empty());
    EXPECT_EQ(read(h.path("cd/.Trash-" + uid + "/files/old.iso")), "o");
    EXPECT_EQ(read(h.path("outside/keep.txt")), "k");
    // Nothing to empty is no problem.
    EXPECT_EQ(Remover::emptyTrash(h.context), std::nullopt);
    Home none;
    EXPECT_EQ(Remover::emptyTrash(none.context), std::nullopt);
}

TEST(RemoverTrash, EmptyingAReadOnlyTrashSaysWhy) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not bind the superuser";
    Home h;
    h.tree.text(".local/share/Trash/files/doc.txt", "d");
    chmod(h.path(".local/share/Trash/files").c_str(), 0500);
    EXPECT_EQ(Remover::emptyTrash(h.context), "Some things stayed in the Trash: permission denied.");
    EXPECT_EQ(read(h.path(".local/share/Trash/files/doc.txt")), "d");
}

TEST(RemoverTrash, DryRunsMoveNothing) {
    for (bool fails : {false, true}) {
        Home h;
        h.context.dryRun = {true, fails};
        std::vector<double> pauses;
        h.context.pause = [&](double s) { pauses.push_back(s); };
        std::string original = h.tree.text("Projects/a/x", "x");
        h.tree.text(".local/share/Trash/files/doc.txt", "d");

        auto t = Remover::trash(original, h.context);
        if (fails) {
            EXPECT_EQ(t.problem, "it pretended to fail (dry run)");
            EXPECT_FALSE(t.moved);
        } else {
            EXPECT_EQ(t.moved, original);
            EXPECT_FALSE(t.problem);
        }
        EXPECT_EQ(read(original), "x");
        EXPECT_EQ(Remover::putBack(original, h.path("Projects/a/y"), h.context), std::nullopt);
        EXPECT_FALSE(FS::exists(h.path("Projects/a/y")));
        auto emptied = Remover::emptyTrash(h.context);
        EXPECT_EQ(emptied, fails ? std::optional<std::string>("The Trash pretended not to empty (dry run).") : std::nullopt);
        EXPECT_EQ(read(h.path(".local/share/Trash/files/doc.txt")), "d");
        EXPECT_EQ(pauses, (std::vector<double>{0.6, 1.2}));
        // The guards come before the dry run.
        EXPECT_EQ(Remover::trash(h.path("Projects/a/none"), h.context).problem, "It is not there any more.");
    }
}

TEST(RemoverTrash, ACleanMovesTrashItemsAndCountsTheirSize) {
    Home h;
    CleanItem big;
    big.id = "big";
    big.name = "Old disk image";
    big.paths = {h.tree.file("Downloads/old/disk.img", 1000), h.path("Downloads/old/gone.img")};
    big.removal = Removal::trash();
    big.size = 123456;
    auto r = Remover::run({big}, {}, h.context);
    EXPECT_EQ(r.removedIDs, std::set<std::string>{"big"});
    EXPECT_EQ(r.trashedBytes, 123456);
    EXPECT_TRUE(FS::isFile(h.layout.trash + "/files/disk.img"));
    EXPECT_FALSE(FS::exists(h.path("Downloads/old/disk.img")));
}

TEST(RemoverTrash, AThingOnAnotherMountGoesToThatMountsTrash) {
    // /dev/shm is a file system of its own on most machines; without one the case cannot be made.
    Home h;
    struct stat home {}, shm {};
    if (stat(h.tree.root().c_str(), &home) != 0 || stat("/dev/shm", &shm) != 0 || home.st_dev == shm.st_dev ||
        access("/dev/shm", W_OK) != 0)
        GTEST_SKIP() << "no second writable file system";
    std::string uid = std::to_string(geteuid());
    std::string mountTrash = "/dev/shm/.Trash-" + uid;
    bool existed = FS::exists(mountTrash);
    char pattern[] = "/dev/shm/sorrelin-test-XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    std::string top = pattern;
    std::filesystem::create_directories(top + "/a");
    { int fd = open((top + "/a/file name.bin").c_str(), O_WRONLY | O_CREAT, 0644); close(fd); }
    h.context.allowedRoots.push_back(top);

    auto t = Remover::trash(top + "/a/file name.bin", h.context);
    ASSERT_TRUE(t.moved) << t.problem.value_or("");
    EXPECT_TRUE(t.moved->starts_with(mountTrash + "/files/")) << *t.moved;
    std::string info = mountTrash + "/info/" + FS::lastComponent(*t.moved) + ".trashinfo";
    EXPECT_EQ(originalOf(info), top.substr(std::string("/dev/shm/").size()) + "/a/file name.bin");
    struct stat st {};
    ASSERT_EQ(stat(mountTrash.c_str(), &st), 0);
    if (!existed) {
        EXPECT_EQ(st.st_mode & 0777, 0700u);
    }
    EXPECT_FALSE(FS::exists(h.layout.trash + "/files"));

    EXPECT_FALSE(Remover::putBack(*t.moved, top + "/a/file name.bin", h.context));
    EXPECT_TRUE(FS::exists(top + "/a/file name.bin"));
    EXPECT_FALSE(FS::exists(info));
    std::filesystem::remove_all(top);
    if (!existed) std::filesystem::remove_all(mountTrash);
}
