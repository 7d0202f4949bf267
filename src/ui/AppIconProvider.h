#pragma once
// An app's own icon for QML, from its desktop entry's Icon= through the icon theme:
// `image://appicon/<desktop file path or desktop id, percent-encoded>`. An app that cannot be
// found, or whose icon cannot be, gives an empty image: the view then shows its symbol tile.
#include "platform/AppBundles.h"

#include <QHash>
#include <QImage>
#include <QQuickImageProvider>

#include <optional>
#include <string>

class AppIconProvider : public QQuickImageProvider {
public:
    explicit AppIconProvider(const AppBundles& bundles = AppBundles::system());

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

    // The Icon= value of the app named by `key`: a .desktop path, else a desktop id.
    [[nodiscard]] static std::optional<std::string> iconName(const AppBundles& bundles, const std::string& key);
    // The icon drawn at `side` pixels: a file for an absolute Icon=, else the theme's icon of
    // that name, else the legacy pixmaps folder. Null when none is found.
    [[nodiscard]] static QImage load(const QString& icon, int side);

private:
    const AppBundles& bundles;
    QHash<QString, QImage> cache; // by key and side; icons do not change while the program runs
};
