#pragma once
// The one door to the desktop's notifications. The model decides what to say and when; an
// implementation carries it to the desktop (org.freedesktop.Notifications) or, in tests,
// writes it down. Posting never fails from the caller's side: a refused notification is lost.
#include "foundation/Time.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

struct Notification {
    QString title;
    QString body;
    QString id;                     // a later post with the same id replaces this one
    std::optional<QString> category; // names the buttons the desktop shows
    QVariantMap info;               // handed back with the answer ("tab", "apps")
    std::optional<TimePoint> at;    // delivered at this time; absent: at once

    friend bool operator==(const Notification&, const Notification&) = default;
};

class Notifier {
public:
    virtual ~Notifier() = default;
    virtual void post(const Notification& notification) = 0;
};
