#pragma once
// Three sightings of the same projects made into one list of cards: build folders the cleaning
// scan found, processes working inside a repository, and development processes left running
// after their session. Workspaces of several apps fold into one card, and so do old projects.
#include "foundation/CleanItem.h"
#include "foundation/Time.h"
#include "monitor/Leftover.h"
#include "platform/AppBundles.h"
#include "platform/Layout.h"
#include "platform/Probe.h"
#include "platform/Snapshot.h"
#include "projects/ProjectCard.h"
#include "projects/ProjectGroups.h"
#include "projects/ProjectRoots.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Projects {

// A process working somewhere in the home folder.
struct ProcFacts {
    std::string cwd;
    ProcRecord record;
};

// The cards, running projects first, then those with leftovers, the rest, and last the folded
// old ones. Reads the working folder, arguments and ports of the snapshot's processes; slow
// enough to belong off the main thread.
[[nodiscard]] std::vector<ProjectCard> build(const std::vector<CleanItem>& items, const Snapshot& snap,
                                             const std::vector<Leftover>& leftovers, TimePoint now = Clock::now(),
                                             const ProbeSource& probe = ProbeSource::live(),
                                             const Layout& layout = Layout::host(),
                                             const AppBundles& bundles = AppBundles::system());

// The editor a program belongs to, by the first piece of the table its path holds.
[[nodiscard]] std::optional<std::string> editorName(const std::string& exe,
                                                    const ProjectTables& tables = Layout::host().projects);

// When a project last changed, read back from a build-folder item's note ("... · changed 3 days
// ago"): "today", "yesterday", "N days ago", "Mar 4" or "Mar 4, 2024". Absent without a date.
[[nodiscard]] std::optional<TimePoint> lastChange(std::string_view note, TimePoint now);

// What one shared install of the packages the apps of a workspace card have in common would
// save; absent when it would not save more than 300 MB, or when fewer than three apps of one
// kind share twenty packages. Walks every common package: seconds on a big workspace.
[[nodiscard]] std::optional<SharedPackages> sharedPackages(const ProjectCard& card);

} // namespace Projects
