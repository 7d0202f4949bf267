#pragma once
// The one walker of whole trees: the storage map, the growth report, measuring and the
// build-folder search all go through it. Folders are opened relative to the folder that holds
// them and never through a link, their listings read in large batches, and other entries asked
// only for the facts the visitor needs. Folders are shared between all cores, so one huge tree
// keeps every core busy. Open handles and queued folders stay bounded whatever the depth or
// width of the tree, and nothing is kept per file.
#include "foundation/ScanToken.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class Walker {
public:
    // What a walk reads of entries that are not folders. Folders are always read in full.
    enum class Need {
        names, // nothing beyond the listing (a stat only where the listing has no type)
        stat,  // type, mode, links, owner, inode, device, blocks, modification time
        birth, // the same and the birth time
    };

    struct Stat {
        uint64_t device = 0;
        uint64_t inode = 0;
        uint32_t mode = 0;
        uint32_t links = 0;
        uint32_t owner = 0;
        uint64_t mount = 0; // the mount it lies on, where the kernel tells (folders only)
        int64_t bytes = 0; // allocated: blocks × 512
        int64_t modified = 0;
        uint32_t modifiedNanos = 0;
        bool hasBirth = false;
        int64_t born = 0;
        uint32_t bornNanos = 0;
    };

    struct Entry {
        std::string_view folder; // path of the folder that holds it; empty for a root
        std::string_view name;   // for a root, its whole path
        int level = 0;           // 0 for a root
        std::size_t root = 0;    // index of its root in the walk
        uintptr_t tag = 0;       // the tag of the folder that holds it; a root's own for a root
        const Stat* stat = nullptr; // null where the walk read nothing of it
        // Handle of the holding folder, for questions relative to it; -1 where there is none
        // at hand (a root, or a folder handed to another thread).
        int at = -1;
        int error = 0;           // a folder that cannot be read or searched: why
        bool mountPoint = false; // a folder on another mount than its root: never entered
        [[nodiscard]] std::string path() const;
    };

    // A visitor's answer for a folder it enters.
    struct Enter {
        uintptr_t tag = 0;     // handed to everything inside it
        bool together = false; // it and all below it are walked by one thread, with `leave` for each
    };

    // One per walking thread, called from that thread only.
    class Visitor {
    public:
        virtual ~Visitor() = default;
        // A folder met in a listing, before it is opened: false leaves it and all below it out.
        virtual bool admit(const Entry&) { return true; }
        // A folder with its facts, and `fd` its open handle (-1 with `error` or `mountPoint`
        // set: then it is not read, whatever the answer). Nothing leaves it unread.
        virtual std::optional<Enter> folder(const Entry& folder, int fd) = 0;
        // Any other entry: a file, a link, a device, or what took the place of a folder.
        virtual void other(const Entry& entry) = 0;
        // A folder of a `together` part, once all it holds was walked; `tag` is its own.
        virtual void leave(const Entry&, uintptr_t /*tag*/) {}
    };

    struct Root {
        std::string path;
        uintptr_t tag = 0;
    };

    struct Options {
        Need need = Need::stat;
        bool followRoot = false;            // a root that is a link to a folder is walked where it leads
        const ScanToken* cancel = nullptr;  // asked every 256 entries; a cancelled walk ends soon
        std::size_t threads = 0;            // 0: as many as keep every core busy (fewer inside a parallel loop)
    };

    // Walks every root with one visitor per thread, made by `make`, and hands them back once all
    // threads have ended.
    [[nodiscard]] static std::vector<std::unique_ptr<Visitor>> run(const std::vector<Root>& roots,
                                                                   const Options& options,
                                                                   const std::function<std::unique_ptr<Visitor>()>& make);

    // The same with the visitors' own type.
    template <typename V>
    [[nodiscard]] static std::vector<std::unique_ptr<V>> walk(const std::vector<Root>& roots, const Options& options,
                                                              const std::function<std::unique_ptr<V>()>& make) {
        auto made = run(roots, options, [&]() -> std::unique_ptr<Visitor> { return make(); });
        std::vector<std::unique_ptr<V>> out;
        out.reserve(made.size());
        for (auto& v : made) out.emplace_back(static_cast<V*>(v.release()));
        return out;
    }

    // Limits, for the tests that check them.
    static constexpr std::size_t listingBytes = 64 * 1024;   // one batch of a listing
    static constexpr std::size_t pendingBytes = 64 * 1024;   // names of subfolders held before walking them
    static constexpr std::size_t handlesPerThread = 48;      // open folders of one thread's own walk
    static constexpr std::size_t queuedFolders = 64;         // folders waiting for another thread
};
