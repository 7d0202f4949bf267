#pragma once
// What a scanning source reports: something that might be cleared, not yet measured.
#include "foundation/CacheKind.h"
#include "foundation/CleanItem.h"
#include "foundation/Removal.h"
#include "foundation/Tier.h"
#include "foundation/Time.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// How a candidate gets its size: a walk of its paths, or a source's own closure (which may
// find nothing to offer, and then the candidate is dropped).
struct Measure {
    std::function<std::optional<int64_t>()> custom; // empty: walk the paths

    [[nodiscard]] static Measure tree() { return {}; }
    [[nodiscard]] static Measure customSize(std::function<std::optional<int64_t>()> f) { return {std::move(f)}; }
    [[nodiscard]] bool isTree() const { return !custom; }
};

struct Candidate {
    std::string id;
    Tier tier = Tier::safe;
    std::string name;
    std::string location;
    std::string note;
    std::vector<std::string> paths;
    Removal removal = Removal::deleteForGood();
    std::optional<std::string> lockedReason;
    bool defaultOn = false;
    std::vector<std::string> reveal;
    int64_t minSize = 10'000'000;
    Measure measure;
    std::optional<CacheKind> cacheKind;
    std::optional<TimePoint> lastUsed;

    [[nodiscard]] CleanItem item(int64_t size) const;
};
