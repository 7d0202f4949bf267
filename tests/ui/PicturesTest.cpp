#include "support/TempTree.h"
#include "ui/Pictures.h"

#include <QDir>
#include <QImageReader>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

QUrl scene(const TempTree& tree, const std::string& name, const std::string& qml) {
    return QUrl::fromLocalFile(QString::fromStdString(tree.text(name, qml)));
}

} // namespace

TEST(Pictures, ASceneIsDrawnAtItsSizeTimesThePixelRatio) {
    TempTree tree;
    Pictures::Renderer renderer;
    QImage image = renderer.draw({scene(tree, "s.qml",
                                        "import QtQuick\nRectangle { color: '#18191D'\n"
                                        "  Rectangle { x: 10; y: 10; width: 20; height: 20; color: '#FF0000' }\n"
                                        "  property string word: 'none'\n"
                                        "  Rectangle { x: 60; y: 10; width: 20; height: 20; color: word === 'set' ? '#00FF00' : '#0000FF' } }\n"),
                                  QSize(100, 60),
                                  {{"word", "set"}}});
    ASSERT_FALSE(image.isNull()) << renderer.error().toStdString();
    const qreal dpr = image.devicePixelRatio();
    EXPECT_EQ(dpr, 2.0);
    EXPECT_EQ(image.size(), QSize(200, 120));
    auto at = [&](int x, int y) { return QColor(image.pixel(int(x * dpr), int(y * dpr))); };
    EXPECT_EQ(at(20, 20), QColor("#FF0000"));
    EXPECT_EQ(at(5, 50), QColor("#18191D"));
    // Initial properties reach the root before it is drawn.
    EXPECT_EQ(at(70, 20), QColor("#00FF00"));
}

TEST(Pictures, ABrokenSceneGivesNoPictureAndSaysWhy) {
    TempTree tree;
    Pictures::Renderer renderer;
    QImage broken = renderer.draw({scene(tree, "broken.qml", "import QtQuick\nRectangle { width: }\n"), QSize(10, 10), {}});
    EXPECT_TRUE(broken.isNull());
    EXPECT_TRUE(renderer.error().contains("broken.qml")) << renderer.error().toStdString();
    QImage notItem = renderer.draw({scene(tree, "object.qml", "import QtQml\nQtObject {}\n"), QSize(10, 10), {}});
    EXPECT_TRUE(notItem.isNull());
    EXPECT_FALSE(renderer.error().isEmpty());
    QImage missing = renderer.draw({QUrl::fromLocalFile("/no/such/scene.qml"), QSize(10, 10), {}});
    EXPECT_TRUE(missing.isNull());
    // The renderer is still good for the next scene.
    QImage fine = renderer.draw({scene(tree, "fine.qml", "import QtQuick\nRectangle { color: 'white' }\n"), QSize(4, 4), {}});
    EXPECT_FALSE(fine.isNull());
}

TEST(Pictures, APictureIsWrittenWholeOrNotAtAll) {
    TempTree tree;
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(Qt::green);
    const QString path = QString::fromStdString(tree.path("deep/folder/shot.png"));
    ASSERT_TRUE(Pictures::writePng(image, path));
    QImage back(path);
    EXPECT_EQ(back.size(), QSize(8, 8));
    EXPECT_EQ(QColor(back.pixel(3, 3)), QColor(Qt::green));
    // Nothing but the picture is left in the folder.
    EXPECT_EQ(QDir(QString::fromStdString(tree.path("deep/folder"))).entryList(QDir::Files | QDir::Hidden).size(), 1);

    // A folder that cannot exist: the write fails and the picture already there stays.
    tree.text("blocker", "a file where a folder should be");
    EXPECT_FALSE(Pictures::writePng(image, QString::fromStdString(tree.path("blocker/shot.png"))));
    QImage red(8, 8, QImage::Format_ARGB32);
    red.fill(Qt::red);
    EXPECT_FALSE(Pictures::writePng(QImage(), path));
    EXPECT_EQ(QColor(QImage(path).pixel(3, 3)), QColor(Qt::green));
    ASSERT_TRUE(Pictures::writePng(red, path));
    EXPECT_EQ(QColor(QImage(path).pixel(3, 3)), QColor(Qt::red));
}
