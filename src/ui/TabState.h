#pragma once
// The base of what a tab shows worked out from the application model: QML hands it the model,
// it follows the model's signals that matter to the tab and works its figures out again after
// each. A tab lays out what its state offers and calls the model's actions.
#include "app/AppModel.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

class TabState : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(AppModel* model READ model WRITE setModel NOTIFY modelChanged)

public:
    using QObject::QObject;

    [[nodiscard]] AppModel* model() const { return source; }
    void setModel(AppModel* model);

signals:
    void modelChanged();
    void changed();

protected:
    // Called with each new model: `follow` each signal after which the figures change.
    virtual void attach(AppModel& model) = 0;
    // Called before the model goes, for what the state asked of it beyond signals.
    virtual void detach(AppModel& /*model*/) {}
    virtual void refresh() = 0;

    template <class Signal>
    void follow(Signal signal) {
        links << connect(source.data(), signal, this, [this] { refresh(); });
    }

    QPointer<AppModel> source;

private:
    QList<QMetaObject::Connection> links;
};
