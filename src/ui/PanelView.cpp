#include "ui/PanelView.h"

#include "app/AppModel.h"
#include "app/MenuLabel.h"
#include "foundation/Fmt.h"
#include "history/Forecast.h"

#include <QStringList>

#include <algorithm>
#include <cctype>

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }

const char* stateName(PanelView::CachesState s) {
    switch (s) {
    case PanelView::CachesState::clearing: return "clearing";
    case PanelView::CachesState::freed: return "freed";
    case PanelView::CachesState::placeholder: return "placeholder";
    case PanelView::CachesState::ready: return "ready";
    case PanelView::CachesState::old: return "old";
    case PanelView::CachesState::none: return "none";
    }
    return "none";
}

PanelView::CachesInput cachesInput(const AppModel& m) {
    PanelView::CachesInput in;
    if (m.cleanProgress() && m.cleanProgress()->source == "menu")
        in.menuClean = std::pair{m.cleanProgress()->done, m.cleanProgress()->total};
    if (m.report() && m.report()->source == "menu") in.menuReport = std::pair{m.report()->freed, m.report()->date};
    in.scanned = m.lastScan().has_value();
    for (const auto& i : m.cachesToClear()) in.caches += i.size;
    in.isLow = m.isLow();
    return in;
}

} // namespace

PanelView::PanelView(QObject* parent) : QObject(parent) {}

PanelView::Line PanelView::forecast(const std::optional<Pace>& pace, int64_t free, TimePoint now) {
    switch (Forecast::state(pace)) {
    case Forecast::State::learning:
        return {"hourglass", "Learning your pace", "Sorrelin forecasts when your disk fills after a day of readings.", "text3"};
    case Forecast::State::notFilling: return {"checkmark.circle", "Not filling up", "", "greenText"};
    case Forecast::State::filling: break;
    }
    const int64_t left = Forecast::daysLeft(*pace, free).value_or(0);
    const std::string tip = "Free space falls about " + Fmt::bytes(static_cast<int64_t>(pace->bytesPerDay)) +
                            " a day. Cleaning moves the date out.";
    // The runway's colour as words on the panel read it: the text tone of that colour.
    const std::string_view colour = Forecast::colour(Forecast::runway(left));
    const std::string tone = colour == "red" ? "red" : std::string(colour) + "Text";
    if (left < 1) return {"calendar", "Could fill today", tip, tone};
    return {"calendar", "Full " + Fmt::dayMonth(Forecast::fullAround(now, left)) + ", " + Fmt::days(static_cast<int>(left)),
            tip, tone};
}

PanelView::CachesRow PanelView::caches(const CachesInput& in, TimePoint now) {
    if (in.menuClean)
        return {CachesState::clearing,
                "Clearing " + std::to_string(in.menuClean->first) + " of " + std::to_string(in.menuClean->second), "", false};
    if (in.menuReport) {
        const double age = secondsBetween(in.menuReport->second, now);
        if (age >= 0 && age < freedShownFor)
            return {CachesState::freed, "Freed " + Fmt::bytes(in.menuReport->first) + " just now", "", false};
    }
    if (!in.scanned) return {CachesState::placeholder, "", "", false};
    if (in.caches > 0 && in.isLow)
        return {CachesState::ready, Fmt::bytes(in.caches) + " of caches ready",
                "Deletes " + Fmt::bytes(in.caches) + " of caches. Apps refill them as you use them, a little slower at first.",
                true};
    if (in.caches > 0)
        return {CachesState::old, Fmt::bytes(in.caches) + " of old caches",
                "Deletes caches of apps you removed or have not used in a month, and update leftovers. Nothing you use slows down.",
                true};
    return {CachesState::none, "Caches are doing their job",
            "Caches of apps you use make them faster. Sorrelin suggests clearing them when space runs low.", false};
}

std::optional<double> PanelView::cachesChangeIn(const CachesInput& in, TimePoint now) {
    if (in.menuClean || !in.menuReport) return std::nullopt;
    const double age = secondsBetween(in.menuReport->second, now);
    if (age < 0 || age >= freedShownFor) return std::nullopt;
    return freedShownFor - age;
}

