// The window and the panel on a real display, used with the pointer: a file sent to the
// freedesktop Trash from the Storage tab comes back with the toast's Undo, and what the
// settings sheet changes reaches the panel and is still there when the program starts again.
#include "LiveDesktop.h"

#include "app/AppModel.h"
#include "app/AppSetup.h"
#include "app/Prefs.h"
#include "app/RealClock.h"
#include "foundation/FS.h"
#include "support/TempTree.h"
#include "ui/App.h"
#include "ui/shell/DesktopShell.h"
#include "ui/shell/WindowHost.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

using namespace LiveDesktop;

namespace {

const QString windowTitle = QStringLiteral("Sorrelin");
const QString panelTitle = QStringLiteral("Sorrelin panel");

// A person's home folder of the test's own, with the program running in it as it does on the
// desktop: its model and preferences over the home's own files, and its shell hosting the
// window and the panel.
struct Running {
    TempTree tree;
    std::string home = tree.dir("home");
    RealClock clock;
    std::unique_ptr<SettingsStore> settings;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<Prefs> prefs;
    std::unique_ptr<DesktopShell> shell;

    Running() {
        setenv("HOME", home.c_str(), 1);
        for (const char* v : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "SORRELIN_SUPPORT"}) unsetenv(v);
    }
    void start() {
        // Where the program started afresh with this HOME looks for them. (This process's own
        // idea of the home folder was fixed when it first asked.)
        settings = std::make_unique<SettingsStore>(home + "/.config/sorrelin/settings.json");
        model = std::make_unique<AppModel>(AppSetup::forHome(home, home + "/.local/share/sorrelin", clock, *settings));
        prefs = std::make_unique<Prefs>(*settings);
        App::use(model.get(), prefs.get());
        model->refreshDisk();
        shell = std::make_unique<DesktopShell>(*model, *prefs);
    }
    ~Running() {
        shell.reset();
        App::use(nullptr, nullptr);
        if (model) model->waitForWorkers();
    }
    // The main window, shown and drawn.
    QQuickWindow* window() {
        shell->mainWindow().show();
        QQuickWindow* w = nullptr;
        EXPECT_TRUE(waitUntil([&] { return (w = LiveDesktop::window(windowTitle)) != nullptr; })) << "the window never came up";
        return w;
    }
};

std::string read(const std::string& path) { return FS::readText(path, 1 << 20).value_or(""); }

} // namespace

TEST(LiveWindow, AFileTrashedFromTheStorageTabIsInTheTrashAndUndoPutsItBack) {
    if (!missing().empty()) GTEST_SKIP() << missing();
    Running r;
    TempTree& t = r.tree;
    t.file("home/Downloads/holiday.mkv", 6 << 20);
    t.file("home/Downloads/manual.pdf", 3 << 20);
    t.file("home/Documents/thesis.pdf", 2 << 20);
    r.start();
    QQuickWindow* win = r.window();
    ASSERT_TRUE(win);
    QQuickItem* root = win->contentItem();

    ASSERT_TRUE(click(find(root, "tab-Storage")));
    ASSERT_TRUE(waitUntil([&] { return r.model->tab() == Tab::storage; }));
    // Nothing measured yet: the empty state's button walks the home folder.
    ASSERT_TRUE(click(find(root, "measure")));
    ASSERT_TRUE(waitUntil([&] { return r.model->storage().has_value() && !r.model->storageBusy(); }, 120))
        << "the walk never finished";

    // The category's row is made again whenever the list changes: look it up each time.
    auto downloads = [&] { return find(root, "category-downloads"); };
    auto filmRow = [&]() -> QQuickItem* {
        auto rows = downloads() ? shown(downloads(), "item-holiday.mkv") : std::vector<QQuickItem*>{};
        return rows.empty() ? nullptr : rows.front();
    };
    // The list settles as the finished walk replaces the partial one; a click that landed on a
    // row being replaced is lost, and a person clicks again on the closed row.
    QQuickItem* row = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        QQuickItem* category = downloads();
        if (!category) return false;
        if (!category->property("open").toBool() && click(find(category, "head")))
            (void)waitUntil([&] { return downloads() && downloads()->property("open").toBool(); }, 3);
        return (row = filmRow()) != nullptr;
    }, 60)) << "opening the category lists its rows";

    const std::string film = r.home + "/Downloads/holiday.mkv";
    const std::string trashed = r.home + "/.local/share/Trash/files/holiday.mkv";
    const std::string info = r.home + "/.local/share/Trash/info/holiday.mkv.trashinfo";
    QQuickItem* trash = find(row, "trash");
    ASSERT_TRUE(click(trash));
    ASSERT_TRUE(waitUntil([&] { return r.model->armedValue().toStdString() == "trash:" + film; }));
    EXPECT_TRUE(FS::exists(film)) << "the first click only arms";
    ASSERT_TRUE(click(trash));
    ASSERT_TRUE(waitUntil([&] { return !FS::exists(film) && FS::exists(trashed) && FS::exists(info); }))
        << "the second click moves it to the Trash";
    EXPECT_NE(read(info).find("\nPath=" + film + "\n"), std::string::npos) << read(info);
    EXPECT_TRUE(waitUntil([&] { return downloads() && !filmRow(); })) << "the row leaves the list";

    QQuickItem* undo = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (undo = find(root, "toastAction")) && undo->isVisible(); }));
    ASSERT_TRUE(click(undo));
    ASSERT_TRUE(waitUntil([&] { return FS::exists(film) && !FS::exists(trashed) && !FS::exists(info); }))
        << "Undo puts the file back where it was";
    EXPECT_EQ(FS::readText(film, 64 << 20).value_or("").size(), std::size_t(6 << 20)) << "whole";
    EXPECT_TRUE(waitUntil([&] { return filmRow() != nullptr; })) << "and its row";
}

