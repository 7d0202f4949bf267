#pragma once
// The only code that destroys anything. Every path it is handed passes the same guards,
// whatever the scan said; items run one by one in a fixed order, and one item's failure never
// stops the next. Failures come back as sentences, never as exceptions.
#include "foundation/Beneath.h"
#include "foundation/CleanItem.h"
#include "foundation/DryRun.h"
#include "removal/RemovalResult.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct Layout;

namespace Remover {

// Everything the operations read besides their arguments. The process has one (`context()`),
// made from the host's layout and the environment; tests and the self-check pass their own.
struct Context {
    // Only paths strictly below one of these may be touched.
    std::vector<std::string> allowedRoots;
    // Paths relative to a root, beginning with "/", that are never cleared themselves.
    std::vector<std::string> protectedPaths;
    // The home folder that paths shown to a person are written relative to ("~/...").
    std::string home;
    // The user's own Trash folder; other mounts get theirs at their top.
    std::string trash;
    // Where the mounts are listed whose Trash folders an empty Trash clears too.
    std::string mountinfo = "/proc/self/mountinfo";
    DryRun::Mode dryRun;
    // The waits of a dry run; tests make them instant.
    std::function<void(double seconds)> pause = DryRun::pause;
    // Called with each path after its guards, right before it is reached from its root: tests
    // swap links in here to race an operation at a known point.
    std::function<void(const std::string& path)> onReach;
    // How paths are reached from their root; tests also run the walk that older kernels get.
    Beneath::Way way = Beneath::Way::best;

    // Roots start as the layout's home folder alone; the protected list is the layout's.
    [[nodiscard]] static Context forLayout(const Layout& layout, DryRun::Mode dryRun);
};

// The process's own context: the host layout and SORRELIN_DRYRUN, read once.
[[nodiscard]] Context& context();
// The roots of the process's context. Only a self-check replaces them.
[[nodiscard]] std::vector<std::string>& allowedRoots();

// True when `path` may be cleared: an absolute path strictly inside a root, at least two levels
// below it, not on the protected list, with no "." or ".." component, no empty component and
// no NUL byte. Tricks are refused, never normalised. This reads the text alone; every operation
// then reaches the path from its root one component at a time and refuses a path whose way
// runs through a symbolic link.
[[nodiscard]] bool isSafe(std::string_view path, const Context& context = Remover::context());
[[nodiscard]] bool isSafe(std::string_view path, const std::vector<std::string>& roots,
                          const std::vector<std::string>& protectedPaths);

// A stable order: deletions, then the Trash, then commands.
[[nodiscard]] std::vector<CleanItem> order(std::vector<CleanItem> items);

// Called before each item with its index and name, and once at the end with the count and "".
using Progress = std::function<void(int done, const std::string& name)>;

// Clears the items on the calling thread, in `order`, and reports item by item. Blocks for the
// whole clean; not cancellable.
[[nodiscard]] RemovalResult run(const std::vector<CleanItem>& items, const Progress& progress = {},
                                const Context& context = Remover::context());

struct Trashed {
    std::optional<std::string> moved;   // where the thing now lies
    std::optional<std::string> problem; // exactly one of the two is present
};
// Moves one path to the Trash of its file system.
[[nodiscard]] Trashed trash(const std::string& path, const Context& context = Remover::context());
// Moves a trashed thing back to where it was; a problem sentence when it cannot.
[[nodiscard]] std::optional<std::string> putBack(const std::string& moved, const std::string& to,
                                                 const Context& context = Remover::context());
// Removes everything in the user's Trash folders; a problem sentence when something stays.
[[nodiscard]] std::optional<std::string> emptyTrash(const Context& context = Remover::context());

} // namespace Remover
