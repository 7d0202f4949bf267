// The tray panel over a model of a generated home: the sections of the preferences in their
// order, the sentence when all are off, live sampling only for the real panel, and the
// footer's way out reaching the desktop.
#include "ScreenHarness.h"

#include "foundation/Fmt.h"
#include "ui/Desktop.h"

#include <QQmlProperty>
#include <QSignalSpy>
#include <QtQuickTest/quicktest.h>

#include <algorithm>

#include <gtest/gtest.h>

namespace {

// The sections the panel shows, top to bottom.
std::vector<std::string> shownSections(ScreenHarness& screen) {
    auto found = screen.visible("slot-");
    std::sort(found.begin(), found.end(), [](QQuickItem* a, QQuickItem* b) { return a->y() < b->y(); });
    std::vector<std::string> out;
    for (QQuickItem* s : found) out.push_back(s->objectName().mid(5).toStdString());
    return out;
}

QString text(QQuickItem* item) { return item ? QQmlProperty::read(item, "text").toString() : QString(); }

} // namespace

TEST(MenuBarView, SectionsFollowThePreferencesAndHiddenOnesStayOut) {
    ScreenHarness screen;
    ASSERT_TRUE(screen.show("panel/MenuBarView.qml", QSize(340, 900)));
    EXPECT_EQ(shownSections(screen), (std::vector<std::string>{"freeSpace", "nextStep", "quickClean", "openApp"}));

    // Switched on, a section shows where the order puts it; moved, the panel follows at once.
    screen.prefs().set(MenuSection::vitals, true);
    EXPECT_EQ(shownSections(screen), (std::vector<std::string>{"freeSpace", "nextStep", "quickClean", "openApp", "vitals"}));
    screen.prefs().move(std::vector<int>{5}, 0); // vitals, at row 5 of the whole order, to the top
    ASSERT_TRUE(QQuickTest::qWaitForPolish(screen.window()));
    EXPECT_EQ(shownSections(screen), (std::vector<std::string>{"vitals", "freeSpace", "nextStep", "quickClean", "openApp"}));
    screen.prefs().set(MenuSection::freeSpace, false);
    ASSERT_TRUE(QQuickTest::qWaitForPolish(screen.window()));
    EXPECT_EQ(shownSections(screen), (std::vector<std::string>{"vitals", "nextStep", "quickClean", "openApp"}));
    EXPECT_FALSE(screen.find("allOff")->isVisible());
}

TEST(MenuBarView, WithEverySectionOffTheSentenceAndTheFooterRemain) {
    ScreenHarness screen;
    for (MenuSection s : MenuSections::allCases) screen.prefs().set(s, false);
    ASSERT_TRUE(screen.show("panel/MenuBarView.qml", QSize(340, 400)));
    EXPECT_TRUE(shownSections(screen).empty());
    QQuickItem* sentence = screen.find("allOff");
    ASSERT_TRUE(sentence);
    EXPECT_TRUE(sentence->isVisible());
    EXPECT_EQ(text(sentence), "Every section is switched off. Customize brings them back.");
    EXPECT_TRUE(screen.find("quit")->isVisible());
    EXPECT_TRUE(screen.find("login")->isVisible());
}

// Quit goes to whatever the desktop set up to end the program.
TEST(MenuBarView, QuitReachesTheDesktop) {
    ScreenHarness screen;
    ASSERT_TRUE(screen.show("panel/MenuBarView.qml", QSize(340, 700)));
    Desktop* desktop = screen.desktop();
    ASSERT_TRUE(desktop);
    int quits = 0;
    desktop->onQuit = [&] { ++quits; };
    EXPECT_TRUE(screen.click(screen.find("quit")));
    desktop->onQuit = nullptr;
    EXPECT_EQ(quits, 1);
}

// The real panel makes the monitor sample every few seconds while it is on screen, and only
// then; the preview in the settings sheet must not, or the settings would keep the machine busy.
TEST(MenuBarView, OnlyTheRealPanelGoesLiveAndOnlyWhileItIsShown) {
    ScreenHarness screen;
    QSignalSpy live(&screen.model(), &AppModel::monitorIntervalChanged);
    ASSERT_TRUE(screen.show("panel/MenuBarView.qml", QSize(340, 700), {{"preview", true}}));
    EXPECT_EQ(live.count(), 0);
    EXPECT_EQ(screen.model().monitorInterval(), 60);
    // A click on the preview reaches none of its buttons.
    int quits = 0;
    screen.desktop()->onQuit = [&] { ++quits; };
    (void)screen.click(screen.find("quit"));
    EXPECT_EQ(quits, 0);
    screen.desktop()->onQuit = nullptr;

    ASSERT_TRUE(screen.show("panel/MenuBarView.qml", QSize(340, 700)));
    EXPECT_GE(live.count(), 1) << "the panel asked for live sampling";
    EXPECT_EQ(screen.model().monitorInterval(), 3);
    // Hidden and shown again, the sampling follows the window each time.
    screen.window()->hide();
    EXPECT_EQ(screen.model().monitorInterval(), 60);
    screen.window()->show();
    EXPECT_EQ(screen.model().monitorInterval(), 3);
    screen.window()->hide();
    EXPECT_EQ(screen.model().monitorInterval(), 60);
}

// Before the first scan the quick clean shows a placeholder, the storage row its button, and
// the forecast has no readings to go on.
TEST(MenuBarView, BeforeTheFirstScanEachSectionSaysSo) {
    ScreenHarness screen;
    screen.prefs().set(MenuSection::storage, true);
    ASSERT_TRUE(screen.show("panel/MenuBarView.qml", QSize(340, 900)));
    QQuickItem* clean = screen.find("section-quickClean");
    ASSERT_TRUE(clean);
    EXPECT_FALSE(screen.find("words", clean)->isVisible());
    EXPECT_FALSE(screen.find("clear", clean)->isVisible());
    EXPECT_EQ(text(screen.find("forecast")), "Learning your pace");
    EXPECT_TRUE(screen.find("allClear")->isVisible());
    QQuickItem* measure = screen.find("measure", screen.find("section-storage"));
    ASSERT_TRUE(measure);
    EXPECT_TRUE(measure->isVisible());
    EXPECT_EQ(text(screen.find("heading")), QString::fromStdString(Fmt::bytes(screen.disk.available)) + " free");
    screen.picture("menu-generated-first.png");
}
