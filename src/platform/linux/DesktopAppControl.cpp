#include "platform/linux/DesktopAppControl.h"

#include "platform/linux/BundleMemo.h"
#include "platform/linux/Detached.h"
#include "platform/linux/X11Front.h"

#include <cstdlib>
#include <cstring>

DesktopAppControl::DesktopAppControl(const AppBundles& bundles, const SessionBus& bus,
                                     std::function<int(const std::set<int32_t>&)> closeWindows, std::string searchPath)
    : bundles(bundles), bus(bus), closeWindows(std::move(closeWindows)), searchPath(std::move(searchPath)) {}

std::string DesktopAppControl::objectPath(const std::string& busName) {
    std::string path = "/";
    for (char c : busName) path += c == '.' ? '/' : c == '-' ? '_' : c;
    return path;
}

std::vector<std::string> DesktopAppControl::commandLine(const DesktopEntry& entry, const std::vector<std::string>& arguments) {
    std::vector<std::string> line;
    for (const auto& word : entry.exec)
        if (word != "@@" && word != "@@u") line.push_back(word);
    if (line.empty()) return line;
    line.insert(line.end(), arguments.begin(), arguments.end());
    return line;
}

AppControl::Asked DesktopAppControl::askToQuit(const std::optional<std::string>& entryPath,
                                               const std::set<int32_t>& pids) const {
    if (entryPath)
        if (auto entry = bundles.entryAt(*entryPath); entry && entry->dbusActivatable && bus.hasOwner(entry->id)) {
            BusCall quit{entry->id, objectPath(entry->id), "org.freedesktop.Application", "ActivateAction",
                         {BusValue::string("quit"), BusValue::emptyArray("v"), BusValue::emptyDict("sv")}};
            if (bus.call(quit, 5).ok) return Asked::action;
        }
    if (closeWindows && closeWindows(pids) > 0) return Asked::windows;
    return Asked::none;
}

std::optional<std::string> DesktopAppControl::open(const std::string& entryPath, const std::vector<std::string>& arguments) const {
    auto entry = bundles.entryAt(entryPath);
    if (!entry) return std::string("its desktop entry is gone");
    auto line = commandLine(*entry, arguments);
    if (line.empty()) return std::string("its desktop entry names no program");
    auto started = Detached::start(line.front(), line, searchPath);
    return started.problem;
}

const AppControl& AppControl::live() {
    static const DesktopAppControl control(
        BundleMemo::system(), SessionBus::session(), [](const std::set<int32_t>& pids) { return X11Front::closeWindows(pids); },
        [] {
            const char* path = std::getenv("PATH");
            return std::string(path && *path ? path : "/usr/local/bin:/usr/bin:/bin");
        }());
    return control;
}
