#include "foundation/FS.h"

#include "foundation/BlockSharing.h"

#include <sys/stat.h>

#include <unordered_map>

namespace FS {

namespace {

struct Inode {
    int32_t dev = 0;
    uint64_t ino = 0;
    bool operator==(const Inode&) const = default;
};

struct InodeHash {
    std::size_t operator()(const Inode& i) const noexcept {
        return std::hash<uint64_t>{}(i.ino) ^ (std::hash<int32_t>{}(i.dev) << 1);
    }
};

struct Link {
    int64_t blocks = 0; // bytes of that inode
    nlink_t nlink = 0;  // its total link count
    nlink_t seen = 0;   // links the walk met
};

} // namespace

Measured measure(const std::vector<std::string>& paths, const ScanToken* cancel) {
    Measured result;
    std::unordered_map<Inode, Link, InodeHash> links;
    // Whether a device can share blocks is asked once per device, not per file.
    std::unordered_map<dev_t, bool> sharing;

    for (const std::string& path : paths) {
        std::string copy = path;
        char* roots[] = {copy.data(), nullptr};
        FTS* fts = fts_open(roots, FTS_PHYSICAL | FTS_NOCHDIR | FTS_XDEV, nullptr);
        if (!fts) continue;
        std::size_t count = 0;
        while (FTSENT* e = fts_read(fts)) {
            if (cancel && (++count % 256 == 0) && cancel->isCancelled()) break;
            const struct stat* st = e->fts_statp;
            if (!st) continue;
            int64_t bytes = static_cast<int64_t>(st->st_blocks) * 512;
            switch (e->fts_info) {
            case FTS_D:
                // Directories take no part in link counting.
                result.exclusive += bytes;
                continue;
            case FTS_F: {
                if (bytes > 0) {
                    auto known = sharing.find(st->st_dev);
                    if (known == sharing.end())
                        known = sharing.emplace(st->st_dev, BlockSharing::canShare(e->fts_accpath)).first;
                    if (known->second) {
                        if (auto own = BlockSharing::unsharedBytes(e->fts_accpath)) {
                            int64_t p = *own < 0 ? 0 : *own;
                            if (p < bytes) bytes = p;
                        }
                    }
                }
                break;
            }
            case FTS_SL:
            case FTS_SLNONE:
            case FTS_DEFAULT:
                break;
            default:
                continue; // unreadable folders, stat failures, cycles, post-order visits
            }
            if (st->st_nlink <= 1) {
                result.exclusive += bytes;
                continue;
            }
            Inode key{static_cast<int32_t>(st->st_dev), static_cast<uint64_t>(st->st_ino)};
            auto [it, inserted] = links.try_emplace(key, Link{bytes, st->st_nlink, 1});
            if (!inserted) ++it->second.seen;
        }
        fts_close(fts);
    }

    for (const auto& [inode, link] : links) {
        if (link.seen >= link.nlink) result.exclusive += link.blocks;
        else result.shared += link.blocks;
    }
    return result;
}

} // namespace FS
