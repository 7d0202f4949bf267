#pragma once
// Reaching a path below a trusted folder one component at a time, never through a symbolic
// link and never out of that folder. Where the kernel has openat2 it does the walk in one call
// (RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS); elsewhere each component is opened from the handle of
// the one before with O_NOFOLLOW. Either way a link swapped in anywhere on the way makes the
// open fail instead of leading somewhere else.
#include "foundation/Fd.h"

#include <string>
#include <string_view>
#include <vector>

namespace Beneath {

// `byHand` skips openat2, so that the walk older kernels get can be tested on any kernel.
enum class Way { best, byHand };

struct Opened {
    Fd fd;                    // valid when it worked
    int error = 0;            // errno when it did not
    bool throughLink = false; // a component on the way, or the last one, is a symbolic link
    std::string link;         // then: the components up to and including that link
    [[nodiscard]] bool ok() const { return fd.valid(); }
};

// The components of a relative path; empty when any of them is empty, "." or "..", or when
// the path is absolute: such paths are refused, never normalised.
[[nodiscard]] std::vector<std::string> components(std::string_view relative);

// Opens `relative` below the open folder `root` with `flags` (O_CLOEXEC is added). No component,
// the last included, may be a symbolic link.
[[nodiscard]] Opened open(int root, std::string_view relative, int flags, Way way = Way::best);

// Opens the trusted folder `root` itself (following links in its own path, which is the
// caller's to trust) for walks below it.
[[nodiscard]] Fd openRoot(const std::string& root);

// Where a path strictly below a root lies: its folder, reached without links, and its name.
struct Parent {
    Opened folder;    // an O_PATH handle of the folder that holds the entry
    std::string name; // the entry's own name, not yet looked at
    [[nodiscard]] bool ok() const { return folder.ok(); }
};
// The folder holding `path`, which must lie strictly below `root` (text after the root's "/").
// With `make`, missing folders on the way are made with `mode`, each one through the handle of
// the folder above it.
[[nodiscard]] Parent parent(const std::string& root, const std::string& path, Way way = Way::best,
                            bool make = false, unsigned mode = 0755);

// The path below `root` of `path`: the text after root + "/", or empty when it lies elsewhere.
[[nodiscard]] std::string_view below(std::string_view path, std::string_view root);

} // namespace Beneath
