#pragma once
// The move of one checked path to the Trash, shared by a clean and by a single trash request.
#include "removal/Remover.h"
#include "removal/RemoverReach.h"

namespace Remover {

// Moves `path`, which has passed the guards, been reached and exists, with no dry run; the
// sentence of a failure names what went wrong in plain words.
[[nodiscard]] Trashed moveToTrash(const Reached& reached, const std::string& path, const Context& context);

} // namespace Remover
