#include "platform/RunningApp.h"

#include <array>

std::string RunningApp::trimName(std::string_view name) {
    // U+200E, U+200F, U+202A and U+202C in UTF-8, and the blank.
    static constexpr std::array<std::string_view, 5> marks = {"\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xAA",
                                                              "\xE2\x80\xAC", " "};
    auto stripFront = [&] {
        for (auto m : marks)
            if (name.starts_with(m)) {
                name.remove_prefix(m.size());
                return true;
            }
        return false;
    };
    auto stripBack = [&] {
        for (auto m : marks)
            if (name.ends_with(m)) {
                name.remove_suffix(m.size());
                return true;
            }
        return false;
    };
    while (stripFront()) {}
    while (stripBack()) {}
    return std::string(name);
}
