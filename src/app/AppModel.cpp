// The model's state, its derived values, selection, the advice cache, the toast, tabs and the
// low-space watch.
#include "app/AppModel.h"

#include "app/AlertNotifier.h"
#include "app/AppLists.h"
#include "app/RealClock.h"
#include "foundation/FS.h"
#include "foundation/Rendering.h"
#include "history/History.h"
#include "storage/StorageStore.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace {

template <class T>
std::unique_ptr<RecordListModel<T>> list(typename RecordListModel<T>::Key key, AppLists::Roles<T> roles, QObject* parent) {
    return std::make_unique<RecordListModel<T>>(std::move(key), std::move(roles), parent);
}

} // namespace

AppModel& AppModel::shared() {
    static RealClock clock;
    // Owned by the application object, so it goes before the event loop's last objects do.
    static AppModel* instance = new AppModel(AppSetup::host(clock), QCoreApplication::instance());
    return *instance;
}

AppModel::AppModel(AppSetup s, QObject* parent)
    : QObject(parent), setup(std::move(s)),
      ownHistory(setup.history ? nullptr : std::make_unique<History>(setup.supportDir)),
      history_(setup.history ? setup.history : ownHistory.get()), monitorHost(*setup.clock, worker, this),
      monitor_(std::make_unique<Monitor>(&monitorHost, *setup.probe, setup.layout, *setup.bundles)),
      itemsList(AppLists::cleanItemKey, AppLists::cleanItemRoles(*this), this),
      cleanItemsList(AppLists::cleanItemKey, AppLists::cleanItemRoles(*this), this),
      recsList(AppLists::recKey, AppLists::recRoles(*this), this),
      nowRecsList(AppLists::recKey, AppLists::recRoles(*this), this),
      laterRecsList(AppLists::recKey, AppLists::recRoles(*this), this),
      safeRecsList(AppLists::recKey, AppLists::recRoles(*this), this),
      projectsList(AppLists::projectKey, AppLists::projectRoles(*this), this),
      categoriesList(AppLists::categoryKey, AppLists::categoryRoles(), this),
      biggestList(AppLists::bigFileKey, AppLists::bigFileRoles(*this), this),
      appSizesList(AppLists::appSizeKey, AppLists::appSizeRoles(), this),
      growthDaysList(AppLists::growthDayKey, AppLists::growthDayRoles(), this),
      growthPlacesList(AppLists::growthPlaceKey, AppLists::growthPlaceRoles(), this),
      appUsageList(AppLists::appUsageKey, AppLists::appUsageRoles(*this), this),
      slowAppsList(AppLists::appUsageKey, AppLists::appUsageRoles(*this), this),
      leftoversList(AppLists::leftoverKey, AppLists::leftoverRoles(), this) {
    for (Tier t : Tiers::allCases)
        tierLists[static_cast<std::size_t>(Tiers::id(t))] = list<CleanItem>(AppLists::cleanItemKey, AppLists::cleanItemRoles(*this), this);
    monitor_->clock = [this] { return now(); };
    monitor_->changed = [this] { monitorSampled(); };
    // Alerts are decided at each closed minute, against the history's 20-hour memory.
    monitor_->minuteClosed = [this](Monitor& m) {
        AlertNotifier poster(setup.notifier);
        Alerts::evaluate(m, *history_, poster, now(), setup.cores);
    };
    disk_ = setup.readDisk ? setup.readDisk() : DiskInfo{};
    loginItemOn_ = FS::exists(setup.loginItemFile);
    growth_ = history_->data.growth;
    if (growth_) {
        growthDaysList.update(growth_->days);
        growthPlacesList.update(growth_->biggest);
    }
    storage_ = StorageStore::load(setup.supportDir);
    showStorage();
}

AppModel::~AppModel() {
    // Long jobs notice their tokens; a clean can't be stopped and is waited for.
    if (scanToken) scanToken->cancel();
    if (storageToken) storageToken->cancel();
    worker.waitForDone();
}

