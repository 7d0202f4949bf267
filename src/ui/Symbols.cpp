#include "ui/Symbols.h"

#include "ui/Fonts.h"
#include "ui/SymbolTable.h"

Symbols::Symbols(QObject* parent) : QObject(parent) {}

QString Symbols::family() const { return Fonts::symbolFamily(); }

QString Symbols::glyph(const QString& name) const {
    const auto& s = SymbolTable::find(name.toStdString());
    return s.glyph != 0 ? QString(QChar(s.glyph)) : QString();
}

QString Symbols::shape(const QString& name) const {
    const auto& s = SymbolTable::find(name.toStdString());
    return QString::fromLatin1(s.shape.data(), qsizetype(s.shape.size()));
}

bool Symbols::known(const QString& name) const { return SymbolTable::known(name.toStdString()); }

QStringList Symbols::names() const {
    QStringList out;
    for (const auto& s : SymbolTable::all()) out << QString::fromLatin1(s.name.data(), qsizetype(s.name.size()));
    return out;
}
