#include "App.h"

#include <QPointer>
#include <vector>

namespace {

QPointer<AppModel> currentModel;
QPointer<Prefs> currentPrefs;
// Every engine makes its own singleton; each hears of a change.
std::vector<QPointer<App>> instances;

} // namespace

App::App(QObject* parent) : QObject(parent) { instances.emplace_back(this); }

void App::use(AppModel* model, Prefs* prefs) {
    const bool newModel = model && model != currentModel;
    const bool newPrefs = prefs && prefs != currentPrefs;
    if (model) currentModel = model;
    if (prefs) currentPrefs = prefs;
    std::erase_if(instances, [](const QPointer<App>& p) { return p.isNull(); });
    for (const auto& app : instances) {
        if (newModel) emit app->modelChanged();
        if (newPrefs) emit app->prefsChanged();
    }
}

AppModel* App::model() const { return currentModel; }
Prefs* App::prefs() const { return currentPrefs; }
