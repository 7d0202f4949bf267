#include "history/Growth.h"

#include "foundation/FS.h"
#include "foundation/Text.h"
#include "history/Calendar.h"
#include "foundation/BlockSharing.h"
#include "projects/ProjectGroups.h"
#include "storage/LinkSet.h"

#include <fcntl.h>
#include <fts.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

namespace Growth {

namespace {

constexpr int levels = 64;
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

bool holdsProjectMarker(const std::string& path) {
    return FS::exists(path + "/.git") || FS::exists(path + "/package.json");
}

// What one counted key stands for, noted at first sight.
struct KeyFacts {
    GrowthBucket bucket = GrowthBucket::appData;
    std::string location;
    bool recorded = false;
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
                         const std::optional<std::string>& relative, const StorageTables& t) {
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
    if (c.bucket == GrowthBucket::files && !c.project && holdsProjectMarker(path)) {
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
    const TimePoint periodStart = first.value_or(now);

    int maxDepth = 0;
    for (const auto& [rel, rule] : t.growthPlaces) maxDepth = std::max(maxDepth, depthOf(rel));
    for (const auto& [rel, rule] : t.growthChildren) maxDepth = std::max(maxDepth, depthOf(rel) + 1);

    std::array<std::unordered_map<std::string, int64_t>, dayCount> days;
    std::unordered_map<std::string, KeyFacts> facts;
    std::unordered_set<uint64_t> seenLinks;
    std::unordered_map<dev_t, bool> sharing; // whether a device can share blocks, asked once each
    std::vector<Ctx> ctx(levels);
    ctx[0].location = "~";
    // The booking key of each level, made once per folder rather than once per file.
    std::vector<std::string> bookKey(levels, "place|Other");
    int folders = 0;

    std::string root = home;
    char* roots[] = {root.data(), nullptr};
    FTS* fts = fts_open(roots, FTS_PHYSICAL | FTS_XDEV | FTS_NOCHDIR | FTS_NOSTAT, nullptr);
    if (fts) {
        while (FTSENT* e = fts_read(fts)) {
            const int level = e->fts_level;
            if (level >= deepest) {
                if (e->fts_info == FTS_D) fts_set(fts, e, FTS_SKIP);
                continue;
            }
            if (e->fts_info == FTS_D) {
                if (progress && ++folders % 1000 == 0) progress(folders);
                if (level == 0) continue;
                std::string path(e->fts_path, e->fts_pathlen);
                std::optional<std::string> relative;
                if (level <= maxDepth) relative = path.substr(home.size() + 1);
                auto c = enter(ctx[level - 1], path, e->fts_name, relative, t);
                if (!c) {
                    fts_set(fts, e, FTS_SKIP);
                    continue;
                }
                ctx[level] = std::move(*c);
                const Ctx& here = ctx[level];
                if (here.project)
                    bookKey[level] = "proj|" + std::to_string(here.kind) + "|" + *here.project;
                else
                    bookKey[level] = here.key.value_or("place|Other");
                continue;
            }
            if (e->fts_info != FTS_NSOK && e->fts_info != FTS_F) continue;
            if (level < 1) continue;

            struct statx sx {};
            if (statx(AT_FDCWD, e->fts_accpath, AT_SYMLINK_NOFOLLOW,
                      STATX_TYPE | STATX_NLINK | STATX_INO | STATX_BLOCKS | STATX_MTIME | STATX_BTIME, &sx) != 0)
                continue;
            if (!S_ISREG(sx.stx_mode)) continue;
            const statx_timestamp& born =
                dates == Dates::birth && (sx.stx_mask & STATX_BTIME) ? sx.stx_btime : sx.stx_mtime;
            TimePoint birth = fileDate(born, now);
            if (birth < periodStart) continue;
            dev_t device = makedev(sx.stx_dev_major, sx.stx_dev_minor);
            if (sx.stx_nlink > 1 && !seenLinks.insert(LinkSet::key(sx.stx_ino, device)).second) continue;
            int64_t bytes = static_cast<int64_t>(sx.stx_blocks) * 512;
            if (bytes <= 0) continue;
            auto known = sharing.find(device);
            if (known == sharing.end()) known = sharing.emplace(device, BlockSharing::canShare(e->fts_accpath)).first;
            if (known->second) {
                // A clone of an old file is new by its date but shares all its blocks.
                if (auto own = BlockSharing::unsharedBytes(e->fts_accpath)) {
                    if (*own <= 0) continue;
                    bytes = std::min(bytes, *own);
                }
            }
            std::size_t day = 0;
            for (std::size_t i = 0; i < dayCount; ++i)
                if (starts[i] <= birth) day = i;
            const Ctx& owner = ctx[level - 1];
            const std::string& key = bookKey[level - 1];
            if (!owner.project) {
                KeyFacts& f = facts[key];
                if (!f.recorded) f = KeyFacts{owner.bucket, owner.location, true};
            }
            days[day][key] += bytes;
        }
        fts_close(fts);
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
