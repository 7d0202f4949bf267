#pragma once
// The advice as lines of text, for the reports: "[now] [Slow now] Quit Busy Bee".
#include "advice/Rec.h"

#include <string>
#include <vector>

namespace AdviceText {

[[nodiscard]] std::vector<std::string> lines(const std::vector<Rec>& recs);

} // namespace AdviceText
