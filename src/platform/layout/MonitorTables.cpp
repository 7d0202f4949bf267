#include "platform/layout/MonitorTables.h"

namespace {

// Functions rather than globals: layouts are built during static initialisation elsewhere.
std::set<std::string, std::less<>> runtimeNames() {
    return {
    "node", "bun",  "deno", "python", "python3", "Python", "ruby",     "php",  "java",  "esbuild", "tsx", "ts-node", "npm",
    "npx",  "pnpm", "yarn", "wrangler", "vite",  "next-server", "turbo", "uv", "go",    "cargo",   "air", "nodemon"};
}

std::set<std::string, std::less<>> keptOnBoth() {
    return {
    "com.anthropic.claudefordesktop", "com.apple.finder",       "com.apple.Terminal",       "com.googlecode.iterm2",
    "com.mitchellh.ghostty",          "dev.warp.Warp-Stable",   "dev.zed.Zed",              "com.apple.dt.Xcode",
    "com.microsoft.VSCode",           "com.microsoft.VSCodeInsiders", "com.todesktop.230313mzl4w4u92",
    "com.exafunction.windsurf",       "app.sorrelin.Sorrelin",  "com.apple.ActivityMonitor"};
}

std::map<std::string, std::string, std::less<>> friendlyOnMac() {
    return {
    {"com.microsoft.VSCodeInsiders", "VS Code Insiders"},
    {"com.microsoft.VSCode", "VS Code"},
    {"com.todesktop.230313mzl4w4u92", "Cursor"},
    {"com.github.GitHubClient", "GitHub Desktop"},
    {"com.apple.systempreferences", "System Settings"}};
}

std::map<std::string, std::string, std::less<>> chromiumFamilyOnMac() {
    return {
    {"com.google.Chrome", ""},         {"com.google.Chrome.beta", ""}, {"com.microsoft.edgemac", ""},
    {"com.brave.Browser", ""},         {"company.thebrowser.Browser", ""}, {"com.vivaldi.Vivaldi", ""},
    {"org.chromium.Chromium", ""}};
}

} // namespace

