#pragma once
// The Speed, Week and Projects tabs over a real application model: a generated home, a monitor
// whose figures the test sets, a history the test fills, and the tab itself in an offscreen
// window that a test can look into, click and draw.
#include "AppHarness.h"

#include "app/Prefs.h"
#include "ui/Pictures.h"

#include <QQuickItem>
#include <QQuickView>
#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace live {

// An app row as the monitor would show it.
AppUsage app(const std::string& id, const std::string& name, double cores, int64_t memory, int pids = 1,
             std::optional<double> startedAgo = std::nullopt, TimePoint now = Clock::now());
Leftover leftover(int32_t pid, const std::string& label, const std::string& cwd, int64_t memory, TimePoint started);

struct Machine : AppHarness {
    Machine();
    ~Machine();

    // The model, with actions that pretend (a quit succeeds at once) and the model handed to views.
    AppModel& start();
    // Puts figures into the monitor as a sample would, and lets the model tell the views.
    void sample(const Vitals& vitals, std::vector<AppUsage> apps, std::vector<Leftover> leftovers = {});
    // Free-space readings one a day for `days` days up to now, losing `perDay` bytes a day.
    void fillingHistory(int days, int64_t freeNow, int64_t perDay);
    // A growth report of 14 days with these totals, most of each day in one place.
    static GrowthReport growthReport(TimePoint now, const std::vector<int64_t>& totals);
    // Leaves such a report in the support folder for the model to find at its start.
    void keepGrowth(const std::vector<int64_t>& totals);

    std::unique_ptr<Prefs> prefs;
};

// A tab in a window of its own, offscreen.
class Screen {
public:
    Screen(const QString& file, QSize size = {1100, 900});

    [[nodiscard]] QQuickItem* find(const QString& objectName) const;
    // The text of the first Text-like item under `objectName` (or the item itself).
    [[nodiscard]] std::string text(const QString& objectName) const;
    [[nodiscard]] bool shown(const QString& objectName) const;
    // Clicks the middle of the item, as a person would.
    void click(QQuickItem* item);
    void click(const QString& objectName) { click(find(objectName)); }
    [[nodiscard]] QQuickView& view() { return window; }

private:
    QQuickView window;
};

// The item of that name under `item` (or `item` itself), in the trees of objects and of items.
[[nodiscard]] QQuickItem* within(QQuickItem* item, const QString& objectName);
// Pictures of a tab for a person to look at, written to the test pictures folder.
class Album {
public:
    // Draws `file` as it stands now into `name`; a failure to draw or write fails the test.
    void draw(const QString& file, const QString& name, QSize size);

private:
    Pictures::Renderer renderer;
};

// Every text shown under an item, for a test that looks for a sentence anywhere on a screen.
[[nodiscard]] std::vector<std::string> texts(QQuickItem* root);
[[nodiscard]] bool showsText(QQuickItem* root, const std::string& text);

} // namespace live
