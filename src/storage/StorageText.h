#pragma once
// The storage report as text, the way the --storage option prints it.
#include "platform/Places.h"
#include "storage/StorageReport.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace StorageText {

// The line that names what the categories and swap leave unexplained.
[[nodiscard]] std::string remainderLabel(Platform platform);
// The line of the system share that the file system keeps back for the administrator: space
// that is neither the user's files nor free for them.
inline constexpr std::string_view reservedLabel = "Kept back for the system: ";
// The swap the remainder leaves out: the report's own figure when it has one, else `swapUsed`.
[[nodiscard]] int64_t swapShown(const StorageReport& report, int64_t swapUsed);

// Head line, remainder, each category with its rows, the biggest files and the apps.
[[nodiscard]] std::string text(const StorageReport& report, int64_t swapUsed, Platform platform,
                               const std::string& home, double seconds);

} // namespace StorageText
