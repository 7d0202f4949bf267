// The home volume's capacity from statvfs, and a name a person recognises: the file system's
// label, else its mount point.
#include "foundation/DiskInfo.h"
#include "foundation/FS.h"
#include "foundation/Text.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include <climits>
#include <cstdlib>

namespace {

// Unescapes the octal escapes (\040 for a blank) of /proc/self/mountinfo.
std::string unescapeMount(std::string_view s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 3 < s.size()) {
            int v = 0;
            bool ok = true;
            for (std::size_t k = 1; k <= 3; ++k) {
                char c = s[i + k];
                if (c < '0' || c > '7') ok = false;
                else v = v * 8 + (c - '0');
            }
            if (ok) {
                out += static_cast<char>(v);
                i += 3;
                continue;
            }
        }
        out += s[i];
    }
    return out;
}

struct MountOf {
    std::string mountPoint;
    std::string source;
};

// The mount whose device is `dev`, the one with the longest mount point that holds `path`.
MountOf mountFor(const std::string& path, dev_t dev) {
    MountOf best;
    auto text = FS::readText("/proc/self/mountinfo", 4 << 20);
    if (!text) return best;
    std::string wanted = std::to_string(major(dev)) + ":" + std::to_string(minor(dev));
    for (const auto& line : Text::split(*text, '\n')) {
        auto fields = Text::split(line, ' ');
        if (fields.size() < 10 || fields[2] != wanted) continue;
        std::string mp = unescapeMount(fields[4]);
        bool holds = mp == "/" || path == mp || path.starts_with(mp + "/");
        if (!holds || mp.size() < best.mountPoint.size()) continue;
        std::size_t dash = 6;
        while (dash < fields.size() && fields[dash] != "-") ++dash;
        best.mountPoint = mp;
        best.source = dash + 2 < fields.size() ? unescapeMount(fields[dash + 2]) : std::string();
    }
    return best;
}

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
    info.total = static_cast<int64_t>(vfs.f_blocks) * static_cast<int64_t>(vfs.f_frsize);
    info.available = static_cast<int64_t>(vfs.f_bavail) * static_cast<int64_t>(vfs.f_frsize);
    struct stat st {};
    if (stat(path.c_str(), &st) == 0) {
        MountOf m = mountFor(path, st.st_dev);
        if (std::string label = labelFor(m.source); !label.empty()) info.name = label;
        else if (m.mountPoint == "/") info.name = "the system disk";
        else if (!m.mountPoint.empty()) info.name = m.mountPoint;
    }
    return info;
}
