#pragma once
// How every operation of the remover gets at a path that passed the guards: from the outermost
// allowed root that holds it, one component at a time, never through a symbolic link. What it
// then does, it does through the handle of the folder that holds the path.
#include "foundation/Beneath.h"
#include "removal/Remover.h"

#include <optional>
#include <string>
#include <string_view>

namespace Remover {

struct Reached {
    Beneath::Parent where;           // the folder holding the path, and the path's own name
    bool missing = false;            // a folder on the way is not there, so neither is the path
    std::optional<std::string> link; // the symbolic link met on the way, as an absolute path
    int error = 0;                   // any other errno that stopped the walk
    [[nodiscard]] int folder() const { return where.folder.fd.get(); }
    [[nodiscard]] const std::string& name() const { return where.name; }
};

// The outermost of the context's roots that holds `path`; empty when none does.
[[nodiscard]] std::string rootOf(std::string_view path, const Context& context);
// Reaches the folder of `path`, which has passed `isSafe`; `make` makes missing folders.
[[nodiscard]] Reached reach(const std::string& path, const Context& context, bool make = false);
// 0 when something stands at the reached path, else the errno of looking.
[[nodiscard]] int look(const Reached& reached);

} // namespace Remover