std::string PanelView::recButton(const std::string& state, bool armed, const std::string& actionLabel,
                                 const std::string& shortLabel, const std::string& busyLabel, const std::string& doneLabel) {
    if (state == "queued") return "Waiting its turn";
    if (state == "busy") return busyLabel;
    if (state == "done") return doneLabel;
    if (armed) {
        std::string lower = shortLabel;
        std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return "Click again to " + lower;
    }
    return actionLabel;
}

std::string PanelView::label(MenuLabelStyle style, int64_t free, int freePercent) {
    if (style == MenuLabelStyle::iconOnly) return {};
    return MenuLabel::text(style, free, freePercent, false);
}

QVariantMap PanelView::forecastOf(AppModel* model) const {
    if (!model) return {};
    const Line l = forecast(model->pace(), model->disk().available, model->clock().now());
    return {{"symbol", q(l.symbol)}, {"words", q(l.words)}, {"tip", q(l.tip)}, {"tone", q(l.tone)}};
}

QVariantMap PanelView::cachesOf(AppModel* model) const {
    if (!model) return {};
    const CachesInput in = cachesInput(*model);
    const TimePoint now = model->clock().now();
    const CachesRow row = caches(in, now);
    return {{"state", QString::fromLatin1(stateName(row.state))},
            {"words", q(row.words)},
            {"tip", q(row.tip)},
            {"button", row.button},
            {"changeIn", cachesChangeIn(in, now).value_or(-1)}};
}

QVariantMap PanelView::statusOf(AppModel* model) const {
    if (!model) return {};
    const auto slow = model->monitor().slowApps();
    if (!slow.empty()) {
        QStringList names;
        for (const auto& a : slow) names << q(a.name);
        return {{"symbol", "exclamationmark.triangle.fill"}, {"words", "Slow now"}, {"tone", "amberText"}, {"names", names.join(", ")}};
    }
    if (model->monitor().vitals.pressure > 1)
        return {{"symbol", "memorychip"}, {"words", "Memory tight"}, {"tone", "amberText"}, {"names", QString()}};
    return {{"symbol", "checkmark"}, {"words", "Running well"}, {"tone", "greenText"}, {"names", QString()}};
}

QVariantMap PanelView::vitalsOf(AppModel* model) const {
    if (!model) return {};
    const Vitals& v = model->monitor().vitals;
    return {{"memory", QVariantMap{{"words", v.pressure < 2 ? "Fine" : "Tight"},
                                   {"detail", QString::number(v.freePercent) + "% free"},
                                   {"warn", v.pressure >= 2}}},
            {"swap", QVariantMap{{"words", q(Fmt::bytes(v.swapUsed))}, {"warn", v.swapUsed >= GB}}}};
}

QString PanelView::recButtonOf(const QVariantMap& rec) const {
    auto t = [&](const char* key) { return rec.value(QLatin1String(key)).toString().toStdString(); };
    return q(recButton(t("state"), rec.value("armed").toBool(), t("actionLabel"), t("shortLabel"), t("busyLabel"), t("doneLabel")));
}

QVariantList PanelView::diskSegmentsOf(AppModel* model) const {
    if (!model) return {};
    const DiskInfo& d = model->disk();
    const int64_t swap = model->monitor().vitals.swapUsed;
    const int64_t safe = model->total(Tier::safe), rebuild = model->total(Tier::rebuildable),
                  yours = model->total(Tier::yourCall);
    // What a clean can give back is part of the used space; the rest of it is "other". The
    // space kept back for the administrator is no one's to clean, so it sits with "other".
    const int64_t other = std::max<int64_t>(0, d.used() + d.reserved - swap - safe - rebuild - yours);
    auto seg = [](const char* id, int64_t v, const char* colour, bool striped = false) {
        return QVariantMap{{"id", id}, {"value", qint64(v)}, {"color", colour}, {"striped", striped}};
    };
    return {seg("other", other, "other"), seg("swap", swap, "orange", true), seg("safe", safe, "amber"),
            seg("rebuild", rebuild, "blue"), seg("yours", yours, "purple"), seg("free", d.available, "green")};
}

QString PanelView::labelOf(AppModel* model, const QString& style) const {
    if (!model) return {};
    const auto s = MenuLabelStyles::fromRaw(style.toStdString()).value_or(MenuLabelStyle::freeSpace);
    return q(label(s, model->disk().available, model->monitor().vitals.freePercent));
}
