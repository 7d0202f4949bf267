#pragma once
// Tables of the cleaning sources: known caches, label tables, tool rows, developer data and big items.
#include "platform/Places.h"

struct ScanTables {
    [[nodiscard]] static ScanTables forLinux(const Places& places);
    [[nodiscard]] static ScanTables forMacos(const Places& places);
};
