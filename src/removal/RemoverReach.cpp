#include "removal/RemoverReach.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace Remover {

std::string rootOf(std::string_view path, const Context& context) {
    std::string best;
    for (const auto& root : context.allowedRoots) {
        std::string r = root;
        while (r.size() > 1 && r.back() == '/') r.pop_back();
        if (r.empty() || Beneath::below(path, r).empty()) continue;
        if (best.empty() || r.size() < best.size()) best = r;
    }
    return best;
}

Reached reach(const std::string& path, const Context& context, bool make) {
    if (context.onReach) context.onReach(path);
    Reached out;
    const std::string root = rootOf(path, context);
    if (root.empty()) {
        out.error = EXDEV;
        return out;
    }
    out.where = Beneath::parent(root, path, context.way, make);
    const Beneath::Opened& folder = out.where.folder;
    if (folder.ok()) return out;
    if (folder.throughLink) out.link = (root == "/" ? "" : root) + "/" + folder.link;
    else if (folder.error == ENOENT || folder.error == ENOTDIR) out.missing = true;
    else out.error = folder.error;
    return out;
}

int look(const Reached& reached) {
    struct stat st {};
    return fstatat(reached.folder(), reached.name().c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

} // namespace Remover