// ---- Writing state ----

void AppModel::setConfirming(bool on) { put(confirming_, on, &AppModel::confirmingChanged); }
void AppModel::setRestartSheet(bool on) { put(restartSheet_, on, &AppModel::restartSheetChanged); }
void AppModel::setShowHow(bool on) { put(showHow_, on, &AppModel::showHowChanged); }
void AppModel::setSettingsOpen(bool on) { put(settingsOpen_, on, &AppModel::settingsOpenChanged); }
void AppModel::setWhoMode(WhoMode mode) { put(whoMode_, mode, &AppModel::whoModeChanged); }
void AppModel::setWeekDay(std::optional<int> day) { put(weekDay_, day, &AppModel::weekDayChanged); }

void AppModel::setDisk(DiskInfo value) {
    if (!put(disk_, std::move(value), &AppModel::diskChanged)) return;
    emit paceChanged();
    emit cachesToClearChanged();
    refreshRecs();
}

void AppModel::setItems(std::vector<CleanItem> value) {
    if (!put(items_, std::move(value), &AppModel::itemsChanged)) return;
    itemsList.update(items_);
    for (Tier t : Tiers::allCases) tierLists[static_cast<std::size_t>(Tiers::id(t))]->update(itemsIn(t));
    // Which items are ticked and unlocked follows the list too.
    emit selectedChanged();
    emit cachesToClearChanged();
    refreshRecs();
}

void AppModel::setSelected(std::set<std::string> value) {
    if (value == selected_) return;
    std::set<std::string> flipped;
    std::set_symmetric_difference(value.begin(), value.end(), selected_.begin(), selected_.end(),
                                  std::inserter(flipped, flipped.end()));
    selected_ = std::move(value);
    touchTicks(flipped);
    emit selectedChanged();
}

void AppModel::touchTicks(const std::set<std::string>& ids) {
    const QList<int> roles{itemsList.role("ticked")};
    for (const auto& id : ids) {
        itemsList.touch(id, roles);
        cleanItemsList.touch(id, roles);
        for (auto& tier : tierLists) tier->touch(id, roles);
    }
}

void AppModel::setScanProgress(std::optional<ScanProgress> value) {
    put(scanProgress_, std::move(value), &AppModel::scanProgressChanged);
}

void AppModel::touchRec(const std::string& id) {
    for (auto* l : {&recsList, &nowRecsList, &laterRecsList, &safeRecsList})
        l->touch(id, {l->role("state"), l->role("armed"), l->role("failed")});
}

void AppModel::setActing(const std::string& id, std::optional<RecState> state) {
    auto it = acting_.find(id);
    if (state) {
        if (it != acting_.end() && it->second == *state) return;
        acting_[id] = *state;
    } else {
        if (it == acting_.end()) return;
        acting_.erase(it);
    }
    touchRec(id);
    emit actingChanged();
    refreshRecs();
}

void AppModel::touchArmedRows(const std::optional<std::string>& a, const std::optional<std::string>& b) {
    for (const auto& key : {a, b}) {
        if (!key) continue;
        if (key->starts_with("rec:")) touchRec(key->substr(4));
        if (key->starts_with("proj:")) projectsList.touch(key->substr(5), {projectsList.role("armed")});
    }
}

void AppModel::setArmed(std::optional<std::string> key) {
    if (key == armed_) return;
    auto old = std::exchange(armed_, std::move(key));
    touchArmedRows(old, armed_);
    emit armedChanged();
}

void AppModel::setFailedRec(std::optional<std::string> id) {
    if (id == failedRec_) return;
    auto old = std::exchange(failedRec_, std::move(id));
    if (old) touchRec(*old);
    if (failedRec_) touchRec(*failedRec_);
    emit failedRecChanged();
}

