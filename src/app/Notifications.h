#pragma once
// The words and identifiers of the notifications that the model sends.
#include "app/Notifier.h"
#include "foundation/DiskInfo.h"

#include <cstdint>

namespace Notifications {

// Low space on the home volume; `clearable` is what the last scan offers from the safe and
// rebuildable tiers.
[[nodiscard]] Notification lowSpace(const DiskInfo& disk, int64_t clearable);
// The evening reminder to restart, delivered at `at`.
[[nodiscard]] Notification restartReminder(TimePoint at, int64_t swap, int days);

} // namespace Notifications
