#include "foundation/Rendering.h"

namespace Tools {

std::atomic<bool> rendering{false};

} // namespace Tools
