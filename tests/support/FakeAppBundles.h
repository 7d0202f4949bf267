#pragma once
// Hand-made installed apps for tests, with a count of the lookups made.
#include "platform/AppBundles.h"

#include <atomic>

class FakeAppBundles final : public AppBundles {
public:
    std::vector<DesktopEntry> entries;
    mutable std::atomic<int> lookups{0};

    // Adds an entry with id, path "/apps/<id>.desktop", a name and (optionally) its program.
    DesktopEntry& add(const std::string& id, const std::string& name, const std::string& executable = {}) {
        DesktopEntry e;
        e.id = id;
        e.path = "/apps/" + id + ".desktop";
        e.name = name;
        e.executable = executable;
        entries.push_back(e);
        return entries.back();
    }

    const std::vector<DesktopEntry>& all() const override { return entries; }
    std::optional<DesktopEntry> entry(const std::string& id) const override {
        ++lookups;
        for (const auto& e : entries)
            if (e.id == id) return e;
        return std::nullopt;
    }
    std::optional<DesktopEntry> entryAt(const std::string& path) const override {
        ++lookups;
        for (const auto& e : entries)
            if (e.path == path) return e;
        return std::nullopt;
    }
    std::optional<DesktopEntry> entryForExecutable(const std::string& exe) const override {
        ++lookups;
        for (const auto& e : entries)
            if (!exe.empty() && e.executable == exe) return e;
        return std::nullopt;
    }
    std::optional<TimePoint> lastUsed(const DesktopEntry&) const override { return std::nullopt; }
};
