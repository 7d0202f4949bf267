#pragma once
// File-system and process facts. Nothing here throws or reports: each call answers with its
// neutral value (false, empty, absent, 0) when the machine does not.
#include "foundation/Measured.h"
#include "foundation/ProcInfo.h"
#include "foundation/ScanToken.h"
#include "foundation/Time.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FS {

// The user's home folder, read once from $HOME (or the password database) and resolved to its
// real path, so that a home that is itself a link (/home/me -> /data/me) is walked, measured
// and guarded as the folder it names. The text stands when it cannot be resolved.
[[nodiscard]] const std::string& home();
// The home folder as $HOME gives it, before resolving.
[[nodiscard]] const std::string& homeAsGiven();
// `path` with a leading `given` (the home as written) replaced by `home` (the resolved one), so
// that XDG values written as "$HOME/..." through a linked home land below the resolved home.
[[nodiscard]] std::string onHome(std::string path, std::string_view given, std::string_view home);
// An XDG base folder: the variable's value when it is an absolute path (trailing slashes
// dropped), else the fallback. Relative values are ignored, as the XDG rules say.
[[nodiscard]] std::string xdgFolder(const std::optional<std::string>& value, const std::string& fallback);
// The same for a variable of this process's environment, with the fallback below home().
[[nodiscard]] std::string xdgFolder(const char* variable, std::string_view belowHome);
// "~" for the home folder itself, "~/rest" below it, the path unchanged otherwise.
[[nodiscard]] std::string tilde(std::string_view path);
[[nodiscard]] std::string tilde(std::string_view path, std::string_view home);

[[nodiscard]] bool exists(const std::string& path);       // lstat succeeds; a broken link exists
[[nodiscard]] bool isDir(const std::string& path);        // lstat says directory; a link to one is not
[[nodiscard]] bool isFile(const std::string& path);       // lstat says regular file
[[nodiscard]] bool isExecutableFile(const std::string& path); // follows links, regular and executable
[[nodiscard]] std::vector<std::string> children(const std::string& path); // unsorted, hidden included
[[nodiscard]] std::vector<std::string> sortedChildren(const std::string& path); // ascending by bytes
// The target of a symbolic link; absent when it is none or cannot be read.
[[nodiscard]] std::optional<std::string> readLink(const std::string& path);
// The modification date, by lstat, as `fileDate` reads it: one ahead of `now` counts as `now`.
[[nodiscard]] std::optional<TimePoint> mtime(const std::string& path, TimePoint now = Clock::now());
// When the file came into being: the birth time where the file system keeps it, else its mtime.
[[nodiscard]] std::optional<TimePoint> birthTime(const std::string& path, TimePoint now = Clock::now());
// Bytes that freeing this one file would give back, where the file system can tell (blocks
// shared by reflinks or snapshots are left out); absent where it cannot or on failure.
[[nodiscard]] std::optional<int64_t> privateSize(const std::string& path);
// The whole content of a small file; absent when it cannot be read.
[[nodiscard]] std::optional<std::string> readText(const std::string& path, std::size_t limit = 1 << 20);
// The same read into `room`, which keeps its size for the next file: for reading many files in a
// row without a fresh buffer (and fresh pages) for each. The text is a view into `room`.
[[nodiscard]] std::optional<std::string_view> readInto(const std::string& path, std::string& room,
                                                       std::size_t limit = 1 << 20);

[[nodiscard]] std::string lastComponent(std::string_view path);
[[nodiscard]] std::string parent(std::string_view path);
[[nodiscard]] std::string extension(std::string_view path); // lower-cased, without the dot

// Bytes that clearing `paths` would free, with hard links counted once across all of them and
// links held outside put in `shared`. A cancelled token ends each walk early (partial figure).
[[nodiscard]] Measured measure(const std::vector<std::string>& paths, const ScanToken* cancel = nullptr);

// Process facts of the user's own processes, never this program itself.
[[nodiscard]] std::vector<ProcInfo> processes();
[[nodiscard]] std::vector<ProcInfo> processes(const std::string& procRoot, uint32_t uid, int32_t self);
[[nodiscard]] std::vector<std::string> arguments(int32_t pid);
[[nodiscard]] std::vector<std::string> arguments(const std::string& procRoot, int32_t pid);
// Paths of the open files; absent when they cannot be read (which callers treat as "in use").
[[nodiscard]] std::optional<std::vector<std::string>> openPaths(int32_t pid);
[[nodiscard]] std::optional<std::vector<std::string>> openPaths(const std::string& procRoot, int32_t pid);

} // namespace FS
