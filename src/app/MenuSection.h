#pragma once
// The sections of the tray panel and the styles of the tray item's label, with their words.
#include <array>
#include <optional>
#include <string_view>

enum class MenuSection { freeSpace, status, vitals, nextStep, quickClean, storage, openApp };
enum class MenuLabelStyle { freeSpace, iconOnly, freeAndMemory };

namespace MenuSections {

inline constexpr std::array<MenuSection, 7> allCases{MenuSection::freeSpace, MenuSection::status,     MenuSection::vitals,
                                                     MenuSection::nextStep,  MenuSection::quickClean, MenuSection::storage,
                                                     MenuSection::openApp};

[[nodiscard]] std::string_view raw(MenuSection s);
[[nodiscard]] std::optional<MenuSection> fromRaw(std::string_view raw);
[[nodiscard]] std::string_view title(MenuSection s);
[[nodiscard]] std::string_view detail(MenuSection s);
[[nodiscard]] std::string_view symbol(MenuSection s);

} // namespace MenuSections

namespace MenuLabelStyles {

inline constexpr std::array<MenuLabelStyle, 3> allCases{MenuLabelStyle::freeSpace, MenuLabelStyle::iconOnly,
                                                        MenuLabelStyle::freeAndMemory};

[[nodiscard]] std::string_view raw(MenuLabelStyle s);
[[nodiscard]] std::optional<MenuLabelStyle> fromRaw(std::string_view raw);
[[nodiscard]] std::string_view title(MenuLabelStyle s);

} // namespace MenuLabelStyles
