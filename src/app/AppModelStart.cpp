// Start-up, the timers that keep the model alive, the window and what reaches the user through
// a notification: the low-space warning and the evening restart reminder.
#include "app/AppModel.h"

#include "app/LoginItem.h"
#include "app/Notifications.h"
#include "foundation/Fmt.h"
#include "foundation/Log.h"
#include "history/History.h"

#include <ctime>

void AppModel::start(bool background) {
    if (started) return;
    started = true;
    refreshDisk();
    monitor_->start();
    emit monitorIntervalChanged();
    // The disk timer lives as long as the model.
    diskTimer = setup.clock->every(30, this, [this] { refreshDisk(); });
    double growthDelay = 20;
    if (background) {
        // Launched at login: stay in the tray and scan later, and only when stale.
        after(120, [this] { scanIfStale(600); });
        growthDelay = 600;
    } else {
        wantsWindowAtLaunch_ = true;
        if (openWindowAction) showWindow(std::nullopt);
        scan();
    }
    after(growthDelay, [this] { refreshGrowthIfStale(43200); });
    // A reminder set in an earlier run that still lies ahead goes to the notifier again, which
    // delivers it at its time.
    const auto& reminder = history_->data.restartReminder;
    if (reminder && *reminder > now() && setup.notifier) {
        const int days = static_cast<int>(std::max(0.0, secondsBetween(monitor_->vitals.boot, now())) / 86400);
        setup.notifier->post(Notifications::restartReminder(*reminder, monitor_->vitals.swapUsed, days));
    }
}

void AppModel::setLive(const QString& view, bool on) {
    monitor_->setLive(view.toStdString(), on);
    emit monitorIntervalChanged();
}

double AppModel::monitorInterval() const { return monitorHost.interval().value_or(60); }

void AppModel::showWindow(std::optional<Tab> tab) {
    Log::note(std::string("show window, can open: ") + (openWindowAction ? "true" : "false"));
    wantsWindowAtLaunch_ = false;
    if (tab) go(*tab);
    if (openWindowAction) openWindowAction();
}

void AppModel::showWindow(int tab) { showWindow(Tabs::fromRaw(tab)); }

void AppModel::openSettings() {
    showWindow(std::nullopt);
    setSettingsOpen(true);
}

void AppModel::setLoginItem(bool on) {
    LoginItem::set(setup.loginItemFile, on, setup.executable);
    put(loginItemOn_, LoginItem::isEnabled(setup.loginItemFile), &AppModel::loginItemOnChanged);
}

void AppModel::menuBarReady(std::function<void()> open) {
    Log::note(std::string("menu bar ready, wants window: ") + (wantsWindowAtLaunch_ ? "true" : "false"));
    openWindowAction = std::move(open);
    // Whichever of the start and the tray comes second opens the window.
    if (wantsWindowAtLaunch_) showWindow(std::nullopt);
}

void AppModel::lowSpace() {
    auto post = [this] {
        if (setup.notifier) setup.notifier->post(Notifications::lowSpace(disk_, total(Tier::safe) + total(Tier::rebuildable)));
    };
    // A fresh scan lets the notification name what can be cleared.
    if (lastScan_ && secondsBetween(*lastScan_, now()) < 600) post();
    else scan(post);
}

void AppModel::remindRestart() {
    setRestartSheet(false);
    const TimePoint at = now();
    TimePoint target = at;
    const std::time_t t = Clock::to_time_t(at);
    std::tm local{};
    if (localtime_r(&t, &local)) {
        local.tm_hour = 22;
        local.tm_min = 0;
        local.tm_sec = 0;
        local.tm_isdst = -1;
        const std::time_t evening = std::mktime(&local);
        if (evening != static_cast<std::time_t>(-1)) target = Clock::from_time_t(evening);
    }
    // After 21:50 the reminder comes two hours from now.
    if (target < addSeconds(at, 600)) target = addSeconds(at, 7200);
    history_->setRestartReminder(target);
    const int days = static_cast<int>(std::max(0.0, secondsBetween(monitor_->vitals.boot, at)) / 86400);
    if (setup.notifier) setup.notifier->post(Notifications::restartReminder(target, monitor_->vitals.swapUsed, days));
    refreshRecs();
    say("Sorrelin reminds you at " + Fmt::clock(target, at) + ".", Toast::Kind::info);
}
