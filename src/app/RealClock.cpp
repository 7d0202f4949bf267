#include "app/RealClock.h"

#include <cmath>

TimePoint RealClock::now() const { return Clock::now(); }

AppClock::Id RealClock::after(double seconds, QObject* context, std::function<void()> job) {
    return start(seconds, false, context, std::move(job));
}

AppClock::Id RealClock::every(double seconds, QObject* context, std::function<void()> job) {
    return start(seconds, true, context, std::move(job));
}

AppClock::Id RealClock::start(double seconds, bool repeat, QObject* context, std::function<void()> job) {
    // Finished timers are swept here rather than tracked one by one.
    std::erase_if(timers, [](const auto& entry) { return entry.second.isNull(); });
    const Id id = next++;
    auto* timer = new QTimer(context);
    timer->setSingleShot(!repeat);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setInterval(static_cast<int>(std::lround(std::max(0.0, seconds) * 1000)));
    QObject::connect(timer, &QTimer::timeout, timer, [timer, repeat, job = std::move(job)] {
        if (!repeat) timer->deleteLater();
        job();
    });
    timer->start();
    timers[id] = timer;
    return id;
}

void RealClock::cancel(Id id) {
    auto it = timers.find(id);
    if (it == timers.end()) return;
    if (QTimer* timer = it->second.data()) {
        timer->stop();
        timer->deleteLater();
    }
    timers.erase(it);
}
