#include "ui/AppIcons.h"

#include "platform/AppBundles.h"
#include "ui/AppIconProvider.h"

#include <QUrl>

AppIcons::AppIcons(QObject* parent) : QObject(parent) {}

bool AppIcons::has(const QString& appPath) {
    if (appPath.isEmpty()) return false;
    auto hit = known.constFind(appPath);
    if (hit != known.constEnd()) return *hit;
    const auto name = AppIconProvider::iconName(AppBundles::system(), appPath.toStdString());
    const bool found = name && !AppIconProvider::load(QString::fromStdString(*name), 16).isNull();
    known.insert(appPath, found);
    return found;
}

QString AppIcons::source(const QString& appPath) {
    if (!has(appPath)) return {};
    return QStringLiteral("image://appicon/") + QString::fromLatin1(QUrl::toPercentEncoding(appPath));
}
