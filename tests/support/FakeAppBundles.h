#pragma once
// Hand-made installed apps for tests, with last-used dates and a count of the lookups made.
#include "platform/AppBundles.h"

#include <atomic>
#include <map>

class FakeAppBundles final : public AppBundles {
public:
    std::vector<DesktopEntry> entries;
    std::map<std::string, TimePoint> used; // by entry id
    mutable std::atomic<int> lookups{0};

    // Adds an entry with id, path "/apps/<id>.desktop", a name and (optionally) its program.
    DesktopEntry& add(const std::string& id, const std::string& name, const std::string& executable = {}) {
        DesktopEntry& e = install(id, name);
        e.executable = executable;
        return e;
    }
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
    std::optional<TimePoint> lastUsed(const DesktopEntry& e) const override {
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
