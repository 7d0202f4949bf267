#pragma once
// The wall clock and Qt's timers.
#include "app/AppClock.h"

#include <QPointer>
#include <QTimer>

#include <map>

class RealClock final : public AppClock {
public:
    [[nodiscard]] TimePoint now() const override;
    Id after(double seconds, QObject* context, std::function<void()> job) override;
    Id every(double seconds, QObject* context, std::function<void()> job) override;
    void cancel(Id id) override;

private:
    Id start(double seconds, bool repeat, QObject* context, std::function<void()> job);

    Id next = 1;
    // Each timer is a child of its context, so it dies with it; the pointer then reads null.
    std::map<Id, QPointer<QTimer>> timers;
};
