#include "ui/AppIconProvider.h"

#include <QFileInfo>
#include <QIcon>
#include <QImageReader>
#include <QStandardPaths>
#include <QUrl>

namespace {

constexpr int defaultSide = 64;

QImage readFile(const QString& path, int side) {
    QImageReader reader(path);
    if (!reader.canRead()) return {};
    // Scalable files are drawn at the size asked for; bitmaps are read whole and scaled below.
    if (reader.supportsOption(QImageIOHandler::ScaledSize) && path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive))
        reader.setScaledSize(QSize(side, side));
    QImage image = reader.read();
    if (image.isNull()) return {};
    if (image.width() != side || image.height() != side)
        image = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

void ensureTheme() {
    // With no desktop theme (no platform theme, as offscreen) look in hicolor, where every
    // application installs its icon.
    if (QIcon::themeName().isEmpty()) QIcon::setThemeName(QStringLiteral("hicolor"));
    if (QIcon::fallbackThemeName().isEmpty()) QIcon::setFallbackThemeName(QStringLiteral("hicolor"));
}

} // namespace

AppIconProvider::AppIconProvider(const AppBundles& bundles)
    : QQuickImageProvider(QQuickImageProvider::Image), bundles(bundles) {}

std::optional<std::string> AppIconProvider::iconName(const AppBundles& bundles, const std::string& key) {
    if (key.empty()) return std::nullopt;
    std::optional<DesktopEntry> entry = key.ends_with(".desktop") && key.front() == '/' ? bundles.entryAt(key)
                                                                                        : bundles.entry(key);
    if (!entry || entry->icon.empty()) return std::nullopt;
    return entry->icon;
}

QImage AppIconProvider::load(const QString& icon, int side) {
    if (icon.isEmpty() || side <= 0) return {};
    if (icon.startsWith(QLatin1Char('/'))) return readFile(icon, side);
    // A name with an extension is tolerated, as desktops do: "firefox.png" means "firefox".
    QString name = icon;
    for (const char* ext : {".png", ".svg", ".xpm"})
        if (name.endsWith(QLatin1String(ext), Qt::CaseInsensitive)) name.chop(4);
    ensureTheme();
    QIcon themed = QIcon::fromTheme(name);
    if (!themed.isNull()) {
        // At a ratio of 1: `side` already counts the screen's pixels.
        QImage image = themed.pixmap(QSize(side, side), 1.0).toImage();
        if (!image.isNull() && image.size() != QSize(side, side))
            image = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        if (!image.isNull()) return image;
    }
    for (const char* ext : {".svg", ".png", ".xpm"}) {
        QString file = QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                              QStringLiteral("pixmaps/") + name + QLatin1String(ext));
        if (!file.isEmpty()) return readFile(file, side);
    }
    return {};
}

QImage AppIconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const int side = requestedSize.width() > 0 ? std::max(requestedSize.width(), requestedSize.height()) : defaultSide;
    const QString key = QUrl::fromPercentEncoding(id.toUtf8());
    const QString cacheKey = key + QLatin1Char('@') + QString::number(side);
    auto hit = cache.constFind(cacheKey);
    QImage image;
    if (hit != cache.constEnd()) {
        image = *hit;
    } else {
        if (auto name = iconName(bundles, key.toStdString())) image = load(QString::fromStdString(*name), side);
        cache.insert(cacheKey, image);
    }
    if (size) *size = image.size();
    return image;
}
