#pragma once
// Tables of the actions on running software: which apps take an interrupt as their own Quit,
// which desktops open a restart dialog when asked on the session bus, and which small apps the
// self-check may open and quit.
#include "platform/Places.h"
#include "platform/SessionBus.h"

#include <set>
#include <string>
#include <vector>

struct ActionTables {
    // App ids of the Chromium family: an interrupt is their Quit, while a plain termination
    // skips the session they save for a restore.
    std::set<std::string, std::less<>> quitByInterrupt;

    // A desktop's own restart dialog, with its countdown; `desktop` is the name the session
    // gives in XDG_CURRENT_DESKTOP. Asked in order, the running desktop's first.
    struct RestartDialog {
        std::string desktop;
        BusCall call;
    };
    std::vector<RestartDialog> restartDialogs;

    // Small apps with nothing to save that the action self-check opens, quits and relaunches,
    // by app id; the first installed one is used.
    std::vector<std::string> testApps;

    [[nodiscard]] static ActionTables forLinux(const Places& places);
    [[nodiscard]] static ActionTables forMacos(const Places& places);
};
