#pragma once
// Signals to the user's processes, and the facts read before each: when a process started and
// what program it runs. Actions reach processes only through this, so tests can stand in a
// table of made-up processes and see every signal that would have gone out.
#include "foundation/Time.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class ProcessControl {
public:
    // A hold on one process: signals sent through it reach that process or none, even once its
    // pid has been given to another (a pidfd, where the kernel has them).
    class Hold {
    public:
        virtual ~Hold() = default;
        // False when the process has gone or refused the signal.
        [[nodiscard]] virtual bool signal(int number) = 0;
    };

    virtual ~ProcessControl() = default;
    // When the process now at `pid` started; absent when none of the user's own is there.
    [[nodiscard]] virtual std::optional<TimePoint> startTime(int32_t pid) const = 0;
    // A hold on the process now at `pid`; absent when there is none.
    [[nodiscard]] virtual std::unique_ptr<Hold> hold(int32_t pid) const = 0;
    // The program the process runs; empty when unreadable.
    [[nodiscard]] virtual std::string path(int32_t pid) const = 0;

    // This machine.
    [[nodiscard]] static const ProcessControl& live();
};
