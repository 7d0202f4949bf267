#include "foundation/StatBatch.h"

#include <linux/io_uring.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

std::atomic<bool> refused{false}; // the kernel said no once: it will say no again

int setup(unsigned entries, io_uring_params* params) {
    return static_cast<int>(syscall(__NR_io_uring_setup, entries, params));
}

int enter(int ring, unsigned submit, unsigned wait) {
    return static_cast<int>(syscall(__NR_io_uring_enter, ring, submit, wait, IORING_ENTER_GETEVENTS, nullptr, 0));
}

unsigned load(const unsigned* at) { return std::atomic_ref<unsigned>(*const_cast<unsigned*>(at)).load(std::memory_order_acquire); }
void store(unsigned* at, unsigned value) { std::atomic_ref<unsigned>(*at).store(value, std::memory_order_release); }

void* map(int ring, std::size_t size, off_t what) {
    void* at = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, ring, what);
    return at == MAP_FAILED ? nullptr : at;
}

} // namespace

bool StatBatch::available() {
    static const bool allowed = std::getenv("SORRELIN_NO_RING") == nullptr;
    return allowed && !refused.load(std::memory_order_relaxed);
}

StatBatch::~StatBatch() {
    // Nothing is in flight here: `ask` returns only once every answer is in.
    if (sqeMap) munmap(sqeMap, sqeSize);
    if (cqMap && cqMap != sqMap) munmap(cqMap, cqSize);
    if (sqMap) munmap(sqMap, sqSize);
    if (ring >= 0) close(ring);
}

bool StatBatch::setUp() {
    if (failed) return false;
    if (ring >= 0) return true;
    if (!available()) return false;
    failed = true; // until all below succeeded
    io_uring_params p {};
    ring = setup(capacity, &p);
    if (ring < 0) {
        if (errno == ENOSYS || errno == EPERM || errno == EACCES) refused = true;
        return false;
    }
    sqSize = p.sq_off.array + p.sq_entries * sizeof(unsigned);
    cqSize = p.cq_off.cqes + p.cq_entries * sizeof(io_uring_cqe);
    if (p.features & IORING_FEAT_SINGLE_MMAP) {
        sqSize = cqSize = std::max(sqSize, cqSize);
        sqMap = cqMap = map(ring, sqSize, IORING_OFF_SQ_RING);
    } else {
        sqMap = map(ring, sqSize, IORING_OFF_SQ_RING);
        cqMap = map(ring, cqSize, IORING_OFF_CQ_RING);
    }
    sqeSize = p.sq_entries * sizeof(io_uring_sqe);
    sqeMap = map(ring, sqeSize, IORING_OFF_SQES);
    if (!sqMap || !cqMap || !sqeMap || p.sq_entries < capacity) return false; // the destructor unmaps
    auto* sq = static_cast<char*>(sqMap);
    auto* cq = static_cast<char*>(cqMap);
    sqTail = reinterpret_cast<unsigned*>(sq + p.sq_off.tail);
    sqMask = reinterpret_cast<unsigned*>(sq + p.sq_off.ring_mask);
    sqArray = reinterpret_cast<unsigned*>(sq + p.sq_off.array);
    cqHead = reinterpret_cast<unsigned*>(cq + p.cq_off.head);
    cqTail = reinterpret_cast<unsigned*>(cq + p.cq_off.tail);
    cqMask = reinterpret_cast<unsigned*>(cq + p.cq_off.ring_mask);
    cqes = cq + p.cq_off.cqes;
    sqes = sqeMap;
    failed = false;
    return true;
}

void StatBatch::reap(unsigned& done, int* errors) {
    unsigned head = *cqHead;
    const unsigned tail = load(cqTail);
    auto* entries = static_cast<io_uring_cqe*>(cqes);
    for (; head != tail; ++head) {
        const io_uring_cqe& c = entries[head & *cqMask];
        errors[c.user_data] = c.res < 0 ? -c.res : 0;
        ++done;
    }
    store(cqHead, head);
}

bool StatBatch::ask(int at, const char* const* names, unsigned count, int flags, unsigned mask, struct statx* facts,
                    int* errors) {
    if (count == 0) return true;
    if (count > capacity || !setUp()) return false;
    unsigned tail = *sqTail;
    auto* entries = static_cast<io_uring_sqe*>(sqes);
    for (unsigned i = 0; i < count; ++i, ++tail) {
        const unsigned slot = tail & *sqMask;
        io_uring_sqe& s = entries[slot];
        std::memset(&s, 0, sizeof s);
        s.opcode = IORING_OP_STATX;
        s.fd = at;
        s.addr = reinterpret_cast<uintptr_t>(names[i]);
        s.len = mask;
        s.off = reinterpret_cast<uintptr_t>(&facts[i]);
        s.statx_flags = static_cast<uint32_t>(flags);
        s.user_data = i;
        sqArray[slot] = slot;
    }
    store(sqTail, tail);

    unsigned submitted = 0;
    unsigned done = 0;
    while (done < count) {
        const int n = enter(ring, count - submitted, count - done);
        if (n > 0) submitted += static_cast<unsigned>(n);
        const int error = n < 0 ? errno : 0;
        reap(done, errors);
        if (n >= 0 || error == EINTR || error == EAGAIN || error == EBUSY) continue;
        // A ring that stopped working: nothing submitted can be taken back, so what is in flight
        // is waited for (its answers land in `facts`), and the rest is asked name by name.
        while (done < submitted) {
            timespec pause{0, 100000};
            nanosleep(&pause, nullptr);
            reap(done, errors);
        }
        if (submitted == 0) {
            // Nothing went out: the queued entries are dropped with the ring.
            failed = true;
            return false;
        }
        for (unsigned i = submitted; i < count; ++i)
            errors[i] = statx(at, names[i], flags, mask, &facts[i]) == 0 ? 0 : errno;
        failed = true;
        return true;
    }
    return true;
}
