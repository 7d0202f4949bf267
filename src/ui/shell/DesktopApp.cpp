#include "ui/shell/DesktopApp.h"

#include "app/AppModel.h"
#include "app/ApplicationService.h"
#include "app/DesktopNotifier.h"
#include "app/LoginItem.h"
#include "app/NotificationAnswer.h"
#include "app/Prefs.h"
#include "foundation/FS.h"
#include "foundation/Log.h"
#include "foundation/Support.h"
#include "ui/App.h"
#include "ui/UiEngine.h"
#include "ui/art/AppIcon.h"
#include "ui/shell/DesktopShell.h"
#include "ui/shell/EndSignals.h"
#include "ui/shell/WindowHost.h"

#include <QApplication>
#include <QDBusConnection>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace DesktopApp {

namespace {

bool set(const char* variable) {
    const char* v = std::getenv(variable);
    return v && *v;
}

// "loginItemOffered" belongs in the standard settings file, whichever store the rest uses.
SettingsStore& standardSettings() {
    if (!Support::testing()) return Support::defaults();
    static SettingsStore standard(Support::settingsFile(std::nullopt));
    return standard;
}

} // namespace

bool hasDisplay() { return set("DISPLAY") || set("WAYLAND_DISPLAY") || set("QT_QPA_PLATFORM"); }

int run(int argc, char** argv) {
    bool background = false;
    QString action;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--background") == 0) background = true;
        if (std::strcmp(argv[i], "--action") == 0 && i + 1 < argc) action = QString::fromLocal8Bit(argv[i + 1]);
    }
    if (!hasDisplay()) {
        std::fprintf(stderr, "Sorrelin needs a desktop session (neither DISPLAY nor WAYLAND_DISPLAY is set); "
                             "for the cleaning report run: sorrelin --scan\n");
        return 1;
    }
    UiEngine::configureProcess(false);
    QApplication app(argc, argv);
    // Closing the window returns the program to the tray; it ends only when asked.
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationName(QStringLiteral("Sorrelin"));
    QApplication::setDesktopFileName(QStringLiteral("app.sorrelin.Sorrelin"));

    // One copy per session, decided before the model, the history or any file is touched.
    DesktopShell* shell = nullptr;
    ApplicationService::Handlers handlers;
    handlers.show = [&shell](std::optional<Tab> tab, const QString& token) {
        if (shell) shell->show(tab, token);
    };
    handlers.scan = [] { AppModel::shared().scan(); };
    handlers.cleanSafe = [] { AppModel::shared().cleanSafeNow(QStringLiteral("menu")); };
    handlers.quit = [] { QCoreApplication::quit(); };
    handlers.tab = [] { return AppModel::shared().tab(); };
    handlers.windowShown = [&shell] { return shell && shell->windowShown(); };
    ApplicationService service(std::move(handlers));
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (SingleCopy::claim(bus, service, Support::testing(), action) == SingleCopy::Outcome::handedOver) return 0;

    EndSignals::quitOn(app);
    QApplication::setWindowIcon(AppIcon::icon());
    AppModel& model = AppModel::shared();
    Prefs& prefs = Prefs::shared();
    App::use(&model, &prefs);

    DesktopNotifier notifier(model.clock(), bus);
    model.attachNotifier(&notifier);
    QObject::connect(&notifier, &DesktopNotifier::answered, &app,
                     [&shell, &model](const QString& action, const QString& category, const QVariantMap& info, const QString& token) {
                         const NotificationAnswer answer = NotificationAnswer::route(action, category, info);
                         if (answer.kind == NotificationAnswer::Kind::show && shell) shell->show(answer.tab, token);
                         else answer.apply(model);
                     });

    DesktopShell desktop(model, prefs);
    shell = &desktop;
    QObject::connect(&desktop, &DesktopShell::quitRequested, &app, &QCoreApplication::quit, Qt::QueuedConnection);
    QObject::connect(&desktop.mainWindow(), &WindowHost::firstFrame, &app, [] { Log::note("window first frame"); });

    // The first start of an installed copy opens the program at login from then on, once.
    const std::string executable = FS::readLink("/proc/self/exe").value_or("");
    if (LoginItem::shouldOffer(standardSettings(), executable, FS::home())) model.setLoginItem(true);

    desktop.startTray();
    Log::note(std::string("launched, background: ") + (background ? "true" : "false") + ", policy: 1");
    model.start(background);
    // An action asked of the first copy on its own command line runs once it is up.
    if (!action.isEmpty()) service.ActivateAction(action, {}, {});
    const int status = QApplication::exec();
    shell = nullptr;
    model.attachNotifier(nullptr);
    return status;
}

} // namespace DesktopApp
