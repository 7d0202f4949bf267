#pragma once
// The application layer's types as QML sees them: it links no QML itself, so they are declared
// here, known by name for typed properties and never made from QML.
#include "app/AppModel.h"
#include "app/ListModel.h"
#include "app/Prefs.h"

#include <QtQml/qqml.h>

struct AppModelForeign {
    Q_GADGET
    QML_FOREIGN(AppModel)
    QML_NAMED_ELEMENT(AppModel)
    QML_UNCREATABLE("The application state is made by the program")
};

struct PrefsForeign {
    Q_GADGET
    QML_FOREIGN(Prefs)
    QML_NAMED_ELEMENT(Prefs)
    QML_UNCREATABLE("The preferences are made by the program")
};

struct ListModelForeign {
    Q_GADGET
    QML_FOREIGN(ListModel)
    QML_NAMED_ELEMENT(RecordList)
    QML_UNCREATABLE("Lists come from the application state")
};
