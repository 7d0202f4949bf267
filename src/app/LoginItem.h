#pragma once
// Opening at login: the XDG autostart entry of the program. Whether the file exists is the
// state; the switch shows the disk, not the wish. The entry takes effect at the next login.
#include "foundation/SettingsStore.h"

#include <string>

namespace LoginItem {

inline constexpr const char* label = "app.sorrelin.Sorrelin";
// The key in the standard settings store: the program turned the entry on once by itself.
inline constexpr const char* offeredKey = "loginItemOffered";

// The entry's text, starting `executable` with --background.
[[nodiscard]] std::string entry(const std::string& executable);
// A path as one argument of an Exec line: quoted, with the characters the desktop entry
// format reserves escaped, when it holds any of them.
[[nodiscard]] std::string execArgument(const std::string& path);

[[nodiscard]] bool isEnabled(const std::string& file);
// Writes or removes the entry; every failure is swallowed (a folder that is a file, a
// read-only folder) and shows in `isEnabled` afterwards.
void set(const std::string& file, bool on, const std::string& executable);

// A copy that a package or `cmake --install` put in place, as opposed to one run from a build
// folder or a download: under /usr, /opt or the home's ~/.local, with no CMake cache beside it.
[[nodiscard]] bool isInstalledCopy(const std::string& executable, const std::string& home);

// Whether this start turns the entry on: the first start of an installed copy does, once, and
// notes so in `standard` (the standard settings store, never the per-suite one), so that the
// user's later choice is never overruled.
[[nodiscard]] bool shouldOffer(SettingsStore& standard, const std::string& executable, const std::string& home);

} // namespace LoginItem
