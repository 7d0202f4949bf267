#include "platform/linux/BundleMemo.h"

std::optional<DesktopEntry> BundleMemo::entry(const std::string& id) const {
    std::lock_guard guard(lock);
    auto it = byId.find(id);
    if (it == byId.end()) it = byId.emplace(id, source.entry(id)).first;
    return it->second;
}

std::optional<DesktopEntry> BundleMemo::entryForExecutable(const std::string& exe) const {
    std::lock_guard guard(lock);
    auto it = byProgram.find(exe);
    if (it == byProgram.end()) it = byProgram.emplace(exe, source.entryForExecutable(exe)).first;
    return it->second;
}

const BundleMemo& BundleMemo::system() {
    static const BundleMemo memo(AppBundles::system());
    return memo;
}
