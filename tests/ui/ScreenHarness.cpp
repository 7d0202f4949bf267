#include "ScreenHarness.h"

#include "ItemSearch.h"

#include "foundation/Rendering.h"
#include "storage/StorageStore.h"
#include "ui/App.h"
#include "ui/Palette.h"
#include "ui/Pictures.h"
#include "ui/UiEngine.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QQmlComponent>
#include <QTest>
#include <QtQuickTest/quicktest.h>

#include <gtest/gtest.h>

// A picture drawn earlier in the process leaves the rendering switch on, and with it the model
// would neither read nor write its files: a live screen runs with it off.
ScreenHarness::ScreenHarness() : wasRendering(Tools::rendering.exchange(false)) {}

ScreenHarness::~ScreenHarness() {
    Tools::rendering = wasRendering;
    root.reset();
    win.reset();
    engine.reset();
}

AppModel& ScreenHarness::model() {
    if (!made) {
        AppSetup setup = AppSetup::forHome(realHome.empty() ? home.root() : realHome, support.root(), clock, settings);
        if (realHome.empty()) setup.readDisk = [this] { return disk; };
        made = std::make_unique<AppModel>(std::move(setup));
        made->refreshDisk();
        App::use(made.get(), &prefs());
    }
    return *made;
}

Prefs& ScreenHarness::prefs() {
    if (!madePrefs) madePrefs = std::make_unique<Prefs>(settings);
    return *madePrefs;
}

void ScreenHarness::storeReport(const StorageReport& report) const { StorageStore::save(report, support.root()); }

QQuickItem* ScreenHarness::show(const QString& file, QSize size, const QVariantMap& properties) {
    model();
    // A screen shown before goes first, in the order its parts depend on each other.
    root.reset();
    win.reset();
    engine.reset();
    engine = std::make_unique<QQmlEngine>();
    UiEngine::prepare(*engine);
    QQmlComponent component(engine.get(), UiEngine::url(file));
    if (!component.isReady()) {
        ADD_FAILURE() << file.toStdString() << ": " << component.errorString().toStdString();
        return nullptr;
    }
    std::unique_ptr<QObject> object(component.createWithInitialProperties(properties));
    auto* item = qobject_cast<QQuickItem*>(object.get());
    EXPECT_TRUE(item) << component.errorString().toStdString();
    if (!item) return nullptr;
    object.release();
    root.reset(item);
    win = std::make_unique<QQuickWindow>();
    // The screens stand on the window's own dark ground, as in the program.
    win->setColor(Palette::lookup("window").value_or(Qt::black));
    win->resize(size);
    item->setParentItem(win->contentItem());
    item->setSize(size);
    win->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(win.get()));
    EXPECT_TRUE(QQuickTest::qWaitForPolish(win.get()));
    return item;
}

Desktop* ScreenHarness::desktop() const {
    if (!engine) return nullptr;
    const int type = qmlTypeId("Sorrelin", 1, 0, "Desktop");
    return type < 0 ? nullptr : engine->singletonInstance<Desktop*>(type);
}

QQuickItem* ScreenHarness::find(const QString& objectName, QQuickItem* from) const {
    return ItemSearch::named(from ? from : root.get(), objectName);
}

std::vector<QQuickItem*> ScreenHarness::visible(const QString& prefix, QQuickItem* from) const {
    return ItemSearch::shown(from ? from : root.get(), prefix);
}

bool ScreenHarness::click(QQuickItem* item) {
    if (!item || !win || !item->isVisible() || !item->isEnabled()) return false;
    // Laid out as a person would see it before the pointer goes down.
    if (!QQuickTest::qWaitForPolish(win.get())) return false;
    const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    if (!QRectF(QPointF(0, 0), win->size()).contains(centre)) return false;
    QTest::mouseClick(win.get(), Qt::LeftButton, {}, centre.toPoint());
    return true;
}

bool ScreenHarness::waitUntil(const std::function<bool()>& done, double seconds) {
    QDeadlineTimer deadline(static_cast<qint64>(seconds * 1000));
    while (!done()) {
        if (deadline.hasExpired()) return false;
        QTest::qWait(5); // lets events and worker deliveries in, as QTRY_VERIFY does
    }
    return true;
}

void ScreenHarness::picture(const QString& file) {
    if (!win) return;
    QQuickTest::qWaitForPolish(win.get());
    const QImage image = win->grabWindow();
    EXPECT_FALSE(image.isNull());
    QDir().mkpath(SORRELIN_PICTURES);
    EXPECT_TRUE(Pictures::writePng(image, QDir(SORRELIN_PICTURES).filePath(file)));
}
