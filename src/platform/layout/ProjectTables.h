#pragma once
// Tables of the projects view: which programs are editors, where in the home folder no project
// is looked for, and where the programs of installed apps live.
#include "platform/Places.h"

#include <string>
#include <vector>

struct ProjectTables {
    // An editor by a piece of its program's path, compared in lower case; the first match names it.
    struct Editor {
        std::string piece;
        std::string name;
    };
    std::vector<Editor> editors;
    // Folders below the home folder, as "Name/", where a repository is an app's data, not a project.
    std::vector<std::string> hiddenBelowHome;
    // Programs below these run inside an app's own bundle or sandbox: their ports are the app's.
    std::vector<std::string> appProgramPrefixes;

    [[nodiscard]] static ProjectTables forLinux(const Places& places);
    [[nodiscard]] static ProjectTables forMacos(const Places& places);
};
