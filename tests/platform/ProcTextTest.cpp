#include "platform/linux/ProcText.h"

#include "foundation/FS.h"

#include "platform/SwapAreas.h"

#include <gtest/gtest.h>

namespace {

std::string fixture(const std::string& name) {
    auto text = FS::readText(std::string(SORRELIN_FIXTURES) + "/platform/fixtures/" + name);
    EXPECT_TRUE(text.has_value()) << name;
    return text.value_or("");
}

} // namespace

TEST(ProcText, StatNamesWithBlanksAndParentheses) {
    // A name may hold ") " itself: fields are counted from the last parenthesis.
    auto s = ProcText::stat("4242 (my (odd) ) name) S 17 4242 4242 0 -1 4194560 120 0 0 0 250 75 0 0 20 0 3 0 987654 "
                            "1000 200 18446744073709551615 1 1 0 0 0 0 0 0 0 0 0 0 17 1 0 0 0 0 0");
    ASSERT_TRUE(s);
    EXPECT_EQ(s->pid, 4242);
    EXPECT_EQ(s->name, "my (odd) ) name");
    EXPECT_EQ(s->state, 'S');
    EXPECT_EQ(s->ppid, 17);
    EXPECT_EQ(s->flags, 4194560u);
    EXPECT_EQ(s->utime, 250u);
    EXPECT_EQ(s->stime, 75u);
    EXPECT_EQ(s->startTicks, 987654u);
    EXPECT_FALSE(s->flags & ProcText::kernelThreadFlag);
}

TEST(ProcText, StatOfAKernelThreadAndBrokenLines) {
    auto k = ProcText::stat("2 (kthreadd) S 0 0 0 0 -1 2129984 0 0 0 0 0 3 0 0 20 0 1 0 1 0 0 18446744073709551615 0 0 0 0 "
                            "0 0 0 2147483647 0 0 0 0 17 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n");
    ASSERT_TRUE(k);
    EXPECT_TRUE(k->flags & ProcText::kernelThreadFlag);
    EXPECT_FALSE(ProcText::stat(""));
    EXPECT_FALSE(ProcText::stat("12 (cut short) S 1 1 1"));          // a read cut off
    EXPECT_FALSE(ProcText::stat("12 no parentheses S 1 1 1 0 -1 0")); // not a stat line
    EXPECT_FALSE(ProcText::stat("x (a) S 1 1 1 0 -1 0 0 0 0 0 1 1 0 0 20 0 1 0 5 0 0"));
}

TEST(ProcText, StatusGivesEffectiveUserAndPrivateMemory) {
    auto s = ProcText::status("Name:\tnode\nUid:\t1000\t1001\t1000\t1000\nVmRSS:\t  9000 kB\nRssAnon:\t  4000 kB\n"
                              "RssFile:\t  5000 kB\nVmSwap:\t  250 kB");
    ASSERT_TRUE(s.uid);
    EXPECT_EQ(*s.uid, 1001u);
    EXPECT_EQ(s.rssAnon, 4000 * 1024);
    EXPECT_EQ(s.vmSwap, 250 * 1024);
    // A zombie has no memory lines.
    auto z = ProcText::status("Name:\tgone\nState:\tZ (zombie)\nUid:\t0\t0\t0\t0\n");
    EXPECT_EQ(z.rssAnon + z.vmSwap, 0);
    EXPECT_FALSE(ProcText::status("Name:\tx\n").uid);
}

TEST(ProcText, MeminfoInBytes) {
    auto m = ProcText::meminfo(fixture("meminfo"));
    ASSERT_TRUE(m.contains("MemTotal"));
    EXPECT_EQ(m.at("MemTotal") % 1024, 0);
    EXPECT_GT(m.at("MemTotal"), m.at("MemAvailable"));
    EXPECT_EQ(m.at("HugePages_Total"), 0); // a count, not kB
    auto z = ProcText::meminfo(fixture("meminfo-zswap"));
    EXPECT_EQ(z.at("Zswap"), 262144LL * 1024);
    EXPECT_EQ(z.at("Zswapped"), 524288LL * 1024);
}

