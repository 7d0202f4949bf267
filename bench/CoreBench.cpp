// Micro benchmarks of the hot paths: one probe of the machine, measuring a tree, fitting a
// column, one session-bus call, one front-app reading. Run: build/bench/sorrelin_bench (add
// --benchmark_filter=... to pick). The bus and the display are private ones the benchmark starts.
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/Probe.h"
#include "platform/linux/SdSessionBus.h"
#include "platform/linux/X11Display.h"
#include "support/DeskClient.h"
#include "support/PrivateServers.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

// A tree of `files` small files in folders of 100, made once per process.
const std::string& smallTree(int files) {
    static std::string root;
    if (!root.empty()) return root;
    root = (std::filesystem::temp_directory_path() / ("sorrelin-bench-tree-" + std::to_string(files))).string();
    if (!std::filesystem::exists(root)) {
        for (int i = 0; i < files; ++i) {
            std::string dir = root + "/d" + std::to_string(i / 100);
            std::filesystem::create_directories(dir);
            std::ofstream(dir + "/f" + std::to_string(i)) << "0123456789";
        }
    }
    return root;
}

void probeSnapshot(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Probe::snapshot());
}
BENCHMARK(probeSnapshot)->Unit(benchmark::kMillisecond);

void probeSystem(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Probe::system());
}
BENCHMARK(probeSystem)->Unit(benchmark::kMicrosecond);

void measureTree(benchmark::State& state) {
    const std::string& root = smallTree(50'000);
    for (auto _ : state) benchmark::DoNotOptimize(FS::measure({root}));
    state.SetItemsProcessed(state.iterations() * 50'000);
}
BENCHMARK(measureTree)->Unit(benchmark::kMillisecond);

void fitColumn(benchmark::State& state) {
    const std::string name = "Google Chrome cache \xE2\x80\x94 caf\xC3\xA9 \xF0\x9F\x98\x80 and more words";
    for (auto _ : state) benchmark::DoNotOptimize(Text::fit(name, 32));
}
BENCHMARK(fitColumn);

// One NameHasOwner round trip on a kept connection.
void sessionBusCall(benchmark::State& state) {
    PrivateBus bus;
    if (bus.address.empty()) return state.SkipWithError("dbus-daemon is not installed");
    setenv("DBUS_SESSION_BUS_ADDRESS", bus.address.c_str(), 1);
    SdSessionBus session;
    if (!session.hasOwner("org.freedesktop.DBus")) return state.SkipWithError("the bus did not answer");
    for (auto _ : state) benchmark::DoNotOptimize(session.hasOwner("org.freedesktop.DBus"));
}
BENCHMARK(sessionBusCall)->Unit(benchmark::kMicrosecond);

// _NET_ACTIVE_WINDOW of the root, then _NET_WM_PID of that window, on a kept connection.
void frontAppReading(benchmark::State& state) {
    PrivateDisplay display;
    if (display.name.empty()) return state.SkipWithError("Xvfb is not installed");
    DeskClient desk(display.name);
    desk.setActive(desk.window(static_cast<uint32_t>(getpid())));
    desk.sync();
    X11Display reader(display.name);
    if (reader.activePid() != getpid()) return state.SkipWithError("the front app was not read");
    for (auto _ : state) benchmark::DoNotOptimize(reader.activePid());
}
BENCHMARK(frontAppReading)->Unit(benchmark::kMicrosecond);

} // namespace
