#pragma once
// The notifier over the desktop's notification service (org.freedesktop.Notifications on the
// session bus). Categories become lists of buttons, a request identifier becomes the
// replaces_id of the server's last notification of that kind, and a notification "at" a time
// is held by the program's own timer until then. Without a bus or without the service nothing
// is posted and nothing fails; buttons go out only to a server that lists "actions".
#include "app/AppClock.h"
#include "app/Notifier.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <map>
#include <optional>
#include <utility>
#include <vector>

class QDBusServiceWatcher;

class DesktopNotifier final : public QObject, public Notifier {
    Q_OBJECT

public:
    static constexpr const char* service = "org.freedesktop.Notifications";
    static constexpr const char* desktopEntry = "app.sorrelin.Sorrelin";

    DesktopNotifier(AppClock& clock, const QDBusConnection& bus, QObject* parent = nullptr);

    void post(const Notification& notification) override;

    // The buttons of a category as (key, label) pairs, the body's click ("default") first.
    [[nodiscard]] static std::vector<std::pair<QString, QString>> actions(const std::optional<QString>& category);
    // A text as a server with body markup would read it: &, < and > escaped.
    [[nodiscard]] static QString plain(const QString& text);

    // Known once the server answered GetCapabilities; false without a service.
    [[nodiscard]] bool available() const { return state == State::ready; }
    [[nodiscard]] const QStringList& capabilities() const { return caps; }

signals:
    // A button or the body was pressed on one of our notifications. `token` is the activation
    // token the server handed over for it, if any, for raising the window.
    void answered(const QString& action, const QString& category, const QVariantMap& info, const QString& token);
    // The server is known to be there (`available`) or not, once asked.
    void availabilityKnown(bool available);

private slots:
    void onActionInvoked(uint id, const QString& action);
    void onClosed(uint id, uint reason);
    void onActivationToken(uint id, const QString& token);

private:
    enum class State { asking, ready, absent };
    struct Sent {
        QString id;
        std::optional<QString> category;
        QVariantMap info;
    };
    void ask();
    void arm(const Notification& n);
    void send(const Notification& n);

    AppClock& clock;
    QDBusConnection bus;
    QDBusServiceWatcher* watcher = nullptr;
    State state = State::asking;
    QStringList caps;
    std::vector<Notification> queued;              // posted while the server is being asked
    std::map<QString, AppClock::Id> scheduled;     // request id -> the timer that posts it
    std::map<QString, uint> current;               // request id -> the server's notification id
    std::map<uint, Sent> sent;                     // the server's id -> what the answer needs
    std::map<uint, QString> tokens;                // activation tokens that came before the answer
};
