// The main window's screens over a model of a generated home, driven through the model's face:
// every picture the option writes builds without a QML warning, a tick in the Clean tab reaches
// the model and redraws its one row, the confirm layer opens and closes, and a clean reported
// outside the sheet shows its banner.
#include "QmlWarnings.h"
#include "app/AppModel.h"
#include "app/Prefs.h"
#include "app/RealClock.h"
#include "foundation/Rendering.h"
#include "support/TempTree.h"
#include "ui/App.h"
#include "ui/ScreenPictures.h"
#include "ui/UiEngine.h"

#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>

#include <memory>
#include <optional>

#include <gtest/gtest.h>

namespace {

// A generated home with caches, a project with its packages, and a film for the Trash.
struct Home {
    TempTree home, support;
    RealClock clock;
    SettingsStore settings{support.path("settings.json")};
    std::unique_ptr<AppModel> model;
    std::unique_ptr<Prefs> prefs;

    Home() {
        home.file(".cache/oldtool/blob", 12'000'000);
        home.age(".cache/oldtool/blob", 40 * 86400);
        home.age(".cache/oldtool", 40 * 86400);
        home.file(".cache/newtool/blob", 3'000'000);
        home.text("code/site/package.json", "{}");
        home.dir("code/site/.git");
        home.file("code/site/node_modules/pkg/index.js", 5'000'000);
        home.age("code/site/package.json", 20 * 86400);
        model = std::make_unique<AppModel>(AppSetup::forHome(home.root(), support.root(), clock, settings));
        prefs = std::make_unique<Prefs>(settings);
        App::use(model.get(), prefs.get());
    }
    bool scan() {
        QSignalSpy done(model.get(), &AppModel::scanFinished);
        model->scan();
        return done.wait(60000);
    }
};

QQuickItem* find(QQuickItem* root, const QString& name) {
    if (!root) return nullptr;
    if (root->objectName() == name) return root;
    for (QQuickItem* child : root->childItems())
        if (QQuickItem* hit = find(child, name)) return hit;
    return nullptr;
}

struct View {
    QQmlEngine engine;
    std::unique_ptr<QQuickItem> root;
    explicit View(const QString& file) {
        UiEngine::prepare(engine);
        QQmlComponent component(&engine, UiEngine::url(file));
        root.reset(qobject_cast<QQuickItem*>(component.create()));
        EXPECT_TRUE(root) << component.errorString().toStdString();
        if (root) {
            root->setSize(ScreenPictures::windowSize);
        }
    }
    QQuickItem* operator[](const QString& name) const { return find(root.get(), name); }
};

} // namespace

TEST(Screens, EveryPictureOfTheWindowBuildsCleanlyOnAGeneratedHome) {
    Home h;
    Tools::rendering = true;
    ScreenPictures::prepare(*h.model, false);
    ASSERT_NE(h.model->lastScan(), std::nullopt);
    ASSERT_FALSE(h.model->items().empty());
    const QString out = QString(SORRELIN_PICTURES) + "/screens";
    QDir().mkpath(out);
    for (const auto& picture : ScreenPictures::pictures()) {
        std::optional<QmlWarnings> collecting(std::in_place);
        const QStringList missing = ScreenPictures::write(*h.model, {picture}, out);
        const QStringList warnings = collecting->taken();
        collecting.reset();
        EXPECT_TRUE(missing.isEmpty()) << missing.join('\n').toStdString();
        EXPECT_TRUE(warnings.isEmpty()) << picture.file.toStdString() << ":\n" << warnings.join('\n').toStdString();
        QImage image(QDir(out).filePath(picture.file));
        EXPECT_EQ(image.size(), QSize(2120, 1520)) << picture.file.toStdString();
    }
    Tools::rendering = false;
}

