#pragma once
// The one switch that keeps pictures of the screens free of side effects. It lives here, below
// every subsystem, because the data stores must see it; the option that sets it is in tools/.
#include <atomic>

namespace Tools {

// Set while screens are rendered to pictures: persistent writes and side effects stay off.
extern std::atomic<bool> rendering;

} // namespace Tools
