#pragma once
// The program's item in the desktop's tray (a StatusNotifierItem, or the X11 tray): the disk
// symbol, the warning while space is low, the chosen label as tooltip. A left click toggles
// the panel; a right click opens the short menu.
#include "app/MenuLabel.h"

#include <QObject>
#include <QRect>

#include <memory>
#include <optional>

class AppModel;
class Prefs;
class QMenu;
class QSystemTrayIcon;

class TrayIcon : public QObject {
    Q_OBJECT

public:
    TrayIcon(AppModel& model, Prefs& prefs, QObject* parent = nullptr);
    ~TrayIcon() override;

    // Shows the item; false when the desktop has no tray to show it in.
    bool show();
    [[nodiscard]] QRect geometry() const;

signals:
    void togglePanel(QRect icon);
    void openWindow();
    void scanNow();
    void quit();

private:
    void refresh();
    AppModel& model;
    Prefs& prefs;
    std::unique_ptr<QMenu> menu;
    QSystemTrayIcon* item = nullptr;
    std::optional<MenuLabel::Icon> shownIcon;
};
