#include "app/AppLists.h"

#include "app/AppModel.h"
#include "app/QmlValues.h"
#include "history/History.h"
#include "storage/FileKind.h"
#include "storage/StorageKind.h"

using namespace QmlValues;

namespace AppLists {

namespace {

QString removalName(const Removal& r) {
    switch (r.kind) {
    case Removal::Kind::deleteForGood: return QStringLiteral("delete");
    case Removal::Kind::trash: return QStringLiteral("trash");
    case Removal::Kind::command: return QStringLiteral("command");
    }
    return {};
}

QString impactName(RecImpact::Kind k) {
    switch (k) {
    case RecImpact::Kind::cpu: return QStringLiteral("cpu");
    case RecImpact::Kind::memory: return QStringLiteral("memory");
    case RecImpact::Kind::disk: return QStringLiteral("disk");
    case RecImpact::Kind::swap: return QStringLiteral("swap");
    }
    return {};
}

QString actionName(RecAction::Kind k) {
    switch (k) {
    case RecAction::Kind::quit: return QStringLiteral("quit");
    case RecAction::Kind::relaunch: return QStringLiteral("relaunch");
    case RecAction::Kind::freeItems: return QStringLiteral("freeItems");
    case RecAction::Kind::open: return QStringLiteral("open");
    case RecAction::Kind::stopLeftovers: return QStringLiteral("stopLeftovers");
    case RecAction::Kind::restart: return QStringLiteral("restart");
    case RecAction::Kind::clearCaches: return QStringLiteral("clearCaches");
    }
    return {};
}

QString reasonName(RecReason r) {
    switch (r) {
    case RecReason::slow: return QStringLiteral("slow");
    case RecReason::memory: return QStringLiteral("memory");
    case RecReason::disk: return QStringLiteral("disk");
    case RecReason::wait: return QStringLiteral("wait");
    case RecReason::snoozed: return QStringLiteral("snoozed");
    }
    return {};
}

} // namespace

std::string cleanItemKey(const CleanItem& item) { return item.id; }

Roles<CleanItem> cleanItemRoles(const AppModel& m) {
    return {
        {"id", [](const CleanItem& i) { return QVariant(text(i.id)); }},
        {"tier", [](const CleanItem& i) { return QVariant(Tiers::id(i.tier)); }},
        {"name", [](const CleanItem& i) { return QVariant(text(i.name)); }},
        {"location", [](const CleanItem& i) { return QVariant(text(i.location)); }},
        {"note", [](const CleanItem& i) { return QVariant(text(i.note)); }},
        {"shortNote", [](const CleanItem& i) { return QVariant(text(i.shortNote())); }},
        {"shortLocation", [](const CleanItem& i) { return QVariant(text(i.shortLocation())); }},
        {"fullLocation", [](const CleanItem& i) { return QVariant(text(i.fullLocation())); }},
        {"size", [](const CleanItem& i) { return QVariant(qint64(i.size)); }},
        {"locked", [](const CleanItem& i) { return QVariant(i.isLocked()); }},
        {"lockedReason", [](const CleanItem& i) { return optionalText(i.lockedReason); }},
        {"defaultOn", [](const CleanItem& i) { return QVariant(i.defaultOn); }},
        {"removal", [](const CleanItem& i) { return QVariant(removalName(i.removal)); }},
        {"cacheKind", [](const CleanItem& i) { return i.cacheKind ? QVariant(text(CacheKinds::rawValue(*i.cacheKind))) : QVariant(); }},
        {"stale", [](const CleanItem& i) { return QVariant(i.cacheKind && CacheKinds::isStale(*i.cacheKind)); }},
        {"lastUsed", [](const CleanItem& i) { return date(i.lastUsed); }},
        {"recentLabel", [](const CleanItem& i) { return optionalText(i.recentLabel()); }},
        {"isOpen", [](const CleanItem& i) { return QVariant(i.isOpen()); }},
        {"symbol", [](const CleanItem& i) { return QVariant(text(i.symbol())); }},
        {"tint", [](const CleanItem& i) { return QVariant(text(i.tint())); }},
        {"reveal", [](const CleanItem& i) { return i.reveal.empty() ? QVariant() : QVariant(text(i.reveal.front())); }},
        {"refillNote", [&m](const CleanItem& i) { return optionalText(m.history().refillNote(i, m.clock().now())); }},
        {"ticked", [&m](const CleanItem& i) { return QVariant(!i.isLocked() && m.selected().contains(i.id)); }},
    };
}

std::string recKey(const Rec& rec) { return rec.id; }

Roles<Rec> recRoles(const AppModel& m) {
    return {
        {"id", [](const Rec& r) { return QVariant(text(r.id)); }},
        {"now", [](const Rec& r) { return QVariant(r.now); }},
        {"reason", [](const Rec& r) { return QVariant(reasonName(r.reason)); }},
        {"reasonLabel", [](const Rec& r) { return QVariant(text(RecReasons::label(r.reason))); }},
        {"reasonSymbol", [](const Rec& r) { return QVariant(text(RecReasons::symbol(r.reason))); }},
        {"title", [](const Rec& r) { return QVariant(text(r.title)); }},
        {"why", [](const Rec& r) { return QVariant(text(r.why)); }},
        {"effect", [](const Rec& r) { return QVariant(text(r.effect)); }},
        {"tip", [](const Rec& r) { return QVariant(text(r.tip)); }},
        {"actionLabel", [](const Rec& r) { return QVariant(text(r.actionLabel)); }},
        {"shortLabel", [](const Rec& r) { return QVariant(text(r.shortLabel)); }},
        {"busyLabel", [](const Rec& r) { return QVariant(text(r.busyLabel)); }},
        {"doneLabel", [](const Rec& r) { return QVariant(text(r.doneLabel)); }},
        {"doneChip", [](const Rec& r) { return QVariant(text(r.doneChip)); }},
        {"safe", [](const Rec& r) { return QVariant(r.safe); }},
        {"caveat", [](const Rec& r) { return optionalText(r.caveat); }},
        {"arm", [](const Rec& r) { return QVariant(r.arm); }},
        {"symbol", [](const Rec& r) { return QVariant(text(r.symbol)); }},
        {"tint", [](const Rec& r) { return QVariant(text(r.tint)); }},
        {"appPath", [](const Rec& r) { return optionalText(r.appPath); }},
        {"impact", [](const Rec& r) { return QVariant(impactName(r.impact.kind)); }},
        {"impactKey", [](const Rec& r) { return QVariant(text(r.impact.key)); }},
        {"impactBytes", [](const Rec& r) { return QVariant(qint64(r.impact.bytes)); }},
        {"cpuShare", [](const Rec& r) { return QVariant(r.cpuShare); }},
        {"memory", [](const Rec& r) { return QVariant(qint64(r.memory)); }},
        {"action", [](const Rec& r) { return QVariant(actionName(r.action.kind)); }},
        {"actionKey", [](const Rec& r) { return QVariant(text(r.action.key)); }},
        {"actionTab", [](const Rec& r) { return QVariant(Tabs::id(r.action.tab)); }},
        {"itemIDs", [](const Rec& r) { return QVariant(texts(r.action.itemIDs)); }},
        {"state", [&m](const Rec& r) {
             auto it = m.acting().find(r.id);
             return it == m.acting().end() ? QVariant(QString()) : QVariant(recState(it->second));
         }},
        {"armed", [&m](const Rec& r) { return QVariant(m.armed() == "rec:" + r.id); }},
        {"failed", [&m](const Rec& r) { return QVariant(m.failedRec() == r.id); }},
    };
}

std::string projectKey(const ProjectCard& card) { return card.id; }

Roles<ProjectCard> projectRoles(const AppModel& m) {
    return {
        {"id", [](const ProjectCard& c) { return QVariant(text(c.id)); }},
        {"name", [](const ProjectCard& c) { return QVariant(text(c.name)); }},
        {"path", [](const ProjectCard& c) { return QVariant(text(c.path)); }},
        {"apps", [](const ProjectCard& c) {
             QVariantList out;
             for (const auto& a : c.apps) out << projectApp(a);
             return QVariant(out);
         }},
        {"claude", [](const ProjectCard& c) { return QVariant(c.claude); }},
        {"mcp", [](const ProjectCard& c) { return QVariant(c.mcp); }},
        {"ports", [](const ProjectCard& c) {
             QVariantList out;
             for (int p : c.ports) out << p;
             return QVariant(out);
         }},
        {"editors", [](const ProjectCard& c) { return QVariant(texts(c.editors)); }},
        {"leftovers", [](const ProjectCard& c) {
             QVariantList out;
             for (const auto& l : c.leftovers) out << leftover(l);
             return QVariant(out);
         }},
        {"memory", [](const ProjectCard& c) { return QVariant(qint64(c.memory)); }},
        {"build", [](const ProjectCard& c) { return QVariant(qint64(c.build)); }},
        {"idleBuild", [](const ProjectCard& c) { return QVariant(qint64(c.idleBuild)); }},
        {"idleItemIDs", [](const ProjectCard& c) { return QVariant(texts(c.idleItemIDs)); }},
        {"running", [](const ProjectCard& c) { return QVariant(c.running); }},
        {"lastChange", [](const ProjectCard& c) { return date(c.lastChange); }},
        {"isOlder", [](const ProjectCard& c) { return QVariant(c.isOlder); }},
        {"recentlyChanged", [](const ProjectCard& c) { return QVariant(c.recentlyChanged); }},
        {"freed", [&m](const ProjectCard& c) { return QVariant(m.freedProjects().contains(c.id)); }},
        {"armed", [&m](const ProjectCard& c) { return QVariant(m.armed() == "proj:" + c.id); }},
    };
}

std::string categoryKey(const StorageCategory& c) { return std::string(StorageKinds::raw(c.kind)); }

Roles<StorageCategory> categoryRoles() {
    return {
        {"id", [](const StorageCategory& c) { return QVariant(text(StorageKinds::raw(c.kind))); }},
        {"kind", [](const StorageCategory& c) { return QVariant(text(StorageKinds::raw(c.kind))); }},
        {"title", [](const StorageCategory& c) { return QVariant(text(StorageKinds::title(c.kind))); }},
        {"blurb", [](const StorageCategory& c) { return QVariant(text(StorageKinds::blurb(c.kind))); }},
        {"symbol", [](const StorageCategory& c) { return QVariant(text(StorageKinds::symbol(c.kind))); }},
        {"colour", [](const StorageCategory& c) { return QVariant(text(StorageKinds::colour(c.kind))); }},
        {"bytes", [](const StorageCategory& c) { return QVariant(qint64(c.bytes)); }},
        {"unreadable", [](const StorageCategory& c) { return QVariant(c.unreadable); }},
        {"unreadableFolders", [](const StorageCategory& c) { return QVariant(texts(c.unreadableFolders)); }},
        {"canTrash", [](const StorageCategory& c) { return QVariant(StorageKinds::canTrash(c.kind)); }},
        {"items", [](const StorageCategory& c) {
             QVariantList out;
             for (const auto& i : c.items) out << storageItem(i);
             return QVariant(out);
         }},
    };
}

std::string bigFileKey(const BigFile& f) { return f.path; }

Roles<BigFile> bigFileRoles(const AppModel& m) {
    return {
        {"id", [](const BigFile& f) { return QVariant(text(f.path)); }},
        {"name", [](const BigFile& f) { return QVariant(text(f.name)); }},
        {"path", [](const BigFile& f) { return QVariant(text(f.path)); }},
        {"bytes", [](const BigFile& f) { return QVariant(qint64(f.bytes)); }},
        {"kind", [](const BigFile& f) { return QVariant(text(FileKinds::raw(f.kind))); }},
        {"kindTitle", [](const BigFile& f) { return QVariant(text(FileKinds::title(f.kind))); }},
        {"symbol", [](const BigFile& f) { return QVariant(text(FileKinds::symbol(f.kind))); }},
        {"category", [](const BigFile& f) { return QVariant(text(StorageKinds::raw(f.category))); }},
        {"modified", [](const BigFile& f) { return date(f.modified); }},
        {"opened", [](const BigFile& f) { return date(f.opened); }},
        {"trashing", [&m](const BigFile& f) { return QVariant(m.trashing().contains(f.path)); }},
    };
}

std::string appSizeKey(const AppSize& a) { return a.path; }

Roles<AppSize> appSizeRoles() {
    return {
        {"id", [](const AppSize& a) { return QVariant(text(a.path)); }},
        {"name", [](const AppSize& a) { return QVariant(text(a.name)); }},
        {"path", [](const AppSize& a) { return QVariant(text(a.path)); }},
        {"bundleID", [](const AppSize& a) { return optionalText(a.bundleID); }},
        {"appBytes", [](const AppSize& a) { return QVariant(qint64(a.appBytes)); }},
        {"dataBytes", [](const AppSize& a) { return QVariant(qint64(a.dataBytes)); }},
        {"total", [](const AppSize& a) { return QVariant(qint64(a.total())); }},
        {"lastUsed", [](const AppSize& a) { return date(a.lastUsed); }},
    };
}

std::string growthDayKey(const GrowthDay& d) { return std::to_string(d.date.time_since_epoch().count()); }

Roles<GrowthDay> growthDayRoles() {
    return {
        {"date", [](const GrowthDay& d) { return QVariant(date(d.date)); }},
        {"buckets", [](const GrowthDay& d) {
             QVariantList out;
             for (int64_t b : d.buckets) out << qint64(b);
             return QVariant(out);
         }},
        {"total", [](const GrowthDay& d) { return QVariant(qint64(d.total())); }},
        {"top", [](const GrowthDay& d) {
             QVariantList out;
             for (const auto& p : d.top) out << growthPlace(p);
             return QVariant(out);
         }},
    };
}

std::string growthPlaceKey(const GrowthPlace& p) { return p.name + "\n" + p.location; }

Roles<GrowthPlace> growthPlaceRoles() {
    return {
        {"name", [](const GrowthPlace& p) { return QVariant(text(p.name)); }},
        {"location", [](const GrowthPlace& p) { return QVariant(text(p.location)); }},
        {"bytes", [](const GrowthPlace& p) { return QVariant(qint64(p.bytes)); }},
        {"bucket", [](const GrowthPlace& p) { return QVariant(GrowthBuckets::raw(p.bucket)); }},
    };
}

std::string appUsageKey(const AppUsage& a) { return a.id; }

Roles<AppUsage> appUsageRoles(const AppModel& m) {
    return {
        {"id", [](const AppUsage& a) { return QVariant(text(a.id)); }},
        {"name", [](const AppUsage& a) { return QVariant(text(a.name)); }},
        {"bundlePath", [](const AppUsage& a) { return optionalText(a.bundlePath); }},
        {"bundleID", [](const AppUsage& a) { return optionalText(a.bundleID); }},
        {"mainPID", [](const AppUsage& a) { return a.mainPID ? QVariant(*a.mainPID) : QVariant(); }},
        {"pids", [](const AppUsage& a) { return QVariant(ints(a.pids)); }},
        {"cores", [](const AppUsage& a) { return QVariant(a.cores); }},
        {"memory", [](const AppUsage& a) { return QVariant(qint64(a.memory)); }},
        {"started", [](const AppUsage& a) { return date(a.started); }},
        {"accessory", [](const AppUsage& a) { return QVariant(a.accessory); }},
        {"isFront", [](const AppUsage& a) { return QVariant(a.isFront); }},
        {"isLoose", [](const AppUsage& a) { return QVariant(a.isLoose()); }},
        {"canQuit", [&m](const AppUsage& a) { return QVariant(m.monitor().canQuit(a)); }},
        {"kept", [&m](const AppUsage& a) { return QVariant(m.monitor().isKept(a)); }},
        {"nothingToSave", [&m](const AppUsage& a) { return QVariant(m.monitor().nothingToSave(a)); }},
    };
}

std::string leftoverKey(const Leftover& l) { return std::to_string(l.id); }

Roles<Leftover> leftoverRoles() {
    return {
        {"id", [](const Leftover& l) { return QVariant(l.id); }},
        {"pids", [](const Leftover& l) { return QVariant(ints(l.pids)); }},
        {"label", [](const Leftover& l) { return QVariant(text(l.label)); }},
        {"cwd", [](const Leftover& l) { return QVariant(text(l.cwd)); }},
        {"project", [](const Leftover& l) { return QVariant(text(l.project)); }},
        {"started", [](const Leftover& l) { return QVariant(date(l.started)); }},
        {"memory", [](const Leftover& l) { return QVariant(qint64(l.memory)); }},
    };
}

} // namespace AppLists
