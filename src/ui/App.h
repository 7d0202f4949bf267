#pragma once
// How every view reaches the application state: `App.model` and `App.prefs` in QML. The
// program hands in its shared objects before loading any view; pictures and tests hand in
// models of their own over generated homes, so a view never knows which it is showing.
#include "app/AppModel.h"
#include "app/Prefs.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

class App : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(AppModel* model READ model NOTIFY modelChanged)
    Q_PROPERTY(Prefs* prefs READ prefs NOTIFY prefsChanged)

public:
    explicit App(QObject* parent = nullptr);

    // The objects every view of every engine reads from now on; null leaves the other as is.
    static void use(AppModel* model, Prefs* prefs);

    [[nodiscard]] AppModel* model() const;
    [[nodiscard]] Prefs* prefs() const;

signals:
    void modelChanged();
    void prefsChanged();
};
