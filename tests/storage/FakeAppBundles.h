#pragma once
// Installed apps given by hand.
#include "platform/AppBundles.h"

#include <map>

class FakeAppBundles final : public AppBundles {
public:
    std::vector<DesktopEntry> entries;
    std::map<std::string, TimePoint> used; // by entry id

    [[nodiscard]] const std::vector<DesktopEntry>& all() const override { return entries; }
    [[nodiscard]] std::optional<DesktopEntry> entry(const std::string& id) const override {
        for (const auto& e : entries)
            if (e.id == id) return e;
        return std::nullopt;
    }
    [[nodiscard]] std::optional<DesktopEntry> entryAt(const std::string& path) const override {
        for (const auto& e : entries)
            if (e.path == path) return e;
        return std::nullopt;
    }
    [[nodiscard]] std::optional<DesktopEntry> entryForExecutable(const std::string& exe) const override {
        for (const auto& e : entries)
            if (e.executable == exe) return e;
        return std::nullopt;
    }
    [[nodiscard]] std::optional<TimePoint> lastUsed(const DesktopEntry& e) const override {
        auto it = used.find(e.id);
        if (it == used.end()) return std::nullopt;
        return it->second;
    }
};

inline DesktopEntry desktopEntry(std::string id, std::string path, std::string name, std::string executable = {}) {
    DesktopEntry e;
    e.id = std::move(id);
    e.path = std::move(path);
    e.name = std::move(name);
    e.executable = std::move(executable);
    if (!e.executable.empty()) e.exec = {e.executable};
    return e;
}
