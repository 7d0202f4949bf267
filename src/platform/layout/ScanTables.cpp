#include "platform/layout/ScanTables.h"

#include "foundation/Time.h"

namespace {

using Match = ScanTables::BusyWord::Match;

// What both platforms share: how Chromium and Electron lay out their profiles, which folders a
// reinstall brings back, and how a process is named in a sentence.
void common(ScanTables& t, const Places& p) {
    t.chromiumMarkers = {"Local Storage", "Local State", "Preferences", "Cookies", "IndexedDB", "GPUCache", "Code Cache"};
    t.chromiumCaches = {"Cache",
                        "Code Cache",
                        "GPUCache",
                        "DawnCache",
                        "DawnGraphiteCache",
                        "DawnWebGPUCache",
                        "GraphiteDawnCache",
                        "GrShaderCache",
                        "ShaderCache",
                        "CachedData",
                        "CachedExtensionVSIXs",
                        "CachedProfilesData",
                        "Service Worker/CacheStorage",
                        "Service Worker/ScriptCache",
                        "component_crx_cache",
                        "extensions_crx_cache",
                        "Crashpad/completed",
                        "logs"};
    t.chromiumBrowserMarker = "Local State";
    t.brewCacheName = "Homebrew";

    t.xdgNames = {{"convex", "Convex binaries"}, {"codex-runtimes", "Codex runtimes"}, {"node", "Node.js cache"},
                  {"uv", "uv cache"},           {"pre-commit", "pre-commit environments"},
                  {"prisma", "Prisma engines"}, {"turbo", "Turborepo cache"},       {"pip", "pip cache"}};
    t.modelDirs = {"huggingface", "lm-studio", "ollama",     "torch",     "whisper", "llama.cpp",
                   "gpt4all",     "kagglehub", "modelscope", "clip", "sentence_transformers", "diffusers", "mlx"};
    t.ownRowCaches = {"ms-playwright", "puppeteer"};
    t.npxFolder = p.home + "/.npm/_npx";
    t.nodeVersions = p.home + "/.nvm/versions/node";
    t.nodeDefaultAlias = p.home + "/.nvm/alias/default";

    t.buildDirNames = {"node_modules", ".next", ".turbo", ".nuxt", ".svelte-kit", ".parcel-cache", ".open-next",
                       ".expo", ".angular", ".docusaurus"};
    const std::vector<std::string> python{"pyproject.toml", "requirements.txt", "setup.py", "uv.lock", "Pipfile"};
    t.markerDirs = {{"target", {"Cargo.toml"}},
                    {".build", {"Package.swift"}},
                    {"Pods", {"Podfile"}},
                    {".venv", python},
                    {"venv", python},
                    {".gradle", {"build.gradle", "build.gradle.kts", "settings.gradle", "settings.gradle.kts"}},
                    {".dart_tool", {"pubspec.yaml"}}};
    t.bundleExts = {"app",       "photoslibrary", "photolibrary", "musiclibrary", "tvlibrary", "fcpbundle", "imovielibrary",
                    "logicx",    "band",          "xcarchive",    "framework",    "bundle",    "xcodeproj", "xcworkspace",
                    "playground", "pkg",          "mpkg",         "lproj",        "dsym"};
    t.busyNames = {"Claude", "Cursor", "VS Code Insiders", "VS Code", "node", "bun", "Python", "esbuild"};
    t.busyWords = {{Match::exact, "claude", "Claude"},
                   {Match::exact, "disclaimer", "Claude"},
                   {Match::prefix, "Code - Insiders", "VS Code Insiders"},
                   {Match::prefix, "Code Helper", "VS Code"},
                   {Match::exact, "Code", "VS Code"},
                   {Match::exact, "Electron", "VS Code"},
                   {Match::prefix, "Cursor", "Cursor"},
                   {Match::prefix, "mcp-server", "an MCP server"},
                   {Match::lowerPrefix, "python", "Python"}};
}

ScanTables::ToolRow row(std::string id, std::string name, std::string path, std::string note, Tier tier) {
    return {std::move(id), std::move(name), std::move(path), std::move(note), tier, 10 * MB};
}

} // namespace

