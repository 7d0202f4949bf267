#pragma once
// Deletion that cannot leave the thing it deletes. A folder is emptied through open directory
// handles, entry by entry: a symbolic link met inside it (or swapped in for a folder while the
// walk runs) is removed as a link and never followed, and another file system mounted inside
// is never entered. Only the Remover calls this, after its guards.
#include <string>

namespace Eraser {

struct Outcome {
    bool gone = false; // nothing stands at the path any more
    int error = 0;     // the first errno met on the way, 0 when none
};

// Removes the file, link or folder at `path`. The folders leading to it are taken as they are;
// from its last component on nothing is followed, so a path that is itself a link loses the link.
[[nodiscard]] Outcome erase(const std::string& path);
// The same for the entry `name` of the open folder `dirFd`.
[[nodiscard]] Outcome eraseAt(int dirFd, const std::string& name);
// Removes every entry of the open folder `dirFd` and keeps the folder; `gone` when it ends empty.
[[nodiscard]] Outcome empty(int dirFd);

} // namespace Eraser
