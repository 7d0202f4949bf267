#include "ui/UiEngine.h"

#include "ui/AppIconProvider.h"
#include "ui/Fonts.h"

#include <QQuickStyle>
#include <QQuickWindow>
#include <QSGRendererInterface>

namespace UiEngine {

void configureProcess(bool pictures) {
    // Our components restyle Basic; a desktop style would bring the desktop's colours back.
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    if (pictures) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // Pictures at twice the point size, as on a high-density screen: text and symbols crisp.
        qputenv("QT_SCALE_FACTOR", "2");
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        return;
    }
    // The window draws with Qt Quick's software renderer unless the person asks for another:
    // it repaints only what changed (a beating dot, not the whole window), and the program,
    // which waits in the tray all day, never loads a GL driver (llvmpipe alone keeps 64 MB
    // resident). The pictures are drawn the same way, so they show what the window shows.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") && qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

void prepare(QQmlEngine& engine) {
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("appicon"), new AppIconProvider());
    Fonts::install();
}

QUrl url(const QString& file) { return QUrl(QStringLiteral("qrc:/qt/qml/Sorrelin/") + file); }

} // namespace UiEngine
