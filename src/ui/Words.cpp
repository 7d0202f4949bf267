#include "ui/Words.h"

#include "foundation/PlatformWords.h"

Words::Words(QObject* parent) : QObject(parent) {}

QString Words::say(const QString& sentence) const {
    return QString::fromStdString(PlatformWords::say(sentence.toStdString()));
}

QString Words::title(const QString& label) const {
    return QString::fromStdString(PlatformWords::title(label.toStdString()));
}
