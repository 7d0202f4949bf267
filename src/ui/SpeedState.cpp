#include "ui/SpeedState.h"

#include "app/QmlValues.h"
#include "foundation/Fmt.h"
#include "ui/speed/AppTint.h"
#include "ui/speed/SpeedWords.h"

#include <algorithm>
#include <cmath>

using QmlValues::text;

namespace {

QVariantMap pillMap(const SpeedWords::Pill& p) {
    return {{"text", text(p.text)}, {"symbol", text(p.symbol)}, {"tint", text(p.tint)}};
}

// The processor bar: the five busiest apps in their colours, then what the machine's total
// holds beyond them.
QVariantList cpuSegments(const std::vector<AppUsage>& apps, const std::optional<double>& cpu, int cores,
                         const std::string& systemKey) {
    std::vector<const AppUsage*> order;
    for (const auto& a : apps) order.push_back(&a);
    std::stable_sort(order.begin(), order.end(), [](const AppUsage* a, const AppUsage* b) { return a->cores > b->cores; });
    QVariantList out;
    double sum = 0;
    for (std::size_t i = 0; i < order.size() && i < 5; ++i) {
        const double share = WhoPanel::share(order[i]->cores, cores);
        if (share < 0.5) break;
        out << QVariantMap{{"id", text(order[i]->id)}, {"value", share}, {"color", text(WhoPanel::tint(*order[i], systemKey))}};
        sum += share;
    }
    const double total = cpu && std::isfinite(*cpu) ? *cpu : 0;
    if (total - sum >= 0.5) out << QVariantMap{{"id", "rest"}, {"value", total - sum}, {"color", "rest"}};
    return out;
}

} // namespace

SpeedState::SpeedState(QObject* parent)
    : TabState(parent),
      rowList([](const WhoPanel::Row& r) { return r.id; },
              {{"id", [](const WhoPanel::Row& r) { return QVariant(text(r.id)); }},
               {"name", [](const WhoPanel::Row& r) { return QVariant(text(r.name)); }},
               {"sub", [](const WhoPanel::Row& r) { return QVariant(text(r.sub)); }},
               {"symbol", [](const WhoPanel::Row& r) { return QVariant(text(r.symbol)); }},
               {"tint", [](const WhoPanel::Row& r) { return QVariant(text(r.tint)); }},
               {"appPath", [](const WhoPanel::Row& r) { return QmlValues::optionalText(r.appPath); }},
               {"value", [](const WhoPanel::Row& r) { return QVariant(r.value); }},
               {"label", [](const WhoPanel::Row& r) { return QVariant(text(r.label)); }}},
              this),
      causeList(this) {
    auto count = [this] { emit causeCountChanged(); };
    connect(&causeList, &QAbstractItemModel::rowsInserted, this, count);
    connect(&causeList, &QAbstractItemModel::rowsRemoved, this, count);
    connect(&causeList, &QAbstractItemModel::modelReset, this, count);
    connect(&causeList, &QAbstractItemModel::layoutChanged, this, count);
}

SpeedState::~SpeedState() {
    if (expiry && source) source->clock().cancel(*expiry);
}

void SpeedState::attach(AppModel& model) {
    causeList.setSourceModel(model.recsModel());
    emit causeCountChanged();
    follow(&AppModel::monitorChanged);
    follow(&AppModel::whoModeChanged);
    follow(&AppModel::recentlyFreedChanged);
}

void SpeedState::detach(AppModel& model) {
    if (expiry) model.clock().cancel(*expiry);
    expiry.reset();
    causeList.setSourceModel(nullptr);
    emit causeCountChanged();
}

