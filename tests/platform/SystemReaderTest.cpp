#include "platform/linux/SystemReader.h"

#include "foundation/FS.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

namespace {

std::string fixture(const std::string& name) {
    return FS::readText(std::string(SORRELIN_FIXTURES) + "/platform/fixtures/" + name).value_or("");
}

// A /proc and /sys pair with a zram device holding 1.2 MB, zswap at 256 MiB, one disk swap
// file and one zram swap.
struct Machine {
    TempTree t;
    Machine() {
        t.text("proc/stat", fixture("stat"));
        t.text("proc/meminfo", fixture("meminfo-zswap"));
        t.text("proc/swaps", fixture("swaps-zram-disk"));
        t.text("proc/vmstat", "pswpin 10\npswpout 300\n");
        t.text("proc/pressure/memory", "some avg10=0.00 avg60=0.00 avg300=0.00 total=0\nfull avg10=0.00 avg60=0.00 avg300=0.00 total=0\n");
        t.text("sys/block/zram0/mm_stat", fixture("zram-mm_stat"));
        t.dir("sys/block/vda");
        t.dir("sys/class/thermal");
    }
    SystemReading read() const { return SystemReader::read(t.path("proc"), t.path("sys"), 4096); }
};

} // namespace

TEST(SystemReader, ZramIsMemoryAndZswapIsNotOnDisk) {
    Machine m;
    auto r = m.read();
    // zram's own memory plus what zswap holds.
    EXPECT_EQ(r.compressed, 1200000 + 262144LL * 1024);
    // Only the swap file counts, less the pages zswap keeps in memory.
    EXPECT_EQ(r.swapTotal, 4194300LL * 1024);
    EXPECT_EQ(r.swapUsed, (2097152LL - 524288LL) * 1024);
    EXPECT_EQ(r.swappedOut, 300 * 4096);
    EXPECT_EQ(r.cpuTotal - r.cpuBusy, 177025u + 477u);
    EXPECT_EQ(r.bootDate, Clock::from_time_t(1795247538));
    EXPECT_EQ(r.pressureLevel, 1);
    EXPECT_EQ(r.thermal, 0);

    auto mem = m.t.path("proc/meminfo");
    auto info = FS::readText(mem).value();
    // The fixture's own figures: MemAvailable / MemTotal, whole percent rounded down.
    auto total = std::stoll(info.substr(info.find("MemTotal:") + 9));
    auto available = std::stoll(info.substr(info.find("MemAvailable:") + 13));
    EXPECT_EQ(r.freePercent, static_cast<int>(available * 100 / total));
}

TEST(SystemReader, OnlyZramSwapMeansNoDiskSwap) {
    Machine m;
    m.t.text("proc/swaps", "Filename\tType\tSize\tUsed\tPriority\n/dev/zram0 partition 8388604 1048576 100\n");
    auto r = m.read();
    EXPECT_EQ(r.swapTotal, 0);
    EXPECT_EQ(r.swapUsed, 0); // zswap's share is never taken below zero
}

TEST(SystemReader, PressureFromPsiOrFromTheFreeShare) {
    EXPECT_EQ(SystemReader::pressureLevel("some avg10=9.99 avg60=0 avg300=0 total=0\nfull avg10=0 avg60=0 avg300=0 total=0", true, 50), 1);
    EXPECT_EQ(SystemReader::pressureLevel("some avg10=10.00 avg60=0 avg300=0 total=0\nfull avg10=9.99 avg60=0 avg300=0 total=0", true, 50), 2);
    EXPECT_EQ(SystemReader::pressureLevel("some avg10=40.00 avg60=0 avg300=0 total=0\nfull avg10=10.00 avg60=0 avg300=0 total=0", true, 50), 4);
    EXPECT_EQ(SystemReader::pressureLevel("garbage", true, 1), 1); // unreadable PSI is no alarm
    // Without PSI: 4 below 3 %, 2 below 10 %.
    EXPECT_EQ(SystemReader::pressureLevel({}, false, 2), 4);
    EXPECT_EQ(SystemReader::pressureLevel({}, false, 3), 2);
    EXPECT_EQ(SystemReader::pressureLevel({}, false, 9), 2);
    EXPECT_EQ(SystemReader::pressureLevel({}, false, 10), 1);

    Machine m;
    std::remove(m.t.path("proc/pressure/memory").c_str());
    m.t.text("proc/meminfo", "MemTotal: 1000 kB\nMemAvailable: 50 kB\n");
    auto r = m.read();
    EXPECT_EQ(r.freePercent, 5);
    EXPECT_EQ(r.pressureLevel, 2);
}

