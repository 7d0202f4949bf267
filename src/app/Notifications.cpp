#include "app/Notifications.h"

#include "foundation/Fmt.h"
#include "foundation/PlatformWords.h"
#include "foundation/Text.h"

namespace Notifications {

Notification lowSpace(const DiskInfo& disk, int64_t clearable) {
    const bool offers = clearable >= GB;
    Notification n;
    n.title = QString::fromStdString("Only " + Fmt::bytes(disk.available) + " free on " + disk.name);
    n.body = offers ? QString::fromStdString("Sorrelin found " + Fmt::bytes(clearable) + " you can clear safely. Click to review.")
                    : QStringLiteral("Click to see what is using the space.");
    n.id = QStringLiteral("low-space");
    n.category = QStringLiteral("space");
    n.info = {{QStringLiteral("tab"), offers ? QStringLiteral("clean") : QStringLiteral("storage")}};
    return n;
}

Notification restartReminder(TimePoint at, int64_t swap, int days) {
    Notification n;
    n.title = QString::fromStdString(PlatformWords::title("Restart your Mac tonight?"));
    n.body = QString::fromStdString(Text::format("It has been on for %d days with %s of swap on your disk. A restart empties it.",
                                                 days, Fmt::bytes(swap).c_str()));
    n.id = QStringLiteral("restart-reminder");
    n.category = QStringLiteral("restart");
    n.at = at;
    return n;
}

} // namespace Notifications
