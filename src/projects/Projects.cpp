#include "projects/Projects.h"

#include "foundation/FS.h"
#include "foundation/Text.h"
#include "monitor/Grouping.h"
#include "scan/Scanner.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <ctime>
#include <map>
#include <set>

namespace Projects {

namespace {

// A project root: its build folders, when the scan found some. A root that only processes
// point at has none.
struct Entry {
    const CleanItem* item = nullptr;
};

// What `fill` reads besides the card.
struct Reading {
    const std::vector<ProcFacts>& facts;
    const std::vector<Leftover>& leftovers;
    TimePoint now;
    const ProbeSource& probe;
    const Layout& layout;
    const AppBundles& bundles;
};

bool within(const std::string& path, const std::string& root) { return path == root || path.starts_with(root + "/"); }

void keepLatest(std::optional<TimePoint>& into, std::optional<TimePoint> date) {
    if (date && (!into || *date > *into)) into = date;
}

// A program that lies in an app: its ports are the app's own, not a project's server.
bool inApp(const std::string& exe, const Reading& r) {
    if (exe.empty()) return false;
    if (Grouping::bundle(exe, r.layout.monitor.bundleSuffix)) return true;
    for (const auto& prefix : r.layout.projects.appProgramPrefixes)
        if (exe.starts_with(prefix)) return true;
    if (editorName(exe, r.layout.projects)) return true;
    auto entry = r.bundles.entryForExecutable(exe);
    return entry && !entry->terminal;
}

void addSorted(std::vector<std::string>& into, const std::set<std::string>& more) {
    std::set<std::string> all(into.begin(), into.end());
    all.insert(more.begin(), more.end());
    into.assign(all.begin(), all.end());
}

void addSorted(std::vector<int>& into, const std::set<int>& more) {
    std::set<int> all(into.begin(), into.end());
    all.insert(more.begin(), more.end());
    into.assign(all.begin(), all.end());
}

// Counts the processes and leftovers whose folder passes `here` on the card; gives whether a
// process works there.
template <typename Here>
bool count(ProjectCard& card, const Here& here, const Reading& r) {
    std::set<std::string> editors;
    std::set<int> ports;
    bool any = false;
    for (const ProcFacts& f : r.facts) {
        if (!here(f.cwd)) continue;
        any = true;
        const ProcRecord& p = f.record;
        card.memory += p.footprint;
        if (p.name == "claude") ++card.claude;
        std::string args;
        if (p.name == "node" || p.name == "python3" || p.name == "bun" || p.name.starts_with("mcp"))
            args = Text::join(r.probe.arguments(p.pid), " ");
        if (Text::contains(Text::lower(p.name), "mcp") || Text::contains(Text::lower(args), "mcp")) ++card.mcp;
        if (auto editor = editorName(p.exe, r.layout.projects)) editors.insert(*editor);
        if (inApp(p.exe, r)) continue;
        for (int port : r.probe.listeningPorts(p.pid))
            if (port > 1023) ports.insert(port);
    }
    for (const Leftover& l : r.leftovers)
        if (here(l.cwd)) card.leftovers.push_back(l);
    addSorted(card.editors, editors);
    addSorted(card.ports, ports);
    return any;
}

void fill(ProjectCard& card, const std::string& root, const Entry& entry, const Reading& r, bool sub) {
    const bool running = count(card, [&](const std::string& cwd) { return within(cwd, root); }, r);
    const CleanItem* item = entry.item;
    if (item) card.build += item->size;
    const bool idle = !running && item && !item->isLocked() && item->size > 0;
    if (idle) {
        card.idleBuild += item->size;
        card.idleItemIDs.push_back(item->id);
    }
    if (item) keepLatest(card.lastChange, lastChange(item->note, r.now));
    if (!sub && !card.lastChange) {
        card.lastChange = FS::mtime(root + "/.git/index", r.now);
        if (!card.lastChange) card.lastChange = FS::mtime(root, r.now);
    }
    if (item && !item->defaultOn && !item->lockedReason) card.recentlyChanged = true;
    if (running) card.running = true;
    if (sub)
        card.apps.push_back({root, FS::lastComponent(root), item ? item->size : 0, running,
                             idle ? std::optional<std::string>(item->id) : std::nullopt});
}

void sortApps(std::vector<ProjectApp>& apps) {
    std::stable_sort(apps.begin(), apps.end(), [](const ProjectApp& a, const ProjectApp& b) {
        if (a.running != b.running) return a.running;
        return a.build > b.build;
    });
}

int rank(const ProjectCard& c) {
    if (c.running) return 0;
    if (!c.leftovers.empty()) return 1;
    return c.isOlder ? 3 : 2;
}

// Projects with nothing running and no change for a month become one card, once there are two.
void foldOld(std::vector<ProjectCard>& cards, TimePoint now) {
    auto old = [&](const ProjectCard& c) {
        return !c.running && c.leftovers.empty() && c.apps.empty() &&
               (!c.lastChange || secondsBetween(*c.lastChange, now) > monthSeconds);
    };
    if (std::count_if(cards.begin(), cards.end(), old) < 2) return;
    ProjectCard older;
    older.id = "older";
    older.name = "Older projects";
    older.isOlder = true;
    std::vector<std::string> names;
    std::vector<ProjectCard> kept;
    for (ProjectCard& c : cards) {
        if (!old(c)) {
            kept.push_back(std::move(c));
            continue;
        }
        names.push_back(c.name);
        older.apps.push_back({c.id, c.name, c.build, false,
                              c.idleItemIDs.empty() ? std::nullopt : std::optional<std::string>(c.idleItemIDs.front())});
        older.build += c.build;
        older.idleBuild += c.idleBuild;
        older.idleItemIDs.insert(older.idleItemIDs.end(), c.idleItemIDs.begin(), c.idleItemIDs.end());
        keepLatest(older.lastChange, c.lastChange);
    }
    std::sort(names.begin(), names.end());
    older.path = Text::join(names, ", ");
    sortApps(older.apps);
    kept.push_back(std::move(older));
    cards = std::move(kept);
}

std::optional<int> month(std::string_view name) {
    static constexpr std::array<std::string_view, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    for (std::size_t i = 0; i < months.size(); ++i)
        if (months[i] == name) return static_cast<int>(i);
    return std::nullopt;
}

// Leading decimal digits of `s`, consumed.
std::optional<int> number(std::string_view& s) {
    std::size_t n = 0;
    while (n < s.size() && n < 6 && std::isdigit(static_cast<unsigned char>(s[n]))) ++n;
    if (n == 0) return std::nullopt;
    int v = 0;
    for (std::size_t i = 0; i < n; ++i) v = v * 10 + (s[i] - '0');
    s.remove_prefix(n);
    return v;
}

std::optional<TimePoint> localDate(std::tm parts) {
    parts.tm_isdst = -1;
    std::time_t t = std::mktime(&parts);
    if (t == static_cast<std::time_t>(-1)) return std::nullopt;
    return storedDate(t);
}

std::tm localParts(TimePoint t) {
    std::time_t tt = Clock::to_time_t(t);
    std::tm parts{};
    localtime_r(&tt, &parts);
    return parts;
}

} // namespace

std::optional<std::string> editorName(const std::string& exe, const ProjectTables& tables) {
    if (exe.empty()) return std::nullopt;
    const std::string path = Text::lower(exe);
    for (const auto& e : tables.editors)
        if (Text::contains(path, e.piece)) return e.name;
    return std::nullopt;
}

std::optional<TimePoint> lastChange(std::string_view note, TimePoint now) {
    constexpr std::string_view marker = "changed ";
    auto at = note.find(marker);
    if (at == std::string_view::npos) return std::nullopt;
    std::string_view rest = note.substr(at + marker.size());
    if (rest.starts_with("today")) return now;
    std::tm parts = localParts(now);
    if (rest.starts_with("yesterday")) {
        parts.tm_mday -= 1;
        parts.tm_hour = parts.tm_min = parts.tm_sec = 0;
        return localDate(parts);
    }
    std::string_view s = rest;
    if (auto days = number(s); days && s.starts_with(" days ago")) {
        parts.tm_mday -= *days;
        return localDate(parts);
    }
    // "Mar 4, 2024", or "Mar 4" of this year (the year before, if that would be ahead of now).
    if (rest.size() < 5 || rest[3] != ' ') return std::nullopt;
    auto m = month(rest.substr(0, 3));
    s = rest.substr(4);
    auto day = number(s);
    if (!m || !day || *day < 1 || *day > 31) return std::nullopt;
    std::tm date{};
    date.tm_mon = *m;
    date.tm_mday = *day;
    date.tm_hour = 12;
    if (s.starts_with(", ")) {
        s.remove_prefix(2);
        auto year = number(s);
        if (!year || *year < 1970) return std::nullopt;
        date.tm_year = *year - 1900;
        return localDate(date);
    }
    date.tm_year = parts.tm_year;
    auto thisYear = localDate(date);
    if (thisYear && *thisYear > now) {
        date.tm_year -= 1;
        return localDate(date);
    }
    return thisYear;
}

std::vector<ProjectCard> build(const std::vector<CleanItem>& items, const Snapshot& snap,
                               const std::vector<Leftover>& leftovers, TimePoint now, const ProbeSource& probe,
                               const Layout& layout, const AppBundles& bundles) {
    const std::string& home = layout.home;
    const std::string below = home + "/";

    std::set<int32_t> leftoverPids;
    for (const Leftover& l : leftovers) leftoverPids.insert(l.pids.begin(), l.pids.end());
    std::vector<ProcFacts> facts;
    for (const auto& [pid, record] : snap.procs) {
        if (leftoverPids.contains(pid) || Scanner::shells().contains(record.name)) continue;
        auto cwd = probe.cwd(pid);
        if (cwd && cwd->starts_with(below)) facts.push_back({*cwd, record});
    }

    std::map<std::string, Entry> entries;
    for (const CleanItem& item : items)
        if (item.id.starts_with("project:")) entries[item.id.substr(8)].item = &item;
    auto enter = [&](const std::string& folder) {
        auto root = gitRoot(folder, home);
        if (!root || !root->starts_with(below)) return;
        const std::string_view rel = std::string_view(*root).substr(below.size());
        if (rel.starts_with(".")) return;
        for (const auto& hidden : layout.projects.hiddenBelowHome)
            if (rel.starts_with(hidden)) return;
        entries.try_emplace(*root);
    };
    for (const ProcFacts& f : facts) enter(f.cwd);
    for (const Leftover& l : leftovers) enter(l.cwd);

    const Reading reading{facts, leftovers, now, probe, layout, bundles};
    std::map<std::string, std::vector<std::string>> byParent;
    for (const auto& [root, entry] : entries) byParent[FS::parent(root)].push_back(root);

    std::vector<ProjectCard> cards;
    std::set<std::string> grouped;
    for (const auto& [parent, roots] : byParent) {
        auto name = groupName(parent, roots, home);
        if (!name) continue;
        ProjectCard card;
        card.id = parent;
        card.name = *name;
        card.path = FS::tilde(parent, home);
        for (const auto& root : roots) {
            fill(card, root, entries[root], reading, true);
            grouped.insert(root);
        }
        // Work in the workspace folder itself belongs to the workspace.
        if (count(card, [&](const std::string& cwd) { return cwd == parent; }, reading)) card.running = true;
        sortApps(card.apps);
        cards.push_back(std::move(card));
    }
    for (const auto& [root, entry] : entries) {
        if (grouped.contains(root)) continue;
        ProjectCard card;
        card.id = root;
        card.name = FS::lastComponent(root);
        card.path = FS::tilde(root, home);
        fill(card, root, entry, reading, false);
        cards.push_back(std::move(card));
    }

    foldOld(cards, now);
    std::stable_sort(cards.begin(), cards.end(), [](const ProjectCard& a, const ProjectCard& b) {
        if (rank(a) != rank(b)) return rank(a) < rank(b);
        if (a.apps.empty() != b.apps.empty()) return !a.apps.empty();
        return std::max(a.memory, a.build) > std::max(b.memory, b.build);
    });
    return cards;
}

} // namespace Projects