TEST(SystemReader, FailedReadsLeaveNeutralFigures) {
    TempTree t;
    t.dir("proc");
    t.dir("sys");
    auto before = Clock::now();
    auto r = SystemReader::read(t.path("proc"), t.path("sys"), 4096);
    EXPECT_EQ(r.cpuBusy, 0u);
    EXPECT_EQ(r.cpuTotal, 0u);
    EXPECT_EQ(r.pressureLevel, 1);
    EXPECT_EQ(r.freePercent, 100);
    EXPECT_EQ(r.compressed, 0);
    EXPECT_EQ(r.swapUsed, 0);
    EXPECT_EQ(r.swapTotal, 0);
    EXPECT_EQ(r.swappedOut, 0);
    EXPECT_GE(r.bootDate, before); // "now" stands in for an unknown boot
    EXPECT_EQ(r.thermal, 0);
}

TEST(SystemReader, ThermalStates) {
    TempTree t;
    auto zone = [&](const std::string& name, int temp, std::vector<std::pair<std::string, int>> trips) {
        t.text(name + "/temp", std::to_string(temp) + "\n");
        for (std::size_t i = 0; i < trips.size(); ++i) {
            t.text(name + "/trip_point_" + std::to_string(i) + "_type", trips[i].first + "\n");
            t.text(name + "/trip_point_" + std::to_string(i) + "_temp", std::to_string(trips[i].second));
        }
    };
    zone("a/thermal_zone0", 50000, {{"passive", 90000}, {"critical", 105000}});
    EXPECT_EQ(SystemReader::thermal(t.path("a")), 0);
    zone("b/thermal_zone0", 80000, {{"passive", 90000}, {"critical", 105000}}); // exactly 10 °C below
    EXPECT_EQ(SystemReader::thermal(t.path("b")), 1);
    zone("c/thermal_zone0", 90000, {{"passive", 90000}});
    zone("c/thermal_zone1", 20000, {{"passive", 0}}); // an unused trip point
    EXPECT_EQ(SystemReader::thermal(t.path("c")), 2);
    zone("d/thermal_zone3", 40000, {{"active", 30000}});
    zone("d/thermal_zone4", 100000, {{"passive", 95000}, {"hot", 100000}});
    EXPECT_EQ(SystemReader::thermal(t.path("d")), 3);
    // A processor cooling device at work means the machine is held back.
    zone("e/thermal_zone0", 30000, {});
    t.text("e/cooling_device0/type", "Processor\n");
    t.text("e/cooling_device0/cur_state", "2\n");
    t.text("e/cooling_device1/type", "Fan\n");
    t.text("e/cooling_device1/cur_state", "5\n");
    EXPECT_EQ(SystemReader::thermal(t.path("e")), 2);
    t.text("e/cooling_device0/cur_state", "0\n");
    EXPECT_EQ(SystemReader::thermal(t.path("e")), 0);
    // A zone whose temperature can't be read says nothing.
    t.text("f/thermal_zone0/trip_point_0_type", "critical\n");
    t.text("f/thermal_zone0/trip_point_0_temp", "1\n");
    EXPECT_EQ(SystemReader::thermal(t.path("f")), 0);
}
