// The window's tests need a GUI application: offscreen, with the software renderer, as the
// pictures are made.
#include "ui/UiEngine.h"

#include <QGuiApplication>
#include <QtQml/qqmlextensionplugin.h>

#include <gtest/gtest.h>

Q_IMPORT_QML_PLUGIN(SorrelinPlugin)

int main(int argc, char** argv) {
    UiEngine::configureProcess(true);
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