ScanTables ScanTables::forMacos(const Places& p) {
    ScanTables t;
    common(t, p);
    const std::string& h = p.home;
    const std::string browse = "Rebuilt as you browse";
    const std::string install = "Refills on the next install";
    t.knownCaches = {
        {"Google", {"Chrome cache", browse, {"com.google.Chrome"}}},
        {"Mozilla", {"Firefox cache", browse, {"org.mozilla.firefox"}}},
        {"Firefox", {"Firefox cache", browse, {"org.mozilla.firefox"}}},
        {"BraveSoftware", {"Brave cache", browse, {"com.brave.Browser"}}},
        {"Microsoft Edge", {"Edge cache", browse, {"com.microsoft.edgemac"}}},
        {"pnpm", {"pnpm metadata cache", install, {}}},
        {"Yarn", {"Yarn cache", install, {}}},
        {"node-gyp", {"node-gyp headers", "Downloaded again when a native module builds", {}}},
        {"typescript", {"TypeScript cache", "Rebuilt by your editor", {}}},
        {"Homebrew", {"Homebrew downloads", "Old installer downloads", {}}},
        {"claude-cli-nodejs", {"Claude Code cache", "Rebuilt as you use it", {}}},
        {"go-build", {"Go build cache", "Rebuilt on the next build", {}}},
        {"pip", {"pip cache", install, {}}},
        {"CocoaPods", {"CocoaPods cache", "Refills on the next pod install", {}}},
        {"JetBrains", {"JetBrains cache", "Rebuilt by your IDE", {}}},
        {"deno", {"Deno cache", "Refills when you run Deno", {}}},
        {"electron", {"Electron downloads", "Downloaded again when needed", {}}},
        {"electron-builder", {"electron-builder downloads", "Downloaded again when needed", {}}},
        {"Cypress", {"Cypress app", "Downloaded again on the next install", {}}},
        {"@opencode-aidesktop-updater", {"opencode update files", "Leftovers from an app update", {}}},
    };
    t.appNames = {{"com.github.GitHubClient", "GitHub Desktop"},
                  {"com.microsoft.VSCodeInsiders", "VS Code Insiders"},
                  {"com.microsoft.VSCode", "VS Code"},
                  {"com.tinyspeck.slackmacgap", "Slack"},
                  {"com.todesktop.230313mzl4w4u92", "Cursor"},
                  {"net.whatsapp.WhatsApp", "WhatsApp"},
                  {"com.hnc.Discord", "Discord"},
                  {"us.zoom.xos", "Zoom"},
                  {"com.spotify.client", "Spotify"},
                  {"com.openai.chat", "ChatGPT"},
                  {"com.anthropic.claudefordesktop", "Claude"},
                  {"com.google.Chrome", "Chrome"}};
    t.supportNames = {{"Google", "Chrome"},
                      {"Code - Insiders", "VS Code Insiders"},
                      {"Code", "VS Code"},
                      {"discord", "Discord"},
                      {"BraveSoftware", "Brave"},
                      {"Microsoft Edge", "Edge"},
                      {"zoom.us", "Zoom"},
                      {"CursorWork", "Cursor (work)"},
                      {"CursorPersonal", "Cursor (personal)"},
                      {"com.openai.chat", "ChatGPT"},
                      {"com.openai.codex", "Codex"}};
    t.supportAppIds = {{"Google", {"com.google.Chrome"}},
                       {"Code", {"com.microsoft.VSCode"}},
                       {"Code - Insiders", {"com.microsoft.VSCodeInsiders"}},
                       {"Slack", {"com.tinyspeck.slackmacgap"}},
                       {"discord", {"com.hnc.Discord"}},
                       {"BraveSoftware", {"com.brave.Browser"}},
                       {"Microsoft Edge", {"com.microsoft.edgemac"}},
                       {"zoom.us", {"us.zoom.xos"}},
                       {"Cursor", {"com.todesktop.230313mzl4w4u92"}},
                       {"Claude", {"com.anthropic.claudefordesktop"}},
                       {"Notion", {"notion.id"}},
                       {"Figma", {"com.figma.Desktop"}},
                       {"Spotify", {"com.spotify.client"}},
                       {"WhatsApp", {"net.whatsapp.WhatsApp"}},
                       {"Postman", {"com.postmanlabs.mac"}},
                       {"Obsidian", {"md.obsidian"}},
                       {"Signal", {"org.whispersystems.signal-desktop"}},
                       {"Arc", {"company.thebrowser.Browser"}}};
    t.systemCacheDirs = {"CloudKit", "GeoServices", "FamilyCircle", "PassKit",      "SiriTTS",
                         "TextKit",  "storeassetd", "Metadata",     "familycircled"};
    t.systemPrefixes = {"com.apple."};
    t.systemSupportDirs = {"AddressBook",
                           "Animoji",
                           "App Store",
                           "Automator",
                           "CallHistoryDB",
                           "CallHistoryTransactions",
                           "CloudDocs",
                           "ControlCenter",
                           "CrashReporter",
                           "DifferentialPrivacy",
                           "DiskImages",
                           "Dock",
                           "Duet",
                           "FaceTime",
                           "FamilySettings",
                           "FileProvider",
                           "Knowledge",
                           "MissionControl",
                           "MobileSync",
                           "Music",
                           "SESStorage",
                           "Spotlight",
                           "appplaceholdersyncd",
                           "contactsd",
                           "homeenergyd",
                           "iCloud",
                           "iMovie",
                           "icdd",
                           "identityservicesd",
                           "locationaccessstored",
                           "networkserviceproxy",
                           "stickersd",
                           "tipsd",
                           "Accounts",
                           "AppleMediaServices",
                           "CoreParsec",
                           "Photos",
                           "Safari",
                           "Mail",
                           "Messages",
                           "Notes",
                           "Reminders",
                           "Siri",
                           "SyncServices",
                           "Ubiquity",
                           "Quick Look",
                           "transparencyd",
                           "PersonalizationPortrait",
                           "CallServices",
                           "Calendars",
                           "Wallpaper",
                           "AppleAccount",
                           "Shortcuts",
                           "Wallet",
                           "Passbook",
                           "Claude Code VM"};
    t.ownFolders = {p.caches + "/app.sorrelin.Sorrelin", p.supportDir};
    t.appFileSuffix = ".app";

    const std::string support = p.appSupport;
    t.leadingToolRows = {row("npm", "npm cache", h + "/.npm/_cacache", install, Tier::safe)};
    t.toolRows = {
        row("bun", "Bun cache", h + "/.bun/install/cache", install, Tier::safe),
        row("yarn-berry", "Yarn cache", h + "/.yarn/berry/cache", install, Tier::safe),
        row("gradle", "Gradle cache", h + "/.gradle/caches", "Refills on the next build", Tier::safe),
        row("cargo", "Cargo download cache", h + "/.cargo/registry/cache", "Refills on the next build", Tier::safe),
        row("google-updater", "Google Updater downloads", support + "/Google/GoogleUpdater/crx_cache",
            "Installers it already used", Tier::safe),
        row("playwright", "Playwright browsers", p.caches + "/ms-playwright", "Downloaded again by your next test run",
            Tier::rebuildable),
        row("puppeteer", "Puppeteer browsers", h + "/.cache/puppeteer", "Downloaded again by your next test run",
            Tier::rebuildable),
    };
    t.pnpmStores = {h + "/Library/pnpm/store", h + "/.local/share/pnpm/store", h + "/.pnpm-store"};

    const std::string dev = h + "/Library/Developer";
    t.developerRoot = dev;
    t.developerRows = {
        {"xcode-derived", "Xcode build data", dev + "/Xcode/DerivedData", "Rebuilt on the next build", Tier::safe,
         Removal::deleteForGood(), true, false},
        {"sim-caches", "Simulator caches", dev + "/CoreSimulator/Caches", "Rebuilt when a simulator starts", Tier::safe,
         Removal::deleteForGood(), true, false},
        {"device-support", "iOS device support files", dev + "/Xcode/iOS DeviceSupport",
         "Copied again when a device connects", Tier::rebuildable, Removal::deleteForGood(), true, true},
        {"xcode-archives", "Xcode archives", dev + "/Xcode/Archives", "Builds you archived for release", Tier::yourCall,
         Removal::trash(), false, false},
        {"simulators", "Simulators", dev + "/CoreSimulator/Devices", "Every simulator and its data", Tier::yourCall,
         Removal::trash(), false, false},
    };

    t.vmBundles = support + "/Claude/vm_bundles";
    t.vmProcessPrefix = "com.apple.Virtualiz";
    t.browserModels = {{"chrome-model", "Chrome", support + "/Google/Chrome/OptGuideOnDeviceModel"},
                       {"edge-model", "Edge", support + "/Microsoft Edge/OptGuideOnDeviceModel"},
                       {"brave-model", "Brave", support + "/BraveSoftware/Brave-Browser/OptGuideOnDeviceModel"}};
    t.dockerImage = h + "/Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw";
    t.dockerAppPaths = {"/Applications/Docker.app"};
    t.deviceBackups = support + "/MobileSync/Backup";

    t.skipTop = {"Library", "Applications", "Pictures", "Music", "Movies", "Public"};
    return t;
}

