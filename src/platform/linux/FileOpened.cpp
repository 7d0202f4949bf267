#include "platform/FileOpened.h"

#include "foundation/FS.h"
#include "platform/MountTable.h"

#include <sys/stat.h>

namespace FileOpened {

bool keepsAccessTimes(std::string_view options) { return !MountTable::hasOption(options, "noatime"); }

std::vector<std::optional<TimePoint>> dates(const std::vector<std::string>& paths, const std::string& mountInfo) {
    std::vector<std::optional<TimePoint>> out(paths.size());
    if (paths.empty()) return out;
    auto table = MountTable::read(mountInfo);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        struct stat st {};
        if (lstat(paths[i].c_str(), &st) != 0) continue;
        const MountEntry* mount = MountTable::holding(table, paths[i], st.st_dev);
        if (mount && !mount->keepsAccessTimes()) continue;
        // Read after it was written: the access time is later than the change of content.
        if (st.st_atim.tv_sec > st.st_mtim.tv_sec) out[i] = fileDate(st.st_atim, Clock::now());
    }
    return out;
}

} // namespace FileOpened
