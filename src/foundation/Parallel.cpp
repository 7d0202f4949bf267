#include "foundation/Parallel.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

void parallelFor(std::size_t count, const std::function<void(std::size_t)>& body) {
    if (count == 0) return;
    std::size_t workers = std::max(1u, std::thread::hardware_concurrency());
    workers = std::min(workers, count);
    std::atomic<std::size_t> next{0};
    auto work = [&] {
        for (std::size_t i = next++; i < count; i = next++) body(i);
    };
    if (workers == 1) {
        work();
        return;
    }
    std::vector<std::jthread> threads;
    threads.reserve(workers - 1);
    for (std::size_t t = 1; t < workers; ++t) threads.emplace_back(work);
    work();
}
