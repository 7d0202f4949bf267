#pragma once
// Carries the monitor's alerts to the desktop's notifications. Without a notifier they are
// dropped: the decision and its mark in the history stand all the same.
#include "app/Notifier.h"
#include "monitor/Alerts.h"

class AlertNotifier final : public Alerts::Poster {
public:
    explicit AlertNotifier(Notifier* notifier) : notifier(notifier) {}
    void post(const Alerts::Alert& alert) override;
    [[nodiscard]] static Notification notification(const Alerts::Alert& alert);

private:
    Notifier* notifier;
};
