#include "app/NotificationAnswer.h"

#include "app/AppModel.h"

#include <QStringList>

NotificationAnswer NotificationAnswer::route(const QString& action, const QString& category, const QVariantMap& info) {
    NotificationAnswer a;
    if (action == QLatin1String("quit")) {
        a.kind = Kind::quitApps;
        // Anything but a list of texts counts as no apps at all.
        const QVariant apps = info.value(QStringLiteral("apps"));
        if (apps.metaType() == QMetaType::fromType<QStringList>())
            for (const QString& key : apps.toStringList()) a.apps.push_back(key.toStdString());
        return a;
    }
    if (action == QLatin1String("restart")) {
        a.kind = Kind::restart;
        return a;
    }
    a.kind = Kind::show;
    if (action == QLatin1String("show")) a.tab = Tab::speed;
    else if (category == QLatin1String("space"))
        a.tab = info.value(QStringLiteral("tab")).toString() == QLatin1String("clean") ? Tab::clean : Tab::storage;
    else if (category.startsWith(QLatin1String("slow")) || category == QLatin1String("memory") ||
             category == QLatin1String("restart"))
        a.tab = Tab::home;
    return a;
}

void NotificationAnswer::apply(AppModel& model) const {
    switch (kind) {
    case Kind::quitApps: model.quitFromAlert(apps); break;
    case Kind::restart: model.restartNow(); break;
    case Kind::show: model.showWindow(tab); break;
    }
}
