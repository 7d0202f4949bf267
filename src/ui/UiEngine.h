#pragma once
// What every QML engine of the program shares: the module's import path, the app icon
// provider, the fonts and the restyled Basic controls. The window, the panel, the pictures and
// the tests all start here, so what a test renders is what a person sees.
#include <QQmlEngine>
#include <QString>
#include <QUrl>

namespace UiEngine {

// Before the GUI application exists. Windows draw with the software renderer (unless the
// environment names another backend); `pictures` also puts them on the offscreen platform,
// where no display or GPU is needed and a hidden window can be grabbed.
void configureProcess(bool pictures);
// For each engine, once the GUI application exists.
void prepare(QQmlEngine& engine);
// A QML file of the module, e.g. "Gallery.qml" or "components/Chip.qml".
[[nodiscard]] QUrl url(const QString& file);

} // namespace UiEngine
