#pragma once
#include <cstdint>
#include <string>

// Capacity of the volume that holds the home folder. The three figures add up to `total`:
// what files take (`used()`), what the user can still write (`available`), and what the file
// system keeps back for the administrator (`reserved`, 5% of a default ext4). Low-space
// warnings and the forecast read `available`, since that is where the user's writes stop.
struct DiskInfo {
    std::string name;
    int64_t total = 0;
    int64_t available = 0;
    int64_t reserved = 0;

    [[nodiscard]] int64_t used() const {
        int64_t rest = total - available - reserved;
        return rest > 0 ? rest : 0;
    }
    friend bool operator==(const DiskInfo&, const DiskInfo&) = default;

    // The figures from a file system's block counts (statvfs's f_blocks, f_bfree, f_bavail,
    // f_frsize). Counts that contradict each other are clamped so that the three figures never
    // exceed the total and none is negative.
    [[nodiscard]] static DiskInfo fromBlocks(uint64_t blocks, uint64_t freeBlocks, uint64_t availableBlocks,
                                             uint64_t blockSize);
    // Reads the home folder's volume; zeros and the fallback name when that fails.
    [[nodiscard]] static DiskInfo current();
    // The same for the volume holding `path`.
    [[nodiscard]] static DiskInfo of(const std::string& path);
};
