#include "platform/linux/DesktopAppControl.h"

#include "platform/AppBundles.h"
#include "platform/linux/Detached.h"
#include "platform/linux/X11Display.h"

#include <cstdlib>
#include <cstring>

DesktopAppControl::DesktopAppControl(const AppBundles& bundles, const SessionBus& bus,
                                     std::function<int(const std::set<int32_t>&)> closeWindows, std::string searchPath)
    : bundles(bundles), bus(bus), windowCloser(std::move(closeWindows)), searchPath(std::move(searchPath)) {}

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

bool DesktopAppControl::quitAction(const std::optional<std::string>& entryPath) const {
    if (!entryPath) return false;
    auto entry = bundles.entryAt(*entryPath);
    // Only a running app is asked: the bus would otherwise start one just to tell it to quit.
    if (!entry || !entry->dbusActivatable || !bus.hasOwner(entry->id)) return false;
    BusCall quit{entry->id, objectPath(entry->id), "org.freedesktop.Application", "ActivateAction",
                 {BusValue::string("quit"), BusValue::emptyArray("v"), BusValue::emptyDict("sv")}};
    return bus.call(quit, 5).ok;
}

int DesktopAppControl::closeWindows(const std::set<int32_t>& pids) const {
    return windowCloser && !pids.empty() ? windowCloser(pids) : 0;
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
        AppBundles::system(), SessionBus::session(), [](const std::set<int32_t>& pids) { return X11Display::session().closeWindows(pids); },
        [] {
            const char* path = std::getenv("PATH");
            return std::string(path && *path ? path : "/usr/local/bin:/usr/bin:/bin");
        }());
    return control;
}
