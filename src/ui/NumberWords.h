#pragma once
// Counts written out the way a sentence says them.
#include <string>

namespace NumberWords {

// 0 to 10 as "Zero" … "Ten", larger numbers as digits.
[[nodiscard]] std::string number(long long n);

} // namespace NumberWords
