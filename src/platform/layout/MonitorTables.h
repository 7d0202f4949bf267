#pragma once
// Tables of the live monitor: what makes a process a runtime, how processes fold into app
// rows, which apps are never offered for quitting, and which browsers the advice knows.
#include "platform/Places.h"

#include <map>
#include <set>
#include <string>
#include <vector>

struct MonitorTables {
    // Leftovers: process names of language runtimes and dev tools, name prefixes of versioned
    // interpreters, and the folders where the user's own tool managers keep their programs.
    std::set<std::string, std::less<>> runtimes;
    std::vector<std::string> runtimeNamePrefixes;
    std::vector<std::string> runtimePaths;

    // Grouping: a path piece that marks an app bundle inside an executable's path (".app"
    // on macOS, where the bundle is a folder; empty where apps are desktop entries).
    std::string bundleSuffix;
    // Programs below these folders belong to the system (less the exceptions); the row that
    // gathers them, when no app claims them, is "proc:" and the label.
    std::vector<std::string> systemPrefixes;
    std::vector<std::string> systemExceptions;
    std::string systemLabel;
    // The system settings app and the path pieces of its out-of-process helpers.
    std::string settingsPath;
    std::vector<std::string> settingsHelpers;
    // The desktop Claude app keeps a runtime bundle of its own in its support folder.
    std::string claudeId;
    std::string claudePath;
    std::string claudeSupportPiece;
    // App id to the name shown; beats whatever the app calls itself.
    std::map<std::string, std::string, std::less<>> friendly;

    // Monitor: apps never offered for quitting (work goes on in them, or they are the
    // system's own), id prefixes likewise, entry folders of the system's own apps, and apps
    // that hold no open work.
    std::set<std::string, std::less<>> kept;
    std::vector<std::string> keptPrefixes;
    std::vector<std::string> systemBundlePrefixes;
    std::set<std::string, std::less<>> nothingToSave;

    // Browsers that update beside the running copy and finish on restart, with the argument
    // that makes the program on disk print its version.
    std::map<std::string, std::string, std::less<>> browsers;

    [[nodiscard]] static MonitorTables forLinux(const Places& places);
    [[nodiscard]] static MonitorTables forMacos(const Places& places);
};