TEST(ProcText, ProcessorTicksAndBootTime) {
    auto text = fixture("stat");
    auto cpu = ProcText::cpu(text);
    ASSERT_TRUE(cpu);
    // cpu  57051 0 25029 177025 477 0 68 28 0 0
    EXPECT_EQ(cpu->busy, 57051u + 0 + 25029 + 0 + 68 + 28);
    EXPECT_EQ(cpu->total, cpu->busy + 177025 + 477);
    EXPECT_EQ(ProcText::bootTime(text), 1795247538);
    // The per-processor lines are not the total.
    EXPECT_FALSE(ProcText::cpu("cpu0 1 2 3 4 5 6 7 8\n"));
    // An old kernel without steal still reads.
    auto old = ProcText::cpu("cpu 10 1 5 100 2 1 1");
    ASSERT_TRUE(old);
    EXPECT_EQ(old->busy, 18u);
    EXPECT_EQ(old->total, 120u);
}

TEST(ProcText, PressureAverages) {
    auto p = ProcText::pressure("some avg10=12.50 avg60=3.00 avg300=1.00 total=99\nfull avg10=0.40 avg60=0.10 avg300=0.00 total=7");
    ASSERT_TRUE(p);
    EXPECT_DOUBLE_EQ(p->some10, 12.5);
    EXPECT_DOUBLE_EQ(p->full10, 0.4);
    auto real = ProcText::pressure(fixture("pressure-memory"));
    ASSERT_TRUE(real);
    EXPECT_GE(real->some10, 0);
    EXPECT_FALSE(ProcText::pressure("nonsense"));
}

TEST(ProcText, SwapsTellMemoryFromDisk) {
    auto areas = SwapAreas::parse(fixture("swaps-zram-disk")); // no final line feed
    ASSERT_EQ(areas.size(), 2u);
    EXPECT_EQ(areas[0].path, "/dev/zram0");
    EXPECT_TRUE(SwapAreas::inMemory(areas[0]));
    EXPECT_EQ(areas[1].path, "/swap file");
    EXPECT_FALSE(SwapAreas::inMemory(areas[1]));
    EXPECT_EQ(areas[1].size, 4194300LL * 1024);
    EXPECT_EQ(areas[1].used, 2097152LL * 1024);
    EXPECT_TRUE(SwapAreas::parse("Filename\tType\tSize\tUsed\tPriority\n").empty());
}

TEST(ProcText, ZramAndVmstatCounters) {
    EXPECT_EQ(ProcText::zramUsed(fixture("zram-mm_stat")), 1200000);
    EXPECT_EQ(ProcText::zramUsed("       0        0        0        0        0        0        0        0        0\n"), 0);
    EXPECT_FALSE(ProcText::zramUsed("12 34"));
    auto vm = fixture("vmstat");
    EXPECT_TRUE(ProcText::vmstat(vm, "pswpout"));
    EXPECT_EQ(ProcText::vmstat("pswpin 5\npswpout 77", "pswpout"), 77); // no final line feed
    EXPECT_FALSE(ProcText::vmstat("pswpout_x 5\n", "pswpout"));
}

TEST(ProcText, ListeningSocketsOnly) {
    auto v4 = ProcText::listeningSockets(fixture("net-tcp"));
    // 0.0.0.0:3000 and 127.0.0.1:5173 listen; an established row and one without inode don't count.
    ASSERT_EQ(v4.size(), 2u);
    EXPECT_EQ(v4.at(5001), 3000);
    EXPECT_EQ(v4.at(5003), 5173);
    EXPECT_FALSE(v4.contains(5002));
    auto v6 = ProcText::listeningSockets(fixture("net-tcp6"));
    ASSERT_EQ(v6.size(), 1u);
    EXPECT_EQ(v6.at(6001), 8080);
    EXPECT_EQ(ProcText::listeningSockets(fixture("net-tcp-real")).size(), 1u);

    EXPECT_EQ(ProcText::socketInode("socket:[5001]"), 5001u);
    EXPECT_FALSE(ProcText::socketInode("pipe:[5001]"));
    EXPECT_FALSE(ProcText::socketInode("/home/ann/socket:[1]"));
}

TEST(ProcText, UnifiedControlGroup) {
    EXPECT_EQ(ProcText::cgroupPath("0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
                                   "app-gnome-firefox-4242.scope\n"),
              "/user.slice/user-1000.slice/user@1000.service/app.slice/app-gnome-firefox-4242.scope");
    // A mixed hierarchy: the v1 lines come first.
    EXPECT_EQ(ProcText::cgroupPath("12:pids:/user.slice\n1:name=systemd:/user.slice\n0::/init.scope"), "/init.scope");
    EXPECT_FALSE(ProcText::cgroupPath("1:name=systemd:/user.slice\n"));
}
