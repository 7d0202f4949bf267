#pragma once
// The program file a process runs, and whether the file now at that path is still the one it
// started from. A package update replaces the file (a new inode) or removes it, while the
// running process keeps the old image until it restarts.
#include <cstdint>
#include <optional>
#include <string>

struct ExeImage {
    std::string path; // where the program was started from
    bool stale = false; // the file there was removed or replaced since
};

namespace ExeImages {

// Absent when the process cannot be read or the path cannot be compared (another mount
// namespace, as in a sandbox).
[[nodiscard]] std::optional<ExeImage> of(int32_t pid);
[[nodiscard]] std::optional<ExeImage> of(const std::string& procRoot, int32_t pid);

} // namespace ExeImages