MonitorTables MonitorTables::forLinux(const Places& places) {
    MonitorTables t;
    const std::string& home = places.home;
    t.runtimes = runtimeNames();
    t.runtimeNamePrefixes = {"python3."};
    t.runtimePaths = {home + "/.nvm/",         home + "/.bun/",          home + "/.deno/",
                      home + "/.cargo/",       home + "/.local/bin/",    home + "/.volta/",
                      home + "/.local/share/pnpm/", home + "/.local/share/fnm/", home + "/.pyenv/",
                      home + "/.asdf/",        home + "/.local/share/mise/",
                      "/home/linuxbrew/.linuxbrew/Cellar/node", home + "/.linuxbrew/Cellar/node"};

    t.systemPrefixes = {"/usr/", "/lib", "/sbin", "/bin", "/opt/"};
    t.systemExceptions = {"/usr/local/"}; // the user's own installs, not the package manager's
    t.systemLabel = "System services";
    t.friendly = {{"code", "VS Code"},
                  {"com.visualstudio.code", "VS Code"},
                  {"code-insiders", "VS Code Insiders"},
                  {"com.visualstudio.code.insiders", "VS Code Insiders"},
                  {"cursor", "Cursor"},
                  {"github-desktop", "GitHub Desktop"},
                  {"io.github.shiftey.Desktop", "GitHub Desktop"},
                  {"org.gnome.Settings", "Settings"},
                  {"gnome-control-center", "Settings"},
                  {"systemsettings", "System Settings"},
                  {"org.kde.systemsettings", "System Settings"}};

    t.kept = keptOnBoth();
    t.kept.insert({// terminals
                   "org.gnome.Terminal", "org.gnome.Console", "org.gnome.Ptyxis", "org.kde.konsole", "konsole",
                   "xterm", "kitty", "Alacritty", "com.mitchellh.ghostty", "org.wezfurlong.wezterm", "dev.warp.Warp",
                   "com.gexperts.Tilix", "terminator", "xfce4-terminal", "foot",
                   // editors and development environments
                   "code", "code-insiders", "com.visualstudio.code", "com.visualstudio.code.insiders", "cursor",
                   "dev.zed.Zed", "zed", "windsurf",
                   // file managers
                   "org.gnome.Nautilus", "org.kde.dolphin", "nemo", "thunar", "pcmanfm", "pcmanfm-qt",
                   // system monitors
                   "org.gnome.SystemMonitor", "gnome-system-monitor", "org.kde.plasma-systemmonitor",
                   "org.kde.ksysguard",
                   // the desktop itself
                   "gnome-shell", "org.gnome.Shell", "plasmashell", "org.kde.plasmashell", "kwin", "kwin_wayland",
                   "kwin_x11", "org.kde.kwin", "Xorg", "Xwayland", "org.freedesktop.Xwayland", "pipewire",
                   "wireplumber"});
    t.keptPrefixes = {"app.sorrelin.", "org.gnome.SettingsDaemon.", "org.gnome.Shell."};
    t.nothingToSave = {"org.gnome.Settings", "gnome-control-center", "systemsettings", "org.kde.systemsettings",
                       "org.gnome.SystemMonitor", "gnome-system-monitor", "org.kde.plasma-systemmonitor",
                       "org.gnome.Software", "org.kde.discover", "org.gnome.Weather", "org.gnome.clocks",
                       "org.gnome.Calculator", "org.kde.kcalc"};

    t.browsers = {{"google-chrome", "--product-version"},
                  {"google-chrome-beta", "--product-version"},
                  {"google-chrome-unstable", "--product-version"},
                  {"com.google.Chrome", "--product-version"},
                  {"chromium", "--product-version"},
                  {"chromium-browser", "--product-version"},
                  {"chromium_chromium", "--product-version"},
                  {"org.chromium.Chromium", "--product-version"},
                  {"brave-browser", "--product-version"},
                  {"com.brave.Browser", "--product-version"},
                  {"microsoft-edge", "--product-version"},
                  {"microsoft-edge-beta", "--product-version"},
                  {"com.microsoft.Edge", "--product-version"},
                  {"vivaldi-stable", "--product-version"},
                  {"com.vivaldi.Vivaldi", "--product-version"},
                  // Firefox ignores --product-version and would open a window; --version only prints.
                  {"firefox", "--version"},
                  {"firefox-esr", "--version"},
                  {"firefox_firefox", "--version"},
                  {"org.mozilla.firefox", "--version"}};
    return t;
}

MonitorTables MonitorTables::forMacos(const Places& places) {
    MonitorTables t;
    const std::string& home = places.home;
    t.runtimes = runtimeNames();
    t.runtimeNamePrefixes = {"python3."};
    t.runtimePaths = {home + "/.nvm/",   home + "/.bun/",   home + "/.deno/",        home + "/.cargo/",
                      home + "/.local/bin/", home + "/.volta/", home + "/Library/pnpm/", "/opt/homebrew/Cellar/node",
                      "/usr/local/Cellar/node"};
    t.bundleSuffix = ".app";
    t.systemPrefixes = {"/System/", "/usr/", "/Library/Apple/"};
    t.systemLabel = "macOS services";
    t.settingsPath = "/System/Applications/System Settings.app";
    t.settingsHelpers = {"/ExtensionKit/Extensions/", "StorageManagement.framework/PlugIns/"};
    t.claudeId = "com.anthropic.claudefordesktop";
    t.claudePath = "/Applications/Claude.app";
    t.claudeSupportPiece = "/Application Support/Claude/";
    t.friendly = friendlyOnMac();
    t.kept = keptOnBoth();
    t.keptPrefixes = {"app.sorrelin."};
    t.systemBundlePrefixes = {"/System/Library/", "/Library/Apple/"};
    t.nothingToSave = {"com.apple.systempreferences", "com.apple.ActivityMonitor", "com.apple.AppStore",
                       "com.apple.Passwords", "com.apple.findmy", "com.apple.weather", "com.apple.stocks"};
    t.browsers = chromiumFamilyOnMac();
    return t;
}
