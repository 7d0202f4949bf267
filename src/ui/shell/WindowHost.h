#pragma once
// One top-level window of the program whose content is a QML type of the module, loaded by
// its type name (`MainView`, `MenuBarView`), so the screens can be replaced without touching
// the desktop side. The window is made when first shown and let go when it closes: a program
// that waits in the tray all day keeps no scene in memory.
#include <QObject>
#include <QPointer>
#include <QSize>
#include <QString>
#include <QQuickView>
#include <QWindow>

#include <functional>

class QQmlEngine;

class WindowHost : public QObject {
    Q_OBJECT

public:
    struct Kind {
        QString type;       // the root item's QML type
        QString title;
        QSize size;         // the first size; empty: the content's own size, fixed
        QSize minimum;      // empty: none
        Qt::WindowFlags flags = Qt::Window;
    };

    WindowHost(QQmlEngine& engine, Kind kind, QObject* parent = nullptr);
    ~WindowHost() override;

    // Makes the window if needed, shows it, raises it and asks for the keyboard.
    void show();
    // Shows it at `position` (top-left, in screen points), for the panel.
    void showAt(const std::function<QPoint(QSize)>& position);
    void hide();
    [[nodiscard]] bool shown() const;
    [[nodiscard]] QQuickView* view() const { return window.data(); }

signals:
    void appeared();      // the window is on screen
    void disappeared();   // it closed or was hidden
    void firstFrame();    // its first frame was drawn, once per window
    void deactivated();   // it lost the keyboard to another window

private:
    bool make();
    QQmlEngine& engine;
    Kind kind;
    QPointer<QQuickView> window;
    bool wasActive = false;
};
