#pragma once
#include <string>
#include <string_view>

namespace AtomicFile {

// Writes the whole file so that a reader sees the old content or the new, never half: a
// temporary file in the same folder (".{name}.XXXXXX"), fsync, rename. Makes the folder (and
// its parents) first unless told not to. False on any failure, which leaves the old file as
// it was.
//
// The writer holds an exclusive flock on its temporary file until the rename, and each write
// first removes the temporaries of earlier writes of the same file that no live writer holds:
// those of a writer killed mid-save, which would otherwise stay for ever.
[[nodiscard]] bool write(const std::string& path, std::string_view content, bool makeFolder = true);

// Whether `entry` is a name this writer gives its temporaries for the file `name`:
// "." + name + "." and six letters or digits.
[[nodiscard]] bool isTemporaryName(std::string_view entry, std::string_view name);

// Removes the stale temporaries of `path`: regular files of this user by the temporary
// name that no writer holds locked. Nothing else in the folder is touched, and a link by
// that name is not followed. Gives the count removed.
int removeStale(const std::string& path);

// mkdir -p; true when the folder exists afterwards.
bool makeFolders(const std::string& path);

} // namespace AtomicFile
