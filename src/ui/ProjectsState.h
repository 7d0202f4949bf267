#pragma once
// What the Projects tab shows, worked out from the application model: the summary chips, the
// content state, the shared-packages insight and one view record per card, with the words of
// its status and of its actions. The tab lays them out and calls the model's actions.
#include "app/RecordListModel.h"
#include "ui/TabState.h"
#include "ui/projects/ProjectView.h"

#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class ProjectsState : public TabState {
    Q_OBJECT
    QML_ELEMENT
    // {text, symbol, live}, in order
    Q_PROPERTY(QVariantList summary READ summary NOTIFY changed)
    // "finding" while the first list is built, "none" without cards, else "cards"
    Q_PROPERTY(QString content READ content NOTIFY changed)
    // {headline, text, today, shared, sharedFraction, steps} or null
    Q_PROPERTY(QVariant insight READ insight NOTIFY changed)
    // One row per card: every field of ProjectView::Card by name.
    Q_PROPERTY(ListModel* cards READ cards CONSTANT)

public:
    explicit ProjectsState(QObject* parent = nullptr);

    [[nodiscard]] QVariantList summary() const { return summary_; }
    [[nodiscard]] QString content() const { return content_; }
    [[nodiscard]] QVariant insight() const { return insight_; }
    [[nodiscard]] ListModel* cards() { return &cardList; }
    [[nodiscard]] const std::vector<ProjectView::Card>& cardViews() const { return cardList.values(); }

private:
    void attach(AppModel& model) override;
    void refresh() override;

    QVariantList summary_;
    QString content_;
    QVariant insight_;
    RecordListModel<ProjectView::Card> cardList;
};
