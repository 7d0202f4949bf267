// Qt Quick Test runner for the controls: each tst_*.qml file is one CTest entry.
#include "ui/UiEngine.h"

#include <QQmlEngine>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(SorrelinPlugin)

class Setup : public QObject {
    Q_OBJECT
public slots:
    void applicationAvailable() { UiEngine::configureProcess(false); }
    void qmlEngineAvailable(QQmlEngine* engine) { UiEngine::prepare(*engine); }
};

QUICK_TEST_MAIN_WITH_SETUP(sorrelin_qml, Setup)

#include "QmlTestMain.moc"
