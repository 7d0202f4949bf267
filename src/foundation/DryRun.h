#pragma once
// Lets the whole clean flow run without touching anything on disk (SORRELIN_DRYRUN).
#include <optional>
#include <string>

namespace DryRun {

[[nodiscard]] const std::optional<std::string>& mode(); // read once
[[nodiscard]] bool on();    // the variable is set, whatever its value
[[nodiscard]] bool fails(); // its value is exactly "fail"
void pause(double seconds); // blocks the thread; negative counts as 0

// For tests: the mode for a given value, as the environment would set it.
struct Mode {
    bool on = false;
    bool fails = false;
};
[[nodiscard]] Mode modeFor(const char* value);

} // namespace DryRun