TEST(Screens, ATickInTheCleanTabReachesTheModelAndRedrawsOneRow) {
    Home h;
    ASSERT_TRUE(h.scan());
    h.model->go(Tab::clean);
    View view("clean/CleanTab.qml");
    ASSERT_TRUE(view.root);

    const CleanItem target = h.model->itemsIn(Tier::safe).front();
    const bool before = h.model->selected().contains(target.id);
    ListModel* tier = h.model->itemsIn(0);
    QSignalSpy rows(tier, &QAbstractItemModel::dataChanged);
    QSignalSpy resets(tier, &QAbstractItemModel::modelReset);
    QQuickItem* row = view["row-" + QString::fromStdString(target.id)];
    ASSERT_TRUE(row) << "no row for " << target.id;
    QQuickItem* tick = find(row, "tick");
    ASSERT_TRUE(tick);
    EXPECT_EQ(tick->property("on").toBool(), before);

    QMetaObject::invokeMethod(tick, "toggled");
    EXPECT_EQ(h.model->selected().contains(target.id), !before) << "the tick did not reach the model";
    EXPECT_EQ(tick->property("on").toBool(), !before) << "the row did not redraw";
    ASSERT_EQ(rows.count(), 1);
    EXPECT_EQ(rows[0][0].value<QModelIndex>().row(), rows[0][1].value<QModelIndex>().row()) << "more than one row changed";
    EXPECT_EQ(resets.count(), 0);
    // The footer and the tile follow the same tick.
    const QString first = view["footerFirst"]->property("text").toString();
    EXPECT_EQ(first.startsWith("Nothing ticked"), h.model->selectedItems().empty()) << first.toStdString();
}

TEST(Screens, TheConfirmLayerShowsTheTicksAndCancelClearsIt) {
    Home h;
    ASSERT_TRUE(h.scan());
    View view("MainView.qml");
    ASSERT_TRUE(view.root);
    QQuickItem* layer = view["confirmLayer"];
    ASSERT_TRUE(layer);
    EXPECT_FALSE(layer->property("shown").toBool());
    for (Tier t : Tiers::allCases) h.model->setAll(t, true);
    ASSERT_FALSE(h.model->selectedItems().empty());
    h.model->setConfirming(true);
    EXPECT_TRUE(layer->property("shown").toBool());
    const QString title = view["confirmTitle"]->property("text").toString();
    EXPECT_TRUE(title.startsWith("Free ") && title.endsWith("?")) << title.toStdString();
    QQuickItem* cancel = view["confirmCancel"];
    ASSERT_TRUE(cancel);
    QMetaObject::invokeMethod(cancel, "clicked");
    EXPECT_FALSE(h.model->confirming());
    EXPECT_FALSE(layer->property("shown").toBool());
}

TEST(Screens, ACleanFromHomeShowsItsBannerInTheCleanTabUntilDismissed) {
    Home h;
    ASSERT_TRUE(h.scan());
    View view("clean/CleanTab.qml");
    ASSERT_TRUE(view.root);
    QQuickItem* banner = view["reportBanner"];
    ASSERT_TRUE(banner);
    EXPECT_FALSE(banner->isVisible());

    QSignalSpy finished(h.model.get(), &AppModel::cleanFinished);
    h.model->clean(h.model->itemsIn(Tier::safe), "home");
    ASSERT_TRUE(finished.wait(60000));
    ASSERT_TRUE(h.model->report());
    EXPECT_TRUE(banner->isVisible());
    const QString headline = view["bannerHeadline"]->property("text").toString();
    EXPECT_TRUE(headline.startsWith("Freed ")) << headline.toStdString();
    // The cleared caches are gone from the list and from the disk.
    EXPECT_TRUE(h.model->itemsIn(Tier::safe).empty());
    EXPECT_FALSE(QDir(QString::fromStdString(h.home.path(".cache/oldtool"))).exists());

    QMetaObject::invokeMethod(view["bannerDismiss"], "clicked");
    EXPECT_FALSE(h.model->report());
    EXPECT_FALSE(banner->isVisible());
}
