#include "storage/LinkSet.h"

bool LinkSet::insert(uint64_t key) {
    Shard& shard = shards[key & 31];
    std::lock_guard guard(shard.lock);
    return shard.keys.insert(key).second;
}
