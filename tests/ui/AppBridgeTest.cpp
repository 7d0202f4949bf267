#include "app/AppModel.h"
#include "app/ManualClock.h"
#include "app/Prefs.h"
#include "support/TempTree.h"
#include "ui/App.h"
#include "ui/UiEngine.h"

#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <memory>

#include <gtest/gtest.h>

namespace {

struct Model {
    TempTree home, support;
    ManualClock clock;
    SettingsStore settings{support.path("settings.json")};
    AppModel model{AppSetup::forHome(home.root(), support.root(), clock, settings)};
    Prefs prefs{settings};
};

std::unique_ptr<QObject> make(QQmlEngine& engine, const char* qml) {
    QQmlComponent component(&engine);
    component.setData(qml, QUrl::fromLocalFile(QDir::tempPath() + "/bridge.qml"));
    EXPECT_FALSE(component.isLoading()) << "the scene loads at once";
    std::unique_ptr<QObject> object(component.create());
    EXPECT_TRUE(object) << component.errorString().toStdString();
    return object;
}

} // namespace

// A view bound before the program hands in its model picks it up, and follows a later one: the
// pictures and the tests each hand in a model of their own.
TEST(AppBridge, ViewsReadTheModelHandedInAndFollowANewOne) {
    QQmlEngine engine;
    UiEngine::prepare(engine);
    auto view = make(engine, "import Sorrelin\nimport QtQml\nQtObject {\n"
                             "  property int tab: App.model ? App.model.tab : -1\n"
                             "  property bool hasPrefs: App.prefs !== null\n}\n");
    ASSERT_TRUE(view);

    Model first;
    first.model.go(Tab::storage);
    App::use(&first.model, &first.prefs);
    EXPECT_EQ(view->property("tab").toInt(), static_cast<int>(Tab::storage));
    EXPECT_TRUE(view->property("hasPrefs").toBool());

    Model second;
    second.model.go(Tab::week);
    App::use(&second.model, nullptr);
    EXPECT_EQ(view->property("tab").toInt(), static_cast<int>(Tab::week));
    // A change inside the model reaches the binding through the model's own signal.
    second.model.go(Tab::clean);
    EXPECT_EQ(view->property("tab").toInt(), static_cast<int>(Tab::clean));
    App::use(nullptr, nullptr);
}
