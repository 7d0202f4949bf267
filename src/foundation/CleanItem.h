#pragma once
// A measured cleaning item: what the Clean tab lists and what the remover takes.
#include "foundation/CacheKind.h"
#include "foundation/Removal.h"
#include "foundation/Tier.h"
#include "foundation/Time.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct CleanItem {
    std::string id;
    Tier tier = Tier::safe;
    std::string name;
    std::string location;
    std::string note;
    std::vector<std::string> paths;
    Removal removal = Removal::deleteForGood();
    int64_t size = 0;
    std::optional<std::string> lockedReason;
    bool defaultOn = false;
    std::vector<std::string> reveal;
    std::optional<CacheKind> cacheKind;
    std::optional<TimePoint> lastUsed;

    friend bool operator==(const CleanItem&, const CleanItem&) = default;

    // Location of an item that joins an app's caches with its data folder.
    static constexpr std::string_view mergedLocation = "~/Library/Caches and Application Support";
    static constexpr std::string_view mergedLocationLinux = "~/.cache and ~/.config";

    [[nodiscard]] bool isLocked() const { return lockedReason.has_value(); }
    // Remembered in the history so that a refill can be told.
    [[nodiscard]] bool tracksRefill() const { return tier == Tier::safe || id == "device-support"; }
    [[nodiscard]] std::string shortLocation() const;
    [[nodiscard]] std::string fullLocation() const;
    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] std::optional<std::string> recentLabel() const;
    [[nodiscard]] std::string shortNote() const;

    // Icon and tint of the row. The icon is a symbol name of the design language; the tint a
    // palette name or a "#RRGGBB" colour.
    struct Kind {
        std::string_view symbol;
        std::string_view tint;
        friend bool operator==(const Kind&, const Kind&) = default;
    };
    [[nodiscard]] Kind kind() const;
    [[nodiscard]] std::string_view symbol() const { return kind().symbol; }
    [[nodiscard]] std::string_view tint() const { return kind().tint; }
};
