#include "ui/ProjectsState.h"

#include "app/QmlValues.h"

#include <algorithm>

using QmlValues::text;
using ProjectView::Card;

namespace {

QVariantList chipList(const std::vector<ProjectView::Chip>& chips) {
    QVariantList out;
    for (const auto& c : chips) out << QVariantMap{{"text", text(c.text)}, {"symbol", text(c.symbol)}, {"live", c.live}};
    return out;
}

template <class F>
RecordListModel<Card>::Role role(const char* name, F read) {
    return {name, [read](const Card& c) { return QVariant(read(c)); }};
}

std::vector<RecordListModel<Card>::Role> cardRoles() {
    return {
        role("id", [](const Card& c) { return text(c.id); }),
        role("name", [](const Card& c) { return text(c.name); }),
        role("path", [](const Card& c) { return text(c.path); }),
        role("wide", [](const Card& c) { return c.wide; }),
        role("tag", [](const Card& c) { return text(c.tag); }),
        role("tagSymbol", [](const Card& c) { return text(c.tagSymbol); }),
        role("status", [](const Card& c) { return text(c.status); }),
        role("leftoverTag", [](const Card& c) { return text(c.leftoverTag); }),
        role("chips", [](const Card& c) { return chipList(c.chips); }),
        role("olderTip", [](const Card& c) { return text(c.olderTip); }),
        role("memory", [](const Card& c) { return text(c.memory); }),
        role("memoryFraction", [](const Card& c) { return c.memoryFraction; }),
        role("build", [](const Card& c) { return text(c.build); }),
        role("buildFraction", [](const Card& c) { return c.buildFraction; }),
        role("apps", [](const Card& c) {
            QVariantList out;
            for (const auto& a : c.apps) out << QVariantMap{{"name", text(a.name)}, {"build", text(a.build)}, {"running", a.running}};
            return out;
        }),
        role("stopLabel", [](const Card& c) { return text(c.stopLabel); }),
        role("stopTip", [](const Card& c) { return text(c.stopTip); }),
        role("freeLabel", [](const Card& c) { return text(c.freeLabel); }),
        role("freeTip", [](const Card& c) { return text(c.freeTip); }),
        role("armed", [](const Card& c) { return c.armed; }),
        role("locked", [](const Card& c) { return c.locked; }),
        role("freed", [](const Card& c) { return c.freed; }),
    };
}

} // namespace

ProjectsState::ProjectsState(QObject* parent)
    : TabState(parent), cardList([](const Card& c) { return c.id; }, cardRoles(), this) {}

void ProjectsState::attach(AppModel&) {
    for (auto signal : {&AppModel::projectsChanged, &AppModel::projectsBusyChanged, &AppModel::sharedChanged,
                        &AppModel::sharedCheckedChanged, &AppModel::armedChanged, &AppModel::freedProjectsChanged,
                        &AppModel::lastScanChanged})
        follow(signal);
}

void ProjectsState::refresh() {
    if (!source) return;
    const AppModel& m = *source;
    const auto& projects = m.projects();
    const TimePoint now = m.clock().now();

    int64_t maxMemory = 0, maxBuild = 0;
    for (const auto& c : projects) {
        maxMemory = std::max(maxMemory, c.memory);
        maxBuild = std::max(maxBuild, c.build);
    }
    std::vector<Card> views;
    for (const auto& c : projects)
        views.push_back(ProjectView::card(c, maxMemory, maxBuild, m.armed() == "proj:" + c.id, m.freedProjects().contains(c.id), now));
    cardList.update(std::move(views));

    summary_ = chipList(ProjectView::summary(projects, m.lastScan().has_value()));
    content_ = !projects.empty() ? "cards" : (!m.sharedChecked() ? "finding" : "none");
    insight_ = QVariant();
    if (const auto& s = m.sharedInsight()) {
        std::string path;
        for (const auto& c : projects)
            if (c.name == s->group) path = c.path;
        const auto i = ProjectView::insight(*s, path);
        insight_ = QVariantMap{{"headline", text(i.headline)}, {"text", text(i.text)},   {"today", text(i.today)},
                               {"shared", text(i.shared)},     {"sharedFraction", i.sharedFraction}, {"steps", text(i.steps)}};
    }
    emit changed();
}
