#include "ui/shell/TrayIcon.h"

#include "app/AppModel.h"
#include "app/Prefs.h"
#include "ui/art/AppIcon.h"

#include <QMenu>
#include <QSystemTrayIcon>

TrayIcon::TrayIcon(AppModel& model, Prefs& prefs, QObject* parent) : QObject(parent), model(model), prefs(prefs) {
    menu = std::make_unique<QMenu>();
    menu->addAction(QStringLiteral("Open Sorrelin"), this, &TrayIcon::openWindow);
    menu->addAction(QStringLiteral("Scan now"), this, &TrayIcon::scanNow);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Quit"), this, &TrayIcon::quit);
    item = new QSystemTrayIcon(this);
    item->setContextMenu(menu.get());
    connect(item, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason why) {
        if (why == QSystemTrayIcon::Trigger) emit togglePanel(this->item->geometry());
        else if (why == QSystemTrayIcon::DoubleClick || why == QSystemTrayIcon::MiddleClick) emit openWindow();
    });
    // The icon and the words change with what they show, not with every sample.
    connect(&model, &AppModel::diskChanged, this, &TrayIcon::refresh);
    connect(&model, &AppModel::monitorChanged, this, &TrayIcon::refresh);
    connect(&prefs, &Prefs::labelStyleChanged, this, &TrayIcon::refresh);
    refresh();
}

TrayIcon::~TrayIcon() {
    delete item;
    item = nullptr;
}

bool TrayIcon::show() {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) return false;
    item->show();
    return true;
}

QRect TrayIcon::geometry() const { return item->geometry(); }

void TrayIcon::refresh() {
    const MenuLabel::Icon icon = MenuLabel::icon(model.isLow());
    if (shownIcon != icon) {
        item->setIcon(AppIcon::tray(icon));
        shownIcon = icon;
    }
    const QString tip = QString::fromStdString(MenuLabel::text(prefs.labelStyle(), model.disk().available,
                                                               model.monitor().vitals.freePercent,
                                                               !model.monitor().slowApps().empty()));
    if (item->toolTip() != tip) item->setToolTip(tip);
}
