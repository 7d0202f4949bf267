#include "ui/WeekState.h"

#include "app/QmlValues.h"
#include "foundation/Fmt.h"
#include "history/History.h"
#include "history/RunwayPanel.h"
#include "ui/week/GrowthChart.h"
#include "ui/week/RunwayView.h"

#include <algorithm>

using QmlValues::text;

namespace {

// The buckets' colours in the chart, in bucket order: projects, app data, tools, files.
constexpr const char* bucketTints[] = {"blue", "amber", "purple", "green"};

QVariantList placeRows(const std::vector<GrowthPlace>& places, int64_t whole, bool withLocation) {
    QVariantList out;
    for (const auto& p : places) {
        const auto look = GrowthChart::look(p.name, p.bucket);
        out << QVariantMap{{"name", text(p.name)},
                           {"location", withLocation ? text(p.location) : QString()},
                           {"bytes", text(Fmt::bytes(p.bytes))},
                           {"fraction", whole > 0 ? std::clamp(static_cast<double>(p.bytes) / static_cast<double>(whole), 0.0, 1.0) : 0.0},
                           {"symbol", text(look.symbol)},
                           {"tint", text(look.tint)}};
    }
    return out;
}

} // namespace

WeekState::WeekState(QObject* parent) : TabState(parent) {}

void WeekState::attach(AppModel&) {
    for (auto signal : {&AppModel::diskChanged, &AppModel::paceChanged, &AppModel::historyChanged, &AppModel::growthChanged,
                        &AppModel::growthRunningChanged, &AppModel::weekDayChanged})
        follow(signal);
}

void WeekState::pick(int index) {
    if (!source) return;
    source->setWeekDay(source->weekDay() == index ? std::nullopt : std::optional<int>(index));
}

void WeekState::refresh() {
    if (!source) return;
    AppModel& m = *source;
    const TimePoint now = m.clock().now();
    const int64_t free = m.disk().available;

    // The runway.
    const auto pace = m.pace();
    std::optional<int64_t> moved;
    if (pace && pace->filling()) moved = RunwayPanel::moved(m.history().data.cleans, now, pace->bytesPerDay);
    const auto panel = RunwayView::panel(pace, free, m.historyHours(), moved, now);
    runway_ = {{"state", text(panel.state)}, {"symbol", text(panel.symbol)}, {"tint", text(panel.tint)},
               {"headline", text(panel.headline)}, {"big", text(panel.big)}, {"line", text(panel.line)},
               {"tip", text(panel.tip)}, {"chip", text(panel.chip)}};
    cells_.clear();
    for (int d = 0; d < RunwayView::cells; ++d) {
        const auto c = RunwayView::cell(d, free, panel.rate, now);
        cells_ << QVariantMap{{"tint", text(c.tint)}, {"hatched", c.hatched}, {"opacity", c.opacity}, {"tip", text(c.tip)}};
    }
    lastCell_ = text(Fmt::dayMonth(addSeconds(now, (RunwayView::cells - 1) * 86400.0)));

    // The growth of the last 14 days.
    const auto& growth = m.growth();
    growthState_ = growth ? "report" : m.growthRunning() ? "running" : "none";
    grid_.clear();
    bars_.clear();
    day_.clear();
    biggest_.clear();
    if (growth && !growth->days.empty()) {
        const auto& days = growth->days;
        int64_t peak = 0;
        for (const auto& d : days) peak = std::max(peak, d.total());
        const int64_t top = GrowthChart::top(peak);
        for (int q = 1; q <= 4; ++q)
            grid_ << QVariantMap{{"label", text(GrowthChart::gridLabel(top * q / 4))}, {"fraction", q / 4.0}};
        const int last = static_cast<int>(days.size()) - 1;
        const auto picked = m.weekDay();
        for (int i = 0; i <= last; ++i) {
            const auto& d = days[static_cast<std::size_t>(i)];
            QVariantList segments;
            for (std::size_t b = 0; b < d.buckets.size(); ++b)
                if (d.buckets[b] > 0)
                    segments << QVariantMap{{"value", static_cast<double>(d.buckets[b]) / static_cast<double>(top)},
                                            {"tint", bucketTints[b]}};
            bars_ << QVariantMap{{"label", text(GrowthChart::barLabel(d.date, i, i == last))},
                                 {"fraction", std::min(1.0, static_cast<double>(d.total()) / static_cast<double>(top))},
                                 {"segments", segments},
                                 {"tip", text(GrowthChart::barTip(d, i == last))},
                                 {"accessible", text(GrowthChart::accessibleLabel(d))},
                                 {"selected", picked == i},
                                 {"today", i == last}};
        }
        // A pick that the report can't hold reads as no pick.
        const int shown = picked && *picked >= 0 && *picked <= last ? *picked : last;
        const auto& d = days[static_cast<std::size_t>(shown)];
        day_ = {{"title", text(GrowthChart::dayTitle(d.date, shown == last))},
                {"total", text(Fmt::bytes(d.total()) + " new")},
                {"rows", placeRows(d.top, d.total(), false)}};
        int64_t biggestMax = 0;
        for (const auto& p : growth->biggest) biggestMax = std::max(biggestMax, p.bytes);
        biggest_ = {{"total", text(Fmt::bytes(growth->total()) + " in all")},
                    {"rows", placeRows(growth->biggest, std::max(growth->total(), biggestMax), true)}};
    }
    emit changed();
}
