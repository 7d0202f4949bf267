#pragma once
// The one dark palette every screen draws from. QML reads the members by name
// (`Palette.amber`); the core names tints as text, which `named` turns into colours.
#include <QColor>
#include <QQmlPropertyMap>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <string_view>

class Palette : public QQmlPropertyMap {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit Palette(QObject* parent = nullptr);

    // A member of the palette by name, or a "#RRGGBB" colour; nothing for anything else.
    [[nodiscard]] static std::optional<QColor> lookup(std::string_view name);
    // The tint a core record names, at an opacity. An unknown name gives `slate`, so a row
    // with a tint this build does not know still draws in a neutral colour.
    Q_INVOKABLE [[nodiscard]] QColor named(const QString& name, qreal opacity = 1.0) const;
    // `colour` at an opacity, for QML bindings that lay a tint on a surface.
    Q_INVOKABLE [[nodiscard]] QColor alpha(const QColor& colour, qreal opacity) const;

protected:
    // The palette is constant: QML may read it but never change a member.
    QVariant updateValue(const QString& key, const QVariant& input) override;
};
