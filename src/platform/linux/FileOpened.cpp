#include "platform/FileOpened.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <map>

namespace FileOpened {

namespace {

struct Mount {
    std::string point;
    std::string options;
};

std::string unescape(std::string_view s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 3 < s.size() && s[i + 1] >= '0' && s[i + 1] <= '7' && s[i + 2] >= '0' &&
            s[i + 2] <= '7' && s[i + 3] >= '0' && s[i + 3] <= '7') {
            out += static_cast<char>((s[i + 1] - '0') * 64 + (s[i + 2] - '0') * 8 + (s[i + 3] - '0'));
            i += 3;
        } else {
            out += s[i];
        }
    }
    return out;
}

// Mounts by "major:minor", each with its mount point and per-mount options.
std::multimap<std::string, Mount> mounts(const std::string& mountInfo) {
    std::multimap<std::string, Mount> out;
    auto text = FS::readText(mountInfo, 4 << 20);
    if (!text) return out;
    for (const auto& line : Text::split(*text, '\n')) {
        auto f = Text::split(line, ' ');
        if (f.size() < 6) continue;
        out.emplace(f[2], Mount{unescape(f[4]), f[5]});
    }
    return out;
}

} // namespace

bool keepsAccessTimes(std::string_view options) {
    for (const auto& o : Text::split(options, ','))
        if (o == "noatime") return false;
    return true;
}

std::vector<std::optional<TimePoint>> dates(const std::vector<std::string>& paths, const std::string& mountInfo) {
    std::vector<std::optional<TimePoint>> out(paths.size());
    if (paths.empty()) return out;
    auto table = mounts(mountInfo);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        struct stat st {};
        if (lstat(paths[i].c_str(), &st) != 0) continue;
        std::string dev = std::to_string(major(st.st_dev)) + ":" + std::to_string(minor(st.st_dev));
        // The mount of that device with the longest mount point holding the path.
        const Mount* best = nullptr;
        auto [from, to] = table.equal_range(dev);
        for (auto it = from; it != to; ++it) {
            const std::string& mp = it->second.point;
            bool holds = mp == "/" || paths[i] == mp || paths[i].starts_with(mp + "/");
            if (holds && (!best || mp.size() > best->point.size())) best = &it->second;
        }
        if (best && !keepsAccessTimes(best->options)) continue;
        // Read after it was written: the access time is later than the change of content.
        if (st.st_atim.tv_sec > st.st_mtim.tv_sec) out[i] = Clock::from_time_t(st.st_atim.tv_sec);
    }
    return out;
}

} // namespace FileOpened
