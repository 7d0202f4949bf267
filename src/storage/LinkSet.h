#pragma once
// The hard-linked files a walk has met, shared by all walking threads. 32 shards, each with a
// lock of its own, so that threads meeting multi-link files rarely wait for one another.
#include <array>
#include <cstdint>
#include <mutex>
#include <unordered_set>

class LinkSet {
public:
    // The key of a file: its inode number XOR its device number shifted left by 40.
    [[nodiscard]] static uint64_t key(uint64_t inode, uint64_t device) { return inode ^ (device << 40); }

    // True when the key was new; false when some walk met the file before.
    bool insert(uint64_t key);

private:
    struct Shard {
        std::mutex lock;
        std::unordered_set<uint64_t> keys;
    };
    std::array<Shard, 32> shards;
};
