#include "history/Growth.h"

#include "foundation/FS.h"
#include "foundation/Text.h"
#include "history/Calendar.h"
#include "foundation/BlockSharing.h"
#include "foundation/Walker.h"
#include "projects/ProjectGroups.h"
#include "storage/LinkSet.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <set>
#include <unordered_map>

namespace Growth {

namespace {

constexpr int deepest = 60;
constexpr std::size_t dayCount = 14;

using Naming = StorageTables::GrowthNaming;

int depthOf(const std::string& relative) {
    if (relative.empty()) return 0;
    return 1 + static_cast<int>(std::count(relative.begin(), relative.end(), '/'));
}

std::string lookup(const std::map<std::string, std::string>& table, const std::string& name, std::string fallback) {
    auto it = table.find(name);
    return it != table.end() ? it->second : std::move(fallback);
}

void nameChild(Ctx& c, const std::string& name, const StorageTables::GrowthChildRule& rule, const StorageTables& t) {
    switch (rule.naming) {
    case Naming::home:
        if (name.starts_with(".")) {
            c.key = "place|" + lookup(t.growthDotNames, name, pretty(name) + " data");
            c.bucket = GrowthBucket::tools;
        } else {
            c.key = "place|" + name;
            c.bucket = GrowthBucket::files;
        }
        c.location = "~/" + name;
        return;
    case Naming::fixed:
        c.key = rule.key;
        c.location = rule.location;
        c.bucket = rule.bucket;
        return;
    case Naming::support:
        c.key = "place|" + lookup(t.supportNames, name, pretty(name) + " data");
        c.location = rule.location + name;
        c.bucket = t.toolSupport.contains(name) ? GrowthBucket::tools : GrowthBucket::appData;
        return;
    case Naming::cache: {
        std::string title;
        if (auto it = t.cacheNames.find(name); it != t.cacheNames.end()) title = it->second;
        else if (name.ends_with(".ShipIt")) title = pretty(std::string_view(name).substr(0, name.size() - 7)) + " update files";
        else title = pretty(name) + " cache";
        c.key = "place|" + title;
        c.location = rule.location + name;
        c.bucket = GrowthBucket::appData;
        return;
    }
    case Naming::container:
        c.key = "place|" + pretty(name) + " data";
        c.location = rule.location + name;
        c.bucket = GrowthBucket::appData;
        return;
    }
}

bool holdsProjectMarker(const std::string& path, int fd) {
    if (fd < 0) return FS::exists(path + "/.git") || FS::exists(path + "/package.json");
    struct stat st {};
    return fstatat(fd, ".git", &st, AT_SYMLINK_NOFOLLOW) == 0 || fstatat(fd, "package.json", &st, AT_SYMLINK_NOFOLLOW) == 0;
}

// What one counted key stands for, noted at first sight.
struct KeyFacts {
    GrowthBucket bucket = GrowthBucket::appData;
    std::string location;
    bool recorded = false;
};

// The context of the folders that share it, and the key their files are booked on, made once
// per context rather than once per file.
struct Level {
    Ctx ctx;
    std::string bookKey;
};

// What the walking threads share: the tables, the period, the contexts (never moved once made)
// and the hard links met.
struct Walking {
    const StorageTables& tables;
    const std::string& home;
    int maxDepth;
    const std::array<TimePoint, dayCount>& starts;
    TimePoint periodStart;
    TimePoint now; // a file dated later counts as made now
    Dates dates;
    const Progress& progress;
    std::mutex lock;
    std::deque<Level> levels; // under `lock`
    std::atomic<int> folders{0};

    // New files with several links: the one met first in path order is booked, whatever the
    // order in which the threads meet them.
    struct Sighting {
        std::string path;
        std::size_t day = 0;
        int64_t bytes = 0;
        const Level* owner = nullptr;
    };
    std::unordered_map<uint64_t, Sighting> linked; // under `lock`

    void sight(uint64_t key, Sighting s) {
        std::lock_guard guard(lock);
        auto [it, made] = linked.try_emplace(key, s);
        if (!made && s.path < it->second.path) it->second = std::move(s);
    }

    Walking(const StorageTables& t, const std::string& h, int depth, const std::array<TimePoint, dayCount>& s,
            TimePoint start, TimePoint n, Dates d, const Progress& p)
        : tables(t), home(h), maxDepth(depth), starts(s), periodStart(start), now(n), dates(d), progress(p) {}

    const Level* add(Level level) {
        std::lock_guard guard(lock);
        return &levels.emplace_back(std::move(level));
    }

    void countFolder() {
        int n = ++folders;
        if (progress && n % 1000 == 0) {
            std::lock_guard guard(lock);
            progress(n);
        }
    }
};

// One thread's part of the walk: its own tables by day, merged when all are done.
class Walk : public Walker::Visitor {
public:
    explicit Walk(Walking& s) : shared(s) {}

    std::array<std::unordered_map<std::string, int64_t>, dayCount> days;
    std::unordered_map<std::string, KeyFacts> facts;

