#pragma once
// Whether sibling repositories form one workspace.
#include <optional>
#include <string>
#include <vector>

namespace Projects {

// The workspace name of `parent` (its folder name) when `roots`, repositories directly inside
// it, are apps of one workspace: it holds a workspace marker, or every root is named after it.
// Never for a folder directly in the home folder, however many repositories it holds.
[[nodiscard]] std::optional<std::string> groupName(const std::string& parent, const std::vector<std::string>& roots);
[[nodiscard]] std::optional<std::string> groupName(const std::string& parent, const std::vector<std::string>& roots,
                                                   const std::string& home);

} // namespace Projects
