// The window's tests need a GUI application: offscreen, with the software renderer, as the
// pictures are made.
#include "foundation/Rendering.h"
#include "ui/UiEngine.h"

#include <QGuiApplication>
#include <QtQml/qqmlextensionplugin.h>

#include <gtest/gtest.h>

Q_IMPORT_QML_PLUGIN(SorrelinPlugin)

namespace {

// The rendering switch is the process's: a test that leaves it on would still every animation
// and write of the tests after it, which then pass or fail by their order. Such a test fails
// here, and the switch is reset for the next.
class RenderingSwitchGuard : public ::testing::EmptyTestEventListener {
    void OnTestEnd(const ::testing::TestInfo&) override {
        if (Tools::rendering.exchange(false)) ADD_FAILURE() << "the test left Tools::rendering on";
    }
};

} // namespace

int main(int argc, char** argv) {
    UiEngine::configureProcess(true);
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new RenderingSwitchGuard);
    return RUN_ALL_TESTS();
}
