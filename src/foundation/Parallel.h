#pragma once
#include <cstddef>
#include <functional>

// Runs body(0) ... body(count-1) on as many threads as the processor has cores, each taking the
// next index from a shared counter. Returns when all are done. The one parallel loop of the core.
void parallelFor(std::size_t count, const std::function<void(std::size_t)>& body);
