// The live-window tests: an X server and a session bus of their own, started only when tests
// run (listing them starts nothing), and one application object on that display for all.
// `--panel-after-restart` makes this executable the program started afresh instead: it builds
// the program's own model, preferences and desktop shell from the files of $HOME, opens the
// panel and prints what the panel shows.
#include "LiveDesktop.h"

#include "app/AppModel.h"
#include "app/MenuLabel.h"
#include "app/Prefs.h"
#include "ui/App.h"
#include "ui/UiEngine.h"
#include "ui/shell/DesktopShell.h"

#include <QGuiApplication>
#include <QtQml/qqmlextensionplugin.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

Q_IMPORT_QML_PLUGIN(SorrelinPlugin)

namespace {

class Session : public ::testing::Environment {
public:
    Session(int& argc, char** argv) : argc(argc), argv(argv) {}
    void SetUp() override {
        LiveDesktop::start();
        // Without a display the tests skip; the application object still needs a platform.
        if (!LiveDesktop::missing().empty()) setenv("QT_QPA_PLATFORM", "offscreen", 1);
        UiEngine::configureProcess(false);
        app = std::make_unique<QGuiApplication>(argc, argv);
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }
    void TearDown() override {
        app.reset();
        LiveDesktop::stop();
    }

private:
    int& argc;
    char** argv;
    std::unique_ptr<QGuiApplication> app;
};

// The program started again: what its panel shows, one line each, then it ends.
int panelAfterRestart(int argc, char** argv) {
    UiEngine::configureProcess(false);
    QGuiApplication app(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    AppModel& model = AppModel::shared();
    Prefs& prefs = Prefs::shared();
    App::use(&model, &prefs);
    model.refreshDisk();
    DesktopShell shell(model, prefs);
    shell.togglePanel(QRect());
    QQuickWindow* panel = nullptr;
    if (!LiveDesktop::waitUntil([&] { return (panel = LiveDesktop::window(QStringLiteral("Sorrelin panel"))) != nullptr; })) {
        std::puts("no panel");
        return 1;
    }
    std::string sections;
    for (QQuickItem* slot : LiveDesktop::shown(panel->contentItem(), QStringLiteral("slot-")))
        sections += (sections.empty() ? "" : ",") + slot->objectName().mid(5).toStdString();
    std::printf("sections: %s\n", sections.c_str());
    std::printf("label: %s\n", std::string(MenuLabelStyles::raw(prefs.labelStyle())).c_str());
    std::printf("live: %g\n", model.monitorInterval());
    std::fflush(stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc >= 2 && std::string_view(argv[1]) == "--panel-after-restart") return panelAfterRestart(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new Session(argc, argv));
    return RUN_ALL_TESTS();
}
