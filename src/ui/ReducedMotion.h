#pragma once
// Whether the desktop asks for reduced motion: GNOME's enable-animations key and KDE's
// AnimationDurationFactor. Either one saying so is enough; neither present means no.
#include <optional>
#include <string_view>

namespace ReducedMotion {

// The output of `gsettings get org.gnome.desktop.interface enable-animations`: true (reduced)
// for "false", false for "true", nothing for anything else (no schema, an error text).
[[nodiscard]] std::optional<bool> fromGnome(std::string_view gsettingsOutput);
// The text of kdeglobals: true when [KDE] AnimationDurationFactor is 0, false for any other
// number, nothing when the key is absent or unreadable.
[[nodiscard]] std::optional<bool> fromKde(std::string_view kdeglobals);

// This desktop's answer, read once per process.
[[nodiscard]] bool system();

} // namespace ReducedMotion
