// Micro benchmarks of the hot paths: one probe of the machine, measuring a tree, fitting a
// column. Run: build/bench/sorrelin_bench (add --benchmark_filter=... to pick).
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/Probe.h"

#include <benchmark/benchmark.h>

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

} // namespace
