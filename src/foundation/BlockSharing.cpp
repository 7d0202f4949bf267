#include "foundation/BlockSharing.h"

#include <fcntl.h>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <vector>

namespace BlockSharing {

namespace {
constexpr long btrfsMagic = 0x9123683E;
constexpr long xfsMagic = 0x58465342;
constexpr long bcachefsMagic = 0xCA451A4E;
constexpr unsigned extentsPerCall = 128;

bool sharingType(const struct statfs& info) {
    long type = static_cast<long>(info.f_type);
    return type == btrfsMagic || type == xfsMagic || type == bcachefsMagic;
}

} // namespace

bool canShare(const char* path) {
    struct statfs info {};
    return statfs(path, &info) == 0 && sharingType(info);
}

bool canShareAt(int fd) {
    struct statfs info {};
    return fstatfs(fd, &info) == 0 && sharingType(info);
}

std::optional<int64_t> unsharedBytes(const char* path) { return unsharedBytesAt(AT_FDCWD, path); }

std::optional<int64_t> unsharedBytesAt(int at, const char* name) {
    int fd = openat(at, name, O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) return std::nullopt;
    std::vector<unsigned char> buffer(sizeof(fiemap) + extentsPerCall * sizeof(fiemap_extent));
    auto* map = reinterpret_cast<fiemap*>(buffer.data());
    int64_t own = 0;
    uint64_t start = 0;
    bool last = false;
    while (!last) {
        std::fill(buffer.begin(), buffer.end(), 0);
        map->fm_start = start;
        map->fm_length = FIEMAP_MAX_OFFSET - start;
        map->fm_extent_count = extentsPerCall;
        if (ioctl(fd, FS_IOC_FIEMAP, map) != 0) {
            close(fd);
            return std::nullopt;
        }
        if (map->fm_mapped_extents == 0) break;
        for (unsigned i = 0; i < map->fm_mapped_extents; ++i) {
            const fiemap_extent& e = map->fm_extents[i];
            if (!(e.fe_flags & FIEMAP_EXTENT_SHARED)) own += static_cast<int64_t>(e.fe_length);
            if (e.fe_flags & FIEMAP_EXTENT_LAST) last = true;
            start = e.fe_logical + e.fe_length;
        }
    }
    close(fd);
    return own;
}

} // namespace BlockSharing
