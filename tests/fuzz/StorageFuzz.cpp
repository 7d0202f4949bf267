// Fuzz target for the storage file's reader: whatever it accepts holds dates within the years
// 1970 to 9999 and counts that are counts, and what the writer makes of it the reader takes
// back whole.
// Built and run by scripts/fuzz (clang's libFuzzer); not part of the gcc build.
#include "fuzz/FuzzCheck.h"
#include "storage/StorageStore.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using FuzzCheck::inRange;
using FuzzCheck::same;

bool sameDate(const std::optional<TimePoint>& a, const std::optional<TimePoint>& b) {
    return a.has_value() == b.has_value() && (!a || same(*a, *b));
}

bool sameReport(const StorageReport& a, const StorageReport& b) {
    if (!same(a.made, b.made) || a.seconds != b.seconds || a.diskTotal != b.diskTotal || a.diskUsed != b.diskUsed ||
        a.categories != b.categories || a.files != b.files || a.complete != b.complete || a.vm != b.vm ||
        a.biggest.size() != b.biggest.size() || a.apps.size() != b.apps.size())
        return false;
    for (std::size_t i = 0; i < a.biggest.size(); ++i) {
        const BigFile &x = a.biggest[i], &y = b.biggest[i];
        if (x.name != y.name || x.path != y.path || x.bytes != y.bytes || x.kind != y.kind || x.category != y.category ||
            !sameDate(x.modified, y.modified) || !sameDate(x.opened, y.opened))
            return false;
    }
    for (std::size_t i = 0; i < a.apps.size(); ++i) {
        const AppSize &x = a.apps[i], &y = b.apps[i];
        if (x.name != y.name || x.path != y.path || x.bundleID != y.bundleID || x.appBytes != y.appBytes ||
            x.dataBytes != y.dataBytes || !sameDate(x.lastUsed, y.lastUsed))
            return false;
    }
    return true;
}

bool wellFormed(const StorageReport& r) {
    if (!inRange(r.made) || r.files < 0) return false;
    for (const auto& c : r.categories)
        if (c.unreadable < 0) return false;
    for (const auto& f : r.biggest)
        if ((f.modified && !inRange(*f.modified)) || (f.opened && !inRange(*f.opened))) return false;
    for (const auto& a : r.apps)
        if (a.lastUsed && !inRange(*a.lastUsed)) return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    auto loaded = StorageStore::decode(std::string(reinterpret_cast<const char*>(data), size));
    if (!loaded) return 0;
    FUZZ_REQUIRE(wellFormed(*loaded));
    auto reread = StorageStore::decode(StorageStore::encode(*loaded));
    FUZZ_REQUIRE(reread.has_value());
    FUZZ_REQUIRE(sameReport(*reread, *loaded));
    return 0;
}
