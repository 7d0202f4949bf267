#pragma once
// The window as a person meets it: the program's own windows on an X server of the test's own
// (Xvfb) with a session bus of its own, and a pointer moved and pressed through the X server
// (xdotool, by the XTEST extension), so every click travels the road a mouse's does: the
// server, the window system's events, Qt's delivery, the control under the pointer.
#include <QPoint>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>

#include <functional>
#include <string>
#include <vector>

namespace LiveDesktop {

// Starts the X server and the bus and points this process at them; the application object
// comes after. Without Xvfb, xdotool or dbus-daemon the reason is kept and the tests skip.
void start();
void stop();
// Empty when the desktop is up; otherwise why not, for a skip.
[[nodiscard]] const std::string& missing();
// The environment a child process needs to reach the same display and bus.
[[nodiscard]] std::string display();

// Runs the event loop until `done` holds, at most `seconds`.
[[nodiscard]] bool waitUntil(const std::function<bool()>& done, double seconds = 30);

// The program's top-level window of that title, shown and drawn; null when none is.
[[nodiscard]] QQuickWindow* window(const QString& title);
// The first item under `from` (itself included) with that object name, visible or not.
[[nodiscard]] QQuickItem* find(QQuickItem* from, const QString& objectName);
// The visible items under `from` whose object names start with `prefix`, top to bottom.
[[nodiscard]] std::vector<QQuickItem*> shown(QQuickItem* from, const QString& prefix);

// Waits until `item` is visible, enabled and has stood still (entrances and glides over), as
// a person waits before aiming. False when it never does.
[[nodiscard]] bool settled(QQuickItem* item);
// Where the middle of `item` is on the screen.
[[nodiscard]] QPoint centre(QQuickItem* item);

// The pointer, through the X server.
[[nodiscard]] bool click(QQuickItem* item);
// Presses on `item`, moves by `dy` points in small steps as a hand does, lets go.
[[nodiscard]] bool drag(QQuickItem* item, int dy);

} // namespace LiveDesktop
