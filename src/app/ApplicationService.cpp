#include "app/ApplicationService.h"

#include "app/BusReply.h"
#include "foundation/Log.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTimer>

namespace {

// Read-only figures of what the program shows.
class StateAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "app.sorrelin.Sorrelin.State")
    Q_PROPERTY(QString Tab READ tab)
    Q_PROPERTY(bool WindowShown READ windowShown)

public:
    explicit StateAdaptor(ApplicationService* parent) : QDBusAbstractAdaptor(parent), service(parent) {}
    [[nodiscard]] QString tab() const { return service->tabTitle(); }
    [[nodiscard]] bool windowShown() const { return service->windowShown(); }

private:
    ApplicationService* service;
};

QString tokenOf(const QVariantMap& platformData) {
    for (const char* key : {"activation-token", "desktop-startup-id"}) {
        const QVariant v = platformData.value(QLatin1String(key));
        if (v.metaType() == QMetaType::fromType<QString>()) return v.toString();
    }
    return {};
}

// An element of an "av" parameter: the value inside its variant.
QVariant unwrap(const QVariant& v) {
    if (v.metaType() == QMetaType::fromType<QDBusVariant>()) return v.value<QDBusVariant>().variant();
    return v;
}

} // namespace

ApplicationService::ApplicationService(Handlers h, QObject* parent) : QObject(parent), handlers(std::move(h)) {
    new StateAdaptor(this);
}

std::optional<Tab> ApplicationService::tabNamed(const QString& title) {
    for (Tab t : Tabs::allCases) {
        const auto name = Tabs::title(t);
        if (title.compare(QString::fromLatin1(name.data(), qsizetype(name.size())), Qt::CaseInsensitive) == 0 &&
            title == title.toLower())
            return t;
    }
    return std::nullopt;
}

QString ApplicationService::tabTitle() const {
    if (!handlers.tab) return {};
    const auto name = Tabs::title(handlers.tab());
    return QString::fromLatin1(name.data(), qsizetype(name.size())).toLower();
}

bool ApplicationService::windowShown() const { return handlers.windowShown && handlers.windowShown(); }

void ApplicationService::refuse(const QString& message) {
    Log::note("refused: " + message.toStdString());
    if (calledFromDBus()) sendErrorReply(QDBusError::InvalidArgs, message);
}

void ApplicationService::Activate(const QVariantMap& platformData) {
    Log::note("activated over the session bus");
    if (handlers.show) handlers.show(std::nullopt, tokenOf(platformData));
}

void ApplicationService::Open(const QStringList& /*uris: the program opens no documents*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void ApplicationService::ActivateAction(const QString& action, const QVariantList& parameter, const QVariantMap& platformData) {
    Log::note("action over the session bus: " + action.toStdString());
    if (action == QLatin1String("show-tab")) {
        const QVariant title = parameter.size() == 1 ? unwrap(parameter[0]) : QVariant();
        const auto tab = title.metaType() == QMetaType::fromType<QString>() ? tabNamed(title.toString()) : std::nullopt;
        if (!tab) {
            refuse(QStringLiteral("show-tab takes one tab title in lower case: home, storage, clean, projects, speed or week"));
            return;
        }
        if (handlers.show) handlers.show(tab, tokenOf(platformData));
        return;
    }
    // The desktop entry's actions carry no parameter: "show-storage" is show-tab "storage".
    if (action.startsWith(QLatin1String("show-")) && tabNamed(action.mid(5))) {
        if (!parameter.isEmpty()) {
            refuse(action + QStringLiteral(" takes no parameter"));
            return;
        }
        if (handlers.show) handlers.show(tabNamed(action.mid(5)), tokenOf(platformData));
        return;
    }
    const bool plain = action == QLatin1String("scan") || action == QLatin1String("clean-safe") || action == QLatin1String("quit");
    if (!plain) {
        refuse(QStringLiteral("Unknown action: ") + action);
        return;
    }
    if (!parameter.isEmpty()) {
        refuse(action + QStringLiteral(" takes no parameter"));
        return;
    }
    if (action == QLatin1String("scan") && handlers.scan) handlers.scan();
    if (action == QLatin1String("clean-safe") && handlers.cleanSafe) handlers.cleanSafe();
    // The reply goes out before the program ends.
    if (action == QLatin1String("quit") && handlers.quit) QTimer::singleShot(0, this, [this] { handlers.quit(); });
}

namespace SingleCopy {

Outcome claim(QDBusConnection bus, ApplicationService& service, bool sideBySide, const QString& action) {
    if (!bus.isConnected()) {
        Log::note("no session bus: running without the single-copy name");
        return Outcome::alone;
    }
    const QString path = QString::fromLatin1(ApplicationService::path);
    const QString name = QString::fromLatin1(ApplicationService::name);
    bus.registerObject(path, &service, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAdaptors);
    // Never queued behind the holder: either this copy is first or it hands over now.
    const auto reply = bus.interface()->registerService(name, QDBusConnectionInterface::DontQueueService,
                                                       QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) return Outcome::first;
    bus.unregisterObject(path);
    if (sideBySide) {
        Log::note("another copy holds the name; running side by side");
        return Outcome::alone;
    }
    QVariantMap platformData;
    for (const char* var : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        const QByteArray token = qgetenv(var);
        if (!token.isEmpty())
            platformData.insert(QString::fromLatin1(var[0] == 'X' ? "activation-token" : "desktop-startup-id"), QString::fromUtf8(token));
    }
    QDBusMessage call = QDBusMessage::createMethodCall(name, path, QStringLiteral("org.freedesktop.Application"),
                                                       action.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("ActivateAction"));
    if (!action.isEmpty()) call << action << QVariantList();
    call << platformData;
    // A first copy that hangs must not keep this one: the call gives up after two seconds.
    const QDBusMessage answer = BusReply::await(bus, call, 2000);
    Log::note(answer.type() == QDBusMessage::ErrorMessage ? "the first copy did not answer: " + answer.errorMessage().toStdString()
                                                          : std::string("handed over to the first copy"));
    return Outcome::handedOver;
}

} // namespace SingleCopy

#include "ApplicationService.moc"
