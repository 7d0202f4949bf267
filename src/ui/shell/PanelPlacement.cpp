#include "ui/shell/PanelPlacement.h"

#include <algorithm>

namespace PanelPlacement {

QPoint place(const QRect& icon, const QRect& available, const QSize& panel) {
    const int minX = available.left() + margin;
    const int minY = available.top() + margin;
    const int maxX = std::max(minX, available.right() + 1 - margin - panel.width());
    const int maxY = std::max(minY, available.bottom() + 1 - margin - panel.height());
    if (!icon.isValid() || icon.isEmpty()) return {maxX, minY};
    // Centred under (or over) the icon; a tray at the foot of the screen opens upwards.
    const int x = std::clamp(icon.center().x() - panel.width() / 2, minX, maxX);
    const bool below = icon.center().y() < available.center().y();
    const int y = below ? icon.bottom() + 1 + margin / 2 : icon.top() - margin / 2 - panel.height();
    return {x, std::clamp(y, minY, maxY)};
}

} // namespace PanelPlacement
