#pragma once
// Whether the machine has been in trouble long enough to interrupt the user. A notification
// comes to the person, so the bar is far higher than for advice: ten closed minutes of
// trouble, and the same thing at most once in 20 hours. Decided once a minute, on the
// monitor's thread, when a minute closes.
#include "monitor/AppUsage.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class History;
class Monitor;

namespace Alerts {

// One alert as the user reads it, with what its answer needs.
struct Alert {
    std::string title;
    std::string body;
    std::string id;       // a later alert with this id replaces the earlier one
    std::string category; // "slow1", "slow2" or "memory": which buttons it carries
    std::vector<std::string> apps; // the group keys a "quit" answer acts on
    friend bool operator==(const Alert&, const Alert&) = default;
};

// Carries an alert to the user. Posting cannot fail from the caller's side.
class Poster {
public:
    virtual ~Poster() = default;
    virtual void post(const Alert& alert) = 0;
};

// The slowdown alert for one or two apps (any more are left unnamed). `cores` is the number
// of processors the share of the closing sentence is taken of.
[[nodiscard]] Alert slow(const std::vector<AppUsage>& apps, const Monitor& monitor, int cores);
// The memory alert, naming the biggest app when it holds a gigabyte or more.
[[nodiscard]] Alert memory(const std::optional<AppUsage>& biggest, int64_t swap);

// The decision of one closed minute: at most one alert, marked in the history so that it is
// not repeated within 20 hours, across restarts of the program too. Nothing while screens are
// rendered to pictures.
void evaluate(const Monitor& monitor, History& history, Poster& poster, TimePoint now, int cores);

} // namespace Alerts
