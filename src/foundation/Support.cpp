#include "foundation/Support.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <cstdlib>
#include <memory>

namespace Support {

const std::optional<std::string>& override() {
    static const std::optional<std::string> value = []() -> std::optional<std::string> {
        const char* v = std::getenv("SORRELIN_SUPPORT");
        if (!v) return std::nullopt;
        return std::string(v);
    }();
    return value;
}

bool testing() { return override().has_value(); }

const std::string& dir() {
    static const std::string value = override() ? *override() : FS::xdgFolder("XDG_DATA_HOME", "/.local/share") + "/sorrelin";
    return value;
}

uint64_t fnv1a(std::string_view bytes) {
    uint64_t hash = 0xcbf29ce484222325ull;
    for (unsigned char c : bytes) {
        hash ^= c;
        hash *= 0x100000001b3ull;
    }
    return hash;
}

std::string suiteName(std::string_view overrideValue) {
    return Text::format("app.sorrelin.Sorrelin.testing-%llx", static_cast<unsigned long long>(fnv1a(overrideValue)));
}

std::string settingsFile(const std::optional<std::string>& overrideValue) {
    const std::string folder = FS::xdgFolder("XDG_CONFIG_HOME", "/.config") + "/sorrelin";
    if (!overrideValue) return folder + "/settings.json";
    return folder + "/" + suiteName(*overrideValue) + ".json";
}

SettingsStore& defaults() {
    static SettingsStore store(settingsFile(override()));
    return store;
}

} // namespace Support
