#pragma once
// The typefaces of the window: Inter for text, falling back to the desktop's sans, and the
// Material icon font for symbols, loaded from the file Debian installs.
#include <QString>

namespace Fonts {

// Loads the symbol font once per process; its family, or empty when the file is missing.
[[nodiscard]] QString symbolFamily();
// "Inter" when installed, otherwise the desktop's general font family.
[[nodiscard]] QString textFamily();
// Makes the text family the application font. Needs the GUI application to exist.
void install();

} // namespace Fonts