void AppModel::setProjects(std::vector<ProjectCard> cards) {
    // Cards have no equality of their own; the list model tells the views what changed.
    projects_ = std::move(cards);
    projectsList.update(projects_);
    emit projectsChanged();
}

void AppModel::setStorage(std::optional<StorageReport> report) {
    if (put(storage_, std::move(report), &AppModel::storageChanged)) showStorage();
}

void AppModel::setStorageLive(std::optional<StorageReport> report) {
    if (put(storageLive_, std::move(report), &AppModel::storageLiveChanged)) showStorage();
}

void AppModel::showStorage() {
    const StorageReport* shown = storageShown();
    categoriesList.update(shown ? shown->categories : std::vector<StorageCategory>{});
    biggestList.update(shown ? shown->biggest : std::vector<BigFile>{});
    appSizesList.update(shown ? shown->apps : std::vector<AppSize>{});
    emit storageShownChanged();
}

void AppModel::setGrowth(std::optional<GrowthReport> report) {
    if (!put(growth_, std::move(report), &AppModel::growthChanged)) return;
    growthDaysList.update(growth_ ? growth_->days : std::vector<GrowthDay>{});
    growthPlacesList.update(growth_ ? growth_->biggest : std::vector<GrowthPlace>{});
}

void AppModel::setTrashing(const std::string& path, bool on) {
    const bool changed = on ? trashing_.insert(path).second : trashing_.erase(path) > 0;
    if (!changed) return;
    biggestList.touch(path, {biggestList.role("trashing")});
    emit trashingChanged();
}

// ---- Derived ----

std::optional<double> AppModel::scanFraction() const {
    if (!scanProgress_) return std::nullopt;
    const ScanProgress& p = *scanProgress_;
    if (p.stage == ScanProgress::Stage::measuring) return std::min(0.15 + p.done * 0.85 / std::max(p.total, 1), 0.99);
    const auto stored = setup.settings->doubleValue("scanFolders");
    const int folders = stored ? static_cast<int>(*stored) : 0;
    if (folders < 1) return std::nullopt;
    return std::min(p.checked * 0.15 / folders, 0.14);
}

std::vector<CleanItem> AppModel::itemsIn(Tier tier) const {
    std::vector<CleanItem> out;
    for (const auto& i : items_)
        if (i.tier == tier) out.push_back(i);
    auto stale = [](const CleanItem& i) { return i.cacheKind && CacheKinds::isStale(*i.cacheKind); };
    std::stable_sort(out.begin(), out.end(), [&](const CleanItem& a, const CleanItem& b) {
        if (a.isLocked() != b.isLocked()) return !a.isLocked();
        if (stale(a) != stale(b)) return stale(a);
        return a.size > b.size;
    });
    return out;
}

int64_t AppModel::total(Tier tier) const {
    int64_t sum = 0;
    for (const auto& i : items_)
        if (i.tier == tier && !i.isLocked()) sum += i.size;
    return sum;
}

int64_t AppModel::ticked(Tier tier) const {
    int64_t sum = 0;
    for (const auto& i : items_)
        if (i.tier == tier && !i.isLocked() && selected_.contains(i.id)) sum += i.size;
    return sum;
}

int64_t AppModel::cleanable() const {
    int64_t sum = 0;
    for (Tier t : Tiers::allCases) sum += total(t);
    return sum;
}

std::vector<CleanItem> AppModel::selectedItems() const {
    std::vector<CleanItem> out;
    for (const auto& i : items_)
        if (!i.isLocked() && selected_.contains(i.id)) out.push_back(i);
    return out;
}

int64_t AppModel::tickedTotal() const {
    int64_t sum = 0;
    for (Tier t : Tiers::allCases) sum += ticked(t);
    return sum;
}

bool AppModel::allSelected(Tier tier) const {
    bool any = false;
    for (const auto& i : items_) {
        if (i.tier != tier || i.isLocked()) continue;
        any = true;
        if (!selected_.contains(i.id)) return false;
    }
    return any;
}

