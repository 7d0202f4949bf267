// The guards every path passes before anything is cleared. Kept free of other dependencies so
// that the fuzz target can build them alone.
#include "removal/Remover.h"

#include <algorithm>

namespace Remover {

namespace {

std::string_view withoutTrailingSlashes(std::string_view s) {
    while (!s.empty() && s.back() == '/') s.remove_suffix(1);
    return s;
}

// The refusals that depend on a root: strictly inside it, not listed, at least two levels deep.
bool safeBelow(std::string_view path, std::string_view root, const std::vector<std::string>& protectedPaths) {
    std::string_view rel = path.substr(root.size()); // begins with "/"
    for (const auto& row : protectedPaths)
        if (withoutTrailingSlashes(row) == rel) return false;
    int pieces = 0;
    for (std::size_t i = 0; i < rel.size(); ++i)
        if (rel[i] != '/' && (i == 0 || rel[i - 1] == '/')) ++pieces;
    return pieces > 1;
}

} // namespace

bool isSafe(std::string_view path, const std::vector<std::string>& roots, const std::vector<std::string>& protectedPaths) {
    if (path.empty() || path.front() != '/') return false;
    // The system reads a path only up to its first NUL: what it would touch is not what was checked.
    if (path.find('\0') != std::string_view::npos) return false;
    if (path.find("/../") != std::string_view::npos || path.ends_with("/..")) return false;
    if (path.find("/./") != std::string_view::npos || path.ends_with("/.")) return false;
    if (path.find("//") != std::string_view::npos) return false;
    if (path.size() > 1 && path.back() == '/') path.remove_suffix(1);

    // Under roots nested in one another, every root the path lies in must agree.
    bool inside = false;
    for (const auto& r : roots) {
        std::string_view root = withoutTrailingSlashes(r);
        if (root.empty()) continue;
        if (path.size() <= root.size() + 1 || !path.starts_with(root) || path[root.size()] != '/') continue;
        if (!safeBelow(path, root, protectedPaths)) return false;
        inside = true;
    }
    return inside;
}

bool isSafe(std::string_view path, const Context& context) {
    return isSafe(path, context.allowedRoots, context.protectedPaths);
}

} // namespace Remover
