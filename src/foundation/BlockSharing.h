#pragma once
// Which file systems let files share blocks (reflinks, snapshots), and how much of one file is
// its own. Stands behind FS::privateSize.
#include <cstdint>
#include <optional>

namespace BlockSharing {

// True on file systems whose extents can be shared (btrfs, XFS, bcachefs). Elsewhere a file's
// allocated size is all its own and no ioctl is needed.
[[nodiscard]] bool canShare(const char* path);
// The same for the file system of an open handle.
[[nodiscard]] bool canShareAt(int fd);
// Bytes of the file's extents that no other file or snapshot holds; absent on failure.
[[nodiscard]] std::optional<int64_t> unsharedBytes(const char* path);
// The same for the file `name` inside the open folder `at` (AT_FDCWD for a path).
[[nodiscard]] std::optional<int64_t> unsharedBytesAt(int at, const char* name);

} // namespace BlockSharing
