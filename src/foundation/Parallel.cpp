#include "foundation/Parallel.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace {

// Inside a parallel loop: the cores left to each of its iterations; 0 outside one.
thread_local std::size_t share = 0;

std::size_t cores() { return std::max(1u, std::thread::hardware_concurrency()); }

} // namespace

void parallelRun(std::size_t workers, const std::function<void(std::size_t)>& body) {
    if (workers == 0) return;
    std::vector<std::jthread> threads;
    threads.reserve(workers - 1);
    for (std::size_t t = 1; t < workers; ++t) threads.emplace_back([&body, t] { body(t); });
    body(0);
}

void parallelRunApart(std::size_t workers, const std::function<void(std::size_t)>& body) {
    std::vector<std::jthread> threads;
    threads.reserve(workers);
    for (std::size_t t = 0; t < workers; ++t) threads.emplace_back([&body, t] { body(t); });
}

void parallelFor(std::size_t count, const std::function<void(std::size_t)>& body) {
    if (count == 0) return;
    const std::size_t workers = std::min(cores(), count);
    std::atomic<std::size_t> next{0};
    parallelRun(workers, [&](std::size_t) {
        const std::size_t outer = share;
        share = std::max<std::size_t>(1, cores() / workers);
        for (std::size_t i = next++; i < count; i = next++) body(i);
        share = outer;
    });
}

std::size_t parallelWidth() { return share > 0 ? share : cores(); }
