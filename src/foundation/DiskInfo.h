#pragma once
#include <cstdint>
#include <string>

// Capacity of the volume that holds the home folder.
struct DiskInfo {
    std::string name;
    int64_t total = 0;
    int64_t available = 0;

    [[nodiscard]] int64_t used() const { return total > available ? total - available : 0; }
    friend bool operator==(const DiskInfo&, const DiskInfo&) = default;

    // Reads the home folder's volume; zeros and the fallback name when that fails.
    [[nodiscard]] static DiskInfo current();
    // The same for the volume holding `path`.
    [[nodiscard]] static DiskInfo of(const std::string& path);
};
