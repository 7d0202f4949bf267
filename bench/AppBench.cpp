// Micro benchmarks of the application layer's lists: a rescan arriving in a list of clean items
// as moves, insertions and changed rows, a long list filling an empty one, and a tick redrawing
// its row. Run:
// build/bench/sorrelin_app_bench (add --benchmark_filter=... to pick).
#include "app/RecordListModel.h"
#include "foundation/CleanItem.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

std::vector<CleanItem> items(int n, int generation) {
    std::vector<CleanItem> out;
    std::mt19937 random(static_cast<unsigned>(generation));
    for (int i = 0; i < n; ++i) {
        // Each rescan drops a twentieth, finds as many new ones and remeasures a tenth.
        if (generation > 0 && i % 20 == generation % 20) continue;
        CleanItem c;
        c.id = "item:" + std::to_string(i);
        c.name = "Item " + std::to_string(i);
        c.size = 1000 + i + (i % 10 == generation % 10 ? generation : 0);
        out.push_back(std::move(c));
    }
    for (int i = 0; i < n / 20; ++i) {
        CleanItem c;
        c.id = "new:" + std::to_string(generation) + ":" + std::to_string(i);
        c.size = 500 + i;
        out.push_back(std::move(c));
    }
    std::stable_sort(out.begin(), out.end(), [](const CleanItem& a, const CleanItem& b) { return a.size > b.size; });
    return out;
}

struct Model {
    std::set<std::string> ticked;
    RecordListModel<CleanItem> list{[](const CleanItem& i) { return i.id; },
                                    {{"id", [](const CleanItem& i) { return QVariant(QString::fromStdString(i.id)); }},
                                     {"name", [](const CleanItem& i) { return QVariant(QString::fromStdString(i.name)); }},
                                     {"size", [](const CleanItem& i) { return QVariant(qint64(i.size)); }},
                                     {"ticked", [this](const CleanItem& i) { return QVariant(ticked.contains(i.id)); }}}};
};

void listRescan(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    Model m;
    auto first = items(n, 0);
    auto second = items(n, 1);
    for (auto _ : state) {
        m.list.update(first);
        m.list.update(second);
    }
    state.SetItemsProcessed(state.iterations() * 2 * n);
}
BENCHMARK(listRescan)->Arg(200)->Arg(2000)->Unit(benchmark::kMicrosecond);

// A long list arriving in an empty one, as a stored storage walk with tens of thousands of
// big-file candidates does when the program starts.
void listFill(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const auto full = items(n, 0);
    for (auto _ : state) {
        Model m;
        m.list.update(full);
        benchmark::DoNotOptimize(m.list.rowCount());
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(listFill)->Arg(2000)->Arg(8000)->Arg(30000)->Unit(benchmark::kMillisecond);

void tickOneRow(benchmark::State& state) {
    Model m;
    m.list.update(items(2000, 0));
    const int role = m.list.role("ticked");
    for (auto _ : state) {
        m.ticked.insert("item:1500");
        m.list.touch("item:1500", {role});
        m.ticked.erase("item:1500");
    }
}
BENCHMARK(tickOneRow)->Unit(benchmark::kMicrosecond);

} // namespace
