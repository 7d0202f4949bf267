#include "platform/AppBundles.h"
#include "support/TempTree.h"
#include "ui/AppIconProvider.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

// A home with installed apps and an icon theme of its own, read by the real desktop-entry
// reader and Qt's real icon loader.
class AppIcons : public ::testing::Test {
protected:
    TempTree tree;
    std::unique_ptr<DesktopAppBundles> bundles;
    QStringList oldPaths = QIcon::themeSearchPaths();
    QString oldTheme = QIcon::themeName();
    QByteArray oldDataHome = qgetenv("XDG_DATA_HOME");

    void SetUp() override {
        entry("editor", "Icon=editor-icon\n");
        entry("drawn", "Icon=" + tree.path("art/drawn.svg") + "\n");
        entry("legacy", "Icon=legacy.png\n");
        entry("broken", "Icon=no-such-icon-anywhere\n");
        entry("plain", "");
        tree.text("icons/hicolor/index.theme",
                  "[Icon Theme]\nName=Hicolor\nDirectories=48x48/apps\n\n[48x48/apps]\nSize=48\nType=Fixed\n");
        png(tree.path("icons/hicolor/48x48/apps/editor-icon.png"), 48, Qt::red);
        tree.text("art/drawn.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
                                   "<rect width='16' height='16' fill='#00ff00'/></svg>");
        tree.dir("data/pixmaps");
        png(tree.path("data/pixmaps/legacy.png"), 20, Qt::blue);
        QIcon::setThemeSearchPaths({QString::fromStdString(tree.path("icons"))});
        QIcon::setThemeName("hicolor");
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(tree.path("data")));
        bundles = std::make_unique<DesktopAppBundles>(std::vector<std::string>{tree.path("applications")}, "", "");
    }
    void TearDown() override {
        QIcon::setThemeSearchPaths(oldPaths);
        QIcon::setThemeName(oldTheme);
        qputenv("XDG_DATA_HOME", oldDataHome);
    }
    void entry(const std::string& id, const std::string& extra) {
        tree.text("applications/" + id + ".desktop",
                  "[Desktop Entry]\nType=Application\nName=" + id + "\nExec=/usr/bin/" + id + "\n" + extra);
    }
    static void png(const std::string& path, int side, Qt::GlobalColor colour) {
        QImage image(side, side, QImage::Format_ARGB32);
        image.fill(colour);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(QString::fromStdString(path)).path()));
        ASSERT_TRUE(image.save(QString::fromStdString(path)));
    }
    QImage request(const std::string& key, int side) {
        AppIconProvider provider(*bundles);
        QSize size;
        const QString id = QString::fromUtf8(QUrl::toPercentEncoding(QString::fromStdString(key)));
        QImage image = provider.requestImage(id, &size, QSize(side, side));
        EXPECT_EQ(size, image.size());
        return image;
    }
};

} // namespace

TEST_F(AppIcons, AnAppIsFoundByItsIdOrItsEntryPathAndDrawnFromTheTheme) {
    QImage byId = request("editor", 32);
    ASSERT_FALSE(byId.isNull());
    EXPECT_EQ(byId.size(), QSize(32, 32));
    EXPECT_EQ(QColor(byId.pixel(16, 16)), QColor(Qt::red));
    QImage byPath = request(tree.path("applications/editor.desktop"), 32);
    ASSERT_FALSE(byPath.isNull());
    EXPECT_EQ(QColor(byPath.pixel(5, 5)), QColor(Qt::red));
}

TEST_F(AppIcons, AnAbsoluteIconFileAndALegacyPixmapAreDrawnAtTheSizeAskedFor) {
    QImage drawn = request("drawn", 40);
    ASSERT_FALSE(drawn.isNull());
    EXPECT_EQ(drawn.size(), QSize(40, 40));
    EXPECT_EQ(QColor(drawn.pixel(20, 20)), QColor(0, 255, 0));
    QImage legacy = request("legacy", 40);
    ASSERT_FALSE(legacy.isNull());
    EXPECT_EQ(legacy.width(), 40);
    EXPECT_EQ(QColor(legacy.pixel(20, 20)), QColor(Qt::blue));
}

TEST_F(AppIcons, WhatCannotBeFoundGivesAnEmptyImageSoTheSymbolShows) {
    EXPECT_TRUE(request("broken", 32).isNull());
    EXPECT_TRUE(request("plain", 32).isNull());
    EXPECT_TRUE(request("not-installed", 32).isNull());
    EXPECT_TRUE(request("", 32).isNull());
    EXPECT_TRUE(request(tree.path("applications/gone.desktop"), 32).isNull());
    EXPECT_EQ(AppIconProvider::iconName(*bundles, "plain"), std::nullopt);
    EXPECT_EQ(AppIconProvider::iconName(*bundles, "editor"), "editor-icon");
}
