#include "monitor/Leftovers.h"

#include "foundation/FS.h"
#include "foundation/Text.h"
#include "projects/ProjectRoots.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <map>
#include <optional>

namespace Leftovers {

namespace {

bool startsWithAny(const std::string& s, const std::vector<std::string>& prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& p) { return s.starts_with(p); });
}

std::string realPath(const std::string& path) {
    char buf[PATH_MAX];
    if (::realpath(path.c_str(), buf)) return buf;
    return path;
}

// Where installed apps keep their programs, for "nothing that lives in an app is a leftover":
// the program of each entry, and the folder it lies in when that folder is the app's own
// (/opt/Foo, /usr/lib/foo), not one that many programs share (/usr/bin, ~/.local/bin).
class AppPlaces {
public:
    AppPlaces(const AppBundles& bundles, const std::string& home) {
        static const std::set<std::string, std::less<>> shared = {"bin", "sbin", "games", "libexec", "lib",
                                                                  "lib32", "lib64", "share", "local", "usr", "opt"};
        for (const auto& entry : bundles.all()) {
            if (entry.terminal || entry.executable.empty()) continue;
            std::string program = realPath(entry.executable);
            programs.insert(program);
            std::string folder = FS::parent(program);
            if (folder.empty() || folder == "/" || folder == home || home.starts_with(folder + "/")) continue;
            if (shared.contains(FS::lastComponent(folder))) continue;
            if (std::count(folder.begin(), folder.end(), '/') < 2 && !folder.starts_with("/opt/")) continue;
            folders.push_back(folder + "/");
        }
    }

    bool holds(const std::string& exe) const { return programs.contains(exe) || startsWithAny(exe, folders); }

private:
    std::set<std::string> programs;
    std::vector<std::string> folders;
};

} // namespace

bool isRuntime(const ProcRecord& record, const MonitorTables& tables) {
    if (tables.runtimes.contains(record.name)) return true;
    if (startsWithAny(record.name, tables.runtimeNamePrefixes)) return true;
    return startsWithAny(record.exe, tables.runtimePaths);
}

std::vector<Leftover> find(const Snapshot& snapshot, const RunningApps& apps, const std::set<int32_t>& launchd,
                           double minAge, const ProbeSource& probe, const Layout& layout, const AppBundles& bundles) {
    const MonitorTables& tables = layout.monitor;
    const std::string below = layout.home + "/";

    std::map<int32_t, std::vector<int32_t>> children;
    for (const auto& [pid, r] : snapshot.procs) children[r.ppid].push_back(pid);

    // Orphans land with init, or with the user's service manager where it is a subreaper.
    std::set<int32_t> adopters = {1};
    for (const auto& [pid, r] : snapshot.procs)
        if (r.name == "systemd") {
            auto args = probe.arguments(pid);
            if (std::find(args.begin(), args.end(), "--user") != args.end()) adopters.insert(pid);
        }

    std::optional<AppPlaces> appPlaces; // read only once a candidate gets that far
    std::vector<Leftover> found;
    for (const auto& [pid, r] : snapshot.procs) {
        if (!adopters.contains(r.ppid)) continue;
        if (launchd.contains(pid)) continue;
        if (apps.contains(pid)) continue;
        // Nothing that lives in an app is a leftover, whatever it is named.
        if (!tables.bundleSuffix.empty() && r.exe.find(tables.bundleSuffix + "/") != std::string::npos) continue;
        if (!appPlaces) appPlaces.emplace(bundles, layout.home);
        if (appPlaces->holds(r.exe)) continue;
        if (!isRuntime(r, tables)) continue;
        if (secondsBetween(r.start, snapshot.date) < minAge) continue;
        auto dir = probe.cwd(pid);
        if (!dir || !dir->starts_with(below)) continue;

        Leftover left;
        left.id = pid;
        left.pids.push_back(pid);
        std::vector<int32_t> stack;
        if (auto c = children.find(pid); c != children.end()) stack = c->second;
        std::set<int32_t> seen = {pid};
        while (!stack.empty() && left.pids.size() - 1 < maxDescendants) {
            int32_t next = stack.back();
            stack.pop_back();
            if (!seen.insert(next).second) continue;
            left.pids.push_back(next);
            if (auto c = children.find(next); c != children.end()) stack.insert(stack.end(), c->second.begin(), c->second.end());
        }

        // Serving something, so not abandoned. Ports come last: the dearest read of all.
        bool serving = std::any_of(left.pids.begin(), left.pids.end(),
                                   [&](int32_t p) { return !probe.listeningPorts(p).empty(); });
        if (serving) continue;

        for (int32_t p : left.pids)
            if (auto it = snapshot.procs.find(p); it != snapshot.procs.end()) left.memory += it->second.footprint;
        left.label = label(probe.arguments(pid), r.name);
        left.cwd = *dir;
        left.project = Projects::rootName(*dir, layout.home);
        left.started = r.start;
        found.push_back(std::move(left));
    }
    std::stable_sort(found.begin(), found.end(), [](const Leftover& a, const Leftover& b) { return a.started < b.started; });
    return found;
}

std::string label(const std::vector<std::string>& args, const std::string& fallback) {
    if (args.size() < 2) return fallback;
    std::size_t script = 0;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (args[i].starts_with("-")) {
            if (args[i] == "-m" && i + 1 < args.size()) return args[i + 1]; // a module run by the interpreter
            continue;
        }
        script = i;
        break;
    }
    if (script == 0) return fallback;

    const std::string& path = args[script];
    std::string name;
    constexpr std::string_view modules = "node_modules/";
    if (auto at = path.find(modules); at != std::string::npos) {
        std::vector<std::string> pieces;
        for (auto& piece : Text::split(std::string_view(path).substr(at + modules.size()), '/'))
            if (piece != ".bin") pieces.push_back(std::move(piece));
        if (pieces.empty()) return fallback;
        name = pieces[0];
        if (name.starts_with("@") && pieces.size() > 1) name += "/" + pieces[1]; // a scoped package
    } else {
        name = FS::lastComponent(path);
        if (auto dot = name.rfind('.'); dot != std::string::npos && dot > 0) name.resize(dot);
    }
    if (name.empty()) return fallback;

    for (std::size_t i = script + 1; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a.starts_with("-") || a.find('/') != std::string::npos || Text::graphemeCount(a) >= 24) continue;
        return name + " " + a;
    }
    return name;
}

} // namespace Leftovers
