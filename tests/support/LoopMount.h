#pragma once
// A volume of a test's own: an ext4 image made with a chosen share of blocks kept back for
// root, mounted through a loop device for the life of the object. It needs root, mkfs.ext4 and
// loop devices; where any is missing `ready()` is false and `why()` says which, for a skip.
#include "support/TempTree.h"

#include <cstdint>
#include <optional>
#include <string>

class LoopMount {
public:
    LoopMount(int64_t bytes, int reservedPercent);
    ~LoopMount();
    LoopMount(const LoopMount&) = delete;
    LoopMount& operator=(const LoopMount&) = delete;

    [[nodiscard]] bool ready() const { return mounted; }
    [[nodiscard]] const std::string& why() const { return reason; }
    // The mount point: an empty file system with lost+found.
    [[nodiscard]] std::string point() const { return scratch.path("mnt"); }

private:
    TempTree scratch;
    bool mounted = false;
    std::string reason;
};

// What `df -B1` says of the volume holding `path`: its size, used and available bytes.
struct DfFigures {
    int64_t size = 0;
    int64_t used = 0;
    int64_t available = 0;
};
[[nodiscard]] std::optional<DfFigures> dfOf(const std::string& path);
