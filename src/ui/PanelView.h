#pragma once
// The tray panel's decisions, as the QML singleton `PanelView`: the forecast line under the
// disk bar, the quick-clean row's state and words, the speed line, the memory and swap rows,
// and the label the settings sheet previews. The panel only lays them out.
#include "app/MenuSection.h"
#include "foundation/Time.h"
#include "history/Pace.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <string>

class AppModel;

class PanelView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    // A line of the panel: its symbol, words, the pop-over behind it, and the palette name of
    // the colour its words take.
    struct Line {
        std::string symbol;
        std::string words;
        std::string tip;
        std::string tone;
        friend bool operator==(const Line&, const Line&) = default;
    };

    // What the quick-clean row shows.
    enum class CachesState { clearing, freed, placeholder, ready, old, none };
    struct CachesInput {
        std::optional<std::pair<int, int>> menuClean; // done, total of a clean from the panel
        std::optional<std::pair<int64_t, TimePoint>> menuReport; // freed, when, of the last one
        bool scanned = false;
        int64_t caches = 0; // bytes of caches to clear
        bool isLow = false;
    };
    struct CachesRow {
        CachesState state = CachesState::none;
        std::string words;
        std::string tip;
        bool button = false; // "Clear" is offered
        friend bool operator==(const CachesRow&, const CachesRow&) = default;
    };

    static constexpr double freedShownFor = 600;

    explicit PanelView(QObject* parent = nullptr);

    [[nodiscard]] static Line forecast(const std::optional<Pace>& pace, int64_t free, TimePoint now);
    [[nodiscard]] static CachesRow caches(const CachesInput& in, TimePoint now);
    // Seconds until the row next changes by itself (the "Freed" line giving way); absent
    // when it will not.
    [[nodiscard]] static std::optional<double> cachesChangeIn(const CachesInput& in, TimePoint now);
    // The words of a piece of advice's button by its state ("", "queued", "busy", "done") and
    // whether its arming waits for the second click.
    [[nodiscard]] static std::string recButton(const std::string& state, bool armed, const std::string& actionLabel,
                                               const std::string& shortLabel, const std::string& busyLabel,
                                               const std::string& doneLabel);
    // The label the tray item shows beside its icon in this style: nothing for the icon alone.
    [[nodiscard]] static std::string label(MenuLabelStyle style, int64_t free, int freePercent);

    // ---- QML, reading the model ----
    // {symbol, words, tip, tone}
    Q_INVOKABLE [[nodiscard]] QVariantMap forecastOf(AppModel* model) const;
    // {state: "clearing"|"freed"|"placeholder"|"ready"|"old"|"none", words, tip, button,
    //  changeIn: seconds or -1}
    Q_INVOKABLE [[nodiscard]] QVariantMap cachesOf(AppModel* model) const;
    // {symbol, words, tone, names}: slow apps by name, else tight memory, else all well.
    Q_INVOKABLE [[nodiscard]] QVariantMap statusOf(AppModel* model) const;
    // {memory: {words, detail}, swap: {words, warn}}
    Q_INVOKABLE [[nodiscard]] QVariantMap vitalsOf(AppModel* model) const;
    Q_INVOKABLE [[nodiscard]] QString labelOf(AppModel* model, const QString& style) const;
    Q_INVOKABLE [[nodiscard]] QString recButtonOf(const QVariantMap& rec) const;
    // The disk bar of the free-space header: the rest of the used space, swap, the three tiers
    // of what a clean can give back, and free, as StackedBar segments.
    Q_INVOKABLE [[nodiscard]] QVariantList diskSegmentsOf(AppModel* model) const;
};
