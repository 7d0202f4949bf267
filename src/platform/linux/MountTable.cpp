#include "platform/MountTable.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <sys/sysmacros.h>

bool MountEntry::holds(std::string_view path) const {
    if (point == "/") return !path.empty() && path.front() == '/';
    return path == point || (path.starts_with(point) && path.size() > point.size() && path[point.size()] == '/');
}

bool MountEntry::readOnly() const {
    return MountTable::hasOption(options, "ro") || MountTable::hasOption(superOptions, "ro");
}

bool MountEntry::keepsAccessTimes() const { return !MountTable::hasOption(options, "noatime"); }

namespace MountTable {

namespace {
int octal(char c) { return c >= '0' && c <= '7' ? c - '0' : -1; }
} // namespace

std::string unescape(std::string_view s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 3 < s.size() && octal(s[i + 1]) >= 0 && octal(s[i + 2]) >= 0 && octal(s[i + 3]) >= 0) {
            out += static_cast<char>(octal(s[i + 1]) * 64 + octal(s[i + 2]) * 8 + octal(s[i + 3]));
            i += 3;
        } else {
            out += s[i];
        }
    }
    return out;
}

bool hasOption(std::string_view options, std::string_view option) {
    for (const auto& o : Text::split(options, ','))
        if (o == option) return true;
    return false;
}

std::vector<MountEntry> parse(std::string_view mountinfo) {
    std::vector<MountEntry> out;
    for (const auto& line : Text::split(mountinfo, '\n')) {
        // id parent major:minor root point options [optional fields...] - type source super-options
        auto f = Text::split(line, ' ');
        if (f.size() < 7) continue;
        std::size_t sep = 6;
        while (sep < f.size() && f[sep] != "-") ++sep;
        if (sep + 1 >= f.size()) continue;
        MountEntry m;
        m.device = f[2];
        m.point = unescape(f[4]);
        m.options = f[5];
        m.fsType = f[sep + 1];
        if (sep + 2 < f.size()) m.source = unescape(f[sep + 2]);
        if (sep + 3 < f.size()) m.superOptions = f[sep + 3];
        out.push_back(std::move(m));
    }
    return out;
}

std::vector<MountEntry> read(const std::string& file) {
    auto text = FS::readText(file, 4 << 20);
    return text ? parse(*text) : std::vector<MountEntry>{};
}

const MountEntry* holding(const std::vector<MountEntry>& mounts, std::string_view path, dev_t dev) {
    const std::string wanted = std::to_string(major(dev)) + ":" + std::to_string(minor(dev));
    const MountEntry* best = nullptr;
    for (const auto& m : mounts)
        if (m.device == wanted && m.holds(path) && (!best || m.point.size() > best->point.size())) best = &m;
    return best;
}

} // namespace MountTable
