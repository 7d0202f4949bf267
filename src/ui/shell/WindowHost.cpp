#include "ui/shell/WindowHost.h"

#include "foundation/Log.h"
#include "ui/Palette.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTimer>

#include <memory>
#include <utility>

#ifdef __GLIBC__
#include <malloc.h>
#endif

WindowHost::WindowHost(QQmlEngine& engine, Kind kind, QObject* parent) : QObject(parent), engine(engine), kind(std::move(kind)) {}

WindowHost::~WindowHost() { delete window.data(); }

bool WindowHost::make() {
    if (window) return true;
    auto* component = new QQmlComponent(&engine);
    component->setData(("import Sorrelin\n" + kind.type + " {}\n").toUtf8(),
                       QUrl(QStringLiteral("qrc:/qt/qml/Sorrelin/") + kind.type + QStringLiteral("Host.qml")));
    QObject* root = component->create();
    auto* item = qobject_cast<QQuickItem*>(root);
    if (!item) {
        Log::note("window content " + kind.type.toStdString() + " not made: " + component->errorString().toStdString());
        delete root;
        delete component;
        return false;
    }
    auto* view = new QQuickView(&engine, nullptr);
    component->setParent(view);
    view->setFlags(kind.flags);
    view->setTitle(kind.title);
    view->setColor(Palette::lookup("window").value_or(QColor(Qt::black)));
    if (kind.size.isEmpty()) {
        view->setResizeMode(QQuickView::SizeViewToRootObject);
    } else {
        view->setResizeMode(QQuickView::SizeRootObjectToView);
        view->resize(kind.size);
    }
    // The content may name its own least size; the kind's stands otherwise.
    const QVariant minWidth = item->property("minimumWidth"), minHeight = item->property("minimumHeight");
    if (minWidth.isValid() && minHeight.isValid()) view->setMinimumSize(QSize(minWidth.toInt(), minHeight.toInt()));
    else if (!kind.minimum.isEmpty()) view->setMinimumSize(kind.minimum);
    view->setContent(component->url(), component, item);
    connect(view, &QWindow::visibleChanged, this, [this, view](bool visible) {
        if (visible) {
            emit appeared();
            return;
        }
        emit disappeared();
        // The scene goes with the window; the next show makes a new one.
        view->deleteLater();
    });
    // Once the scene has gone, what it held goes back to the system, not to the allocator's
    // free lists: the program may wait in the tray for the rest of the day.
    connect(view, &QObject::destroyed, this, [this] {
        QTimer::singleShot(0, this, [this] {
            if (window) return;
            engine.collectGarbage();
            engine.trimComponentCache();
#ifdef __GLIBC__
            malloc_trim(0);
#endif
        });
    });
    connect(view, &QWindow::activeChanged, this, [this, view] {
        if (view->isActive()) wasActive = true;
        else if (wasActive) emit deactivated();
    });
    // Told on the render thread; the first of the queued calls is the one that counts.
    auto drawn = std::make_shared<bool>(false);
    connect(view, &QQuickWindow::frameSwapped, this, [this, drawn] {
        if (std::exchange(*drawn, true)) return;
        emit firstFrame();
    });
    wasActive = false;
    window = view;
    return true;
}

void WindowHost::show() {
    if (!make()) return;
    window->show();
    window->raise();
    window->requestActivate();
}

void WindowHost::showAt(const std::function<QPoint(QSize)>& position) {
    if (!make()) return;
    window->setPosition(position(window->size()));
    show();
}

void WindowHost::hide() {
    if (window) window->close();
}

bool WindowHost::shown() const { return window && window->isVisible(); }
