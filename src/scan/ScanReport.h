#pragma once
// The text of the cleaning report, apart from the scan that feeds it.
#include "foundation/CleanItem.h"
#include "foundation/DiskInfo.h"

#include <string>
#include <vector>

namespace ScanReport {

// One item's line: size, state, name, location in fixed widths, then the kind tag and the text.
[[nodiscard]] std::string line(const CleanItem& item);
// "[{kind} {date}] ", "[{kind}] " or nothing.
[[nodiscard]] std::string kindTag(const CleanItem& item);
// The three tiers in order, each with its head and its items largest first, and the foot.
[[nodiscard]] std::string text(const std::vector<CleanItem>& items, const DiskInfo& disk, double seconds);

} // namespace ScanReport
