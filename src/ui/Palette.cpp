#include "ui/Palette.h"

#include <algorithm>
#include <array>

namespace {

struct Entry {
    std::string_view name;
    const char* hex; // "#AARRGGBB" where the colour is translucent
};

constexpr std::array entries{
    // surfaces
    Entry{"window", "#18191D"}, Entry{"toolbar", "#1E1F24"}, Entry{"toolbarLine", "#26282E"},
    Entry{"panel", "#1D1E23"}, Entry{"panelHover", "#212228"}, Entry{"panelStroke", "#2A2C33"},
    Entry{"panelStrokeHover", "#363841"}, Entry{"line", "#23252B"}, Entry{"sunken", "#222429"},
    Entry{"footer", "#1C1D22"}, Entry{"track", "#26282E"}, Entry{"trackDark", "#24262C"},
    Entry{"chip", "#26282E"}, Entry{"chipStroke", "#30323A"}, Entry{"count", "#2A2C33"},
    Entry{"hover", "#09FFFFFF"}, // white at opacity 0.035
    // text
    Entry{"text", "#EEEFF2"}, Entry{"text2", "#A6AAB3"}, Entry{"text3", "#7D818B"}, Entry{"text4", "#6F737D"},
    Entry{"text5", "#5F636D"}, Entry{"textSoft", "#B9BDC5"}, Entry{"textChip", "#D7DAE0"},
    // accents
    Entry{"amber", "#F5B946"}, Entry{"amberText", "#FFD07A"}, Entry{"amberTop", "#FFC861"},
    Entry{"amberBottom", "#F0AE34"}, Entry{"onAmber", "#1B1406"}, Entry{"blue", "#4EA2F8"},
    Entry{"blueText", "#7DB8F5"}, Entry{"memText", "#8DB9FA"}, Entry{"browser", "#5B9BF8"},
    Entry{"purple", "#A88BFA"}, Entry{"purpleText", "#C4B2FF"}, Entry{"green", "#3FD38B"},
    Entry{"greenText", "#8EEBB9"}, Entry{"greenText2", "#6FE3A8"}, Entry{"orange", "#FF8A5B"},
    Entry{"orangeDeep", "#E0703F"}, Entry{"orangeText", "#FFB18F"}, Entry{"red", "#FF6B6B"},
    Entry{"pink", "#F7718A"}, Entry{"teal", "#33C7B5"}, Entry{"claude", "#FF9E5E"},
    Entry{"indigo", "#8189F9"}, Entry{"mint", "#62CF8A"}, Entry{"rose", "#F27DB7"}, Entry{"slate", "#9AA0AA"},
    // charts and tips
    Entry{"other", "#3B3E47"}, Entry{"otherStroke", "#4A4D57"}, Entry{"dim", "#3A3D46"}, Entry{"rest", "#6F737D"},
    Entry{"idleDot", "#5B606B"}, Entry{"tipBg", "#2F3138"}, Entry{"tipStroke", "#42454E"},
    Entry{"tipText", "#E6E8EC"},
};

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

} // namespace

Palette::Palette(QObject* parent) : QQmlPropertyMap(this, parent) {
    for (const Entry& e : entries) insert(QString::fromLatin1(e.name.data(), qsizetype(e.name.size())), QColor(e.hex));
}

std::optional<QColor> Palette::lookup(std::string_view name) {
    auto it = std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.name == name; });
    if (it != entries.end()) return QColor(it->hex);
    // The core writes colours outside the palette as "#RRGGBB" (a dark tone of a chart).
    if (name.size() == 7 && name[0] == '#' && std::all_of(name.begin() + 1, name.end(), isHexDigit))
        return QColor(QLatin1String(name.data(), qsizetype(name.size())));
    return std::nullopt;
}

QColor Palette::named(const QString& name, qreal opacity) const {
    QColor c = lookup(name.toStdString()).value_or(QColor(QStringLiteral("#9AA0AA")));
    c.setAlphaF(float(std::clamp(c.alphaF() * opacity, 0.0, 1.0)));
    return c;
}

QColor Palette::alpha(const QColor& colour, qreal opacity) const {
    QColor c = colour;
    c.setAlphaF(float(std::clamp(opacity, 0.0, 1.0)));
    return c;
}

QVariant Palette::updateValue(const QString& key, const QVariant&) { return value(key); }
