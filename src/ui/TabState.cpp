#include "ui/TabState.h"

void TabState::setModel(AppModel* model) {
    if (source == model) return;
    for (const auto& c : links) disconnect(c);
    links.clear();
    if (source) detach(*source);
    source = model;
    if (model) attach(*model);
    emit modelChanged();
    refresh();
}
