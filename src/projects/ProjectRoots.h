#pragma once
// Where a project begins: the nearest folder above a path that holds a git repository.
#include "foundation/FS.h"

#include <optional>
#include <string>

namespace Projects {

// Walks up from `path`, at most 10 steps, for a folder holding ".git"; stops with nothing once
// the path leaves the home folder.
[[nodiscard]] std::optional<std::string> gitRoot(const std::string& path, const std::string& home = FS::home());
// The name of the project at `path`: the git root's last component, else the path's own.
[[nodiscard]] std::string rootName(const std::string& path, const std::string& home = FS::home());

} // namespace Projects
