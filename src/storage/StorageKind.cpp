#include "storage/StorageKind.h"

namespace StorageKinds {

namespace {

struct Row {
    StorageKind kind;
    std::string_view raw;
    std::string_view title;
    std::string_view blurb;
    std::string_view linuxTitle;
    std::string_view linuxBlurb;
    std::string_view symbol;
    std::string_view colour;
};

// In the order of allCases.
constexpr std::array<Row, 16> rows{{
    {StorageKind::apps, "apps", "Apps",
     "Apps in Applications. What they keep in your Library is under App data.",
     "Apps", "Apps installed on this computer. What they keep in your home folder is under App data.",
     "square.grid.2x2", "#8B8FF8"},
    {StorageKind::appData, "appData", "App data",
     "What apps keep in your Library: caches, saved data and sandboxes.",
     "App data", "What apps keep in your hidden folders: caches, settings and saved data.",
     "square.stack.3d.up", "amber"},
    {StorageKind::developer, "developer", "Developer tools",
     "Xcode, simulators, package managers and other tools in hidden folders.",
     "Developer tools", "Toolchains, package managers and other tools in hidden folders.",
     "hammer", "blue"},
    {StorageKind::projects, "projects", "Code projects",
     "Folders you code in, with their packages and build output.",
     "Code projects", "Folders you code in, with their packages and build output.",
     "chevron.left.forwardslash.chevron.right", "#2DD4BF"},
    {StorageKind::documents, "documents", "Documents",
     "Your Documents folder, apart from code projects.",
     "Documents", "Your Documents folder, apart from code projects.",
     "doc.text", "#7DD3FC"},
    {StorageKind::desktop, "desktop", "Desktop",
     "Files and folders on your Desktop.",
     "Desktop", "Files and folders on your Desktop.",
     "menubar.dock.rectangle", "purpleText"},
    {StorageKind::downloads, "downloads", "Downloads",
     "Everything you downloaded and kept.",
     "Downloads", "Everything you downloaded and kept.",
     "arrow.down.circle", "#FB923C"},
    {StorageKind::movies, "movies", "Movies",
     "Your Movies folder, with any video libraries.",
     "Videos", "Your Videos folder.",
     "film", "#E879F9"},
    {StorageKind::pictures, "pictures", "Pictures and Photos",
     "Your Pictures folder, with the Photos library.",
     "Pictures", "Your Pictures folder.",
     "photo", "#F472B6"},
    {StorageKind::music, "music", "Music",
     "Your Music folder.",
     "Music", "Your Music folder.",
     "music.note", "purple"},
    {StorageKind::mail, "mail", "Mail and Messages",
     "Mail and Messages keep messages and attachments in your Library.",
     "Mail", "Mail apps keep messages and attachments in your home folder.",
     "envelope", "#94A3B8"},
    {StorageKind::trash, "trash", "Trash",
     "Files in the Trash still take space until it is emptied.",
     "Trash", "Files in the Trash still take space until it is emptied.",
     "trash", "#A3A3A3"},
    {StorageKind::other, "other", "Other files",
     "Other folders and files in your home folder.",
     "Other files", "Other folders and files in your home folder.",
     "folder", "#D6B98C"},
    {StorageKind::macOS, "macOS", "macOS",
     "The system, its startup files and Recovery. macOS manages these itself.",
     "System", "The system, its startup files and its logs. The system manages these itself.",
     "apple.logo", "#C7CBD3"},
    {StorageKind::assets, "assets", "macOS downloads",
     "What macOS fetched on its own: Apple Intelligence models, simulator runtimes, fonts and updates.",
     "System downloads", "What the system fetched on its own: downloaded packages, Flatpak runtimes and Snap revisions.",
     "icloud.and.arrow.down", "#67E8F9"},
    {StorageKind::temporary, "temporary", "Temporary files",
     "Temporary files and caches macOS keeps for your apps. A restart clears most of them.",
     "Temporary files", "Temporary files the system keeps for your apps. A restart clears most of them.",
     "clock.arrow.circlepath", "#FDE68A"},
}};

const Row& row(StorageKind kind) { return rows[static_cast<std::size_t>(kind)]; }

} // namespace

std::string_view raw(StorageKind kind) { return row(kind).raw; }

std::optional<StorageKind> fromRaw(std::string_view value) {
    for (const Row& r : rows)
        if (r.raw == value) return r.kind;
    return std::nullopt;
}

std::string_view title(StorageKind kind, Platform platform) {
    return platform == Platform::macos ? row(kind).title : row(kind).linuxTitle;
}

std::string_view blurb(StorageKind kind, Platform platform) {
    return platform == Platform::macos ? row(kind).blurb : row(kind).linuxBlurb;
}

std::string_view symbol(StorageKind kind) { return row(kind).symbol; }
std::string_view colour(StorageKind kind) { return row(kind).colour; }

std::optional<std::string> folder(StorageKind kind, const Places& places) {
    auto given = [](const std::string& p) -> std::optional<std::string> {
        if (p.empty()) return std::nullopt;
        return p;
    };
    switch (kind) {
    case StorageKind::apps: return places.isMac() ? std::optional<std::string>("/Applications") : std::nullopt;
    case StorageKind::appData: return places.isMac() ? given(places.home + "/Library") : given(places.configHome);
    case StorageKind::documents: return given(places.documents);
    case StorageKind::downloads: return given(places.downloads);
    case StorageKind::desktop: return given(places.desktop);
    case StorageKind::pictures: return given(places.pictures);
    case StorageKind::movies: return given(places.movies);
    case StorageKind::music: return given(places.music);
    case StorageKind::trash: return given(places.trash);
    case StorageKind::assets:
        return places.isMac() ? std::optional<std::string>("/System/Library/AssetsV2") : std::nullopt;
    default: return std::nullopt;
    }
}

bool canTrash(StorageKind kind) {
    switch (kind) {
    case StorageKind::desktop:
    case StorageKind::documents:
    case StorageKind::downloads:
    case StorageKind::movies:
    case StorageKind::music:
    case StorageKind::other:
    case StorageKind::pictures: return true;
    default: return false;
    }
}

} // namespace StorageKinds