    bool admit(const Walker::Entry& e) override { return e.level < deepest; }

    std::optional<Walker::Enter> folder(const Walker::Entry& e, int fd) override {
        shared.countFolder();
        const Level* parent = levelOf(e.tag);
        if (e.level == 0) return Walker::Enter{e.tag};
        if (e.error || e.mountPoint) return std::nullopt;
        const std::string path = e.path();
        std::optional<std::string> relative;
        if (e.level <= shared.maxDepth) relative = relativeTo(path);
        auto c = enter(parent->ctx, path, std::string(e.name), relative, shared.tables, fd);
        if (!c) return std::nullopt;
        if (*c == parent->ctx) return Walker::Enter{e.tag};
        std::string key = c->project ? "proj|" + std::to_string(c->kind) + "|" + *c->project : c->key.value_or("place|Other");
        return Walker::Enter{reinterpret_cast<uintptr_t>(shared.add(Level{std::move(*c), std::move(key)}))};
    }

    void other(const Walker::Entry& e) override {
        if (e.level < 1 || e.level >= deepest) return;
        const Walker::Stat& st = *e.stat;
        if (!S_ISREG(st.mode)) return;
        const bool byBirth = shared.dates == Dates::birth && st.hasBirth;
        const int64_t seconds = byBirth ? st.born : st.modified;
        const uint32_t nanos = byBirth ? st.bornNanos : st.modifiedNanos;
        TimePoint birth = fileDate(seconds, nanos, shared.now);
        if (birth < shared.periodStart) return;
        int64_t bytes = st.bytes;
        if (bytes <= 0) return;
        auto known = sharing.find(st.device);
        if (known == sharing.end()) known = sharing.emplace(st.device, BlockSharing::canShareAt(e.at)).first;
        if (known->second) {
            // A clone of an old file is new by its date but shares all its blocks.
            if (auto own = BlockSharing::unsharedBytesAt(e.at, std::string(e.name).c_str())) {
                if (*own <= 0) return;
                bytes = std::min(bytes, *own);
            }
        }
        std::size_t day = 0;
        for (std::size_t i = 0; i < dayCount; ++i)
            if (shared.starts[i] <= birth) day = i;
        const Level* owner = levelOf(e.tag);
        if (st.links > 1) shared.sight(LinkSet::key(st.inode, st.device), {e.path(), day, bytes, owner});
        else book(owner, day, bytes);
    }

    void book(const Level* owner, std::size_t day, int64_t bytes) {
        if (!owner->ctx.project) {
            KeyFacts& f = facts[owner->bookKey];
            if (!f.recorded) f = KeyFacts{owner->ctx.bucket, owner->ctx.location, true};
        }
        days[day][owner->bookKey] += bytes;
    }

private:
    Walking& shared;
    std::unordered_map<uint64_t, bool> sharing; // whether a device can share blocks, asked once each

    static const Level* levelOf(uintptr_t tag) { return reinterpret_cast<const Level*>(tag); }

