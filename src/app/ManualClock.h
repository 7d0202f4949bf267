#pragma once
// A clock that moves only when told: tests and still pictures of the screens. Jobs run in the
// order of their due time, each seeing `now` at that time.
#include "app/AppClock.h"

#include <QPointer>

#include <map>
#include <optional>

class ManualClock final : public AppClock {
public:
    explicit ManualClock(TimePoint start = Clock::now()) : current(start) {}

    [[nodiscard]] TimePoint now() const override { return current; }
    Id after(double seconds, QObject* context, std::function<void()> job) override;
    Id every(double seconds, QObject* context, std::function<void()> job) override;
    void cancel(Id id) override;

    // Moves time on by `seconds`, running every job that falls due on the way, including jobs
    // scheduled by those jobs.
    void advance(double seconds);
    // Sets the time without running anything: a clock changed by the user.
    void set(TimePoint t) { current = t; }
    // Seconds until the next job, if one is waiting.
    [[nodiscard]] std::optional<double> nextDue() const;
    [[nodiscard]] std::size_t pending() const;

private:
    struct Job {
        TimePoint due;
        double interval = 0; // above 0 for a repeating job
        QPointer<QObject> context;
        bool bound = false; // made with a context, so it ends with it
        std::function<void()> run;
    };
    TimePoint current;
    Id next = 1;
    std::map<Id, Job> jobs;
};
