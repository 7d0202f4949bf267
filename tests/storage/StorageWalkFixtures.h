#pragma once
// Storage walks over generated home folders: a layout that reads nothing of the machine beyond
// the home, and lookups into the report.
#include "storage/StorageScan.h"
#include "support/TempTree.h"

#include <string>

namespace StorageWalk {

constexpr int64_t MiB = 1 << 20;

// A Linux layout over a generated home that reads nothing of the machine beyond it.
inline Layout isolated(const std::string& home, const Layout::Env& env = {}) {
    Layout l = Layout::linux(home, env);
    StorageTables& t = l.storage;
    t.outsideTools.clear();
    t.assetPlaces.clear();
    t.temporary.clear();
    t.snapFilesDir.clear();
    t.dpkgStatus.clear();
    t.dpkgInfo.clear();
    t.systemPlaces.clear();
    t.procSwaps.clear();
    return l;
}

inline StorageReport walk(const Layout& layout, const AppBundles* apps = nullptr) {
    StorageScan scan(layout, ScanToken::make(), apps);
    return scan.run();
}

inline const StorageItem* row(const StorageReport& r, StorageKind kind, const std::string& path) {
    const StorageCategory* c = r.category(kind);
    if (!c) return nullptr;
    for (const auto& i : c->items)
        if (i.path == path) return &i;
    return nullptr;
}

inline int64_t bytesOf(const StorageReport& r, StorageKind kind) {
    const StorageCategory* c = r.category(kind);
    return c ? c->bytes : 0;
}

inline const BigFile* bigFile(const StorageReport& r, const std::string& path) {
    for (const auto& f : r.biggest)
        if (f.path == path) return &f;
    return nullptr;
}

inline int64_t alloc(const TempTree& t, std::string_view relative) { return allocatedSize(t.path(relative)); }

} // namespace StorageWalk
