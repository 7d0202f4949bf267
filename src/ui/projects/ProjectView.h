#pragma once
// What a project card says and offers: its status line, chips, bars and the one action that
// fits (stop what was left behind, free what is idle, or a lock while something runs); the
// summary chips over the cards and the shared-packages insight.
#include "foundation/Time.h"
#include "projects/ProjectCard.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ProjectView {

struct Chip {
    std::string text;
    std::string symbol;
    bool live = false;
    friend bool operator==(const Chip&, const Chip&) = default;
};

struct App {
    std::string name;
    std::string build;
    bool running = false;
    friend bool operator==(const App&, const App&) = default;
};

struct Card {
    std::string id;
    std::string name;
    std::string path;
    bool wide = false; // takes a whole row of the grid
    std::string tag;   // "Running", "Idle" or empty (leftovers)
    std::string tagSymbol;
    std::string status;
    std::string leftoverTag; // "1 leftover", "{n} leftovers", or empty
    std::vector<Chip> chips;
    std::string olderTip;
    std::string memory;
    double memoryFraction = 0;
    std::string build;
    double buildFraction = 0;
    std::vector<App> apps;
    // Actions.
    std::string stopLabel; // empty: no stop
    std::string stopTip;
    std::string freeLabel; // empty: nothing to free
    std::string freeTip;
    bool armed = false;
    bool locked = false;
    bool freed = false;
    friend bool operator==(const Card&, const Card&) = default;
};

struct Insight {
    std::string headline;
    std::string text;
    std::string today;
    std::string shared;
    double sharedFraction = 0;
    std::string steps;
    friend bool operator==(const Insight&, const Insight&) = default;
};

inline constexpr const char* armedLabel = "Click again to free";
inline constexpr const char* lockTip = "Sorrelin never deletes build folders while something runs in the project.";

// A card with three apps or more takes a whole row, unless it is the fold of older projects.
[[nodiscard]] bool isWide(const ProjectCard& card);
// The cards two to a row in list order; a wide card ends a pending pair, which stands alone.
[[nodiscard]] std::vector<std::vector<std::size_t>> rows(const std::vector<ProjectCard>& cards);

[[nodiscard]] std::string status(const ProjectCard& card, TimePoint now);
[[nodiscard]] std::vector<Chip> chips(const ProjectCard& card, TimePoint now);
// `maxMemory` and `maxBuild` are the largest over all cards, the scale of every bar.
[[nodiscard]] Card card(const ProjectCard& card, int64_t maxMemory, int64_t maxBuild, bool armed, bool freed, TimePoint now);

// The chips over the cards; `scanned` once a cleaning scan has finished.
[[nodiscard]] std::vector<Chip> summary(const std::vector<ProjectCard>& cards, bool scanned);

// `path` is the folder of the card the packages belong to.
[[nodiscard]] Insight insight(const SharedPackages& shared, const std::string& path);

} // namespace ProjectView
