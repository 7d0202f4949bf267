#pragma once
// What the tray item says. Trays show no text beside the icon, so the label the user chose
// in the preferences becomes the tooltip, and the icon carries the warning.
#include "app/MenuSection.h"

#include <cstdint>
#include <string>

namespace MenuLabel {

// "120 GB free", with the memory's free share for `freeAndMemory` and the program's name
// alone for `iconOnly`; ", your computer is slow" when something slows it now.
[[nodiscard]] std::string text(MenuLabelStyle style, int64_t available, int freePercent, bool slow);

// Which of the two icons: the disk, or the warning while space is low.
enum class Icon { disk, warning };
[[nodiscard]] Icon icon(bool isLow);

} // namespace MenuLabel
