#include "platform/layout/ActionTables.h"

ActionTables ActionTables::forLinux(const Places&) {
    ActionTables t;
    t.quitByInterrupt = {"google-chrome",       "google-chrome-beta",  "google-chrome-unstable", "com.google.Chrome",
                         "chromium",            "chromium-browser",    "chromium_chromium",      "org.chromium.Chromium",
                         "brave-browser",       "com.brave.Browser",   "microsoft-edge",         "microsoft-edge-beta",
                         "com.microsoft.Edge",  "vivaldi-stable",      "com.vivaldi.Vivaldi"};
    // Each shows the desktop's dialog, which restarts only after its own countdown or a press.
    t.restartDialogs = {
        {"GNOME", {"org.gnome.SessionManager", "/org/gnome/SessionManager", "org.gnome.SessionManager", "Reboot", {}}},
        {"KDE", {"org.kde.LogoutPrompt", "/LogoutPrompt", "org.kde.LogoutPrompt", "promptReboot", {}}},
        {"XFCE",
         {"org.xfce.SessionManager", "/org/xfce/SessionManager", "org.xfce.Session.Manager", "Logout",
          {BusValue::boolean(true), BusValue::boolean(true)}}}};
    t.testApps = {"org.gnome.Calculator", "gnome-calculator", "org.kde.kcalc", "kcalc", "galculator",
                  "qalculate-gtk", "org.gnome.clocks", "org.gnome.Weather"};
    return t;
}

ActionTables ActionTables::forMacos(const Places&) {
    ActionTables t;
    // The system's own restart dialog is asked for otherwise there; nothing here speaks to it.
    t.testApps = {"com.apple.calculator"};
    return t;
}
