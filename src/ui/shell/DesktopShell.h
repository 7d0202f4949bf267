#pragma once
// The program on the desktop once it runs: the main window, the tray item with its panel, the
// answers of notifications, and the calls that come over the session bus, all turned into
// calls on the one application model.
#include "foundation/Tab.h"

#include <QElapsedTimer>
#include <QObject>
#include <QQmlEngine>
#include <QString>

#include <memory>
#include <optional>

class AppModel;
class Prefs;
class TrayIcon;
class WindowHost;

class DesktopShell : public QObject {
    Q_OBJECT

public:
    DesktopShell(AppModel& model, Prefs& prefs, QObject* parent = nullptr);
    ~DesktopShell() override;

    // Puts the item in the tray and hands the model what opens the window. False when the
    // desktop has no tray: the window is then the program's only face.
    bool startTray();

    // Brings the window up at a tab, or as it was; `token` is the activation token of the
    // caller (a notification, a second start), handed to the window system.
    void show(std::optional<Tab> tab, const QString& token = {});
    void togglePanel(const QRect& icon);
    void closePanel();
    [[nodiscard]] bool windowShown() const;
    [[nodiscard]] WindowHost& mainWindow() { return *main; }

signals:
    void quitRequested();

private:
    void openWindow();
    AppModel& model;
    Prefs& prefs;
    QQmlEngine engine;
    std::unique_ptr<WindowHost> main;
    std::unique_ptr<WindowHost> panel;
    std::unique_ptr<TrayIcon> tray;
    QElapsedTimer panelClosedByFocus;
};
