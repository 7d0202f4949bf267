#pragma once
// A screen of the window over an application model of its own: a generated home folder, a
// support folder holding the storage file the model starts from, a clock the test moves, and
// a disk of fixed figures. The screen is a real window on the offscreen platform, so a test
// clicks its buttons where a person would and waits on the model for what follows.
#include "app/AppModel.h"
#include "app/ManualClock.h"
#include "app/Prefs.h"
#include "storage/StorageReport.h"
#include "support/TempTree.h"

#include "ui/Desktop.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <vector>

class ScreenHarness {
public:
    ScreenHarness();
    ~ScreenHarness();

    TempTree home;
    TempTree support;
    ManualClock clock;
    SettingsStore settings{support.path("settings.json")};
    DiskInfo disk{"Test disk", 500 * GB, 120 * GB, 25 * GB};
    // Set before model() to show another home folder (this machine's, for a person to look
    // at) on the disk it lies on.
    std::string realHome;

    // The model, made on first use from what the support folder holds by then.
    AppModel& model();
    Prefs& prefs();
    // Stores `report` where the model reads its last storage walk from; before model().
    void storeReport(const StorageReport& report) const;

    // Loads a QML file of the module as the content of a window of `size`, shown offscreen.
    QQuickItem* show(const QString& file, QSize size, const QVariantMap& properties = {});
    [[nodiscard]] QQuickWindow* window() const { return win.get(); }
    // The `Desktop` the shown screen's QML reaches, so a test can see what it asks of it.
    [[nodiscard]] Desktop* desktop() const;
    // The first item below the screen (itself included) with this object name, visible or not.
    [[nodiscard]] QQuickItem* find(const QString& objectName, QQuickItem* from = nullptr) const;
    // Every item below `from` (the screen when null) whose object name starts with `prefix`
    // and that a person can see, in tree order.
    [[nodiscard]] std::vector<QQuickItem*> visible(const QString& prefix, QQuickItem* from = nullptr) const;
    // Clicks the middle of `item` as a person would: false when the item is hidden or outside
    // the window, since a person could not click it either.
    [[nodiscard]] bool click(QQuickItem* item);
    // Runs the event loop until `done` holds, at most `seconds` of real time.
    [[nodiscard]] static bool waitUntil(const std::function<bool()>& done, double seconds = 30);
    // Draws the window into a picture, for a person to look at.
    void picture(const QString& file);

private:
    bool wasRendering = false;
    std::unique_ptr<AppModel> made;
    std::unique_ptr<Prefs> madePrefs;
    std::unique_ptr<QQmlEngine> engine;
    std::unique_ptr<QQuickWindow> win;
    std::unique_ptr<QQuickItem> root;
};
