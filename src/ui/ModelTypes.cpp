#include "ui/ModelTypes.h"

namespace {

AppModel* chosenModel = nullptr;
Prefs* chosenPrefs = nullptr;

} // namespace

namespace ModelTypes {

void use(AppModel* model, Prefs* prefs) {
    chosenModel = model;
    chosenPrefs = prefs;
}

AppModel& model() { return chosenModel ? *chosenModel : AppModel::shared(); }
Prefs& prefs() { return chosenPrefs ? *chosenPrefs : Prefs::shared(); }

} // namespace ModelTypes

// Both live as long as the process: the engine must never delete them.
AppModel* AppModelSingleton::create(QQmlEngine*, QJSEngine*) {
    AppModel* m = &ModelTypes::model();
    QJSEngine::setObjectOwnership(m, QJSEngine::CppOwnership);
    return m;
}

Prefs* PrefsSingleton::create(QQmlEngine*, QJSEngine*) {
    Prefs* p = &ModelTypes::prefs();
    QJSEngine::setObjectOwnership(p, QJSEngine::CppOwnership);
    return p;
}
