#pragma once
// Finding a screen's items the way its tests name them: by object name, as a person points at
// a control, and every shown item whose name starts alike, as a person reads a list.
#include <QQuickItem>
#include <QString>

#include <functional>
#include <vector>

namespace ItemSearch {

// The first item below `from` (itself included) with this object name, visible or not.
inline QQuickItem* named(QQuickItem* from, const QString& objectName) {
    if (!from) return nullptr;
    if (from->objectName() == objectName) return from;
    for (QQuickItem* child : from->childItems())
        if (QQuickItem* hit = named(child, objectName)) return hit;
    return nullptr;
}

// Every item below `from` whose object name starts with `prefix` and that a person can see,
// in tree order; a hidden item hides what lies below it.
inline std::vector<QQuickItem*> shown(QQuickItem* from, const QString& prefix) {
    std::vector<QQuickItem*> out;
    std::function<void(QQuickItem*)> walk = [&](QQuickItem* item) {
        if (!item || !item->isVisible()) return;
        if (item->objectName().startsWith(prefix)) out.push_back(item);
        for (QQuickItem* child : item->childItems()) walk(child);
    };
    walk(from);
    return out;
}

} // namespace ItemSearch
