#include "ui/art/AppIcon.h"

#include "foundation/AtomicFile.h"
#include "ui/Fonts.h"
#include "ui/Palette.h"
#include "ui/Pictures.h"
#include "ui/SymbolTable.h"

#include <QDir>
#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

namespace AppIcon {

namespace {

const QString name = QStringLiteral("app.sorrelin.Sorrelin");

QColor colour(std::string_view member) { return Palette::lookup(member).value_or(QColor(Qt::white)); }

// A symbol of the design's glyph set, centred in a transparent square.
QImage symbol(std::string_view symbolName, const QColor& ink, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QString family = Fonts::symbolFamily();
    if (family.isEmpty()) return image;
    QPainter p(&image);
    p.setRenderHint(QPainter::TextAntialiasing);
    QFont font(family);
    font.setPixelSize(pixels);
    p.setFont(font);
    p.setPen(ink);
    p.drawText(QRect(0, 0, pixels, pixels), Qt::AlignCenter, QString(QChar(SymbolTable::find(symbolName).glyph)));
    return image;
}

} // namespace

QByteArray svg() {
    QFile file(QStringLiteral(":/sorrelin/art/AppIcon.svg"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    return file.readAll();
}

QImage draw(int pixels) {
    QSvgRenderer renderer(svg());
    if (!renderer.isValid()) return {};
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    renderer.render(&p);
    return image;
}

QIcon icon() {
    QIcon out;
    for (int s : sizes) out.addPixmap(QPixmap::fromImage(draw(s)));
    return out;
}

QIcon tray(MenuLabel::Icon which) {
    QIcon out;
    const bool warn = which == MenuLabel::Icon::warning;
    for (int s : {16, 22, 24, 32, 48, 64})
        out.addPixmap(QPixmap::fromImage(warn ? symbol("exclamationmark.triangle.fill", colour("amber"), s)
                                              : symbol("internaldrive", colour("text"), s)));
    return out;
}

int write(const QString& folder) {
    int failed = 0;
    const QDir root(folder + QStringLiteral("/hicolor"));
    const QString scalable = root.filePath(QStringLiteral("scalable/apps"));
    const QByteArray original = svg();
    if (original.isEmpty() ||
        !AtomicFile::write((scalable + "/" + name + ".svg").toStdString(), std::string_view(original.constData(), size_t(original.size()))))
        ++failed;
    for (int s : sizes) {
        const QString dir = root.filePath(QStringLiteral("%1x%1/apps").arg(s));
        const QImage image = draw(s);
        if (image.isNull() || !AtomicFile::makeFolders(dir.toStdString()) || !Pictures::writePng(image, dir + "/" + name + ".png"))
            ++failed;
    }
    return failed;
}

int run(int argc, char** argv, const std::string& folder) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    return write(QString::fromStdString(folder)) == 0 ? 0 : 1;
}

} // namespace AppIcon
