#pragma once
// What one clean did, item by item.
#include <cstdint>
#include <set>
#include <string>
#include <vector>

struct RemovalResult {
    int removed = 0;                   // items fully done
    std::set<std::string> removedIDs;  // their ids
    int64_t trashedBytes = 0;          // sizes of the items that went to the Trash
    int64_t pretendFreed = 0;          // sizes of the items a dry run pretended to delete
    std::vector<std::string> failures; // "{name}: {problem}", one per failed item, in order of work
    friend bool operator==(const RemovalResult&, const RemovalResult&) = default;
};
