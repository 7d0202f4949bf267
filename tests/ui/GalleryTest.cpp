// Every control of the design language, drawn by the picture harness. The pictures land in the
// build folder for a person to look at; the test holds what a machine can check: every page
// builds without a single QML warning, at the window's size, and is not blank.
#include "QmlWarnings.h"
#include "ui/Pictures.h"
#include "ui/UiEngine.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QStringList>

#include <optional>

#include <gtest/gtest.h>

TEST(Gallery, EveryPageOfControlsRendersCleanly) {
    Pictures::Renderer renderer;
    const QDir out(SORRELIN_PICTURES);
    const int pages = 3;
    for (int page = 0; page < pages; ++page) {
        std::optional<QmlWarnings> collecting(std::in_place);
        QImage image = renderer.draw({UiEngine::url("Gallery.qml"), QSize(1060, 760), {{"page", page}}});
        const QStringList warnings = collecting->taken();
        collecting.reset();
        ASSERT_FALSE(image.isNull()) << renderer.error().toStdString();
        EXPECT_TRUE(warnings.isEmpty()) << "page " << page << ":\n" << warnings.join('\n').toStdString();
        EXPECT_EQ(image.size(), QSize(2120, 1520));
        QSet<QRgb> colours;
        for (int y = 0; y < image.height(); y += 7)
            for (int x = 0; x < image.width(); x += 7) colours.insert(image.pixel(x, y));
        EXPECT_GT(colours.size(), 200) << "page " << page << " looks blank";
        EXPECT_TRUE(Pictures::writePng(image, out.filePath(QString("gallery-%1.png").arg(page))));
    }
}

// QtQuick has a type named Palette too, and the first import that offers a name wins: a file
// that imports QtQuick first would quietly read QtQuick's palette and draw nothing.
TEST(Gallery, EveryFileOfTheModuleImportsItBeforeQtQuick) {
    QDirIterator it(QString(SORRELIN_SOURCE) + "/src/ui", {"*.qml"}, QDir::Files, QDirIterator::Subdirectories);
    int files = 0;
    while (it.hasNext()) {
        QFile f(it.next());
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(f.readAll());
        const qsizetype ours = text.indexOf("import Sorrelin\n");
        const qsizetype quick = text.indexOf("import QtQuick");
        EXPECT_GE(ours, 0) << f.fileName().toStdString();
        if (quick >= 0) {
            EXPECT_LT(ours, quick) << f.fileName().toStdString();
        }
        ++files;
    }
    EXPECT_GT(files, 30);
}
