#include "platform/layout/RemovalTables.h"

RemovalTables RemovalTables::forLinux(const Places&) { return {}; }

RemovalTables RemovalTables::forMacos(const Places&) { return {}; }
