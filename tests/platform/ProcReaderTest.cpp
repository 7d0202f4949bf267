#include "platform/linux/ProcPorts.h"
#include "platform/linux/ProcReader.h"

#include "foundation/FS.h"

#include "support/FakeAppBundles.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>

namespace {

struct FakeProc {
    int pid = 0;
    int ppid = 1;
    std::string name = "proc";
    uint32_t uid = 0;
    std::string exe = "";    // no link when empty
    std::string cgroup = "/";
    uint64_t startTicks = 100;
    uint64_t utime = 0, stime = 0;
    int64_t rssAnonKB = 0, swapKB = 0;
    uint64_t flags = 0x400100;
};

// A saved /proc entry in the kernel's own formats.
void write(const TempTree& t, const FakeProc& p) {
    const std::string base = std::to_string(p.pid);
    t.text(base + "/stat", std::to_string(p.pid) + " (" + p.name + ") S " + std::to_string(p.ppid) + " 1 1 0 -1 " +
                               std::to_string(p.flags) + " 0 0 0 0 " + std::to_string(p.utime) + " " +
                               std::to_string(p.stime) + " 0 0 20 0 1 0 " + std::to_string(p.startTicks) +
                               " 1000 10 18446744073709551615 0 0 0 0 0 0 0 0 0 0 0 0 17 0 0 0 0 0 0\n");
    t.text(base + "/status", "Name:\t" + p.name + "\nUid:\t" + std::to_string(p.uid) + "\t" + std::to_string(p.uid) +
                                 "\t" + std::to_string(p.uid) + "\t" + std::to_string(p.uid) + "\nRssAnon:\t" +
                                 std::to_string(p.rssAnonKB) + " kB\nVmSwap:\t" + std::to_string(p.swapKB) + " kB\n");
    t.text(base + "/cgroup", "0::" + p.cgroup + "\n");
    if (!p.exe.empty()) t.symLink(p.exe, base + "/exe");
}

ProcReader::Options options(uint32_t uid, int32_t self = 0) {
    ProcReader::Options o;
    o.uid = uid;
    o.self = self;
    o.bootSeconds = 1'700'000'000;
    o.ticksPerSecond = 100;
    return o;
}

const ProcRecord* find(const std::vector<ProcReader::Entry>& entries, int pid) {
    for (const auto& e : entries)
        if (e.record.pid == pid) return &e.record;
    return nullptr;
}

const std::string userApps = "/user.slice/user-1000.slice/user@1000.service/app.slice/";

} // namespace

TEST(ProcReader, OwnProcessesOnlyAndNeverItself) {
    TempTree t;
    const uint32_t me = 1000;
    write(t, {.pid = 10, .name = "node", .uid = me, .exe = "/usr/bin/node"});
    write(t, {.pid = 11, .name = "sshd", .uid = 0, .exe = "/usr/sbin/sshd"});           // root's
    write(t, {.pid = 12, .name = "kworker/0:1", .uid = me, .flags = 0x04208040});     // a kernel thread
    write(t, {.pid = 13, .name = "sorrelin", .uid = me, .exe = "/usr/bin/sorrelin"}); // this program
    write(t, {.pid = 14, .name = "tmux: server (1)", .uid = me, .exe = "/opt/x/app (deleted)"});
    write(t, {.pid = 15, .name = "secret", .uid = me}); // the program can't be read
    t.text("16/status", "Name:\tgone\nUid:\t1000\t1000\t1000\t1000\n"); // ended between the two reads
    t.dir("17");                                                         // ended before any read
    t.text("self/status", "Uid:\t1000\t1000\t1000\t1000\n");
    t.text("sys/x", "");

    auto entries = ProcReader::read(t.root(), options(me, 13));
    std::vector<int> pids;
    for (const auto& e : entries) pids.push_back(e.record.pid);
    std::sort(pids.begin(), pids.end());
    EXPECT_EQ(pids, (std::vector<int>{10, 14, 15}));

    EXPECT_EQ(find(entries, 14)->name, "tmux: server (1)");
    EXPECT_EQ(find(entries, 14)->exe, "/opt/x/app"); // " (deleted)" stripped
    EXPECT_EQ(find(entries, 15)->exe, "");            // kept with an empty path
    EXPECT_TRUE(ProcReader::read(t.root(), options(4242)).empty());
    EXPECT_TRUE(ProcReader::read(t.path("missing"), options(me)).empty());
}

