// Installed applications from the desktop-entry folders, in XDG precedence: the first entry of
// an id wins, and a Hidden=true entry deletes that id for this user.
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/AppBundles.h"
#include "platform/Layout.h"
#include "platform/MountTable.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <functional>
#include <map>
#include <set>

namespace {

// Every .desktop file below `dir`, with its path relative to `dir`.
void collect(const std::string& dir, const std::string& relative, int depth,
             std::vector<std::pair<std::string, std::string>>& out) {
    if (depth > 3) return;
    std::string here = relative.empty() ? dir : dir + "/" + relative;
    auto names = FS::children(here);
    std::sort(names.begin(), names.end());
    for (const auto& name : names) {
        std::string rel = relative.empty() ? name : relative + "/" + name;
        std::string full = dir + "/" + rel;
        struct stat st {};
        if (stat(full.c_str(), &st) != 0) continue; // entries are often links into /var/lib/flatpak
        if (S_ISDIR(st.st_mode)) collect(dir, rel, depth + 1, out);
        else if (S_ISREG(st.st_mode) && name.ends_with(".desktop")) out.emplace_back(full, rel);
    }
}

std::string realPath(const std::string& p) {
    char buf[PATH_MAX];
    if (p.empty() || !realpath(p.c_str(), buf)) return {};
    return buf;
}

// GNOME shell's record of when each app was last seen running: "<application id="x.desktop"
// ... last-seen="1700000000"/>".
std::map<std::string, TimePoint> gnomeLastSeen(const std::string& file) {
    std::map<std::string, TimePoint> seen;
    auto text = FS::readText(file, 4 << 20);
    if (!text) return seen;
    auto attribute = [](std::string_view tag, std::string_view name) -> std::string {
        std::string key = " " + std::string(name) + "=\"";
        auto at = tag.find(key);
        if (at == std::string_view::npos) return {};
        auto start = at + key.size();
        auto end = tag.find('"', start);
        if (end == std::string_view::npos) return {};
        return std::string(tag.substr(start, end - start));
    };
    std::string_view rest = *text;
    for (auto at = rest.find("<application "); at != std::string_view::npos; at = rest.find("<application ", at + 1)) {
        auto end = rest.find('>', at);
        std::string_view tag = rest.substr(at, end == std::string_view::npos ? std::string_view::npos : end - at);
        std::string id = attribute(tag, "id");
        std::string when = attribute(tag, "last-seen");
        if (id.empty() || when.empty()) continue;
        if (id.ends_with(".desktop")) id.resize(id.size() - 8);
        char* stop = nullptr;
        double seconds = std::strtod(when.c_str(), &stop);
        if (stop && *stop == '\0' && seconds > 0) seen[id] = fromSeconds(seconds);
    }
    return seen;
}

// Whether the mount holding `path` records access times at all.
bool mountKeepsAccessTimes(const std::string& path) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) return false;
    auto mounts = MountTable::read();
    const MountEntry* m = MountTable::holding(mounts, path, st.st_dev);
    return m && m->keepsAccessTimes();
}

} // namespace

DesktopAppBundles::DesktopAppBundles(std::vector<std::string> applicationDirs, std::string gnomeState,
                                     std::string searchPath)
    : gnomeStatePath(std::move(gnomeState)) {
    std::set<std::string> decided; // ids already given by an earlier folder, hidden ones too
    for (const auto& dir : applicationDirs) {
        std::vector<std::pair<std::string, std::string>> files;
        collect(dir, "", 0, files);
        for (const auto& [full, rel] : files) {
            std::string id = DesktopEntries::idFor(rel);
            if (decided.contains(id)) continue;
            auto text = FS::readText(full, 1 << 20);
            if (!text) continue;
            auto entry = DesktopEntries::parse(*text, id, full);
            if (!entry) continue;
            decided.insert(id);
            if (entry->hidden) continue;
            entry->executable = DesktopEntries::programOf(entry->exec, searchPath);
            entries.push_back(std::move(*entry));
        }
    }
}

std::optional<DesktopEntry> DesktopAppBundles::entry(const std::string& id) const {
    for (const auto& e : entries)
        if (e.id == id) return e;
    return std::nullopt;
}

std::optional<DesktopEntry> DesktopAppBundles::entryAt(const std::string& path) const {
    for (const auto& e : entries)
        if (e.path == path) return e;
    return std::nullopt;
}

std::optional<DesktopEntry> DesktopAppBundles::entryForExecutable(const std::string& exe) const {
    if (exe.empty()) return std::nullopt;
    const std::string real = realPath(exe);
    auto matches = [&](const std::string& program) {
        if (program.empty()) return false;
        if (program == exe || (!real.empty() && program == real)) return true;
        std::string resolved = realPath(program);
        return !resolved.empty() && (resolved == exe || resolved == real);
    };
    // Visible entries first: a helper entry (NoDisplay) for the same program is a second choice.
    for (int pass = 0; pass < 2; ++pass)
        for (const auto& e : entries) {
            if ((pass == 0) == e.noDisplay) continue;
            if (e.flatpak.empty() && (matches(e.executable) || (!e.tryExec.empty() && e.tryExec.front() == '/' &&
                                                                matches(e.tryExec))))
                return e;
        }
    return std::nullopt;
}

std::optional<TimePoint> DesktopAppBundles::lastUsed(const DesktopEntry& e) const {
    auto seen = gnomeLastSeen(gnomeStatePath);
    if (auto it = seen.find(e.id); it != seen.end()) return it->second;
    if (e.executable.empty() || !e.flatpak.empty()) return std::nullopt;
    std::string program = realPath(e.executable);
    if (program.empty() || !mountKeepsAccessTimes(program)) return std::nullopt;
    struct stat st {};
    if (stat(program.c_str(), &st) != 0) return std::nullopt;
    return Clock::from_time_t(st.st_atim.tv_sec);
}

const AppBundles& AppBundles::system() {
    static const DesktopAppBundles bundles = [] {
        const Layout& layout = Layout::host();
        const char* path = std::getenv("PATH");
        std::string search = path && *path ? path : "/usr/local/bin:/usr/bin:/bin";
        return DesktopAppBundles(layout.applicationDirs, layout.dataHome + "/gnome-shell/application_state", search);
    }();
    return bundles;
}