    std::string relativeTo(const std::string& path) const {
        const std::string& home = shared.home;
        if (home == "/") return path.substr(1);
        return path.size() > home.size() ? path.substr(home.size() + 1) : std::string();
    }
};

bool bigger(const GrowthPlace& a, const GrowthPlace& b) {
    if (a.bytes != b.bytes) return a.bytes > b.bytes;
    if (a.name != b.name) return a.name < b.name;
    return a.location < b.location;
}

} // namespace

std::string pretty(std::string_view name) {
    if (name.starts_with(".")) name.remove_prefix(1);
    if (auto dot = name.rfind('.'); dot != std::string_view::npos) name = name.substr(dot + 1);
    std::string out(name);
    if (!out.empty() && out[0] >= 'a' && out[0] <= 'z') out[0] = static_cast<char>(out[0] - 'a' + 'A');
    return out;
}

std::optional<Ctx> enter(const Ctx& parent, const std::string& path, const std::string& name,
                         const std::optional<std::string>& relative, const StorageTables& t, int fd) {
    Ctx c = parent;
    if (parent.project) {
        if (name == "node_modules") c.kind = std::max(parent.kind, 1);
        else if (parent.kind != 0) c.kind = parent.kind;
        else c.kind = t.buildNames.contains(name) ? 2 : 0;
    }
    if (relative) {
        if (auto place = t.growthPlaces.find(*relative); place != t.growthPlaces.end()) {
            if (place->second.skip) return std::nullopt;
            c.key = place->second.key;
            c.location = place->second.location;
            c.bucket = place->second.bucket;
        } else {
            auto slash = relative->rfind('/');
            std::string parentRelative = slash == std::string::npos ? std::string() : relative->substr(0, slash);
            if (auto rule = t.growthChildren.find(parentRelative); rule != t.growthChildren.end())
                nameChild(c, name, rule->second, t);
        }
    }
    if (c.bucket == GrowthBucket::files && !c.project && holdsProjectMarker(path, fd)) {
        c.project = path;
        c.kind = 0;
        c.bucket = GrowthBucket::projects;
    }
    return c;
}

GrowthReport scan(TimePoint now, const Progress& progress) { return scan(Layout::host(), now, progress, Dates::birth); }

GrowthReport scan(const Layout& layout, TimePoint now, const Progress& progress, Dates dates) {
    const StorageTables& t = layout.storage;
    const std::string& home = layout.home;

    // The period: the start of today less 13 days, each day start by the calendar.
    std::array<TimePoint, dayCount> starts{};
    auto first = Calendar::dayStart(now, -13);
    for (std::size_t i = 0; i < dayCount; ++i) {
        auto s = first ? Calendar::dayStart(*first, static_cast<int>(i)) : std::nullopt;
        starts[i] = s ? *s : addSeconds(first.value_or(now), 86400.0 * static_cast<double>(i));
    }

    int maxDepth = 0;
    for (const auto& [rel, rule] : t.growthPlaces) maxDepth = std::max(maxDepth, depthOf(rel));
    for (const auto& [rel, rule] : t.growthChildren) maxDepth = std::max(maxDepth, depthOf(rel) + 1);

    Walking shared(t, home, maxDepth, starts, first.value_or(now), now, dates, progress);
    Ctx top;
    top.location = "~";
    Walker::Root root{home, reinterpret_cast<uintptr_t>(shared.add(Level{top, "place|Other"}))};
    Walker::Options options;
    options.need = Walker::Need::birth;
    auto walks = Walker::walk<Walk>({root}, options, [&] { return std::make_unique<Walk>(shared); });
    for (const auto& [key, s] : shared.linked) walks.front()->book(s.owner, s.day, s.bytes);

    std::array<std::unordered_map<std::string, int64_t>, dayCount> days;
    std::unordered_map<std::string, KeyFacts> facts;
    for (const auto& w : walks) {
        for (std::size_t i = 0; i < dayCount; ++i)
            for (const auto& [key, bytes] : w->days[i]) days[i][key] += bytes;
        // A key met in several places by several threads keeps one of them, the same every run.
        for (const auto& [key, f] : w->facts) {
            auto [it, made] = facts.try_emplace(key, f);
            if (!made && f.location < it->second.location) it->second = f;
        }
    }

    // Project labels: a workspace's name for sibling apps of one workspace, else the folder's.
    std::map<std::string, std::vector<std::string>> byParent;
    {
        std::set<std::string> projects;
        for (const auto& table : days)
            for (const auto& [key, bytes] : table)
                if (key.starts_with("proj|")) projects.insert(key.substr(key.find('|', 5) + 1));
        for (const auto& p : projects) byParent[FS::parent(p)].push_back(p);
    }
    std::map<std::string, ProjName> names;
    for (const auto& [parent, roots] : byParent) {
        auto group = Projects::groupName(parent, roots, home);
        for (const auto& p : roots)
            names[p] = ProjName{group ? *group : FS::lastComponent(p), {}, FS::tilde(p, home)};
    }
    auto placeOf = [&](const std::string& key, int64_t bytes) {
        GrowthPlace place;
        place.bytes = bytes;
        if (key.starts_with("proj|")) {
            int kind = key[5] - '0';
            std::string path = key.substr(7);
            const ProjName& n = names[path];
            const char* suffix = kind == 1 ? " packages" : kind == 2 ? " build output" : " project files";
            place.name = n.label + suffix;
            place.location = n.location;
            place.bucket = GrowthBucket::projects;
        } else {
            place.name = key.substr(6);
            auto f = facts.find(key);
            place.location = f != facts.end() ? f->second.location : std::string();
            place.bucket = f != facts.end() && f->second.recorded ? f->second.bucket : GrowthBucket::appData;
        }
        return place;
    };

    GrowthReport report;
    report.made = now;
    std::map<std::string, int64_t> overall;
    for (std::size_t i = 0; i < dayCount; ++i) {
        GrowthDay day;
        day.date = starts[i];
        std::map<std::pair<std::string, std::string>, GrowthPlace> merged;
        for (const auto& [key, bytes] : days[i]) {
            GrowthPlace place = placeOf(key, bytes);
            day.buckets[static_cast<std::size_t>(place.bucket)] += bytes;
            overall[key] += bytes;
            auto [it, made] = merged.try_emplace({place.name, place.location}, place);
            if (!made) it->second.bytes += bytes;
        }
        for (auto& [k, place] : merged) day.top.push_back(std::move(place));
        std::sort(day.top.begin(), day.top.end(), bigger);
        if (day.top.size() > 5) day.top.resize(5);
        report.days.push_back(std::move(day));
    }
    for (const auto& [key, bytes] : overall) report.biggest.push_back(placeOf(key, bytes));
    std::sort(report.biggest.begin(), report.biggest.end(), bigger);
    if (report.biggest.size() > 6) report.biggest.resize(6);
    return report;
}

} // namespace Growth
