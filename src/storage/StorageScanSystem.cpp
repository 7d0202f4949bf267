// What the home folder does not hold: app bundles, the system's downloads, its own share of
// the disk and the swap on the home volume.
#include "storage/StorageScan.h"

#include "foundation/FS.h"
#include "foundation/Text.h"
#include "foundation/Walker.h"
#include "platform/PackageDatabase.h"
#include "platform/SwapAreas.h"

#include <sys/stat.h>

#include <algorithm>
#include <unordered_set>

namespace {

// Allocated bytes below a folder on its own volume, hard links counted once.
int64_t allocatedBelow(const std::string& folder) {
    class Sum : public Walker::Visitor {
    public:
        explicit Sum(LinkSet& l) : links(l) {}
        int64_t total = 0;
        std::optional<Walker::Enter> folder(const Walker::Entry& e, int) override {
            total += e.stat->bytes;
            return Walker::Enter{};
        }
        void other(const Walker::Entry& e) override {
            const Walker::Stat& st = *e.stat;
            if (S_ISREG(st.mode) && st.links >= 2 && !links.insert(LinkSet::key(st.inode, st.device))) return;
            total += st.bytes;
        }

    private:
        LinkSet& links;
    };
    LinkSet links;
    int64_t total = 0;
    for (const auto& sum : Walker::walk<Sum>({{folder, 0}}, {}, [&] { return std::make_unique<Sum>(links); }))
        total += sum->total;
    return total;
}

// The home folder or inside it: the home's own walk measures it already.
bool inside(const std::string& path, const std::string& home) {
    if (home == "/") return path.starts_with("/");
    return path == home || (path.size() > home.size() && path.starts_with(home) && path[home.size()] == '/');
}

std::optional<dev_t> deviceOf(const std::string& path) {
    struct stat st {};
    if (path.empty() || stat(path.c_str(), &st) != 0) return std::nullopt;
    return st.st_dev;
}

} // namespace

std::string StorageScan::appName(std::string_view path) {
    std::string name = FS::lastComponent(path);
    if (name.ends_with(".app")) name.resize(name.size() - 4);
    return name;
}

std::vector<std::string> StorageScan::appBundles(const Layout& layout) {
    std::vector<std::string> out;
    for (const std::string& dir : layout.applicationDirs) {
        auto names = FS::children(dir);
        std::sort(names.begin(), names.end());
        for (const std::string& name : names) {
            if (name.starts_with(".")) continue;
            std::string path = dir + "/" + name;
            if (name.ends_with(".app")) {
                out.push_back(path);
            } else if (FS::isDir(path)) {
                auto inner = FS::children(path);
                std::sort(inner.begin(), inner.end());
                for (const std::string& n : inner)
                    if (n.ends_with(".app")) out.push_back(path + "/" + n);
            }
        }
    }
    return out;
}

std::optional<std::string> StorageScan::bundleIdentifier(const std::string& bundle) {
    auto text = FS::readText(bundle + "/Contents/Info.plist", 1 << 20);
    if (!text) return std::nullopt;
    const std::string key = "<key>CFBundleIdentifier</key>";
    auto at = text->find(key);
    if (at == std::string::npos) return std::nullopt;
    auto open = text->find("<string>", at + key.size());
    if (open == std::string::npos) return std::nullopt;
    // Only blanks may stand between the key and its value.
    if (!Text::trim(std::string_view(*text).substr(at + key.size(), open - at - key.size())).empty())
        return std::nullopt;
    open += 8;
    auto close = text->find("</string>", open);
    if (close == std::string::npos) return std::nullopt;
    std::string id = Text::trim(std::string_view(*text).substr(open, close - open));
    if (id.empty()) return std::nullopt;
    return id;
}

std::string StorageScan::assetTitle(const std::string& folder, const StorageTables& t) {
    if (auto it = t.assetNames.find(folder); it != t.assetNames.end()) return it->second;
    for (const auto& rule : t.assetRules) {
        if (!rule.prefix.empty() && folder.starts_with(rule.prefix)) return rule.title;
        for (const auto& part : rule.contains)
            if (folder.find(part) != std::string::npos) return rule.title;
    }
    std::string name = t.assetPrefix.empty() ? folder : Text::replaceAll(folder, t.assetPrefix, "");
    return Text::replaceAll(std::move(name), "_", " ");
}

std::optional<StorageScan::Volumes> StorageScan::volumes(const Layout& layout, int64_t packagesShownAsApps) {
    const StorageTables& t = layout.storage;
    auto homeDevice = deviceOf(layout.home);
    if (!homeDevice) return std::nullopt;
    auto onHome = [&](const std::string& path) { return deviceOf(path) == homeDevice; };

    bool read = false;
    Volumes v;
    if (!t.procSwaps.empty())
        if (auto text = FS::readText(t.procSwaps, 1 << 16)) {
            read = true;
            for (const auto& area : SwapAreas::parse(*text)) {
                if (area.type != "file" || SwapAreas::inMemory(area)) continue;
                struct stat st {};
                if (lstat(area.path.c_str(), &st) != 0) continue;
                if (st.st_dev == *homeDevice) v.vm += static_cast<int64_t>(st.st_blocks) * 512;
            }
        }
    if (!t.dpkgStatus.empty())
        if (auto text = FS::readText(t.dpkgStatus, 256 << 20)) {
            read = true;
            int64_t packages = std::max<int64_t>(0, PackageDatabase::totalSize(*text) - packagesShownAsApps);
            if (packages > 0 && onHome(t.systemRoot) && !inside(t.systemRoot, layout.home))
                v.rows.push_back(StorageItem{t.systemTitle, "volume:system", packages, true, std::nullopt, std::nullopt});
        }
    for (const auto& place : t.systemPlaces) {
        if (!FS::isDir(place.path) || !onHome(place.path) || inside(place.path, layout.home)) continue;
        read = true;
        int64_t bytes = allocatedBelow(place.path);
        if (bytes > 0)
            v.rows.push_back(StorageItem{place.name, "volume:" + FS::lastComponent(place.path), bytes, true, std::nullopt,
                                         place.path});
    }
    if (!read) return std::nullopt;
    std::stable_sort(v.rows.begin(), v.rows.end(),
                     [](const StorageItem& a, const StorageItem& b) { return a.bytes > b.bytes; });
    return v;
}