TEST(ProcReader, StartProcessorTimeAndMemory) {
    TempTree t;
    write(t, {.pid = 20, .ppid = 7, .name = "python3", .uid = 1000, .exe = "/usr/bin/python3", .startTicks = 250,
              .utime = 300, .stime = 45, .rssAnonKB = 2048, .swapKB = 512});
    auto entries = ProcReader::read(t.root(), options(1000));
    ASSERT_EQ(entries.size(), 1u);
    const ProcRecord& r = entries[0].record;
    EXPECT_EQ(r.ppid, 7);
    EXPECT_EQ(r.start, addSeconds(Clock::from_time_t(1'700'000'000), 2.5));
    EXPECT_EQ(r.cpuNanos, 345u * 10'000'000u); // ticks of 10 ms
    EXPECT_EQ(r.footprint, (2048 + 512) * 1024);
    EXPECT_EQ(r.responsible, 20);
    EXPECT_EQ(entries[0].cgroup, "/");
    // The same files read twice give the same start: the test for a re-used pid relies on it.
    EXPECT_EQ(ProcReader::read(t.root(), options(1000))[0].record.start, r.start);
}

TEST(ProcReader, ProcessesJoinTheirApps) {
    TempTree t;
    FakeAppBundles apps;
    apps.add("org.gnome.Nautilus", "\xE2\x80\x8E" "Files ");
    apps.add("org.kde.konsole", "Konsole");
    apps.add("org.mozilla.firefox", "Firefox");
    apps.add("spotify_spotify", "Spotify");
    apps.add("google-chrome", "Google Chrome");
    apps.add("foo", "Foo", "/opt/Foo/foo");
    apps.add("vim", "Vim", "/usr/bin/vim").terminal = true;
    apps.add("org.kde.kdeconnect.daemon", "KDE Connect");

    const std::string files = userApps + "app-gnome-org.gnome.Nautilus-300.scope";
    write(t, {.pid = 300, .name = "nautilus", .uid = 1000, .cgroup = files, .startTicks = 50}); // the launched one
    write(t, {.pid = 301, .name = "nautilus-helper", .uid = 1000, .cgroup = files, .startTicks = 10});
    write(t, {.pid = 400, .name = "konsole", .uid = 1000, .cgroup = userApps + "app-org.kde.konsole@9a8b.service"});
    write(t, {.pid = 500, .name = "firefox", .uid = 1000, .cgroup = userApps + "app-flatpak-org.mozilla.firefox-500.scope"});
    write(t, {.pid = 501, .name = "Web Content", .uid = 1000, .cgroup = userApps + "app-flatpak-org.mozilla.firefox-500.scope"});
    write(t, {.pid = 600, .name = "spotify", .uid = 1000,
              .cgroup = userApps + "snap.spotify.spotify-0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d.scope"});
    write(t, {.pid = 700, .name = "chrome", .uid = 1000, .cgroup = userApps + "app-gnome-google\\x2dchrome-700.scope"});
    write(t, {.pid = 800, .name = "foo", .uid = 1000, .exe = "/opt/Foo/foo"}); // another desktop: by its program
    write(t, {.pid = 801, .name = "foo", .uid = 1000, .exe = "/opt/Foo/foo", .startTicks = 100});
    write(t, {.pid = 802, .name = "vim", .uid = 1000, .exe = "/usr/bin/vim"});
    write(t, {.pid = 900, .name = "kdeconnectd", .uid = 1000,
              .cgroup = userApps + "app-org.kde.kdeconnect.daemon@autostart.service"});
    write(t, {.pid = 950, .name = "bash", .uid = 1000, .exe = "/usr/bin/bash"});
    // An editor that quit and left a dev server in its scope: no app any more.
    write(t, {.pid = 4010, .name = "node", .uid = 1000, .exe = "/usr/bin/node", .cgroup = userApps + "app-gnome-code-4000.scope"});
    apps.add("code", "Visual Studio Code", "/usr/share/code/code");
    // A terminal's slice: the server's service is the app, not the shells in their scopes.
    const std::string slice = userApps + "app-org.gnome.Terminal.slice/";
    apps.add("org.gnome.Terminal", "Terminal");
    write(t, {.pid = 5000, .name = "bash", .uid = 1000, .exe = "/usr/bin/bash", .cgroup = slice + "vte-spawn-a1.scope", .startTicks = 5});
    write(t, {.pid = 5001, .name = "gnome-terminal-", .uid = 1000, .cgroup = slice + "gnome-terminal-server.service", .startTicks = 7});
    // The same with the server gone: what is left is no app.
    const std::string gone = userApps + "app-org.gnome.Console.slice/";
    apps.add("org.gnome.Console", "Console");
    write(t, {.pid = 6000, .name = "node", .uid = 1000, .exe = "/usr/bin/node", .cgroup = gone + "vte-spawn-b2.scope"});

    auto entries = ProcReader::read(t.root(), options(1000));
    auto running = ProcReader::attachApps(entries, apps);

    // One running app per group: its oldest process, the lower pid on a tie.
    std::vector<int> leads;
    for (const auto& [pid, app] : running) leads.push_back(pid);
    EXPECT_EQ(leads, (std::vector<int>{300, 400, 500, 600, 700, 800, 900, 5001}));

    EXPECT_EQ(running.at(300).name, "Files"); // direction mark and blank trimmed
    EXPECT_EQ(running.at(300).bundlePath, "/apps/org.gnome.Nautilus.desktop");
    EXPECT_EQ(running.at(300).bundleID, "org.gnome.Nautilus");
    EXPECT_FALSE(running.at(300).accessory);
    EXPECT_FALSE(running.at(300).active);
    EXPECT_EQ(running.at(700).bundleID, "google-chrome");
    EXPECT_TRUE(running.at(900).accessory); // started by autostart

    EXPECT_EQ(find(entries, 301)->responsible, 300);
    EXPECT_EQ(find(entries, 301)->group, "/apps/org.gnome.Nautilus.desktop");
    EXPECT_EQ(find(entries, 4010)->group, "");
    EXPECT_EQ(find(entries, 4010)->responsible, 4010);
    EXPECT_EQ(find(entries, 5000)->responsible, 5001);
    EXPECT_EQ(find(entries, 5000)->group, "/apps/org.gnome.Terminal.desktop");
    EXPECT_EQ(find(entries, 6000)->group, "");
    EXPECT_EQ(find(entries, 501)->responsible, 500);
    EXPECT_EQ(find(entries, 801)->responsible, 800);
    EXPECT_EQ(find(entries, 801)->group, "/apps/foo.desktop");
    EXPECT_EQ(find(entries, 802)->group, "");
    EXPECT_EQ(find(entries, 802)->responsible, 802);
    EXPECT_EQ(find(entries, 950)->responsible, 950);

    // The window with the keyboard belongs to a helper of the file manager: the app is front.
    ProcReader::markFront(running, entries, 301);
    EXPECT_TRUE(running.at(300).active);
    EXPECT_EQ(std::count_if(running.begin(), running.end(), [](const auto& a) { return a.second.active; }), 1);
}

TEST(ProcReader, FrontThroughTheParentChain) {
    TempTree t;
    FakeAppBundles apps;
    apps.add("foo", "Foo", "/opt/Foo/foo");
    write(t, {.pid = 10, .name = "foo", .uid = 1000, .exe = "/opt/Foo/foo"});
    write(t, {.pid = 11, .ppid = 10, .name = "foo-gpu", .uid = 1000, .exe = "/opt/Foo/gpu"});
    write(t, {.pid = 12, .ppid = 1, .name = "xterm", .uid = 1000, .exe = "/usr/bin/xterm"});
    auto entries = ProcReader::read(t.root(), options(1000));
    auto running = ProcReader::attachApps(entries, apps);
    ProcReader::markFront(running, entries, 11);
    EXPECT_TRUE(running.at(10).active);
    running.at(10).active = false;
    ProcReader::markFront(running, entries, 12); // a window of no app: nothing is front
    ProcReader::markFront(running, entries, 99); // a pid we don't know
    EXPECT_FALSE(running.at(10).active);
}

TEST(ProcPorts, ListeningPortsByTheProcessSockets) {
    TempTree t;
    const std::string fixtures = std::string(SORRELIN_FIXTURES) + "/platform/fixtures/";
    for (const char* table : {"net-tcp", "net-tcp6"}) {
        auto text = FS::readText(fixtures + table).value();
        t.text(std::string("31/net/") + (std::string(table) == "net-tcp" ? "tcp" : "tcp6"), text);
    }
    t.dir("31/fd");
    t.symLink("socket:[5003]", "31/fd/3");
    t.symLink("socket:[6001]", "31/fd/4");
    t.symLink("socket:[5003]", "31/fd/5"); // the same port on a second descriptor
    t.symLink("socket:[5002]", "31/fd/6"); // an established connection
    t.symLink("/home/ann/notes.txt", "31/fd/7");
    EXPECT_EQ(ProcPorts::listening(t.root(), 31), (std::vector<int>{5173, 8080}));

    // Sockets that aren't listening give nothing; so does an unreadable descriptor folder.
    t.text("32/net/tcp", FS::readText(fixtures + "net-tcp").value());
    t.dir("32/fd");
    t.symLink("socket:[5002]", "32/fd/3");
    t.symLink("pipe:[5001]", "32/fd/4");
    EXPECT_TRUE(ProcPorts::listening(t.root(), 32).empty());
    t.text("33/net/tcp", FS::readText(fixtures + "net-tcp").value());
    EXPECT_TRUE(ProcPorts::listening(t.root(), 33).empty());
    EXPECT_TRUE(ProcPorts::listening(t.root(), 34).empty());
}

TEST(ProcPorts, WorkingFolderAndManagedServices) {
    TempTree t;
    t.symLink("/home/ann/app", "40/cwd");
    t.symLink("/home/ann/gone (deleted)", "41/cwd");
    EXPECT_EQ(ProcPorts::cwd(t.root(), 40), "/home/ann/app");
    EXPECT_EQ(ProcPorts::cwd(t.root(), 41), "/home/ann/gone");
    EXPECT_FALSE(ProcPorts::cwd(t.root(), 42));

    const std::string manager = "/user.slice/user-1000.slice/user@1000.service/";
    write(t, {.pid = 50, .uid = 1000, .cgroup = manager + "session.slice/pipewire.service"});
    write(t, {.pid = 51, .uid = 1000, .cgroup = manager + "app.slice/app-org.kde.konsole@x.service"});
    write(t, {.pid = 52, .uid = 1000, .cgroup = manager + "app.slice/vte-spawn-9.scope"});
    write(t, {.pid = 53, .uid = 0, .cgroup = manager + "session.slice/pipewire.service"});
    write(t, {.pid = 54, .uid = 1000, .cgroup = manager + "app.slice/gnome-terminal-server.service"});
    EXPECT_EQ(ProcPorts::managedServices(t.root(), 1000), (std::set<int32_t>{50, 54}));
}