void SpeedState::refresh() {
    if (!source) return;
    const AppModel& m = *source;
    const Monitor& monitor = m.monitor();
    const Vitals& v = monitor.vitals;
    const TimePoint now = m.clock().now();
    const int cores = std::max(1, m.cores());
    const int64_t physical = m.physicalMemory();
    const bool memoryMode = m.whoMode() == AppModel::WhoMode::memory;
    const Layout& layout = m.environment().layout;
    const std::string systemKey = "proc:" + layout.monitor.systemLabel;

    pill_ = pillMap(SpeedWords::state(static_cast<int>(monitor.slowApps().size()), v.pressure > 1));

    const auto freed = SpeedWords::freed(m.freedShareWithin(SpeedWords::freedSeconds));
    processor_ = {{"value", text(SpeedWords::cpuValue(v.cpu))},
                  {"info", text(SpeedWords::cpuInfo(cores))},
                  {"sub", text(SpeedWords::cpuSub(cores))},
                  {"freed", text(freed.value_or(""))},
                  {"segments", cpuSegments(monitor.apps, v.cpu, cores, systemKey)}};

    const auto mem = SpeedWords::memory(v, physical);
    memory_ = {{"word", text(mem.word)}, {"fg", text(mem.fg)}, {"bar", text(mem.bar)},
               {"info", text(mem.info)}, {"value", text(mem.value)}, {"sub", text(mem.sub)},
               {"free", std::clamp(v.freePercent, 0, 100)}};

    const auto sw = SpeedWords::swap(v, SpeedWords::uptimeDays(v, now));
    swap_ = {{"value", text(sw.value)}, {"warn", sw.warn}, {"sub", text(sw.sub)}, {"info", text(sw.info)},
             {"used", qint64(v.swapUsed)}, {"total", qint64(v.swapTotal)}};

    const auto up = SpeedWords::uptime(v, now);
    uptime_ = {{"value", text(up.value)}, {"unit", text(up.unit)}, {"sub", text(up.sub)},
               {"heat", pillMap(up.heat)}, {"heatInfo", text(up.heatInfo)}};

    WhoPanel::Input in;
    in.apps = &monitor.apps;
    in.leftovers = &monitor.leftovers;
    in.memoryMode = memoryMode;
    in.cpu = v.cpu;
    in.memoryCounted = monitor.memoryCounted();
    in.cores = cores;
    in.claudeId = layout.monitor.claudeId;
    in.systemKey = systemKey;
    in.now = now;
    auto rows = WhoPanel::rows(in);
    double scale = 0;
    for (const auto& r : rows) scale = std::max(scale, r.value);
    rowList.update(std::move(rows));
    who_ = {{"info", text(SpeedWords::whoInfo(memoryMode, cores, physical))},
            {"total", text(SpeedWords::whoTotal(memoryMode, v.cpu, in.memoryCounted, physical))},
            {"scale", scale}};

    claude_ = QVariant();
    if (!in.claudeId.empty())
        for (const auto& a : monitor.apps)
            if (a.bundleID == in.claudeId) {
                claude_ = QVariantMap{{"name", "Claude and what it runs"},
                                      {"sub", "Includes the session working right now"},
                                      {"memory", text(Fmt::bytes(a.memory))},
                                      {"share", text(Fmt::percent(WhoPanel::share(a.cores, cores)) + " processor")},
                                      {"chip", "Kept"},
                                      {"tip", "Your Claude sessions run here, including the one working right now. Sorrelin never stops them."}};
                break;
            }

    scheduleFreedExpiry();
    emit changed();
}

void SpeedState::scheduleFreedExpiry() {
    AppClock& clock = source->clock();
    if (expiry) clock.cancel(*expiry);
    expiry.reset();
    const TimePoint now = clock.now();
    std::optional<double> soonest;
    for (const auto& [id, f] : source->recentlyFreed()) {
        const double left = SpeedWords::freedSeconds - secondsBetween(f.at, now);
        if (left > 0 && (!soonest || left < *soonest)) soonest = left;
    }
    if (soonest) expiry = clock.after(*soonest, this, [this] {
        expiry.reset();
        refresh();
    });
}
