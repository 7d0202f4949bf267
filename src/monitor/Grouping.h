#pragma once
// Folds the flat process table of a snapshot into one row per app, helpers included, and
// works out how many processor cores each row used between two snapshots.
#include "monitor/AppUsage.h"
#include "platform/AppBundles.h"
#include "platform/Layout.h"
#include "platform/RunningApp.h"
#include "platform/Snapshot.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

using GroupKeys = std::map<int32_t, std::string>;

namespace Grouping {

// The group key of every process of the snapshot. Each process is attributed, in this order,
// by its own running-app entry, by its own app (its unit or its bundle), by the process held
// responsible for it, and by its parent chain, at most 40 steps deep. What nothing claims goes
// to the system's row when its program is the system's, else to a row of its own name.
[[nodiscard]] GroupKeys keys(const Snapshot& snapshot, const RunningApps& apps,
                             const MonitorTables& tables = Layout::host().monitor);

// The rows, in no defined order. With a `previous` snapshot more than 0.2 seconds older, each
// row carries its load in cores; processes in `skip` are in no row.
[[nodiscard]] std::vector<AppUsage> usage(const Snapshot& snapshot, const Snapshot* previous, const RunningApps& apps,
                                          const GroupKeys& keys, const std::set<int32_t>& skip,
                                          const MonitorTables& tables = Layout::host().monitor,
                                          const AppBundles& bundles = AppBundles::system());

// Percent of the whole machine busy between two snapshots, 0...100; absent without a previous
// reading or when the counters did not move forward.
[[nodiscard]] std::optional<double> machineBusy(const Snapshot& snapshot, const Snapshot* previous);

// The outermost bundle an executable lies in, where bundles are folders ending in `suffix`.
[[nodiscard]] std::optional<std::string> bundle(const std::string& exe, const std::string& suffix);

// The name and id of the app at an entry path, read once and then served from a cache.
[[nodiscard]] std::string displayName(const std::string& bundlePath, const AppBundles& bundles = AppBundles::system());
[[nodiscard]] std::optional<std::string> bundleIdentifier(const std::string& bundlePath,
                                                          const AppBundles& bundles = AppBundles::system());

} // namespace Grouping
