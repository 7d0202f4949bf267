#pragma once
// The symbol table offered to QML: `Glyph` asks here what draws a name.
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

class Symbols : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString family READ family CONSTANT)
    Q_PROPERTY(bool available READ available CONSTANT)
    // Every name of the table, in its order (the gallery shows them all).
    Q_PROPERTY(QStringList names READ names CONSTANT)

public:
    explicit Symbols(QObject* parent = nullptr);

    // The symbol font's family; empty when the font is not installed.
    [[nodiscard]] QString family() const;
    [[nodiscard]] bool available() const { return !family().isEmpty(); }
    [[nodiscard]] QStringList names() const;

    // The character of the font that draws `name`; empty for our own shapes.
    Q_INVOKABLE [[nodiscard]] QString glyph(const QString& name) const;
    // "broom" or "ghost" for our own shapes, empty otherwise.
    Q_INVOKABLE [[nodiscard]] QString shape(const QString& name) const;
    Q_INVOKABLE [[nodiscard]] bool known(const QString& name) const;
};
