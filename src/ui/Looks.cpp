#include "ui/Looks.h"

#include "advice/Rec.h"
#include "ui/Palette.h"

#include <QColor>

#include <optional>

namespace {

std::optional<RecReason> reasonOf(const QVariant& v) {
    const auto& all = RecReasons::allCases;
    if (v.metaType().id() == QMetaType::QString) {
        const std::string name = v.toString().toStdString();
        static constexpr const char* names[] = {"slow", "memory", "disk", "wait", "snoozed"};
        for (std::size_t i = 0; i < all.size(); ++i)
            if (name == names[i]) return all[i];
        return std::nullopt;
    }
    bool ok = false;
    const int raw = v.toInt(&ok);
    if (!ok || raw < 0 || raw >= int(all.size())) return std::nullopt;
    return all[std::size_t(raw)];
}

QColor colour(std::string_view name, double opacity = 1) {
    QColor c = Palette::lookup(name).value_or(QColor(0x9A, 0xA0, 0xAA));
    c.setAlphaF(float(opacity));
    return c;
}

QString text(std::string_view s) { return QString::fromUtf8(s.data(), qsizetype(s.size())); }

} // namespace

Looks::Looks(QObject* parent) : QObject(parent) {}

QVariantMap Looks::reason(const QVariant& v) const {
    auto r = reasonOf(v);
    if (!r) return {};
    const RecReasons::Fill bg = RecReasons::bg(*r);
    return {{QStringLiteral("label"), text(RecReasons::label(*r))},
            {QStringLiteral("symbol"), text(RecReasons::symbol(*r))},
            {QStringLiteral("fg"), colour(RecReasons::fg(*r))},
            {QStringLiteral("bg"), colour(bg.colour, bg.opacity)}};
}
