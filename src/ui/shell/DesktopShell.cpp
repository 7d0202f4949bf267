#include "ui/shell/DesktopShell.h"

#include "app/AppModel.h"
#include "app/Prefs.h"
#include "foundation/Log.h"
#include "ui/Desktop.h"
#include "ui/UiEngine.h"
#include "ui/shell/PanelPlacement.h"
#include "ui/shell/TrayIcon.h"
#include "ui/shell/WindowHost.h"

#include <QCursor>
#include <QGuiApplication>
#include <QQuickView>
#include <QScreen>

namespace {

// A click on the tray icon while the panel is open first takes the keyboard from the panel,
// which closes it; the click that follows must not open it again.
constexpr qint64 refocusGraceMs = 400;

} // namespace

DesktopShell::DesktopShell(AppModel& model, Prefs& prefs, QObject* parent) : QObject(parent), model(model), prefs(prefs) {
    UiEngine::prepare(engine);
    main = std::make_unique<WindowHost>(engine, WindowHost::Kind{QStringLiteral("MainView"), QStringLiteral("Sorrelin"),
                                                                  QSize(1060, 760), QSize(760, 560), Qt::Window});
    panel = std::make_unique<WindowHost>(
        engine, WindowHost::Kind{QStringLiteral("MenuBarView"), QStringLiteral("Sorrelin panel"), QSize(), QSize(),
                                 Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint});

    // The views themselves tell the model when they are on screen, so the monitor's pace has
    // one owner per view.
    connect(main.get(), &WindowHost::disappeared, this, [] { Log::note("window closed, back to menu bar only"); });
    connect(panel.get(), &WindowHost::deactivated, this, [this] {
        panelClosedByFocus.start();
        panel->hide();
    });

    Desktop& desktop = Desktop::shared();
    desktop.onQuit = [this] { emit quitRequested(); };
    desktop.onClosePanel = [this] { closePanel(); };
    // Whatever in the window or panel asks for the window, the panel steps aside.
    connect(main.get(), &WindowHost::appeared, this, &DesktopShell::closePanel);
}

DesktopShell::~DesktopShell() {
    Desktop::shared().onQuit = nullptr;
    Desktop::shared().onClosePanel = nullptr;
}

bool DesktopShell::startTray() {
    tray = std::make_unique<TrayIcon>(model, prefs);
    connect(tray.get(), &TrayIcon::togglePanel, this, &DesktopShell::togglePanel);
    connect(tray.get(), &TrayIcon::openWindow, this, [this] { this->model.showWindow(std::nullopt); });
    connect(tray.get(), &TrayIcon::scanNow, this, [this] { this->model.scan(); });
    connect(tray.get(), &TrayIcon::quit, this, &DesktopShell::quitRequested);
    const bool shown = tray->show();
    Desktop::shared().setTrayAvailable(shown);
    if (!shown) Log::note("no tray on this desktop: the window is the program's only face");
    // Whichever of this and the model's start comes second opens the window of a start by hand.
    model.menuBarReady([this] { openWindow(); });
    return shown;
}

void DesktopShell::openWindow() { main->show(); }

void DesktopShell::show(std::optional<Tab> tab, const QString& token) {
    // The window system lets a window take the front only with the caller's token.
    if (!token.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
        qputenv("DESKTOP_STARTUP_ID", token.toUtf8());
    }
    model.showWindow(tab);
}

void DesktopShell::togglePanel(const QRect& icon) {
    if (panel->shown()) {
        panel->hide();
        return;
    }
    if (panelClosedByFocus.isValid() && panelClosedByFocus.elapsed() < refocusGraceMs) return;
    QScreen* screen = QGuiApplication::screenAt(icon.isValid() ? icon.center() : QCursor::pos());
    if (!screen) screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
    panel->showAt([&](QSize size) { return PanelPlacement::place(icon, available, size); });
}

void DesktopShell::closePanel() { panel->hide(); }

bool DesktopShell::windowShown() const { return main->shown(); }
