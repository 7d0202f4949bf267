#pragma once
// Tables of the live monitor: runtime folders of command-line tools and the kept apps.
#include "platform/Places.h"

struct MonitorTables {
    [[nodiscard]] static MonitorTables forLinux(const Places& places);
    [[nodiscard]] static MonitorTables forMacos(const Places& places);
};
