#pragma once
// The swap areas the kernel lists in /proc/swaps.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace SwapAreas {

struct Area {
    std::string path;  // a file or a device
    std::string type;  // "file" or "partition"
    int64_t size = 0;  // bytes
    int64_t used = 0;  // bytes
    friend bool operator==(const Area&, const Area&) = default;
};

// Parses the text of /proc/swaps (sizes there are in KiB; blanks in paths come as \040).
[[nodiscard]] std::vector<Area> parse(std::string_view text);
// Reads and parses the file; empty when it cannot be read.
[[nodiscard]] std::vector<Area> read(const std::string& path = "/proc/swaps");

// A compressed swap device in memory (zram), which takes no disk space.
[[nodiscard]] bool inMemory(const Area& area);

} // namespace SwapAreas
