#include "ui/NumberWords.h"

#include <array>

namespace NumberWords {

std::string number(long long n) {
    static constexpr std::array<const char*, 11> names{"Zero", "One", "Two", "Three", "Four", "Five",
                                                       "Six",  "Seven", "Eight", "Nine", "Ten"};
    if (n >= 0 && n <= 10) return names[static_cast<std::size_t>(n)];
    return std::to_string(n);
}

} // namespace NumberWords
