#pragma once
// How an item is cleared: deleted for good, moved to the Trash, or by running a command.
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

struct Removal {
    enum class Kind { deleteForGood, trash, command };

    Kind kind = Kind::deleteForGood;
    std::vector<std::string> arguments; // command only; element 0 is the program

    [[nodiscard]] static Removal deleteForGood() { return {Kind::deleteForGood, {}}; }
    [[nodiscard]] static Removal trash() { return {Kind::trash, {}}; }
    [[nodiscard]] static Removal command(std::vector<std::string> args) { return {Kind::command, std::move(args)}; }

    [[nodiscard]] bool isDelete() const { return kind == Kind::deleteForGood; }
    [[nodiscard]] bool isTrash() const { return kind == Kind::trash; }
    [[nodiscard]] bool isCommand() const { return kind == Kind::command; }

    // Equal by case and, for a command, by its argument list.
    friend bool operator==(const Removal& a, const Removal& b) {
        if (a.kind != b.kind) return false;
        return a.kind != Kind::command || a.arguments == b.arguments;
    }
};

template <> struct std::hash<Removal> {
    std::size_t operator()(const Removal& r) const noexcept {
        std::size_t h = std::hash<int>{}(static_cast<int>(r.kind));
        if (r.kind == Removal::Kind::command)
            for (const auto& a : r.arguments) h = h * 31 + std::hash<std::string>{}(a);
        return h;
    }
};
