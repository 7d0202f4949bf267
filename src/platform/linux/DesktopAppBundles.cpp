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
        if (stop && *stop == '\0' && seconds > 0)
            if (auto date = storedDate(seconds)) seen[id] = *date;
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
    for (std::size_t i = 0; i < entries.size(); ++i) {
        byId.emplace(entries[i].id, i);
        byPath.emplace(entries[i].path, i);
    }
    // Visible entries first: a helper entry (NoDisplay) for the same program is a second choice.
    // Flatpak entries start `flatpak`, never the app's own program.
    for (int pass = 0; pass < 2; ++pass)
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const DesktopEntry& e = entries[i];
            if ((pass == 0) == e.noDisplay || !e.flatpak.empty()) continue;
            const std::size_t rank = ranked.size();
            ranked.push_back(i);
            std::vector<std::string> programs{e.executable};
            if (!e.tryExec.empty() && e.tryExec.front() == '/') programs.push_back(e.tryExec);
            for (const auto& program : programs) {
                if (program.empty()) continue;
                rankByProgram.emplace(program, rank);
                if (std::string resolved = realPath(program); !resolved.empty()) rankByProgram.emplace(resolved, rank);
            }
        }
}

std::optional<DesktopEntry> DesktopAppBundles::entry(const std::string& id) const {
    auto it = byId.find(id);
    if (it == byId.end()) return std::nullopt;
    return entries[it->second];
}

std::optional<DesktopEntry> DesktopAppBundles::entryAt(const std::string& path) const {
    auto it = byPath.find(path);
    if (it == byPath.end()) return std::nullopt;
    return entries[it->second];
}

std::optional<DesktopEntry> DesktopAppBundles::entryForExecutable(const std::string& exe) const {
    if (exe.empty()) return std::nullopt;
    std::lock_guard guard(lock);
    auto asked = askedPrograms.find(exe);
    if (asked == askedPrograms.end()) {
        // The process runs the resolved file; an entry may name it by a link, or the other way.
        std::optional<std::size_t> best;
        for (const std::string& key : {exe, realPath(exe)}) {
            auto it = key.empty() ? rankByProgram.end() : rankByProgram.find(key);
            if (it != rankByProgram.end() && (!best || it->second < *best)) best = it->second;
        }
        asked = askedPrograms.emplace(exe, best).first;
    }
    if (!asked->second) return std::nullopt;
    return entries[ranked[*asked->second]];
}

std::optional<TimePoint> DesktopAppBundles::lastUsed(const DesktopEntry& e) const {
    std::lock_guard guard(lock);
    struct stat state {};
    std::optional<int64_t> stamp;
    if (stat(gnomeStatePath.c_str(), &state) == 0)
        stamp = static_cast<int64_t>(state.st_mtim.tv_sec) * 1'000'000'000 + state.st_mtim.tv_nsec;
    if (stamp != gnomeStateStamp) {
        gnomeSeen = stamp ? gnomeLastSeen(gnomeStatePath) : std::map<std::string, TimePoint>{};
        gnomeStateStamp = stamp;
    }
    if (auto it = gnomeSeen.find(e.id); it != gnomeSeen.end()) return it->second;
    if (e.executable.empty() || !e.flatpak.empty()) return std::nullopt;
    std::string program = realPath(e.executable);
    struct stat st {};
    if (program.empty() || stat(program.c_str(), &st) != 0) return std::nullopt;
    auto keeps = deviceKeepsAccessTimes.find(st.st_dev);
    if (keeps == deviceKeepsAccessTimes.end())
        keeps = deviceKeepsAccessTimes.emplace(st.st_dev, mountKeepsAccessTimes(program)).first;
    if (!keeps->second) return std::nullopt;
    return fileDate(st.st_atim, Clock::now());
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
