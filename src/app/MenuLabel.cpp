#include "app/MenuLabel.h"

#include "foundation/Fmt.h"
#include "foundation/PlatformWords.h"

namespace MenuLabel {

std::string text(MenuLabelStyle style, int64_t available, int freePercent, bool slow) {
    std::string out;
    switch (style) {
    case MenuLabelStyle::iconOnly: out = "Sorrelin"; break;
    case MenuLabelStyle::freeSpace: out = Fmt::bytes(available) + " free"; break;
    case MenuLabelStyle::freeAndMemory: out = Fmt::bytes(available) + " free " + std::to_string(freePercent) + "%"; break;
    }
    if (slow) out += PlatformWords::say(", your Mac is slow");
    return out;
}

Icon icon(bool isLow) { return isLow ? Icon::warning : Icon::disk; }

} // namespace MenuLabel
