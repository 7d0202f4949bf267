#include "storage/LinkSet.h"

bool LinkSet::insert(uint64_t key) {
    Shard& shard = shards[key & 31];
    std::lock_guard guard(shard.lock);
    return shard.keys.insert(key).second;
}

std::size_t LinkSet::size() const {
    std::size_t n = 0;
    for (const Shard& s : shards) {
        std::lock_guard guard(s.lock);
        n += s.keys.size();
    }
    return n;
}
