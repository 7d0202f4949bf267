#pragma once
#include <cstddef>
#include <functional>

// The core's one source of threads.

// Runs body(0) ... body(count-1) on as many threads as the processor has cores, each taking the
// next index from a shared counter. Returns when all are done.
void parallelFor(std::size_t count, const std::function<void(std::size_t)>& body);

// Runs body(0) ... body(workers-1) at once, body(0) on the calling thread. Returns when all
// are done.
void parallelRun(std::size_t workers, const std::function<void(std::size_t)>& body);

// The same with every body on a new thread, none on the calling one: what the kernel keeps per
// thread for work handed to it (the workers behind an io_uring ring) ends with these threads
// instead of staying with the caller.
void parallelRunApart(std::size_t workers, const std::function<void(std::size_t)>& body);

// How many threads a piece of work should spread over: every core, or inside a parallel loop the
// cores its other iterations leave free.
[[nodiscard]] std::size_t parallelWidth();
