#pragma once
// The program's only trace: one line per note, into the file FENNELBOX_LOG names. Off otherwise.
#include <optional>
#include <string>
#include <string_view>

namespace Log {

[[nodiscard]] const std::optional<std::string>& path(); // read once
void note(std::string_view text);
// Appends one line to `file`; every error is swallowed.
void noteTo(const std::string& file, std::string_view text);

} // namespace Log
