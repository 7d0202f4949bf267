#pragma once
// The one table from the symbol names the core and the screens use ("checkmark",
// "internaldrive", "custom.broom"...) to what draws them: a glyph of the Material icon font,
// or a shape of our own. Symbols never come from the user's icon theme, so the dark design
// looks the same on every desktop.
#include <span>
#include <string_view>

namespace SymbolTable {

struct Symbol {
    std::string_view name;
    char16_t glyph = 0;       // a code point of the Material icon font; 0 for a shape
    std::string_view shape{}; // our own drawing: "broom", "ghost"
};

// The entry for a name. A name the table lacks gets `fallback()`, never nothing: a row whose
// symbol this build does not know still shows a neutral mark.
[[nodiscard]] const Symbol& find(std::string_view name);
[[nodiscard]] bool known(std::string_view name);
[[nodiscard]] const Symbol& fallback();
[[nodiscard]] std::span<const Symbol> all();

} // namespace SymbolTable
