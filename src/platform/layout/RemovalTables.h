#pragma once
// Tables of the remover: the places that must never be cleared themselves.
#include "platform/Places.h"

#include <string>
#include <vector>

struct RemovalTables {
    // Paths relative to an allowed root, each beginning with "/". A path that is exactly one of
    // these is refused; what lies below them is not.
    std::vector<std::string> protectedPaths;

    [[nodiscard]] static RemovalTables forLinux(const Places& places);
    [[nodiscard]] static RemovalTables forMacos(const Places& places);
};
