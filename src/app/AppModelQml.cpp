// The model as QML reads it and the calls QML makes by id.
#include "app/AppModel.h"

#include "app/QmlValues.h"
#include "foundation/FS.h"
#include "history/History.h"
#include "platform/Probe.h"
#include "storage/FileKind.h"

#include <algorithm>

using namespace QmlValues;

namespace {

template <class T, class F>
QVariant maybe(const std::optional<T>& value, F convert) {
    return value ? QVariant(convert(*value)) : QVariant();
}

QStringList strings(const std::set<std::string>& set) {
    QStringList out;
    for (const auto& s : set) out << text(s);
    return out;
}

} // namespace

QVariantMap AppModel::diskValue() const { return QmlValues::disk(disk_); }
QStringList AppModel::selectedIds() const { return strings(selected_); }
QVariant AppModel::scanProgressValue() const { return maybe(scanProgress_, QmlValues::scanProgress); }
QVariant AppModel::cleanProgressValue() const { return maybe(cleanProgress_, QmlValues::cleanProgress); }
QVariant AppModel::cleanSummaryValue() const {
    if (!cleanSummary_) return {};
    QVariantMap out = QmlValues::cleanSummary(*cleanSummary_);
    // A dry run's sheet counts from the free space before and what it pretended.
    out.insert(QStringLiteral("dryRun"), setup.remover.dryRun.on);
    return out;
}
QVariant AppModel::lastScanValue() const { return date(lastScan_); }
QVariant AppModel::reportValue() const { return maybe(report_, cleanReport); }

QVariantList AppModel::expandedValue() const {
    QVariantList out;
    for (Tier t : expanded_) out << Tiers::id(t);
    return out;
}

void AppModel::goValue(int tab) {
    if (auto t = Tabs::fromRaw(tab)) go(*t);
}

QVariantMap AppModel::actingValue() const {
    QVariantMap out;
    for (const auto& [id, state] : acting_) out.insert(text(id), recState(state));
    return out;
}

QVariant AppModel::batchValue() const {
    return batch_ ? QVariant(QVariantMap{{"done", batch_->done}, {"total", batch_->total}}) : QVariant();
}

QStringList AppModel::doneTodayValue() const { return texts(doneToday_); }
QString AppModel::armedValue() const { return armed_ ? text(*armed_) : QString(); }
QVariant AppModel::toastValue() const { return maybe(toast_, QmlValues::toast); }
QString AppModel::whoModeValue() const { return whoMode_ == WhoMode::cpu ? QStringLiteral("cpu") : QStringLiteral("memory"); }

void AppModel::setWhoModeValue(const QString& mode) {
    if (mode == QLatin1String("cpu")) setWhoMode(WhoMode::cpu);
    else if (mode == QLatin1String("memory")) setWhoMode(WhoMode::memory);
}

QVariant AppModel::sharedValue() const { return maybe(shared_, sharedPackages); }
QVariant AppModel::growthValue() const { return maybe(growth_, QmlValues::growth); }

void AppModel::setWeekDayValue(int day) { setWeekDay(day < 0 ? std::nullopt : std::optional<int>(day)); }

QStringList AppModel::freedProjectsValue() const { return strings(freedProjects_); }

QVariantMap AppModel::recentlyFreedValue() const {
    QVariantMap out;
    for (const auto& [id, f] : recentlyFreed_) out.insert(text(id), QVariantMap{{"share", f.share}, {"at", date(f.at)}});
    return out;
}

QString AppModel::failedRecValue() const { return failedRec_ ? text(*failedRec_) : QString(); }
QVariant AppModel::storageValue() const { return maybe(storage_, QmlValues::storage); }
QVariant AppModel::storageLiveValue() const { return maybe(storageLive_, QmlValues::storage); }
QStringList AppModel::trashingValue() const { return strings(trashing_); }

QVariant AppModel::scanFractionValue() const {
    auto f = scanFraction();
    return f ? QVariant(*f) : QVariant();
}

QVariantList AppModel::selectedItemsValue() const {
    QVariantList out;
    for (const auto& i : selectedItems()) {
        const int row = itemsList.find(i.id);
        if (row >= 0) out << itemsList.get(row);
    }
    return out;
}

QVariant AppModel::paceValue() const { return maybe(pace(), QmlValues::pace); }