bool AppModel::startsTicked(const CleanItem& item) const {
    if (item.isLocked()) return false;
    // A cache that comes back fast isn't worth clearing while the disk has room.
    if (history_->refillsFast(item.id) && disk_.available >= warnBelow) return false;
    if (item.tier == Tier::safe && item.cacheKind)
        return CacheKinds::isStale(*item.cacheKind) || disk_.available < warnBelow;
    return item.defaultOn;
}

AppModel::RecsKey AppModel::recsKey() const {
    RecsKey key;
    key.sample = monitor_->measuredAt;
    for (const auto& l : monitor_->leftovers) key.leftovers.push_back(l.id);
    key.scan = lastScan_;
    key.items = static_cast<int>(items_.size());
    key.free = disk_.available / (50 * MB);
    key.snooze = snoozeTick_;
    key.acting = acting_;
    key.restart = history_->data.restartReminder;
    return key;
}

void AppModel::refreshRecs() {
    RecsKey key = recsKey();
    if (recsCache && recsCache->first == key) return;
    const TimePoint at = now();
    Advisor::Situation situation;
    situation.model = Advisor::ModelFacts::of(disk_, items_, lastScan_);
    situation.monitor = Advisor::MonitorFacts::of(*monitor_, at);
    situation.history = Advisor::HistoryFacts::of(*history_, at);
    situation.cores = setup.cores;
    situation.now = at;
    std::vector<Rec> list = setup.advise(situation);
    // A piece of advice just carried out keeps its row for its last moments, in its own
    // section, after the advisor stopped offering it.
    for (const auto& [id, state] : acting_) {
        if (state != RecState::done) continue;
        auto snap = snaps.find(id);
        if (snap == snaps.end()) continue;
        if (std::any_of(list.begin(), list.end(), [&](const Rec& r) { return r.id == id; })) continue;
        if (snap->second.now) {
            auto later = std::find_if(list.begin(), list.end(), [](const Rec& r) { return !r.now; });
            list.insert(later, snap->second);
        } else {
            list.push_back(snap->second);
        }
    }
    recsCache = std::make_pair(std::move(key), std::move(list));
    const std::vector<Rec>& all = recsCache->second;
    recsList.update(all);
    std::vector<Rec> nowList, laterList, safeList;
    for (const Rec& r : all) (r.now ? nowList : laterList).push_back(r);
    for (const Rec& r : nowList)
        if (r.safe && r.action.kind != RecAction::Kind::clearCaches && !acting_.contains(r.id)) safeList.push_back(r);
    nowRecsList.update(std::move(nowList));
    laterRecsList.update(std::move(laterList));
    safeRecsList.update(std::move(safeList));
    emit recsChanged();
}

const std::vector<Rec>& AppModel::recs() {
    refreshRecs();
    return recsCache->second;
}

std::vector<Rec> AppModel::nowRecs() {
    (void)recs();
    return nowRecsList.values();
}

std::vector<Rec> AppModel::laterRecs() {
    (void)recs();
    return laterRecsList.values();
}

std::vector<Rec> AppModel::safeRecs() {
    (void)recs();
    return safeRecsList.values();
}

std::optional<Rec> AppModel::recById(const std::string& id) {
    for (const Rec& r : recs())
        if (r.id == id) return r;
    auto snap = snaps.find(id);
    if (snap != snaps.end()) return snap->second;
    return std::nullopt;
}

std::optional<Pace> AppModel::pace() const { return history_->pace(disk_.available, monitor_->vitals.swapUsed, now()); }

std::vector<CleanItem> AppModel::cachesToClear() const {
    std::vector<CleanItem> out;
    for (const auto& i : items_) {
        if (i.tier != Tier::safe || i.isLocked()) continue;
        // With room on the disk, a cache in use is left alone.
        if (isLow() || (i.cacheKind && CacheKinds::isStale(*i.cacheKind))) out.push_back(i);
    }
    return out;
}

