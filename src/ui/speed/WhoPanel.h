#pragma once
// Who uses the machine: the seven apps that weigh most by the chosen measure, the leftovers, and
// a last row for everything the others don't explain.
#include "foundation/Time.h"
#include "monitor/AppUsage.h"
#include "monitor/Leftover.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace WhoPanel {

struct Row {
    std::string id;
    std::string name;
    std::string sub;
    std::string symbol;
    std::string tint; // a palette name
    std::optional<std::string> appPath;
    double value = 0; // the length of the bar: percent of the machine, or bytes
    std::string label;
    friend bool operator==(const Row&, const Row&) = default;
};

struct Input {
    const std::vector<AppUsage>* apps = nullptr;
    const std::vector<Leftover>* leftovers = nullptr;
    bool memoryMode = false;
    std::optional<double> cpu; // the machine's busy percent
    int64_t memoryCounted = 0;
    int cores = 1;
    std::string claudeId;  // the bundle id of the Claude app; empty where there is none
    std::string systemKey; // the group key of the system's own services
    TimePoint now{};
};

inline constexpr std::size_t shown = 7;

[[nodiscard]] std::vector<Row> rows(const Input& in);

// An app's colour in the panel and in the processor bar: slate for the system's own services.
[[nodiscard]] std::string tint(const AppUsage& app, const std::string& systemKey);

// An app's share of the whole machine in percent: its load in cores over all cores.
[[nodiscard]] double share(double cores, int allCores);

} // namespace WhoPanel
