#pragma once
// One piece of advice, complete with every word a screen may show for it and the action that
// carries it out, so that no view composes advice of its own.
#include "foundation/Tab.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Why a piece of advice stands where it stands.
enum class RecReason { slow, memory, disk, wait, snoozed };

namespace RecReasons {

inline constexpr std::array<RecReason, 5> allCases{RecReason::slow, RecReason::memory, RecReason::disk,
                                                   RecReason::wait, RecReason::snoozed};

// A colour of the palette (a name, or "#RRGGBB") laid on at some opacity.
struct Fill {
    std::string_view colour;
    double opacity = 1;
    friend bool operator==(const Fill&, const Fill&) = default;
};

// The small chip on a row.
[[nodiscard]] std::string_view label(RecReason r);
[[nodiscard]] std::string_view symbol(RecReason r);
// The chip's text colour (a palette name) and its background.
[[nodiscard]] std::string_view fg(RecReason r);
[[nodiscard]] Fill bg(RecReason r);

} // namespace RecReasons

// What a piece of advice gives back, for the effect bar.
struct RecImpact {
    enum class Kind { cpu, memory, disk, swap };
    Kind kind = Kind::swap;
    std::string key;   // cpu, memory: the app's group key, or "leftovers"
    int64_t bytes = 0; // disk: the bytes given back

    [[nodiscard]] static RecImpact cpu(std::string key) { return {Kind::cpu, std::move(key), 0}; }
    [[nodiscard]] static RecImpact memory(std::string key) { return {Kind::memory, std::move(key), 0}; }
    [[nodiscard]] static RecImpact disk(int64_t bytes) { return {Kind::disk, {}, bytes}; }
    [[nodiscard]] static RecImpact swap() { return {Kind::swap, {}, 0}; }
    friend bool operator==(const RecImpact&, const RecImpact&) = default;
};

// What happens when the user acts on a piece of advice.
struct RecAction {
    enum class Kind { quit, relaunch, freeItems, open, stopLeftovers, restart, clearCaches };
    Kind kind = Kind::restart;
    std::string key;                  // quit, relaunch: the app's group key
    std::vector<std::string> itemIDs; // freeItems: exactly the clean items to clear
    Tab tab = Tab::home;              // open: the tab the window opens on

    [[nodiscard]] static RecAction quit(std::string key) { return {Kind::quit, std::move(key), {}, Tab::home}; }
    [[nodiscard]] static RecAction relaunch(std::string key) { return {Kind::relaunch, std::move(key), {}, Tab::home}; }
    [[nodiscard]] static RecAction freeItems(std::vector<std::string> ids) {
        return {Kind::freeItems, {}, std::move(ids), Tab::home};
    }
    [[nodiscard]] static RecAction open(Tab tab) { return {Kind::open, {}, {}, tab}; }
    [[nodiscard]] static RecAction stopLeftovers() { return {Kind::stopLeftovers, {}, {}, Tab::home}; }
    [[nodiscard]] static RecAction restart() { return {Kind::restart, {}, {}, Tab::home}; }
    [[nodiscard]] static RecAction clearCaches() { return {Kind::clearCaches, {}, {}, Tab::home}; }
    friend bool operator==(const RecAction&, const RecAction&) = default;
};

// Where a piece of advice stands while it is carried out.
enum class RecState { queued, busy, done };

struct Rec {
    std::string id; // "quit:" or "relaunch:" and a group key, or "space", "caches", "leftovers", "restart", "idle-projects"
    bool now = false; // worth doing now; false: it can wait
    RecReason reason = RecReason::wait;
    std::string title;
    std::string why;
    std::string effect;
    std::string tip;
    std::string actionLabel;
    std::string shortLabel;
    std::string busyLabel; // may be empty, never absent
    std::string doneLabel;
    std::string doneChip;
    bool safe = false; // acting can't lose anything
    std::optional<std::string> caveat;
    bool arm = false; // acting needs a second press
    std::string symbol;
    std::string tint; // a palette name
    std::optional<std::string> appPath;
    RecImpact impact;
    double cpuShare = 0; // quit: percent of the whole processor the app takes, at least 1
    int64_t memory = 0;
    RecAction action;

    friend bool operator==(const Rec&, const Rec&) = default;
};
