#pragma once
// Finds leftovers: dev servers and watchers whose terminal or editor went away, adopted by
// init or the user's service manager, serving nothing and holding memory. The test is strict
// on purpose: whatever it names may be stopped, so a false positive would kill something the
// user needs.
#include "monitor/Leftover.h"
#include "platform/AppBundles.h"
#include "platform/Layout.h"
#include "platform/Probe.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace Leftovers {

// At most this many descendants join a leftover's root.
constexpr std::size_t maxDescendants = 200;

// A language runtime or dev tool, by its name or by where its program lives.
[[nodiscard]] bool isRuntime(const ProcRecord& record, const MonitorTables& tables = Layout::host().monitor);

// The leftovers of a snapshot, oldest first. `launchd` holds the processes of managed services.
[[nodiscard]] std::vector<Leftover> find(const Snapshot& snapshot, const RunningApps& apps,
                                         const std::set<int32_t>& launchd, double minAge = 3600,
                                         const ProbeSource& probe = ProbeSource::live(),
                                         const Layout& layout = Layout::host(),
                                         const AppBundles& bundles = AppBundles::system());

// A short name from a command line that begins with the program: the module of "-m", else the
// script's name (a package's name below node_modules) and its first short plain argument.
[[nodiscard]] std::string label(const std::vector<std::string>& args, const std::string& fallback);

} // namespace Leftovers
