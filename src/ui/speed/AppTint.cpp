#include "ui/speed/AppTint.h"

#include <array>
#include <cstdint>

namespace AppTint {

namespace {

// Accents that read well as a bar on the dark panel and differ from one another; amber and red
// are left out because they mean "warning" elsewhere.
constexpr std::array<const char*, 10> accents{"blue", "purple", "teal", "pink", "green",
                                              "indigo", "orange", "mint", "rose", "browser"};

} // namespace

std::string name(std::string_view key) {
    // FNV-1a: stable across runs and builds, unlike std::hash.
    uint64_t h = 1469598103934665603ull;
    for (unsigned char c : key) {
        h ^= c;
        h *= 1099511628211ull;
    }
    return accents[h % accents.size()];
}

} // namespace AppTint
