#pragma once
// What an answer to a notification asks of the model. The categories and identifiers are the
// contract between the side that posts and the side that answers; the transport is the
// desktop's.
#include "foundation/Tab.h"

#include <QString>
#include <QVariantMap>

#include <optional>
#include <string>
#include <vector>

class AppModel;

struct NotificationAnswer {
    enum class Kind { quitApps, restart, show };
    Kind kind = Kind::show;
    std::vector<std::string> apps; // quitApps: the group keys of the alert
    std::optional<Tab> tab;        // show: the tab to open at, none for the window as it was

    friend bool operator==(const NotificationAnswer&, const NotificationAnswer&) = default;

    // `action` is the button's key, or "default" (any other key too) for a click on the body.
    [[nodiscard]] static NotificationAnswer route(const QString& action, const QString& category, const QVariantMap& info);
    // Carries the answer out on the main thread.
    void apply(AppModel& model) const;
};
