#pragma once
// A code project as the Projects view shows it: what runs in it, what that holds in memory,
// what its build folders weigh and what of them can go now. Sibling apps of one workspace share
// one card, and so do projects nobody has touched for a month.
#include "foundation/Time.h"
#include "monitor/Leftover.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// One app of a workspace, or one project folded into "Older projects".
struct ProjectApp {
    std::string id;   // the root path
    std::string name;
    int64_t build = 0; // bytes of its build folders
    bool running = false;
    std::optional<std::string> itemID; // the clean item that can be freed now
    friend bool operator==(const ProjectApp&, const ProjectApp&) = default;
};

struct ProjectCard {
    std::string id;   // the folder's path; "older" for the folded card
    std::string name; // the workspace's or folder's name; "Older projects" for the folded card
    std::string path; // the folder with the home folder as "~"; on the folded card the names
    std::vector<ProjectApp> apps; // empty for a card of one project
    int claude = 0;               // Claude sessions
    int mcp = 0;                  // MCP servers
    std::vector<int> ports;       // listening ports above 1023, ascending
    std::vector<std::string> editors; // names of editors with a process here, sorted
    std::vector<Leftover> leftovers;
    int64_t memory = 0;    // memory of the processes here
    int64_t build = 0;     // bytes of build folders
    int64_t idleBuild = 0; // the part of `build` that can be freed now
    std::vector<std::string> idleItemIDs; // the clean items behind `idleBuild`
    bool running = false;  // a process works here
    std::optional<TimePoint> lastChange;
    bool isOlder = false;
    bool recentlyChanged = false; // a build folder was left unticked because the project is in use
};

// What one shared install of a workspace's common packages would save.
struct SharedPackages {
    std::string group;  // the card's name
    int apps = 0;       // how many apps share them
    int packages = 0;   // how many packages they have in common
    int64_t today = 0;  // what those copies take now
    int64_t shared = 0; // what a single copy would take
    friend bool operator==(const SharedPackages&, const SharedPackages&) = default;
};
