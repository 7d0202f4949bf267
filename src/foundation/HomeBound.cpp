#include "foundation/HomeBound.h"

#include "foundation/Beneath.h"
#include "foundation/FS.h"
#include "foundation/Log.h"

#include <fcntl.h>

namespace HomeBound {

Verdict check(std::string_view path, std::string_view home) {
    std::string_view rel = Beneath::below(path, home);
    if (rel.empty() || home.empty() || home.front() != '/') return Verdict::outside;
    while (!rel.empty() && rel.back() == '/') rel.remove_suffix(1);
    if (Beneath::components(rel).empty()) return Verdict::outside;
    Fd root = Beneath::openRoot(std::string(home));
    if (!root) return Verdict::missing;
    Beneath::Opened opened = Beneath::open(root.get(), rel, O_PATH);
    if (opened.ok()) return Verdict::inside;
    return opened.throughLink ? Verdict::link : Verdict::missing;
}

Verdict noted(std::string_view path, std::string_view home) {
    Verdict verdict = check(path, home);
    if (verdict == Verdict::outside)
        Log::note("left out " + FS::tilde(path, home) + ": it lies outside the home folder");
    else if (verdict == Verdict::link)
        Log::note("left out " + FS::tilde(path, home) + ": the way to it runs through a symbolic link");
    return verdict;
}

bool admit(std::string_view path, std::string_view home) { return noted(path, home) == Verdict::inside; }

} // namespace HomeBound
