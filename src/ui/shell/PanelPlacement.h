#pragma once
// Where the tray's panel goes: beside the tray icon when the tray says where it is, else in
// the top-right corner of the screen's free area, and always wholly on that area.
#include <QPoint>
#include <QRect>
#include <QSize>

namespace PanelPlacement {

inline constexpr int margin = 8;

// `icon` is the tray icon's geometry, empty when the tray gives none.
[[nodiscard]] QPoint place(const QRect& icon, const QRect& available, const QSize& panel);

} // namespace PanelPlacement
