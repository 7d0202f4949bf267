#include "storage/StorageReport.h"

#include <algorithm>

std::optional<std::string> StorageItem::revealPath() const {
    if (reveal) return reveal;
    if (path.starts_with("/")) return path;
    return std::nullopt;
}

const StorageCategory* StorageReport::category(StorageKind kind) const {
    for (const auto& c : categories)
        if (c.kind == kind) return &c;
    return nullptr;
}

int64_t StorageReport::measured() const {
    int64_t sum = 0;
    for (const auto& c : categories) sum += c.bytes;
    return sum;
}

int64_t StorageReport::remainder(int64_t used, int64_t swap) const {
    return std::max<int64_t>(0, used - measured() - swap);
}

namespace {

bool below(const std::string& path, const std::string& folder) {
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

} // namespace

StorageReport StorageReport::moving(const std::string& path, int64_t bytes) const {
    StorageReport r = *this;
    for (auto& c : r.categories) {
        if (c.kind == StorageKind::trash) continue;
        auto matches = [&](const StorageItem& item) {
            return item.path == path || below(item.path, path) || below(path, item.path);
        };
        if (std::none_of(c.items.begin(), c.items.end(), matches)) continue;
        c.bytes = std::max<int64_t>(0, c.bytes - bytes);
        std::vector<StorageItem> kept;
        for (auto& item : c.items) {
            if (item.path == path || below(item.path, path)) continue;
            if (below(path, item.path)) item.bytes = std::max<int64_t>(0, item.bytes - bytes);
            kept.push_back(std::move(item));
        }
        c.items = std::move(kept);
        break;
    }
    std::erase_if(r.biggest, [&](const BigFile& f) { return f.path == path || below(f.path, path); });
    auto trash = std::find_if(r.categories.begin(), r.categories.end(),
                              [](const StorageCategory& c) { return c.kind == StorageKind::trash; });
    if (trash != r.categories.end()) trash->bytes += bytes;
    else r.categories.push_back(StorageCategory{StorageKind::trash, bytes, {}, 0, {}});
    std::stable_sort(r.categories.begin(), r.categories.end(),
                     [](const StorageCategory& a, const StorageCategory& b) { return a.bytes > b.bytes; });
    return r;
}
