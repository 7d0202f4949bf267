// Fuzz target for the remover's guard. The property is worked out here again from the path's
// components, independently of the guard's own string tests: a path is accepted exactly when,
// as the system reads it, it lies at least two levels inside a root, is not on the protected
// list, and has no empty, "." or ".." component.
// Built and run by scripts/fuzz (clang's libFuzzer); not part of the gcc build.
#include "removal/Remover.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

const std::vector<std::string> roots = {"/home/ann", "/srv/scratch root"};
const std::vector<std::string> rows = {"/Library", "/Library/Caches", "/Documents", "/Documents/GitHub",
                                       "/.cache", "/.local/share/Trash", "/Dokumente", "/.nvm/versions/node"};

std::vector<std::string_view> parts(std::string_view s) {
    std::vector<std::string_view> out;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= s.size(); ++i)
        if (i == s.size() || s[i] == '/') {
            out.push_back(s.substr(start, i - start));
            start = i + 1;
        }
    return out;
}

bool expected(std::string_view path) {
    // What the system would act on ends at the first NUL; anything after it was never checked.
    if (path.find('\0') != std::string_view::npos) return false;
    if (path.empty() || path.front() != '/') return false;
    if (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    auto p = parts(path.substr(1));
    for (auto c : p)
        if (c.empty() || c == "." || c == "..") return false;
    for (const auto& root : roots) {
        auto r = parts(std::string_view(root).substr(1));
        if (p.size() < r.size() + 1 || !std::equal(r.begin(), r.end(), p.begin())) continue;
        if (p.size() < r.size() + 2) return false; // the root's own children
        std::vector<std::string_view> rel(p.begin() + static_cast<std::ptrdiff_t>(r.size()), p.end());
        for (const auto& row : rows)
            if (parts(std::string_view(row).substr(1)) == rel) return false;
        return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    // The first byte picks a start, so that the search reaches the inside of the roots.
    static const std::vector<std::string> starts = {"", roots[0], roots[1], "/home/an", roots[0] + "/Library/Caches",
                                                    roots[0] + "/Documents"};
    std::string path = starts[data[0] % starts.size()];
    path.append(reinterpret_cast<const char*>(data + 1), size - 1);
    bool accepted = Remover::isSafe(path, roots, rows);
    if (accepted != expected(path)) {
        std::fprintf(stderr, "guard %s a path it should %s: [%s]\n", accepted ? "accepted" : "refused",
                     accepted ? "refuse" : "accept", path.c_str());
        std::abort();
    }
    return 0;
}
