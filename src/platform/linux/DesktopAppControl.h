#pragma once
// Apps of the desktop: asked to quit by their entry's Quit action on the session bus (the way
// GNOME and KDE apps expose their own menu), their windows closed through the window manager,
// started from their entry's Exec= line.
#include "platform/AppBundles.h"
#include "platform/AppControl.h"
#include "platform/SessionBus.h"

#include <functional>

class DesktopAppControl final : public AppControl {
public:
    // `closeWindows` asks the window manager to close the windows of these processes and gives
    // how many it asked; `searchPath` finds a bare program name of an Exec= line.
    DesktopAppControl(const AppBundles& bundles, const SessionBus& bus,
                      std::function<int(const std::set<int32_t>&)> closeWindows, std::string searchPath);

    [[nodiscard]] bool quitAction(const std::optional<std::string>& entryPath) const override;
    [[nodiscard]] int closeWindows(const std::set<int32_t>& pids) const override;
    [[nodiscard]] std::optional<std::string> open(const std::string& entryPath,
                                                  const std::vector<std::string>& arguments) const override;

    // The object path of an app's bus name: "org.gnome.Calculator" is "/org/gnome/Calculator".
    [[nodiscard]] static std::string objectPath(const std::string& busName);
    // The command line that starts an entry with `arguments` added: its Exec= line without the
    // markers Flatpak puts around the file arguments.
    [[nodiscard]] static std::vector<std::string> commandLine(const DesktopEntry& entry,
                                                              const std::vector<std::string>& arguments);

private:
    const AppBundles& bundles;
    const SessionBus& bus;
    std::function<int(const std::set<int32_t>&)> windowCloser;
    std::string searchPath;
};
