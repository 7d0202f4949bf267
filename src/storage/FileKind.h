#pragma once
// What a big file is, told by its extension.
#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

enum class FileKind { video, image, audio, diskImage, archive, installer, document, app, other };

namespace FileKinds {

inline constexpr std::array<FileKind, 9> allCases{FileKind::video, FileKind::image, FileKind::audio,
                                                  FileKind::diskImage, FileKind::archive, FileKind::installer,
                                                  FileKind::document, FileKind::app, FileKind::other};

[[nodiscard]] std::string_view raw(FileKind kind);
[[nodiscard]] std::optional<FileKind> fromRaw(std::string_view raw);
[[nodiscard]] std::string_view title(FileKind kind);
[[nodiscard]] std::string_view symbol(FileKind kind);

// The kind of a lower-case extension, if the table knows it.
[[nodiscard]] std::optional<FileKind> byExtension(std::string_view lowerExtension);
// The kind of a path by its extension, lower-cased; `other` when unknown.
[[nodiscard]] FileKind of(std::string_view path);
// The type word of an entry of the downloads in the cleaning scan, from the same table:
// "Installer", "Archive", "Video", "App", else "Folder" or "File".
[[nodiscard]] std::string downloadWord(std::string_view path, bool isFolder);
// Folders the walk takes as one thing (a photo library, a virtual machine, an app bundle).
[[nodiscard]] bool isPackage(std::string_view lowerExtension);
// Packages that must never be offered for the Trash: whole media and music libraries.
[[nodiscard]] bool isLibrary(std::string_view lowerExtension);

// Whether a row may be offered for the Trash: it lies below the home folder, the remover's
// guard allows it, and it is no library. The guard is passed in so that this stays a pure rule.
[[nodiscard]] bool trashable(const std::string& path, const std::string& home,
                             const std::function<bool(const std::string&)>& isSafe);

} // namespace FileKinds
