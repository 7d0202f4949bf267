#pragma once
#include <cstdint>

// What a set of paths occupies: `exclusive` is what clearing them frees, `shared` what they
// occupy but links outside them keep alive.
struct Measured {
    int64_t exclusive = 0;
    int64_t shared = 0;
    friend bool operator==(const Measured&, const Measured&) = default;
};
