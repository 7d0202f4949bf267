#pragma once
// Hand-made installed applications for scans in tests.
#include "platform/AppBundles.h"

#include <map>

class FakeApps final : public AppBundles {
public:
    std::vector<DesktopEntry> entries;
    std::map<std::string, TimePoint> used; // by app id

    // Installs an app of this id; `path` defaults to a made-up entry file.
    DesktopEntry& install(const std::string& id, const std::string& name = "", std::string path = "") {
        DesktopEntry e;
        e.id = id;
        e.name = name;
        e.path = path.empty() ? "/apps/" + id + ".desktop" : std::move(path);
        entries.push_back(e);
        return entries.back();
    }

    const std::vector<DesktopEntry>& all() const override { return entries; }
    std::optional<DesktopEntry> entry(const std::string& id) const override {
        for (const auto& e : entries)
            if (e.id == id) return e;
        return std::nullopt;
    }
    std::optional<DesktopEntry> entryAt(const std::string& path) const override {
        for (const auto& e : entries)
            if (e.path == path) return e;
        return std::nullopt;
    }
    std::optional<DesktopEntry> entryForExecutable(const std::string&) const override { return std::nullopt; }
    std::optional<TimePoint> lastUsed(const DesktopEntry& e) const override {
        auto it = used.find(e.id);
        if (it == used.end()) return std::nullopt;
        return it->second;
    }
};
