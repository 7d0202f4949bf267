#pragma once
// The one source of time of the application layer: the present moment, one-shot jobs and
// repeating ones. Every timer of the model goes through it, so that tests move time by hand
// instead of waiting it out.
#include "foundation/Time.h"

#include <QObject>

#include <cstdint>
#include <functional>

class AppClock {
public:
    using Id = uint64_t;

    virtual ~AppClock() = default;

    [[nodiscard]] virtual TimePoint now() const = 0;
    // Runs `job` on the main thread once, `seconds` from now. Dropped when `context` is
    // destroyed first, like a Qt connection.
    virtual Id after(double seconds, QObject* context, std::function<void()> job) = 0;
    // Runs `job` every `seconds` until cancelled or until `context` goes.
    virtual Id every(double seconds, QObject* context, std::function<void()> job) = 0;
    // Forgets a job; an id that already ran or was cancelled is ignored.
    virtual void cancel(Id id) = 0;
};
