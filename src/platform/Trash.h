#pragma once
// The desktop's Trash, as file managers keep it: a folder with `files/` holding what was
// trashed and `info/` holding one "<name>.trashinfo" per entry with its original path and the
// time it was trashed. The user's own Trash folder serves the home file system; each other
// mount has one at its top. Things are only ever renamed in and out, never copied.
// Failures come back as an errno and the step that met it; the caller words them.
#include "foundation/Beneath.h"
#include "foundation/Time.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
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
    link,          // the way to the Trash folder runs through a symbolic link
    outside,       // the Trash folder does not lie below the folder it must be reached from
};

// A Trash folder and the trusted folder it is reached from, one component at a time and never
// through a link: the home folder for the user's own Trash, a mount's top for the others.
struct Folder {
    std::string root;
    std::string path;
    friend bool operator==(const Folder&, const Folder&) = default;
};

struct Outcome {
    std::string moved;   // the path in files/, when it worked
    std::string folder;  // the Trash folder that was used or meant
    Step step = Step::none;
    int error = 0;       // errno of the failed step
    [[nodiscard]] bool ok() const { return step == Step::none; }
};

// Moves the entry `name` of the open folder `folder` (whose path is `path`) into the Trash that
// serves its file system: `homeTrash` when it lies on the same file system, else the Trash at
// the top of its mount. The thing is renamed through the folder's handle, never by its path.
[[nodiscard]] Outcome put(int folder, const std::string& name, const std::string& path, const Folder& homeTrash,
                          TimePoint now = Clock::now());
// Renames `entry` of the Trash's files/ to `toName` in the open folder `toFolder` (whose path
// is `to`'s parent) and drops its .trashinfo. Refuses when something stands there.
[[nodiscard]] Outcome restore(const Folder& trash, const std::string& entry, int toFolder, const std::string& toName,
                              const std::string& to);
// Opens a Trash folder from its root without following a link; `make` makes what is missing.
[[nodiscard]] Beneath::Opened open(const Folder& trash, bool make = false);

// The user's Trash folders that exist: the home one, and the ones of the writable mounts.
[[nodiscard]] std::vector<Folder> folders(const Folder& homeTrash);
[[nodiscard]] std::vector<Folder> folders(const Folder& homeTrash, std::string_view mountinfo);
// The Trash folder whose files/ holds `moved` directly, and the entry's name: the home Trash, or
// a Trash of this user at the top of a mount. Nothing for any other path.
[[nodiscard]] std::optional<std::pair<Folder, std::string>> holder(const std::string& moved, const Folder& homeTrash);

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
