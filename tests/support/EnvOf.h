#pragma once
// An environment for Layout::linux made of the given variables alone.
#include "platform/Layout.h"

#include <map>
#include <string>

inline Layout::Env envOf(std::map<std::string, std::string> vars) {
    return [vars = std::move(vars)](const char* name) -> std::optional<std::string> {
        auto it = vars.find(name);
        if (it == vars.end()) return std::nullopt;
        return it->second;
    };
}
