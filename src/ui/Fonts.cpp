#include "ui/Fonts.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QStandardPaths>

namespace Fonts {

QString symbolFamily() {
    static const QString family = [] {
        const QString file = QStandardPaths::locate(
            QStandardPaths::GenericDataLocation,
            QStringLiteral("fonts/truetype/material-design-icons-iconfont/MaterialIcons-Regular.ttf"));
        if (file.isEmpty()) return QString();
        const int id = QFontDatabase::addApplicationFont(file);
        const QStringList families = QFontDatabase::applicationFontFamilies(id);
        return families.isEmpty() ? QString() : families.first();
    }();
    return family;
}

QString textFamily() {
    static const QString family = [] {
        const QString inter = QStringLiteral("Inter");
        if (QFontDatabase::families().contains(inter)) return inter;
        return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    }();
    return family;
}

void install() {
    QFont font(textFamily());
    font.setPixelSize(13);
    font.setHintingPreference(QFont::PreferNoHinting);
    QGuiApplication::setFont(font);
}

} // namespace Fonts
