#pragma once
// The mounts of /proc/self/mountinfo, parsed once per question. Several readers need them: the
// disk's name, whether a mount keeps access times, where a file's Trash lies.
#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

struct MountEntry {
    std::string device;       // "major:minor"
    std::string point;        // mount point, unescaped
    std::string options;      // per-mount options ("rw,noatime,...")
    std::string fsType;       // "ext4", "btrfs", ...
    std::string source;       // "/dev/vda1", unescaped
    std::string superOptions; // the file system's own options

    [[nodiscard]] bool holds(std::string_view path) const;
    [[nodiscard]] bool readOnly() const;
    [[nodiscard]] bool keepsAccessTimes() const;
};

namespace MountTable {

// Lines that do not have the mountinfo shape are passed over.
[[nodiscard]] std::vector<MountEntry> parse(std::string_view mountinfo);
// Empty when the file cannot be read.
[[nodiscard]] std::vector<MountEntry> read(const std::string& file = "/proc/self/mountinfo");
// The mount of device `dev` with the longest point that holds `path`; null when none does.
[[nodiscard]] const MountEntry* holding(const std::vector<MountEntry>& mounts, std::string_view path, dev_t dev);
// Mountinfo writes blanks, tabs, newlines and backslashes in paths as \ooo.
[[nodiscard]] std::string unescape(std::string_view s);
[[nodiscard]] bool hasOption(std::string_view options, std::string_view option);

} // namespace MountTable
