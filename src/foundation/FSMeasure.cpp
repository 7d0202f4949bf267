#include "foundation/FS.h"

#include "foundation/BlockSharing.h"
#include "foundation/Walker.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <mutex>
#include <unordered_map>

namespace FS {

namespace {

struct Inode {
    uint64_t dev = 0;
    uint64_t ino = 0;
    bool operator==(const Inode&) const = default;
};

struct InodeHash {
    std::size_t operator()(const Inode& i) const noexcept {
        return std::hash<uint64_t>{}(i.ino) ^ (std::hash<uint64_t>{}(i.dev) << 1);
    }
};

struct Link {
    int64_t blocks = 0;   // bytes of that inode
    uint32_t nlink = 0;   // its total link count
    uint32_t seen = 0;    // links the walk met
};

// The multi-link files of one call, met by any of its threads.
class Links {
public:
    void meet(const Inode& key, int64_t bytes, uint32_t nlink) {
        Shard& s = shards[key.ino % shards.size()];
        std::lock_guard guard(s.lock);
        auto [it, inserted] = s.links.try_emplace(key, Link{bytes, nlink, 1});
        if (!inserted) ++it->second.seen;
    }
    // Bytes of inodes whose every link was met, and of those with a link elsewhere.
    [[nodiscard]] Measured split() const {
        Measured m;
        for (const Shard& s : shards)
            for (const auto& [inode, link] : s.links) (link.seen >= link.nlink ? m.exclusive : m.shared) += link.blocks;
        return m;
    }

private:
    struct Shard {
        std::mutex lock;
        std::unordered_map<Inode, Link, InodeHash> links;
    };
    std::array<Shard, 16> shards;
};

class Measuring : public Walker::Visitor {
public:
    explicit Measuring(Links& l) : links(l) {}
    int64_t exclusive = 0;

    std::optional<Walker::Enter> folder(const Walker::Entry& e, int) override {
        // Folders take no part in link counting; one that cannot be read still holds its blocks.
        if (e.stat) exclusive += e.stat->bytes;
        return Walker::Enter{};
    }

    void other(const Walker::Entry& e) override {
        const Walker::Stat& st = *e.stat;
        int64_t bytes = st.bytes;
        if (S_ISREG(st.mode) && bytes > 0) bytes = ownBytes(e, bytes);
        if (st.links <= 1) {
            exclusive += bytes;
            return;
        }
        links.meet(Inode{st.device, st.inode}, bytes, st.links);
    }

private:
    Links& links;
    // Whether a device can share blocks, asked once per device rather than per file.
    std::unordered_map<uint64_t, bool> sharing;

    int64_t ownBytes(const Walker::Entry& e, int64_t bytes) {
        auto known = sharing.find(e.stat->device);
        if (known == sharing.end())
            known = sharing.emplace(e.stat->device, e.at >= 0 ? BlockSharing::canShareAt(e.at)
                                                             : BlockSharing::canShare(e.path().c_str())).first;
        if (!known->second) return bytes; // most file systems: no name needed, nothing asked
        const std::string name = e.at >= 0 ? std::string(e.name) : e.path();
        const int at = e.at >= 0 ? e.at : AT_FDCWD;
        if (auto own = BlockSharing::unsharedBytesAt(at, name.c_str())) return std::min(bytes, std::max<int64_t>(0, *own));
        return bytes;
    }
};

} // namespace

Measured measure(const std::vector<std::string>& paths, const ScanToken* cancel) {
    std::vector<Walker::Root> roots;
    roots.reserve(paths.size());
    for (const std::string& p : paths) roots.push_back({p, 0});
    Links links;
    Walker::Options options;
    options.cancel = cancel;
    auto visitors = Walker::walk<Measuring>(roots, options, [&] { return std::make_unique<Measuring>(links); });
    Measured result = links.split();
    for (const auto& v : visitors) result.exclusive += v->exclusive;
    return result;
}

} // namespace FS
