#pragma once
// What the live monitor asks of the application: its timer and delayed samples on the app's
// clock, its sampling on a worker thread, and every callback back on the main thread.
#include "app/AppClock.h"
#include "app/Worker.h"
#include "monitor/Monitor.h"

#include <optional>

class MonitorHost final : public Monitor::Host {
public:
    MonitorHost(AppClock& clock, Worker& worker, QObject* context) : clock(clock), worker(worker), context(context) {}

    void repeat(double interval, double tolerance, std::function<void()> tick) override;
    void after(double seconds, std::function<void()> job) override;
    void work(std::function<void()> work, std::function<void()> done) override;

    // The interval of the repeating timer in force; absent before the monitor started.
    [[nodiscard]] std::optional<double> interval() const { return current; }

private:
    AppClock& clock;
    Worker& worker;
    QObject* context;
    std::optional<AppClock::Id> timer;
    std::optional<double> current;
};
