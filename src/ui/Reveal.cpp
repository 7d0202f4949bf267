#include "ui/Reveal.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>

Reveal::Reveal(QObject* parent) : QObject(parent) {}

QUrl Reveal::folderOf(const QString& path) {
    if (path.isEmpty() || QDir::isRelativePath(path)) return {};
    const QFileInfo info(QDir::cleanPath(path));
    // A symbolic link is shown where it lies, not where it points.
    if (info.isDir() && !info.isSymLink()) return QUrl::fromLocalFile(info.absoluteFilePath());
    return QUrl::fromLocalFile(info.absolutePath());
}

bool Reveal::show(const QString& path) const {
    const QUrl folder = folderOf(path);
    return folder.isValid() && !folder.isEmpty() && QDesktopServices::openUrl(folder);
}
