#pragma once
// How the remover names paths and system errors in the sentences a person reads.
#include <string>
#include <string_view>

namespace Wording {

// The path with "~" for the home folder, invalid UTF-8 repaired and control characters (a
// newline in a file name) shown as U+FFFD, so that one failure stays one line.
[[nodiscard]] std::string shown(std::string_view path, std::string_view home);
// The system's description of an errno, in lower case for use after a colon.
[[nodiscard]] std::string reason(int error);

} // namespace Wording
