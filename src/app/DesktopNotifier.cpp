#include "app/DesktopNotifier.h"

#include "foundation/Log.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

#include <algorithm>

namespace {

const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString interface = QStringLiteral("org.freedesktop.Notifications");

// A long wait is taken in steps: the monotonic timers stand still while the machine sleeps,
// and the wall clock decides when the time has come.
constexpr double longestStep = 60;

} // namespace

DesktopNotifier::DesktopNotifier(AppClock& clock, const QDBusConnection& bus, QObject* parent)
    : QObject(parent), clock(clock), bus(bus) {
    if (!this->bus.isConnected()) {
        state = State::absent;
        return;
    }
    const QString name = QString::fromLatin1(service);
    this->bus.connect(name, path, interface, QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(uint, QString)));
    this->bus.connect(name, path, interface, QStringLiteral("NotificationClosed"), this, SLOT(onClosed(uint, uint)));
    this->bus.connect(name, path, interface, QStringLiteral("ActivationToken"), this, SLOT(onActivationToken(uint, QString)));
    // A notification daemon that starts after the program (or restarts) is asked again.
    watcher = new QDBusServiceWatcher(name, this->bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        current.clear();
        sent.clear();
        ask();
    });
    ask();
}

void DesktopNotifier::ask() {
    state = State::asking;
    QDBusMessage call = QDBusMessage::createMethodCall(QString::fromLatin1(service), path, interface,
                                                       QStringLiteral("GetCapabilities"));
    auto* pending = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        QDBusPendingReply<QStringList> reply = *w;
        if (reply.isError()) {
            // No service: what was waiting is dropped, as a refused notification would be.
            Log::note("notifications unavailable: " + reply.error().message().toStdString());
            state = State::absent;
            queued.clear();
            emit availabilityKnown(false);
            return;
        }
        caps = reply.value();
        state = State::ready;
        auto waiting = std::move(queued);
        queued.clear();
        for (const auto& n : waiting) send(n);
        emit availabilityKnown(true);
    });
}

std::vector<std::pair<QString, QString>> DesktopNotifier::actions(const std::optional<QString>& category) {
    std::vector<std::pair<QString, QString>> out{{QStringLiteral("default"), QStringLiteral("Open")}};
    if (!category) return out;
    if (*category == QLatin1String("slow2")) {
        out.emplace_back(QStringLiteral("quit"), QStringLiteral("Quit both"));
        out.emplace_back(QStringLiteral("show"), QStringLiteral("Show me"));
    } else if (*category == QLatin1String("slow1")) {
        out.emplace_back(QStringLiteral("quit"), QStringLiteral("Quit it"));
        out.emplace_back(QStringLiteral("show"), QStringLiteral("Show me"));
    } else if (*category == QLatin1String("memory")) {
        out.emplace_back(QStringLiteral("show"), QStringLiteral("Show me"));
    } else if (*category == QLatin1String("restart")) {
        out.emplace_back(QStringLiteral("restart"), QStringLiteral("Restart…"));
    }
    return out;
}

QString DesktopNotifier::plain(const QString& text) { return text.toHtmlEscaped().replace(QLatin1String("&quot;"), QLatin1String("\"")); }

void DesktopNotifier::post(const Notification& n) {
    if (state == State::absent) return;
    // A new request of the same kind replaces one still waiting for its time.
    if (auto it = scheduled.find(n.id); it != scheduled.end()) {
        clock.cancel(it->second);
        scheduled.erase(it);
    }
    arm(n);
}

void DesktopNotifier::arm(const Notification& n) {
    const double wait = n.at ? secondsBetween(clock.now(), *n.at) : 0;
    if (wait <= 0) {
        if (state == State::ready) send(n);
        else if (state == State::asking) queued.push_back(n);
        return;
    }
    scheduled[n.id] = clock.after(std::min(wait, longestStep), this, [this, n] {
        scheduled.erase(n.id);
        arm(n);
    });
}

void DesktopNotifier::send(const Notification& n) {
    QStringList flat;
    // Buttons only where the server can show them and answer; the body's click is one too.
    if (caps.contains(QLatin1String("actions")))
        for (const auto& [key, label] : actions(n.category)) flat << key << label;
    const bool markup = caps.contains(QLatin1String("body-markup"));
    QVariantMap hints{{QStringLiteral("desktop-entry"), QString::fromLatin1(desktopEntry)},
                      {QStringLiteral("urgency"), QVariant::fromValue<uchar>(1)}};
    const auto known = current.find(n.id);
    const uint replaces = known == current.end() ? 0 : known->second;
    QDBusMessage call = QDBusMessage::createMethodCall(QString::fromLatin1(service), path, interface, QStringLiteral("Notify"));
    call << QStringLiteral("Sorrelin") << replaces << QString::fromLatin1(desktopEntry) << n.title
         << (markup ? plain(n.body) : n.body) << flat << hints << int(-1);
    auto* pending = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, n](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        QDBusPendingReply<uint> reply = *w;
        if (reply.isError()) {
            Log::note("notification not posted: " + reply.error().message().toStdString());
            return;
        }
        const uint id = reply.value();
        if (auto old = current.find(n.id); old != current.end() && old->second != id) sent.erase(old->second);
        current[n.id] = id;
        sent[id] = Sent{n.id, n.category, n.info};
    });
}

void DesktopNotifier::onActionInvoked(uint id, const QString& action) {
    // The signal goes to every client of the server: only our own notifications count.
    auto it = sent.find(id);
    if (it == sent.end()) return;
    QString token;
    if (auto t = tokens.find(id); t != tokens.end()) {
        token = t->second;
        tokens.erase(t);
    }
    const Sent what = it->second;
    emit answered(action, what.category.value_or(QString()), what.info, token);
}

void DesktopNotifier::onActivationToken(uint id, const QString& token) {
    if (sent.contains(id)) tokens[id] = token;
}

void DesktopNotifier::onClosed(uint id, uint /*reason*/) {
    auto it = sent.find(id);
    if (it == sent.end()) return;
    if (auto c = current.find(it->second.id); c != current.end() && c->second == id) current.erase(c);
    sent.erase(it);
    tokens.erase(id);
}
