#include "LiveDesktop.h"

#include "ItemSearch.h"

#include "support/PrivateServers.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <unistd.h>

namespace LiveDesktop {

namespace {

std::unique_ptr<PrivateDisplay> screen;
std::unique_ptr<PrivateBus> bus;
std::string why = "the desktop was not started";

bool installed(const char* path) { return access(path, X_OK) == 0; }

// Runs xdotool on the test's display; the application keeps handling its events meanwhile,
// since what the pointer does reaches it while the tool still runs.
bool xdotool(const QStringList& args) {
    QProcess tool;
    tool.start(QStringLiteral("xdotool"), args);
    if (!tool.waitForStarted(10000)) return false;
    if (!waitUntil([&] { return tool.state() == QProcess::NotRunning; }, 20)) {
        tool.kill();
        tool.waitForFinished(5000);
        return false;
    }
    return tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
}

QStringList at(QPoint p) { return {QStringLiteral("mousemove"), QString::number(p.x()), QString::number(p.y())}; }

} // namespace

void start() {
    if (!installed("/usr/bin/Xvfb")) {
        why = "Xvfb is not installed";
        return;
    }
    if (!installed("/usr/bin/xdotool")) {
        why = "xdotool is not installed (the pointer goes through it)";
        return;
    }
    screen = std::make_unique<PrivateDisplay>(std::nullopt, std::string(), "1600x1000x24");
    if (screen->name.empty()) {
        why = "Xvfb did not start";
        return;
    }
    bus = std::make_unique<PrivateBus>();
    if (bus->address.empty()) {
        why = "dbus-daemon is not installed";
        return;
    }
    setenv("DISPLAY", screen->name.c_str(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", bus->address.c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    unsetenv("WAYLAND_DISPLAY");
    why.clear();
}

void stop() {
    bus.reset();
    screen.reset();
}

const std::string& missing() { return why; }

std::string display() { return screen ? screen->name : std::string(); }

bool waitUntil(const std::function<bool()>& done, double seconds) {
    QDeadlineTimer deadline(static_cast<qint64>(seconds * 1000));
    while (!done()) {
        if (deadline.hasExpired()) return false;
        QTest::qWait(5);
    }
    return true;
}

QQuickWindow* window(const QString& title) {
    for (QWindow* w : QGuiApplication::topLevelWindows())
        if (w->title() == title && w->isVisible() && w->isExposed())
            if (auto* quick = qobject_cast<QQuickWindow*>(w)) return quick;
    return nullptr;
}

QQuickItem* find(QQuickItem* from, const QString& objectName) { return ItemSearch::named(from, objectName); }

std::vector<QQuickItem*> shown(QQuickItem* from, const QString& prefix) {
    std::vector<QQuickItem*> out = ItemSearch::shown(from, prefix);
    std::stable_sort(out.begin(), out.end(), [](QQuickItem* a, QQuickItem* b) {
        return a->mapToScene(QPointF(0, 0)).y() < b->mapToScene(QPointF(0, 0)).y();
    });
    return out;
}

bool settled(QQuickItem* item) {
    QRectF last;
    QElapsedTimer still;
    still.start();
    return waitUntil([&] {
        if (!item || !item->window() || !item->window()->isExposed() || !item->isVisible() || !item->isEnabled()) {
            still.restart();
            return false;
        }
        const QRectF now = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        if (now != last) {
            last = now;
            still.restart();
            return false;
        }
        return still.elapsed() >= 150;
    });
}

QPoint centre(QQuickItem* item) { return item->mapToGlobal(QPointF(item->width() / 2, item->height() / 2)).toPoint(); }

bool click(QQuickItem* item) {
    if (!settled(item)) return false;
    return xdotool(at(centre(item)) << QStringLiteral("click") << QStringLiteral("1"));
}

bool drag(QQuickItem* item, int dy) {
    if (!settled(item)) return false;
    const QPoint start = centre(item);
    if (!xdotool(at(start) << QStringLiteral("mousedown") << QStringLiteral("1"))) return false;
    const int steps = std::max(4, std::abs(dy) / 8);
    for (int i = 1; i <= steps; ++i)
        if (!xdotool(at(start + QPoint(0, dy * i / steps)))) return false;
    return xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
}

} // namespace LiveDesktop
