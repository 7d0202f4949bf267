#include "scan/ScanReport.h"

#include "foundation/Fmt.h"
#include "foundation/Text.h"

#include <algorithm>

namespace ScanReport {

std::string kindTag(const CleanItem& item) {
    if (!item.cacheKind) return {};
    std::string kind(CacheKinds::rawValue(*item.cacheKind));
    if (item.lastUsed) return "[" + kind + " " + Fmt::dayMonth(*item.lastUsed) + "] ";
    return "[" + kind + "] ";
}

std::string line(const CleanItem& item) {
    std::string state = item.isLocked() ? "LOCK" : item.defaultOn ? " on " : " off";
    std::string out = Text::fit(Fmt::bytes(item.size), 8);
    out += ' ';
    out += state;
    out += ' ';
    out += Text::fit(item.name, 32);
    out += ' ';
    out += Text::fit(item.location, 56);
    out += ' ';
    out += kindTag(item);
    out += Text::visible(item.lockedReason ? *item.lockedReason : item.note);
    return out;
}

std::string text(const std::vector<CleanItem>& items, const DiskInfo& disk, double seconds) {
    std::string out;
    for (Tier tier : Tiers::allCases) {
        std::vector<const CleanItem*> rows;
        for (const auto& item : items)
            if (item.tier == tier) rows.push_back(&item);
        std::stable_sort(rows.begin(), rows.end(), [](const CleanItem* a, const CleanItem* b) { return a->size > b->size; });
        int64_t total = 0;
        for (const auto* r : rows)
            if (!r->isLocked()) total += r->size;
        out += Text::format("\n== %s · %s · %zu items ==\n", std::string(Tiers::title(tier)).c_str(),
                            Fmt::bytes(total).c_str(), rows.size());
        for (const auto* r : rows) out += line(*r) + "\n";
    }
    out += Text::format("\n%s: %s free of %s · scan took %.1f s\n", Text::visible(disk.name).c_str(), Fmt::bytes(disk.available).c_str(),
                        Fmt::bytes(disk.total).c_str(), seconds);
    return out;
}

} // namespace ScanReport
