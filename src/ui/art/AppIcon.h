#pragma once
// The program's own pictures: the application icon (a disk ring with the share a clean gives
// back, and the broom) and the tray's two symbols, all in the design's palette.
#include "app/MenuLabel.h"

#include <QIcon>
#include <QImage>
#include <QString>

namespace AppIcon {

inline constexpr int sizes[] = {16, 22, 24, 32, 48, 64, 128, 256, 512};

// The icon as SVG text, the scalable original.
[[nodiscard]] QByteArray svg();
// The icon drawn at `pixels` square; a null image when the SVG cannot be read.
[[nodiscard]] QImage draw(int pixels);
// The application icon with a drawing for every size.
[[nodiscard]] QIcon icon();
// The tray item's icon: the disk, or the warning while space is low.
[[nodiscard]] QIcon tray(MenuLabel::Icon which);

// `--make-icon DIR`: DIR/hicolor/scalable/apps/app.sorrelin.Sorrelin.svg and
// DIR/hicolor/NxN/apps/app.sorrelin.Sorrelin.png for each size, each written whole or not at
// all. The number of files that could not be written.
[[nodiscard]] int write(const QString& folder);

// Runs the option in a process of its own (an offscreen GUI application). Its exit status.
[[nodiscard]] int run(int argc, char** argv, const std::string& folder);

} // namespace AppIcon
