// What the apps of a workspace would save by sharing one install of the packages they all have.
#include "foundation/FS.h"
#include "projects/Projects.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace Projects {

namespace {

// Package names of one node_modules folder: "name", and "@scope/name" for scoped packages.
std::set<std::string> packageNames(const std::string& modules) {
    std::set<std::string> names;
    for (const auto& name : FS::children(modules)) {
        if (name.starts_with(".")) continue;
        const std::string path = modules + "/" + name;
        if (name.starts_with("@") && FS::isDir(path)) {
            for (const auto& entry : FS::children(path))
                if (!entry.starts_with(".")) names.insert(name + "/" + entry);
            continue;
        }
        names.insert(name);
    }
    return names;
}

} // namespace

std::optional<SharedPackages> sharedPackages(const ProjectCard& card) {
    struct App {
        std::string modules;
        std::set<std::string> names;
    };
    std::vector<App> apps;
    for (const ProjectApp& app : card.apps) {
        const std::string modules = app.id + "/node_modules";
        if (FS::isDir(modules)) apps.push_back({modules, packageNames(modules)});
    }
    if (apps.size() < 3) return std::nullopt;

    // An app plainly of another kind should not cut the intersection down.
    std::vector<std::size_t> sizes;
    for (const App& a : apps) sizes.push_back(a.names.size());
    std::sort(sizes.begin(), sizes.end());
    const double median = static_cast<double>(sizes[sizes.size() / 2]);
    std::vector<const App*> kept;
    for (const App& a : apps)
        if (static_cast<double>(a.names.size()) >= 0.6 * median) kept.push_back(&a);
    if (kept.size() < 3) return std::nullopt;

    std::set<std::string> common = kept.front()->names;
    for (std::size_t i = 1; i < kept.size(); ++i) {
        std::set<std::string> both;
        std::set_intersection(common.begin(), common.end(), kept[i]->names.begin(), kept[i]->names.end(),
                              std::inserter(both, both.begin()));
        common = std::move(both);
    }
    if (common.size() < 20) return std::nullopt;

    int64_t today = 0, shared = 0;
    for (const App* a : kept) {
        std::vector<std::string> paths;
        for (const auto& name : common)
            if (FS::isDir(a->modules + "/" + name)) paths.push_back(a->modules + "/" + name);
        // Packages hard-linked from a store are held elsewhere too: they count for nothing here.
        const int64_t bytes = FS::measure(paths).exclusive;
        today += bytes;
        shared = std::max(shared, bytes);
    }
    if (today - shared <= 300 * MB) return std::nullopt;
    return SharedPackages{card.name, static_cast<int>(kept.size()), static_cast<int>(common.size()), today, shared};
}

} // namespace Projects