ScanTables ScanTables::forLinux(const Places& p) {
    ScanTables t;
    common(t, p);
    const std::string& h = p.home;
    const std::string browse = "Rebuilt as you browse";
    const std::string install = "Refills on the next install";
    const std::string again = "Downloaded again when needed";
    // The folders of ~/.cache that tools and apps are known by. On this platform the user
    // caches and the XDG cache are one folder, so the XDG display names stand here too.
    t.knownCaches = {
        {"google-chrome", {"Chrome cache", browse, {"google-chrome", "com.google.Chrome"}}},
        {"google-chrome-beta", {"Chrome Beta cache", browse, {"google-chrome-beta"}}},
        {"chromium", {"Chromium cache", browse, {"chromium", "chromium-browser", "org.chromium.Chromium"}}},
        {"mozilla", {"Firefox cache", browse, {"firefox", "firefox-esr", "org.mozilla.firefox"}}},
        {"BraveSoftware", {"Brave cache", browse, {"brave-browser", "com.brave.Browser"}}},
        {"microsoft-edge", {"Edge cache", browse, {"microsoft-edge", "com.microsoft.Edge"}}},
        {"vivaldi", {"Vivaldi cache", browse, {"vivaldi-stable", "com.vivaldi.Vivaldi"}}},
        {"spotify", {"Spotify cache", "Rebuilt as you listen", {"spotify", "com.spotify.Client"}}},
        {"pnpm", {"pnpm metadata cache", install, {}}},
        {"yarn", {"Yarn cache", install, {}}},
        {"node-gyp", {"node-gyp headers", "Downloaded again when a native module builds", {}}},
        {"typescript", {"TypeScript cache", "Rebuilt by your editor", {}}},
        {"Homebrew", {"Homebrew downloads", "Old installer downloads", {}}},
        {"claude-cli-nodejs", {"Claude Code cache", "Rebuilt as you use it", {}}},
        {"go-build", {"Go build cache", "Rebuilt on the next build", {}}},
        {"bazel", {"Bazel cache", "Rebuilt on the next build", {}}},
        {"pip", {"pip cache", install, {}}},
        {"JetBrains", {"JetBrains cache", "Rebuilt by your IDE", {}}},
        {"vscode-cpptools", {"VS Code C++ index", "Rebuilt by your editor", {}}},
        {"deno", {"Deno cache", "Refills when you run Deno", {}}},
        {"electron", {"Electron downloads", again, {}}},
        {"electron-builder", {"electron-builder downloads", again, {}}},
        {"Cypress", {"Cypress app", "Downloaded again on the next install", {}}},
        {"thumbnails", {"Picture thumbnails", "Made again as you browse your files", {}}},
        {"mesa_shader_cache", {"Graphics shader cache", "Rebuilt as apps draw", {}}},
        {"mesa_shader_cache_db", {"Graphics shader cache", "Rebuilt as apps draw", {}}},
        {"nvidia", {"NVIDIA shader cache", "Rebuilt as apps draw", {}}},
    };
    for (const auto& [name, title] : t.xdgNames)
        if (!t.knownCaches.contains(name)) t.knownCaches[name] = {title, again, {}};

    t.appNames = {{"google-chrome", "Chrome"},
                  {"com.google.Chrome", "Chrome"},
                  {"google-chrome-beta", "Chrome Beta"},
                  {"chromium", "Chromium"},
                  {"chromium-browser", "Chromium"},
                  {"org.chromium.Chromium", "Chromium"},
                  {"firefox", "Firefox"},
                  {"firefox-esr", "Firefox"},
                  {"org.mozilla.firefox", "Firefox"},
                  {"brave-browser", "Brave"},
                  {"com.brave.Browser", "Brave"},
                  {"microsoft-edge", "Edge"},
                  {"com.microsoft.Edge", "Edge"},
                  {"code", "VS Code"},
                  {"com.visualstudio.code", "VS Code"},
                  {"code-insiders", "VS Code Insiders"},
                  {"cursor", "Cursor"},
                  {"discord", "Discord"},
                  {"com.discordapp.Discord", "Discord"},
                  {"slack", "Slack"},
                  {"com.slack.Slack", "Slack"},
                  {"signal-desktop", "Signal"},
                  {"org.signal.Signal", "Signal"},
                  {"obsidian", "Obsidian"},
                  {"md.obsidian.Obsidian", "Obsidian"},
                  {"spotify", "Spotify"},
                  {"com.spotify.Client", "Spotify"},
                  {"zoom", "Zoom"},
                  {"us.zoom.Zoom", "Zoom"},
                  {"org.telegram.desktop", "Telegram"},
                  {"im.riot.Riot", "Element"},
                  {"element-desktop", "Element"}};
    // Chromium and Electron trees in ~/.config (and in a Flatpak app's config folder).
    t.supportNames = {{"google-chrome", "Chrome"},
                      {"google-chrome-beta", "Chrome Beta"},
                      {"chromium", "Chromium"},
                      {"BraveSoftware", "Brave"},
                      {"microsoft-edge", "Edge"},
                      {"vivaldi", "Vivaldi"},
                      {"Code", "VS Code"},
                      {"Code - Insiders", "VS Code Insiders"},
                      {"Code - OSS", "Code - OSS"},
                      {"VSCodium", "VSCodium"},
                      {"discord", "Discord"},
                      {"obsidian", "Obsidian"},
                      {"Element", "Element"},
                      {"teams-for-linux", "Teams for Linux"}};
    t.supportAppIds = {{"google-chrome", {"google-chrome", "com.google.Chrome"}},
                       {"google-chrome-beta", {"google-chrome-beta"}},
                       {"chromium", {"chromium", "chromium-browser", "org.chromium.Chromium"}},
                       {"BraveSoftware", {"brave-browser", "com.brave.Browser"}},
                       {"microsoft-edge", {"microsoft-edge", "com.microsoft.Edge"}},
                       {"vivaldi", {"vivaldi-stable", "com.vivaldi.Vivaldi"}},
                       {"Code", {"code", "com.visualstudio.code"}},
                       {"Code - Insiders", {"code-insiders"}},
                       {"Code - OSS", {"code-oss", "com.visualstudio.code-oss"}},
                       {"VSCodium", {"codium", "com.vscodium.codium"}},
                       {"Cursor", {"cursor"}},
                       {"discord", {"discord", "com.discordapp.Discord"}},
                       {"Slack", {"slack", "com.slack.Slack"}},
                       {"Signal", {"signal-desktop", "org.signal.Signal"}},
                       {"obsidian", {"obsidian", "md.obsidian.Obsidian"}},
                       {"Element", {"element-desktop", "im.riot.Riot"}},
                       {"Postman", {"postman", "com.getpostman.Postman"}},
                       {"teams-for-linux", {"teams-for-linux", "com.github.IsmaelMartinez.teams_for_linux"}}};
    // ~/.cache folders that hold state rather than cache: a saved session, a search index.
    t.systemCacheDirs = {"sessions", "tracker", "tracker3", "ibus", "dconf", "gvfs", "at-spi"};
    // Desktop settings and services in ~/.config: never Chromium-shaped, never looked into.
    t.systemSupportDirs = {"autostart", "dconf",   "pulse",       "systemd",   "environment.d", "gtk-2.0",
                           "gtk-3.0",   "gtk-4.0", "fontconfig",  "ibus",      "menus",         "gnome-session",
                           "goa-1.0",   "evolution", "KDE",       "kdedefaults", "akonadi",     "session",
                           "xsettingsd", "git",    "gh",          "mozilla"};
    t.ownFolders = {p.caches + "/sorrelin", p.configHome + "/sorrelin", p.supportDir};
    t.flatpakApps = p.containers;
    t.snapApps = p.snapApps;
    // Desktop names ("Google Chrome", "Visual Studio Code") seldom stand in the folder names.
    t.matchSupportByAppId = true;
    t.appFileSuffix = ".desktop";

    t.leadingToolRows = {row("npm", "npm cache", h + "/.npm/_cacache", install, Tier::safe)};
    t.toolRows = {
        row("bun", "Bun cache", h + "/.bun/install/cache", install, Tier::safe),
        row("yarn-berry", "Yarn cache", h + "/.yarn/berry/cache", install, Tier::safe),
        row("gradle", "Gradle cache", h + "/.gradle/caches", "Refills on the next build", Tier::safe),
        row("cargo", "Cargo download cache", h + "/.cargo/registry/cache", "Refills on the next build", Tier::safe),
        row("playwright", "Playwright browsers", p.xdgCache + "/ms-playwright", "Downloaded again by your next test run",
            Tier::rebuildable),
        row("puppeteer", "Puppeteer browsers", h + "/.cache/puppeteer", "Downloaded again by your next test run",
            Tier::rebuildable),
    };
    t.pnpmStores = {p.dataHome + "/pnpm/store", h + "/.pnpm-store"};

    t.developerRows = {
        {"gradle-dists", "Gradle distributions", h + "/.gradle/wrapper/dists", "Downloaded again on the next build",
         Tier::rebuildable, Removal::deleteForGood(), true, false},
        {"android-images", "Android system images", h + "/Android/Sdk/system-images",
         "Emulator images the SDK manager can download again", Tier::yourCall, Removal::trash(), false, false},
        {"android-avd", "Android emulators", h + "/.android/avd", "Every emulator and its data", Tier::yourCall,
         Removal::trash(), false, false},
    };

    t.browserModels = {{"chrome-model", "Chrome", p.configHome + "/google-chrome/OptGuideOnDeviceModel"},
                       {"edge-model", "Edge", p.configHome + "/microsoft-edge/OptGuideOnDeviceModel"},
                       {"brave-model", "Brave", p.configHome + "/BraveSoftware/Brave-Browser/OptGuideOnDeviceModel"}};
    t.dockerImage = h + "/.docker/desktop/vms/0/data/Docker.raw";
    t.dockerAppPaths = {"/opt/docker-desktop"};
    t.dockerAppIds = {"docker-desktop"};

    // The media and public user folders, where they lie directly in the home folder, and the
    // Snap apps' data, which is this platform's containers folder.
    for (const std::string* folder : {&p.pictures, &p.music, &p.movies, &p.publicShare})
        if (!folder->empty() && folder->size() > h.size() + 1 && folder->starts_with(h + "/") &&
            folder->find('/', h.size() + 1) == std::string::npos)
            t.skipTop.insert(folder->substr(h.size() + 1));
    t.skipTop.insert("snap");
    // Process names as this platform reports them.
    t.busyWords.push_back({Match::exact, "code", "VS Code"});
    t.busyWords.push_back({Match::exact, "code-insiders", "VS Code Insiders"});
    t.busyWords.push_back({Match::prefix, "cursor", "Cursor"});
    return t;
}
