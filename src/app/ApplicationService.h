#pragma once
// The program on the session bus: the name app.sorrelin.Sorrelin, the object
// /app/sorrelin/Sorrelin with org.freedesktop.Application (what the launcher, a second copy and
// the desktop's actions call) and app.sorrelin.Sorrelin.State (what the program shows, read
// by scripts and tests). Actions: show-tab (one parameter, a tab title in lower case), its
// parameterless form for the desktop entry's actions (show-storage), scan, clean-safe, quit.
// The calls are handed to whoever runs the program; a call that makes no sense gets an error
// reply and changes nothing.
#include "foundation/Tab.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <optional>

class ApplicationService : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    static constexpr const char* name = "app.sorrelin.Sorrelin";
    static constexpr const char* path = "/app/sorrelin/Sorrelin";

    struct Handlers {
        // Bring the window up, at a tab when one is given. `token` is the activation token of
        // the caller, if it sent one.
        std::function<void(std::optional<Tab> tab, const QString& token)> show;
        std::function<void()> scan;
        std::function<void()> cleanSafe;
        std::function<void()> quit;
        // For the State interface.
        std::function<Tab()> tab;
        std::function<bool()> windowShown;
    };

    explicit ApplicationService(Handlers handlers, QObject* parent = nullptr);

    // The tab an action parameter names ("storage"), in lower case as the titles read.
    [[nodiscard]] static std::optional<Tab> tabNamed(const QString& title);

    [[nodiscard]] QString tabTitle() const;
    [[nodiscard]] bool windowShown() const;

public slots:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& action, const QVariantList& parameter, const QVariantMap& platformData);

private:
    void refuse(const QString& message);
    Handlers handlers;
};

namespace SingleCopy {

enum class Outcome {
    first,      // this copy holds the name and serves the calls
    handedOver, // another copy holds it and was asked to show its window: end now, with 0
    alone,      // no bus, or side by side with another copy: run without the name
};

// Exports `service` and takes the name. When another copy holds it: with `sideBySide` (a
// scratch support folder, as tests use) this copy runs on alone; otherwise the other copy is
// asked, with this start's activation token, to show its window (Activate) or, when `action`
// is given (the desktop entry's actions run `sorrelin --action scan`), to do that action,
// and this copy is to end.
[[nodiscard]] Outcome claim(QDBusConnection bus, ApplicationService& service, bool sideBySide, const QString& action = {});

} // namespace SingleCopy
