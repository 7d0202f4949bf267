#include "app/MenuSection.h"

#include "foundation/PlatformWords.h"

#include <string>

namespace MenuSections {

std::string_view raw(MenuSection s) {
    switch (s) {
    case MenuSection::freeSpace: return "freeSpace";
    case MenuSection::status: return "status";
    case MenuSection::vitals: return "vitals";
    case MenuSection::nextStep: return "nextStep";
    case MenuSection::quickClean: return "quickClean";
    case MenuSection::storage: return "storage";
    case MenuSection::openApp: return "openApp";
    }
    return {};
}

std::optional<MenuSection> fromRaw(std::string_view value) {
    for (MenuSection s : allCases)
        if (raw(s) == value) return s;
    return std::nullopt;
}

std::string_view title(MenuSection s) {
    switch (s) {
    case MenuSection::freeSpace: return "Free space";
    case MenuSection::status: return "Forecast and speed";
    case MenuSection::vitals: return "Memory and swap";
    case MenuSection::nextStep: return "Best next step";
    case MenuSection::quickClean: return "Quick clean";
    case MenuSection::storage: return "What takes space";
    case MenuSection::openApp: return "Open Sorrelin button";
    }
    return {};
}

std::string_view detail(MenuSection s) {
    // Said once through the platform's words and kept, so callers get a lasting view.
    static const std::string status = PlatformWords::say("When the disk fills up, and whether the Mac is slow");
    switch (s) {
    case MenuSection::freeSpace: return "The disk ring and how much is free";
    case MenuSection::status: return status;
    case MenuSection::vitals: return "Free memory and swap on the disk";
    case MenuSection::nextStep: return "The one fix that helps most right now";
    case MenuSection::quickClean: return "Old caches, cleared in two clicks";
    case MenuSection::storage: return "The three biggest things on your disk";
    case MenuSection::openApp: return "A button that opens the window";
    }
    return {};
}

std::string_view symbol(MenuSection s) {
    switch (s) {
    case MenuSection::freeSpace: return "internaldrive";
    case MenuSection::status: return "calendar";
    case MenuSection::vitals: return "memorychip";
    case MenuSection::nextStep: return "sparkle";
    case MenuSection::quickClean: return "custom.broom";
    case MenuSection::storage: return "chart.pie";
    case MenuSection::openApp: return "macwindow";
    }
    return {};
}

} // namespace MenuSections

namespace MenuLabelStyles {

std::string_view raw(MenuLabelStyle s) {
    switch (s) {
    case MenuLabelStyle::freeSpace: return "freeSpace";
    case MenuLabelStyle::iconOnly: return "iconOnly";
    case MenuLabelStyle::freeAndMemory: return "freeAndMemory";
    }
    return {};
}

std::optional<MenuLabelStyle> fromRaw(std::string_view value) {
    for (MenuLabelStyle s : allCases)
        if (raw(s) == value) return s;
    return std::nullopt;
}

std::string_view title(MenuLabelStyle s) {
    switch (s) {
    case MenuLabelStyle::freeSpace: return "Free space";
    case MenuLabelStyle::iconOnly: return "Icon only";
    case MenuLabelStyle::freeAndMemory: return "Space and memory";
    }
    return {};
}

} // namespace MenuLabelStyles