const StorageReport* AppModel::storageShown() const {
    if (storageLive_) return &*storageLive_;
    if (storage_) return &*storage_;
    return nullptr;
}

// ---- Operations of the state ----

void AppModel::refreshDisk() {
    setDisk(setup.readDisk());
    history_->recordFree(disk_.available, monitor_->vitals.swapUsed, now());
    emit historyChanged();
    bool fire = false;
    if (disk_.available < warnBelow) {
        if (!warned_) {
            warned_ = true;
            fire = true;
        }
    } else if (disk_.available > warnBelow + 2 * GB) {
        // The gap keeps a disk that hovers around the line from warning again and again.
        warned_ = false;
    }
    if (disk_.available < 5 * GB) {
        if (!warnedCritical_) {
            warnedCritical_ = true;
            if (!Tools::rendering) lowSpace();
            return;
        }
    } else if (disk_.available > 6 * GB) {
        warnedCritical_ = false;
    }
    if (fire && !Tools::rendering) lowSpace();
}

void AppModel::go(Tab tab) {
    if (tab == tab_) return;
    put(tabForward_, Tabs::id(tab_) < Tabs::id(tab), &AppModel::tabForwardChanged);
    put(tab_, tab, &AppModel::tabChanged);
}

void AppModel::toggle(const CleanItem& item) {
    if (item.isLocked()) return;
    auto next = selected_;
    const bool on = !next.contains(item.id);
    if (on) next.insert(item.id);
    else next.erase(item.id);
    overrides_[item.id] = on;
    setSelected(std::move(next));
}

void AppModel::setAll(Tier tier, bool on) {
    auto next = selected_;
    for (const auto& i : items_) {
        if (i.tier != tier || i.isLocked()) continue;
        if (on) next.insert(i.id);
        else next.erase(i.id);
        overrides_[i.id] = on;
    }
    setSelected(std::move(next));
}

void AppModel::setExpanded(Tier tier, bool on) {
    auto next = expanded_;
    if (on) next.insert(tier);
    else next.erase(tier);
    put(expanded_, std::move(next), &AppModel::expandedChanged);
}

void AppModel::say(std::string text, Toast::Kind kind, std::optional<std::string> action, std::function<void()> perform) {
    toastPerform = std::move(perform);
    const double seconds = action ? 7.0 : 3.8;
    put(toast_, std::optional<Toast>(Toast{std::move(text), kind, std::move(action), seconds, nextToastId++}), &AppModel::toastChanged);
    dismissToast(seconds);
}

void AppModel::dismissToast(double seconds) {
    if (toastTimer) setup.clock->cancel(*toastTimer);
    const std::optional<uint64_t> noted = toast_ ? std::optional(toast_->id) : std::nullopt;
    // A newer toast outlives the timer of an older one.
    toastTimer = setup.clock->after(seconds, this, [this, noted] {
        const std::optional<uint64_t> current = toast_ ? std::optional(toast_->id) : std::nullopt;
        if (current != noted) return;
        toastTimer.reset();
        put(toast_, std::optional<Toast>(), &AppModel::toastChanged);
        toastPerform = {};
    });
}

void AppModel::holdToast(bool hovering) {
    if (hovering) {
        if (toastTimer) setup.clock->cancel(*toastTimer);
        toastTimer.reset();
    } else {
        dismissToast(2.0);
    }
}

void AppModel::runToastAction() {
    auto perform = std::exchange(toastPerform, {});
    if (toastTimer) setup.clock->cancel(*toastTimer);
    toastTimer.reset();
    put(toast_, std::optional<Toast>(), &AppModel::toastChanged);
    if (perform) perform();
}

void AppModel::monitorSampled() {
    appUsageList.update(monitor_->apps);
    slowAppsList.update(monitor_->slowApps());
    leftoversList.update(monitor_->leftovers);
    emit monitorChanged();
    emit paceChanged();
    refreshRecs();
}
