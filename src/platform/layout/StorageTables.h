#pragma once
// Tables of the storage map and the growth report: storage units and growth places.
#include "platform/Places.h"

struct StorageTables {
    [[nodiscard]] static StorageTables forLinux(const Places& places);
    [[nodiscard]] static StorageTables forMacos(const Places& places);
};
