#pragma once
// The sixteen categories of the storage map. The raw value is what the storage file holds.
#include "platform/Places.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

enum class StorageKind {
    apps, appData, developer, projects, documents, desktop, downloads, movies,
    pictures, music, mail, trash, other, macOS, assets, temporary
};

namespace StorageKinds {

inline constexpr std::array<StorageKind, 16> allCases{
    StorageKind::apps, StorageKind::appData, StorageKind::developer, StorageKind::projects,
    StorageKind::documents, StorageKind::desktop, StorageKind::downloads, StorageKind::movies,
    StorageKind::pictures, StorageKind::music, StorageKind::mail, StorageKind::trash,
    StorageKind::other, StorageKind::macOS, StorageKind::assets, StorageKind::temporary};

[[nodiscard]] std::string_view raw(StorageKind kind);
[[nodiscard]] std::optional<StorageKind> fromRaw(std::string_view raw);

// The words a person reads: each platform names its own system and folders.
[[nodiscard]] std::string_view title(StorageKind kind, Platform platform = Platform::linux);
[[nodiscard]] std::string_view blurb(StorageKind kind, Platform platform = Platform::linux);
// A symbol name of the design language, and a palette name or a "#RRGGBB" colour.
[[nodiscard]] std::string_view symbol(StorageKind kind);
[[nodiscard]] std::string_view colour(StorageKind kind);
// The folder a click on the category opens, where there is one.
[[nodiscard]] std::optional<std::string> folder(StorageKind kind, const Places& places);
// Whether rows of this category may be sent to the Trash from the storage map.
[[nodiscard]] bool canTrash(StorageKind kind);

} // namespace StorageKinds
