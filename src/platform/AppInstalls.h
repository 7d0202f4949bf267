#pragma once
// Where an installed app lies on disk and how big it is: a Flatpak app folder, a snap's current
// revision, an AppImage, a folder under /opt, or a distribution package sized by the package
// database.
#include "platform/DesktopEntry.h"
#include "platform/layout/StorageTables.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace AppInstalls {

struct Install {
    std::string key;                // one install: entries that share it are one app
    std::string path;               // what to walk; for a package, its desktop entry
    std::optional<int64_t> bytes;   // known without a walk (a package's installed size)
    std::string installName;        // the Flatpak id, snap name or package name
    friend bool operator==(const Install&, const Install&) = default;
};

// One answer per entry, in order; absent where nothing on disk could be tied to the entry.
// The package database is read once for all entries that need it.
[[nodiscard]] std::vector<std::optional<Install>> resolve(const std::vector<DesktopEntry>& entries,
                                                          const StorageTables& tables);

// The snap an entry exported by snapd belongs to ("firefox" of "firefox_firefox.desktop").
[[nodiscard]] std::optional<std::string> snapName(const DesktopEntry& entry, const StorageTables& tables);
// The snap of a revision file's name ("core22" of "core22_1380.snap").
[[nodiscard]] std::optional<std::string> snapOfFile(std::string_view fileName);

} // namespace AppInstalls
