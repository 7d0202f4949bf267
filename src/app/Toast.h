#pragma once
// The short message at the bottom of the window.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct Toast {
    enum class Kind { ok, info, problem };
    std::string text;
    Kind kind = Kind::info;
    std::optional<std::string> action; // the label of its button
    double seconds = 3.8;
    uint64_t id = 0; // new for each toast, so two of the same words still differ

    friend bool operator==(const Toast&, const Toast&) = default;

    [[nodiscard]] static std::string_view kindName(Kind k) {
        switch (k) {
        case Kind::ok: return "ok";
        case Kind::info: return "info";
        case Kind::problem: return "problem";
        }
        return {};
    }
};
