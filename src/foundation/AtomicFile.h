#pragma once
#include <string>
#include <string_view>

namespace AtomicFile {

// Writes the whole file so that a reader sees the old content or the new, never half: a
// temporary file in the same folder, fsync, rename. Makes the folder (and its parents) first
// unless told not to. False on any failure, which leaves the old file as it was.
[[nodiscard]] bool write(const std::string& path, std::string_view content, bool makeFolder = true);

// mkdir -p; true when the folder exists afterwards.
bool makeFolders(const std::string& path);

} // namespace AtomicFile
