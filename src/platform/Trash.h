#pragma once
// The desktop's Trash, as file managers keep it: a folder with `files/` holding what was
// trashed and `info/` holding one "<name>.trashinfo" per entry with its original path and the
// time it was trashed. The user's own Trash folder serves the home file system; each other
// mount has one at its top. Things are only ever renamed in and out, never copied.
// Failures come back as an errno and the step that met it; the caller words them.
#include "foundation/Time.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Trash {

enum class Step {
    none,
    look,          // the thing to trash could not be read
    makeFolder,    // the Trash folder (or its files/ or info/) could not be made or opened
    writeInfo,     // the .trashinfo could not be written
    move,          // the rename failed
    alreadyThere,  // the thing lies inside the Trash folder already
    occupied,      // put back: something stands at the old place
};

struct Outcome {
    std::string moved;   // the path in files/, when it worked
    std::string folder;  // the Trash folder that was used or meant
    Step step = Step::none;
    int error = 0;       // errno of the failed step
    [[nodiscard]] bool ok() const { return step == Step::none; }
};

// Moves `path` into the Trash that serves its file system: `homeTrash` when the path lies on
// the same file system as it, else the Trash at the top of the path's mount.
[[nodiscard]] Outcome put(const std::string& path, const std::string& homeTrash, TimePoint now = Clock::now());
// Renames `moved` (an entry of some Trash's files/) back to `to`, making missing folders on the
// way, and drops its .trashinfo. Refuses when something stands at `to`.
[[nodiscard]] Outcome restore(const std::string& moved, const std::string& to);

// The user's Trash folders that exist: the home one, and the ones of the writable mounts.
[[nodiscard]] std::vector<std::string> folders(const std::string& homeTrash);
[[nodiscard]] std::vector<std::string> folders(const std::string& homeTrash, std::string_view mountinfo);

// The content of a .trashinfo: `pathValue` (absolute, or relative to a mount's top) percent-
// encoded, and the local time of `when`.
[[nodiscard]] std::string info(std::string_view pathValue, TimePoint when);
// Every byte but letters, digits, "-_.~" and "/" as %XX.
[[nodiscard]] std::string percentEncode(std::string_view path);
[[nodiscard]] std::string percentDecode(std::string_view text);
// The name that the `n`th thing called `name` gets in a Trash (n starts at 1), short enough to
// leave room for ".trashinfo" in one file name.
[[nodiscard]] std::string entryName(std::string_view name, int n);

struct Mount {
    std::string point;
    bool writable = true;
};
// The mounts of a /proc/self/mountinfo text, with their points unescaped; the kernel's own
// virtual file systems, which never hold a Trash, are left out.
[[nodiscard]] std::vector<Mount> mounts(std::string_view mountinfo);

} // namespace Trash
