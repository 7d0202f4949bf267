// The home volume's capacity from statvfs (used, available and kept back, as df counts them),
// and a name a person recognises: the file system's label, else its mount point.
#include "foundation/DiskInfo.h"
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/MountTable.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <climits>
#include <cstdlib>

namespace {

std::string labelFor(const std::string& source) {
    if (source.empty() || source.front() != '/') return {};
    char resolved[PATH_MAX];
    if (!realpath(source.c_str(), resolved)) return {};
    const std::string byLabel = "/dev/disk/by-label";
    for (const auto& name : FS::children(byLabel)) {
        char target[PATH_MAX];
        if (realpath((byLabel + "/" + name).c_str(), target) && std::string_view(target) == resolved) {
            // udev escapes blanks and slashes in label names as \x20 and \x2f.
            std::string label = Text::replaceAll(name, "\\x20", " ");
            return Text::replaceAll(std::move(label), "\\x2f", "/");
        }
    }
    return {};
}

} // namespace

DiskInfo DiskInfo::current() { return of(FS::home()); }

DiskInfo DiskInfo::of(const std::string& path) {
    DiskInfo info;
    info.name = "your disk";
    struct statvfs vfs {};
    if (statvfs(path.c_str(), &vfs) != 0) return info;
    info = fromBlocks(vfs.f_blocks, vfs.f_bfree, vfs.f_bavail, vfs.f_frsize);
    info.name = "your disk";
    struct stat st {};
    if (stat(path.c_str(), &st) == 0) {
        auto mounts = MountTable::read();
        if (const MountEntry* m = MountTable::holding(mounts, path, st.st_dev)) {
            if (std::string label = labelFor(m->source); !label.empty()) info.name = label;
            else if (m->point == "/") info.name = "the system disk";
            else info.name = m->point;
        }
    }
    return info;
}
