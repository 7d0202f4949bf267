#pragma once
// Where the program keeps its files and its settings store.
#include "foundation/SettingsStore.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Support {

// SORRELIN_SUPPORT, read once. An empty value is a value.
[[nodiscard]] const std::optional<std::string>& override();
[[nodiscard]] bool testing();
// The folder of the data files; not created here, each writer makes it.
[[nodiscard]] const std::string& dir();
// The settings store: the standard one, or a per-suite one while testing with a scratch folder.
[[nodiscard]] SettingsStore& defaults();

// "app.sorrelin.Sorrelin.testing-" plus the FNV-1a hash of the override, lower-case hex.
[[nodiscard]] std::string suiteName(std::string_view overrideValue);
[[nodiscard]] uint64_t fnv1a(std::string_view bytes);
// The settings file: the standard one, or the suite's file beside it.
[[nodiscard]] std::string settingsFile(const std::optional<std::string>& overrideValue);

} // namespace Support
