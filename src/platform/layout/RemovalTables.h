#pragma once
// Tables of the remover: the protected list.
#include "platform/Places.h"

struct RemovalTables {
    [[nodiscard]] static RemovalTables forLinux(const Places& places);
    [[nodiscard]] static RemovalTables forMacos(const Places& places);
};
