#include "projects/ProjectRoots.h"

namespace Projects {

std::optional<std::string> gitRoot(const std::string& path, const std::string& home) {
    const std::string below = home + "/";
    std::string at = path;
    for (int step = 0; step < 10; ++step) {
        if (!at.starts_with(below)) return std::nullopt;
        if (FS::exists(at + "/.git")) return at; // a folder, or a file in a worktree
        at = FS::parent(at);
    }
    return std::nullopt;
}

std::string rootName(const std::string& path, const std::string& home) {
    return FS::lastComponent(gitRoot(path, home).value_or(path));
}

} // namespace Projects
