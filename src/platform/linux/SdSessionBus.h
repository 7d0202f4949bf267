#pragma once
// The session bus through sd-bus: typed calls, each with its own time limit, auto-start off.
//
// An sd-bus connection may be used by one thread at a time. Calls come from the monitor, from
// the actions' own threads and from the self-checks, and one of them may wait seconds for a
// restart dialog; so rather than one connection behind a lock, which would make every caller
// wait out the slowest, a caller takes a connection for the length of its call: the idle one
// when there is one, else a new one. A connection that is still open goes back for the next
// call; one that the bus closed is dropped, and the next call connects anew.
#include "platform/SessionBus.h"

#include <mutex>
#include <vector>

struct sd_bus;

class SdSessionBus final : public SessionBus {
public:
    SdSessionBus() = default;
    ~SdSessionBus() override;
    SdSessionBus(const SdSessionBus&) = delete;
    SdSessionBus& operator=(const SdSessionBus&) = delete;

    [[nodiscard]] Reply call(const BusCall& call, double timeout) const override;

    // How many connections have been made so far.
    [[nodiscard]] int connections() const;

private:
    mutable std::mutex mutex;
    mutable std::vector<sd_bus*> idle;
    mutable int made = 0;
};
