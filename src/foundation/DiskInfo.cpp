#include "foundation/DiskInfo.h"

#include <algorithm>
#include <limits>

namespace {

int64_t bytes(uint64_t count, uint64_t blockSize) {
    constexpr auto most = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    if (blockSize != 0 && count > most / blockSize) return std::numeric_limits<int64_t>::max();
    return static_cast<int64_t>(count * blockSize);
}

} // namespace

DiskInfo DiskInfo::fromBlocks(uint64_t blocks, uint64_t freeBlocks, uint64_t availableBlocks, uint64_t blockSize) {
    const uint64_t avail = std::min(availableBlocks, blocks);
    // Some file systems report more available than free; the user's figure stands then and
    // nothing is kept back.
    const uint64_t free = std::max(std::min(freeBlocks, blocks), avail);
    DiskInfo info;
    info.total = bytes(blocks, blockSize);
    info.available = bytes(avail, blockSize);
    info.reserved = bytes(free - avail, blockSize);
    return info;
}
