// The settings sheet over a model of a generated home: dragging a section by its handle,
// switching sections and the label style reach the preferences, the stored settings and the
// panel preview beside them.
#include "ScreenHarness.h"

#include "foundation/Fmt.h"

#include <QQmlProperty>
#include <QTest>
#include <QtQuickTest/quicktest.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

std::vector<std::string> order(const Prefs& prefs) {
    std::vector<std::string> out;
    for (MenuSection s : prefs.menuOrder()) out.emplace_back(MenuSections::raw(s));
    return out;
}

QString text(QQuickItem* item) { return item ? QQmlProperty::read(item, "text").toString() : QString(); }

// Presses the handle of a row, moves the pointer by `dy` in small steps as a hand would, and
// lets go.
void drag(ScreenHarness& screen, QQuickItem* handle, double dy) {
    ASSERT_TRUE(handle && handle->isVisible());
    // Rows glide to their places after a move; a hand waits for them to stand still.
    ASSERT_TRUE(ScreenHarness::waitUntil([&] {
        for (QQuickItem* row : screen.visible("row-", screen.find("sectionList")))
            if (std::fmod(row->y(), 52.0) != 0) return false;
        return true;
    }));
    QQuickWindow* win = screen.window();
    const QPointF start = handle->mapToScene(QPointF(handle->width() / 2, handle->height() / 2));
    QTest::mousePress(win, Qt::LeftButton, {}, start.toPoint());
    const int steps = 12;
    for (int i = 1; i <= steps; ++i)
        QTest::mouseMove(win, (start + QPointF(0, dy * i / steps)).toPoint(), 16);
    QTest::mouseRelease(win, Qt::LeftButton, {}, (start + QPointF(0, dy)).toPoint());
    ASSERT_TRUE(QQuickTest::qWaitForPolish(win));
}

} // namespace

// Rows are 52 points high. Dropping a row on its own place changes nothing; dropping it past
// rows moves it there; and moving it back makes the default whole again.
TEST(SettingsSheet, DraggingARowByItsHandleReordersTheSectionsAndMovingBackRestoresTheDefault) {
    ScreenHarness screen;
    ASSERT_TRUE(screen.show("settings/SettingsSheet.qml", QSize(900, 900)));
    Prefs& prefs = screen.prefs();
    QQuickItem* reset = screen.find("reset");
    EXPECT_FALSE(reset->isEnabled()) << "nothing to reset with the defaults in force";

    drag(screen, screen.find("handle", screen.find("row-openApp")), 10);
    EXPECT_TRUE(prefs.isDefault()) << "a short drag lands the row where it was";

    // openApp (row 3) up past three rows to the top.
    drag(screen, screen.find("handle", screen.find("row-openApp")), -3 * 52);
    EXPECT_EQ(order(prefs), (std::vector<std::string>{"openApp", "freeSpace", "nextStep", "quickClean", "status", "vitals", "storage"}));
    EXPECT_TRUE(reset->isEnabled());
    // The order is stored: a program started afresh reads it back.
    EXPECT_EQ(order(Prefs(screen.settings)), order(prefs));
    // The panel preview follows.
    QQuickItem* preview = screen.find("panelPreview");
    auto first = screen.visible("slot-openApp", preview);
    ASSERT_EQ(first.size(), 1u);
    EXPECT_LT(first[0]->y(), screen.visible("slot-freeSpace", preview)[0]->y());

    // The first row down past three rows, to stand before "status": back where it was.
    drag(screen, screen.find("handle", screen.find("row-openApp")), 3 * 52);
    EXPECT_TRUE(prefs.isDefault()) << testing::PrintToString(order(prefs));
    EXPECT_FALSE(reset->isEnabled());

    // The last row dragged beyond the end stays last; the first past every row goes last.
    drag(screen, screen.find("handle", screen.find("row-storage")), 200);
    EXPECT_TRUE(prefs.isDefault());
    drag(screen, screen.find("handle", screen.find("row-freeSpace")), 7 * 52);
    EXPECT_EQ(order(prefs).back(), "freeSpace");
    EXPECT_EQ(order(prefs).size(), 7u);
    EXPECT_TRUE(screen.click(reset));
    EXPECT_TRUE(prefs.isDefault());
}

TEST(SettingsSheet, SwitchesAndTheLabelStyleReachThePreferencesAndThePreview) {
    ScreenHarness screen;
    ASSERT_TRUE(screen.show("settings/SettingsSheet.qml", QSize(900, 900)));
    Prefs& prefs = screen.prefs();
    QQuickItem* preview = screen.find("panelPreview");
    EXPECT_TRUE(screen.visible("slot-vitals", preview).empty());

    ASSERT_TRUE(screen.click(screen.find("switch", screen.find("row-vitals"))));
    EXPECT_TRUE(prefs.isOn(MenuSection::vitals));
    ASSERT_TRUE(QQuickTest::qWaitForPolish(screen.window()));
    EXPECT_EQ(screen.visible("slot-vitals", preview).size(), 1u);
    ASSERT_TRUE(screen.click(screen.find("switch", screen.find("row-freeSpace"))));
    EXPECT_FALSE(prefs.isOn(MenuSection::freeSpace));
    EXPECT_TRUE(Prefs(screen.settings).menuHidden().contains(MenuSection::freeSpace)) << "saved at once";

    const QString free = QString::fromStdString(Fmt::bytes(screen.disk.available));
    QQuickItem* tray = screen.find("trayPreview");
    EXPECT_EQ(text(screen.find("label", tray)), free + " free");
    ASSERT_TRUE(screen.click(screen.find("choice-iconOnly")));
    EXPECT_EQ(prefs.labelStyle(), MenuLabelStyle::iconOnly);
    EXPECT_FALSE(screen.find("label", tray)->isVisible()) << "the icon alone shows no words";
    ASSERT_TRUE(screen.click(screen.find("choice-freeAndMemory")));
    EXPECT_EQ(prefs.labelStyle(), MenuLabelStyle::freeAndMemory);
    EXPECT_TRUE(text(screen.find("label", tray)).startsWith(free + " free "));
    EXPECT_TRUE(text(screen.find("label", tray)).endsWith("%"));

    screen.model().setSettingsOpen(true);
    ASSERT_TRUE(screen.click(screen.find("done")));
    EXPECT_FALSE(screen.model().settingsOpen());
    screen.picture("settings-generated.png");
}

// Over the window at its smallest size the sheet stands whole, with room around it.
TEST(SettingsSheet, FitsTheWindowAtItsSmallestSize) {
    ScreenHarness screen;
    screen.model().setSettingsOpen(true);
    ASSERT_TRUE(screen.show("MainView.qml", QSize(1060, 760)));
    QQuickItem* sheet = screen.find("settingsSheet");
    ASSERT_TRUE(sheet);
    ASSERT_TRUE(ScreenHarness::waitUntil([&] { return sheet->isVisible() && sheet->height() > 0; }));
    const QRectF box = sheet->mapRectToScene(QRectF(0, 0, sheet->width(), sheet->height()));
    EXPECT_TRUE(QRectF(12, 12, 1060 - 24, 760 - 24).contains(box))
        << box.x() << "," << box.y() << " " << box.width() << "x" << box.height();
    screen.picture("settings-in-window.png");
}
