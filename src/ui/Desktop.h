#pragma once
// What the screens may ask of the desktop around them, as the QML singleton `Desktop`:
// whether a tray holds the program (without one, the window's toolbar offers "Quit"), ending
// the program, and closing the tray's panel. The shell fills in what these do.
#include <QObject>
#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

#include <functional>

class Desktop : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool trayAvailable READ trayAvailable NOTIFY trayAvailableChanged)

public:
    explicit Desktop(QObject* parent = nullptr) : QObject(parent) {}
    // The program's one instance, which QML gets.
    static Desktop& shared();
    static Desktop* create(QQmlEngine*, QJSEngine*);

    [[nodiscard]] bool trayAvailable() const { return tray; }
    void setTrayAvailable(bool on);

    // Ends the program, as the panel's and the tray menu's "Quit" do.
    Q_INVOKABLE void quit();
    // Closes the tray's panel, for a panel action that opens the window.
    Q_INVOKABLE void closePanel();

    std::function<void()> onQuit;
    std::function<void()> onClosePanel;

signals:
    void trayAvailableChanged();

private:
    bool tray = false;
};
