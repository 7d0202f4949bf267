#include "projects/ProjectGroups.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

namespace Projects {

namespace {
constexpr const char* workspaceMarkers[] = {"pnpm-workspace.yaml", "turbo.json", "lerna.json", "nx.json"};
}

std::optional<std::string> groupName(const std::string& parent, const std::vector<std::string>& roots) {
    return groupName(parent, roots, FS::home());
}

std::optional<std::string> groupName(const std::string& parent, const std::vector<std::string>& roots,
                                     const std::string& home) {
    if (roots.size() < 2) return std::nullopt;
    if (!parent.starts_with(home + "/")) return std::nullopt;
    // "~/Documents" or "~/Projects" is never a workspace, however many repositories it holds.
    if (FS::parent(parent) == home) return std::nullopt;
    std::string name = FS::lastComponent(parent);
    for (const char* marker : workspaceMarkers)
        if (FS::exists(parent + "/" + marker)) return name;
    std::string prefix = Text::lower(name);
    for (const auto& root : roots)
        if (!Text::lower(FS::lastComponent(root)).starts_with(prefix)) return std::nullopt;
    return name;
}

} // namespace Projects
