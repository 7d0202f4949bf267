#pragma once
// Per-process facts read only for the few candidates of a leftover sweep, from a /proc folder.
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ProcPorts {

// Local TCP ports (IPv4 and IPv6) on which the process listens, ascending, each once: the
// listening rows of its network namespace's tables, matched by socket inode to its open files.
[[nodiscard]] std::vector<int> listening(const std::string& procRoot, int32_t pid);

// The working folder; absent when unreadable or empty. A folder removed since reads as its old path.
[[nodiscard]] std::optional<std::string> cwd(const std::string& procRoot, int32_t pid);

// The processes of `uid` that run in a managed service of the user's service manager.
[[nodiscard]] std::set<int32_t> managedServices(const std::string& procRoot, uint32_t uid);

} // namespace ProcPorts
