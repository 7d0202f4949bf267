#pragma once
// The facts of many names of one folder, asked of the kernel in one call through an io_uring
// ring instead of one statx call per name. Each call into the kernel has a fixed price, and on a
// virtual machine that price is higher than the lookup of the name itself; the kernel's own
// workers do the lookups, without a trip back to the program between them. Where no ring can be
// had (an old kernel, a sandbox that forbids it), `ask` says so and the caller asks name by name.
// One per thread: a ring and its buffers are not shared.
#include <sys/stat.h>

#include <cstddef>

class StatBatch {
public:
    static constexpr unsigned capacity = 128; // names in one call

    StatBatch() = default;
    ~StatBatch();
    StatBatch(const StatBatch&) = delete;
    StatBatch& operator=(const StatBatch&) = delete;

    // statx(at, names[i], flags, mask, &facts[i]) for each i < count (at most `capacity`), with
    // errors[i] 0 or why that one failed. Returns once every answer is in; false, having asked
    // nothing, where the kernel offers no ring (then never again in this process).
    bool ask(int at, const char* const* names, unsigned count, int flags, unsigned mask, struct statx* facts,
             int* errors);

    // Whether this process may use rings: false once the kernel refused one, or where the
    // environment's SORRELIN_NO_RING is set (to compare both ways, and as a way out).
    [[nodiscard]] static bool available();

private:
    bool setUp();
    void reap(unsigned& done, int* errors);

    int ring = -1;
    bool failed = false;
    void* sqMap = nullptr;
    std::size_t sqSize = 0;
    void* cqMap = nullptr;
    std::size_t cqSize = 0;
    void* sqeMap = nullptr;
    std::size_t sqeSize = 0;
    unsigned* sqTail = nullptr;
    unsigned* sqMask = nullptr;
    unsigned* sqArray = nullptr;
    unsigned* cqHead = nullptr;
    unsigned* cqTail = nullptr;
    unsigned* cqMask = nullptr;
    void* sqes = nullptr;
    void* cqes = nullptr;
};