TEST(LiveWindow, TheSettingsSheetShapesThePanelAndTheProgramStartedAgainReadsItBack) {
    if (!missing().empty()) GTEST_SKIP() << missing();
    Running r;
    r.start();
    QQuickWindow* win = r.window();
    ASSERT_TRUE(win);
    QQuickItem* root = win->contentItem();

    // The toolbar's menu, then its "Settings…".
    ASSERT_TRUE(click(find(root, "toolbarMenu")));
    QQuickItem* entry = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (entry = find(root, "menuSettings")) && entry->isVisible(); }));
    ASSERT_TRUE(click(entry));
    QQuickItem* sheet = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (sheet = find(root, "settingsSheet")) && sheet->isVisible(); }));

    // Vitals on, the next step off, "Open Sorrelin" dragged by its handle from the fourth row
    // to the top, and the label with the memory figure.
    ASSERT_TRUE(click(find(find(sheet, "row-vitals"), "switch")));
    ASSERT_TRUE(waitUntil([&] { return r.prefs->isOn(MenuSection::vitals); }));
    ASSERT_TRUE(click(find(find(sheet, "row-nextStep"), "switch")));
    ASSERT_TRUE(waitUntil([&] { return !r.prefs->isOn(MenuSection::nextStep); }));
    ASSERT_TRUE(drag(find(find(sheet, "row-openApp"), "handle"), -3 * 52));
    ASSERT_TRUE(waitUntil([&] { return r.prefs->menuOrder().front() == MenuSection::openApp; }))
        << "the dropped row leads the order";
    ASSERT_TRUE(click(find(sheet, "choice-freeAndMemory")));
    ASSERT_TRUE(waitUntil([&] { return r.prefs->labelStyle() == MenuLabelStyle::freeAndMemory; }));
    ASSERT_TRUE(click(find(sheet, "done")));
    ASSERT_TRUE(waitUntil([&] { return !r.model->settingsOpen(); }));

    // The panel as the tray's click opens it: the sections in their new order, and sampling
    // every few seconds while it is open, back to once a minute when it closes.
    const std::vector<std::string> expected{"openApp", "freeSpace", "quickClean", "vitals"};
    r.shell->mainWindow().hide();
    ASSERT_TRUE(waitUntil([&] { return r.model->monitorInterval() == 60; })) << "the window gone, sampling slows";
    r.shell->togglePanel(QRect());
    QQuickWindow* panel = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (panel = LiveDesktop::window(panelTitle)) != nullptr; }));
    std::vector<std::string> sections;
    ASSERT_TRUE(waitUntil([&] {
        sections.clear();
        for (QQuickItem* slot : shown(panel->contentItem(), "slot-")) sections.push_back(slot->objectName().mid(5).toStdString());
        return sections == expected;
    })) << testing::PrintToString(sections);
    EXPECT_EQ(r.model->monitorInterval(), 3);
    r.shell->closePanel();
    EXPECT_TRUE(waitUntil([&] { return r.model->monitorInterval() == 60; })) << "the panel closed, sampling slows";

    // The program ends and starts again: a fresh process reads the settings file back, and its
    // panel shows the same.
    r.shell.reset();
    QProcess again;
    again.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--panel-after-restart")});
    ASSERT_TRUE(again.waitForStarted(10000));
    ASSERT_TRUE(waitUntil([&] { return again.state() == QProcess::NotRunning; }, 120)) << "the restarted program hung";
    const std::string out = again.readAllStandardOutput().toStdString();
    EXPECT_EQ(again.exitCode(), 0) << out << again.readAllStandardError().toStdString();
    EXPECT_NE(out.find("sections: openApp,freeSpace,quickClean,vitals\n"), std::string::npos) << out;
    EXPECT_NE(out.find("label: freeAndMemory\n"), std::string::npos) << out;
    EXPECT_NE(out.find("live: 3\n"), std::string::npos) << "the restarted panel samples live too\n" << out;
}