QVariant AppModel::storageShownValue() const {
    const StorageReport* shown = storageShown();
    return shown ? QVariant(QmlValues::storage(*shown)) : QVariant();
}

qint64 AppModel::cachesToClearBytes() const {
    int64_t sum = 0;
    for (const auto& i : cachesToClear()) sum += i.size;
    return sum;
}

int AppModel::cachesToClearCount() const { return static_cast<int>(cachesToClear().size()); }
qint64 AppModel::freedToday() const { return history_->freedToday(now()); }

int AppModel::historyHours() const {
    const auto& samples = history_->data.samples;
    if (samples.empty()) return 0;
    return static_cast<int>(std::max(0.0, secondsBetween(samples.front().date, now())) / 3600);
}

QVariantMap AppModel::vitalsValue() const { return vitals(monitor_->vitals, now()); }
QVariant AppModel::measuredAtValue() const { return date(monitor_->measuredAt); }
qint64 AppModel::memoryCounted() const { return monitor_->memoryCounted(); }
qint64 AppModel::physicalMemory() const { return Probe::physicalMemory(); }

QVariantList AppModel::tabs() {
    QVariantList out;
    for (Tab t : Tabs::allCases) out << QVariantMap{{"id", Tabs::id(t)}, {"title", text(Tabs::title(t))}};
    return out;
}

void AppModel::toggle(const QString& itemId) {
    const std::string id = itemId.toStdString();
    auto it = std::find_if(items_.begin(), items_.end(), [&](const CleanItem& i) { return i.id == id; });
    if (it != items_.end()) toggle(*it);
}

void AppModel::setAll(int tier, bool on) {
    if (auto t = Tiers::fromRaw(tier)) setAll(*t, on);
}

bool AppModel::isTicked(const QString& itemId) const { return selected_.contains(itemId.toStdString()); }

qint64 AppModel::total(int tier) const {
    auto t = Tiers::fromRaw(tier);
    return t ? total(*t) : 0;
}

qint64 AppModel::ticked(int tier) const {
    auto t = Tiers::fromRaw(tier);
    return t ? ticked(*t) : 0;
}

bool AppModel::allSelected(int tier) const {
    auto t = Tiers::fromRaw(tier);
    return t && allSelected(*t);
}

ListModel* AppModel::itemsIn(int tier) {
    auto t = Tiers::fromRaw(tier);
    return t ? tierLists[static_cast<std::size_t>(tier)].get() : nullptr;
}

void AppModel::setExpanded(int tier, bool on) {
    if (auto t = Tiers::fromRaw(tier)) setExpanded(*t, on);
}

void AppModel::clean(const QStringList& itemIds, const QString& source, const QString& label) {
    std::vector<std::string> ids;
    for (const auto& id : itemIds) ids.push_back(id.toStdString());
    clean(itemsWithIds(ids), source.toStdString(), label.isEmpty() ? std::nullopt : std::optional(label.toStdString()));
}

void AppModel::run(const QString& recId) {
    if (auto rec = recById(recId.toStdString())) run(*rec);
}

void AppModel::snooze(const QString& recId) {
    if (auto rec = recById(recId.toStdString())) snooze(*rec);
}

void AppModel::quitFromAlert(const QStringList& keys) {
    std::vector<std::string> list;
    for (const auto& k : keys) list.push_back(k.toStdString());
    quitFromAlert(list);
}

void AppModel::moveToTrash(const QString& path, const QString& name, qint64 bytes) {
    moveToTrash(path.toStdString(), name.toStdString(), bytes);
}

QString AppModel::refillNote(const QString& itemId) const {
    const std::string id = itemId.toStdString();
    for (const auto& i : items_)
        if (i.id == id) return text(history_->refillNote(i, now()).value_or(std::string()));
    return {};
}

double AppModel::freedShareWithin(double seconds) const {
    double sum = 0;
    for (const auto& [id, f] : recentlyFreed_)
        if (secondsBetween(f.at, now()) < seconds) sum += f.share;
    return sum;
}

bool AppModel::canTrash(const QString& path) const {
    const auto& context = setup.remover;
    return FileKinds::trashable(path.toStdString(), setup.layout.home,
                                [&context](const std::string& p) { return Remover::isSafe(p, context); });
}
