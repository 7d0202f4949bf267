#pragma once
// The program's knowledge of one platform, as data: its places and the tables of each
// subsystem. Logic reads places and tables only from here, so tests can build either layout
// over a generated home folder.
#include "platform/Places.h"
#include "platform/layout/ScanTables.h"
#include "platform/layout/MonitorTables.h"
#include "platform/layout/RemovalTables.h"
#include "platform/layout/StorageTables.h"
#include "platform/layout/ActionTables.h"
#include "platform/layout/ProjectTables.h"

#include <functional>
#include <optional>
#include <string>

struct Layout : Places {
    ScanTables scan;         // cleaning sources: caches, tools, developer data, big items
    RemovalTables removal;   // what the remover refuses
    MonitorTables monitor;   // runtimes and tool places of the live monitor
    StorageTables storage;   // storage units and growth places
    ActionTables actions;    // quitting, relaunching and restarting
    ProjectTables projects;  // editors and places of the projects view

    // Reads an environment variable; empty function means "no variables set".
    using Env = std::function<std::optional<std::string>(const char*)>;

    // Linux places for `home`. With `env`, the XDG variables are honoured (relative values are
    // ignored) and user-dirs.dirs is read; without it the defaults below `home` stand.
    [[nodiscard]] static Layout linux(const std::string& home, const Env& env = {});
    [[nodiscard]] static Layout macos(const std::string& home);
    // The layout of the machine this runs on, for the real home folder and environment.
    [[nodiscard]] static const Layout& host();
    [[nodiscard]] static Env processEnv();
};
