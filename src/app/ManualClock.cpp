#include "app/ManualClock.h"

#include <algorithm>

AppClock::Id ManualClock::after(double seconds, QObject* context, std::function<void()> job) {
    const Id id = next++;
    jobs[id] = Job{addSeconds(current, std::max(0.0, seconds)), 0, context, context != nullptr, std::move(job)};
    return id;
}

AppClock::Id ManualClock::every(double seconds, QObject* context, std::function<void()> job) {
    const Id id = next++;
    const double interval = std::max(0.001, seconds);
    jobs[id] = Job{addSeconds(current, interval), interval, context, context != nullptr, std::move(job)};
    return id;
}

void ManualClock::cancel(Id id) { jobs.erase(id); }

void ManualClock::advance(double seconds) {
    const TimePoint end = addSeconds(current, std::max(0.0, seconds));
    for (;;) {
        std::erase_if(jobs, [](const auto& entry) { return entry.second.bound && entry.second.context.isNull(); });
        // The earliest due job; among equals the one made first.
        auto due = jobs.end();
        for (auto it = jobs.begin(); it != jobs.end(); ++it)
            if (it->second.due <= end && (due == jobs.end() || it->second.due < due->second.due)) due = it;
        if (due == jobs.end()) break;
        current = due->second.due;
        std::function<void()> run = due->second.run;
        if (due->second.interval > 0) due->second.due = addSeconds(current, due->second.interval);
        else jobs.erase(due);
        run();
    }
    current = end;
}

std::optional<double> ManualClock::nextDue() const {
    std::optional<double> soonest;
    for (const auto& [id, job] : jobs) {
        if (job.bound && job.context.isNull()) continue;
        const double s = secondsBetween(current, job.due);
        if (!soonest || s < *soonest) soonest = s;
    }
    return soonest;
}

std::size_t ManualClock::pending() const {
    return static_cast<std::size_t>(std::count_if(jobs.begin(), jobs.end(), [](const auto& e) { return !e.second.bound || !e.second.context.isNull(); }));
}
