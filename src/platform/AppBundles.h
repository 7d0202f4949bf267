#pragma once
// Installed applications, looked up by id, by entry path or by the program they start. The
// bundle of an app on this platform is its desktop entry.
#include "foundation/Time.h"
#include "platform/DesktopEntry.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

class AppBundles {
public:
    virtual ~AppBundles() = default;

    // Every installed application entry, the first of each id in folder order.
    [[nodiscard]] virtual const std::vector<DesktopEntry>& all() const = 0;
    // Where the app of this id is installed: its entry, or nothing.
    [[nodiscard]] virtual std::optional<DesktopEntry> entry(const std::string& id) const = 0;
    // The entry at this .desktop path.
    [[nodiscard]] virtual std::optional<DesktopEntry> entryAt(const std::string& path) const = 0;
    // The entry whose Exec= program (or TryExec=) is this executable.
    [[nodiscard]] virtual std::optional<DesktopEntry> entryForExecutable(const std::string& exe) const = 0;
    // When the app was last used, where the desktop records it (GNOME's application state), else
    // the access time of its program where the mount keeps access times; absent otherwise.
    [[nodiscard]] virtual std::optional<TimePoint> lastUsed(const DesktopEntry& entry) const = 0;

    // The installed apps of this machine, read once and cached.
    [[nodiscard]] static const AppBundles& system();
};

// The desktop-entry reader over given folders; `system()` is one of these over the host layout.
class DesktopAppBundles final : public AppBundles {
public:
    // `applicationDirs` in order of precedence; `gnomeState` the GNOME shell's application state
    // file (may not exist); `searchPath` the PATH used to resolve bare program names.
    DesktopAppBundles(std::vector<std::string> applicationDirs, std::string gnomeState, std::string searchPath);

    [[nodiscard]] const std::vector<DesktopEntry>& all() const override { return entries; }
    [[nodiscard]] std::optional<DesktopEntry> entry(const std::string& id) const override;
    [[nodiscard]] std::optional<DesktopEntry> entryAt(const std::string& path) const override;
    [[nodiscard]] std::optional<DesktopEntry> entryForExecutable(const std::string& exe) const override;
    [[nodiscard]] std::optional<TimePoint> lastUsed(const DesktopEntry& entry) const override;

private:
    std::vector<DesktopEntry> entries;
    std::string gnomeStatePath;
    // Indexes built once: the entries never change while the program runs.
    std::map<std::string, std::size_t> byId, byPath;
    // Each entry's program (as written and resolved) to the entry's rank: visible entries
    // first, then helper entries, each in folder order.
    std::map<std::string, std::size_t> rankByProgram;
    std::vector<std::size_t> ranked; // rank to entry index

    // The monitor asks for the same programs at every sample; each is resolved once. The last-
    // used sources are read again only when they change.
    mutable std::mutex lock;
    mutable std::map<std::string, std::optional<std::size_t>> askedPrograms;
    mutable std::optional<int64_t> gnomeStateStamp;
    mutable std::map<std::string, TimePoint> gnomeSeen;
    mutable std::map<uint64_t, bool> deviceKeepsAccessTimes;
};
