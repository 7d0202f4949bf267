#pragma once
// Pure rules of the build-folder source: which project a build folder belongs to, how a row
// names what it holds, and who is said to work in a project.
#include "platform/layout/ScanTables.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace BuildFolders {

// A deploy tool's output folder, found inside its own hidden folder.
inline constexpr std::string_view deployDir = ".vercel";
inline constexpr std::string_view deployOutput = "output";

// The project a build folder belongs to: the nearest folder with ".git" at most five steps up
// from its parent, never a folder directly in `home`; else the parent itself.
[[nodiscard]] std::string projectRoot(const std::string& dir, const std::string& home);
// The folder's name as a row shows it: ".vercel/output" for a deploy output, else its last component.
[[nodiscard]] std::string label(const std::string& dir);
// "node_modules ×3 + .next": node_modules first, the others ascending, repeats counted.
[[nodiscard]] std::string joinLabels(const std::vector<std::string>& dirs);
// The word for one process in "In use by {word}".
[[nodiscard]] std::string word(const std::string& processName, const std::vector<ScanTables::BusyWord>& rules);
// The word that names a project's workers: the first of `order` among them, else the first
// in ascending order, else "a program".
[[nodiscard]] std::string busyWord(const std::set<std::string>& words, const std::vector<std::string>& order);

} // namespace BuildFolders
