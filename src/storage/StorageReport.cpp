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
    // The category that holds the path is the one whose row lies closest to it: a row of the
    // system's share (the temporary folder) may hold a whole home folder that lies below it,
    // yet the file is counted in the home's own category. Equal rows go to the earlier one.
    auto closeness = [&](const StorageCategory& c) {
        std::size_t best = 0;
        for (const auto& item : c.items) {
            if (item.path == path || below(item.path, path)) best = std::max(best, path.size() + 1);
            else if (below(path, item.path)) best = std::max(best, item.path.size());
        }
        return best;
    };
    StorageCategory* holder = nullptr;
    std::size_t closest = 0;
    for (auto& c : r.categories) {
        if (c.kind == StorageKind::trash) continue;
        if (const std::size_t near = closeness(c); near > closest) {
            closest = near;
            holder = &c;
        }
    }
    if (holder) {
        StorageCategory& c = *holder;
        c.bytes = std::max<int64_t>(0, c.bytes - bytes);
        std::vector<StorageItem> kept;
        for (auto& item : c.items) {
            if (item.path == path || below(item.path, path)) continue;
            if (below(path, item.path)) item.bytes = std::max<int64_t>(0, item.bytes - bytes);
            kept.push_back(std::move(item));
        }
        c.items = std::move(kept);
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
