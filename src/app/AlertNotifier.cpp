#include "app/AlertNotifier.h"

Notification AlertNotifier::notification(const Alerts::Alert& alert) {
    Notification n;
    n.title = QString::fromStdString(alert.title);
    n.body = QString::fromStdString(alert.body);
    n.id = QString::fromStdString(alert.id);
    n.category = QString::fromStdString(alert.category);
    if (!alert.apps.empty()) {
        QStringList keys;
        for (const auto& key : alert.apps) keys << QString::fromStdString(key);
        n.info.insert(QStringLiteral("apps"), keys);
    }
    return n;
}

void AlertNotifier::post(const Alerts::Alert& alert) {
    if (notifier) notifier->post(notification(alert));
}
