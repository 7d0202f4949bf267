#pragma once
// The application model and the panel's preferences as QML singletons (`AppModel.tab`,
// `Prefs.labelStyle`). The objects are the program's own unless a host (a test, the pictures)
// names others before the first engine asks.
#include "app/AppModel.h"
#include "app/Prefs.h"

#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

namespace ModelTypes {

// Which model and preferences QML reads from now on; null leaves the program's own.
void use(AppModel* model, Prefs* prefs);
[[nodiscard]] AppModel& model();
[[nodiscard]] Prefs& prefs();

} // namespace ModelTypes

struct AppModelSingleton {
    Q_GADGET
    QML_FOREIGN(AppModel)
    QML_NAMED_ELEMENT(AppModel)
    QML_SINGLETON

public:
    static AppModel* create(QQmlEngine*, QJSEngine*);
};

struct PrefsSingleton {
    Q_GADGET
    QML_FOREIGN(Prefs)
    QML_NAMED_ELEMENT(Prefs)
    QML_SINGLETON

public:
    static Prefs* create(QQmlEngine*, QJSEngine*);
};
