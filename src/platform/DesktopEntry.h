#pragma once
// An installed application as the desktop knows it: one .desktop file. On Linux it stands for
// an application bundle: its id for the bundle identifier, its file path for the bundle path.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct DesktopEntry {
    std::string id;             // file name without ".desktop" (Flatpak: the reverse-DNS id)
    std::string path;           // the .desktop file
    std::string name;           // Name=
    std::string genericName;    // GenericName=
    std::string icon;           // Icon=
    std::string startupWMClass; // StartupWMClass=
    std::vector<std::string> exec; // Exec= split into arguments, field codes removed
    std::string tryExec;        // TryExec=
    std::string executable;     // the program Exec= starts, resolved to an absolute path when found
    std::string flatpak;        // X-Flatpak= (the app id) for Flatpak entries
    std::vector<std::string> categories;
    bool noDisplay = false;      // NoDisplay=true: not shown in menus
    bool hidden = false;         // Hidden=true: deleted for this user
    bool dbusActivatable = false;
    bool terminal = false;

    // The display name: Name=, else the id.
    [[nodiscard]] std::string displayName() const { return name.empty() ? id : name; }
};

namespace DesktopEntries {

// Parses the [Desktop Entry] group of a desktop file's text. Absent for anything that is not
// an application entry.
[[nodiscard]] std::optional<DesktopEntry> parse(std::string_view text, std::string id, std::string path);
// Splits an Exec= value by the desktop-entry quoting rules and drops field codes (%f, %U, ...).
[[nodiscard]] std::vector<std::string> splitExec(std::string_view value);
// The program an Exec= line starts: skips `env VAR=...` and resolves a bare name along `searchPath`.
[[nodiscard]] std::string programOf(const std::vector<std::string>& exec, std::string_view searchPath);
// A desktop id from a file below an applications folder: "kde4/dolphin.desktop" gives "kde4-dolphin".
[[nodiscard]] std::string idFor(std::string_view relativePath);

} // namespace DesktopEntries
