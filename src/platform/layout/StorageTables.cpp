#include "platform/layout/StorageTables.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <unistd.h>

namespace {

using Rule = StorageTables::Rule;
using Action = StorageTables::Rule::Action;
using Naming = StorageTables::GrowthNaming;

Rule unit(StorageKind kind, std::string name = {}, bool first = false) {
    Rule r;
    r.action = Action::unit;
    r.kind = kind;
    r.name = std::move(name);
    r.first = first;
    return r;
}

Rule skip() {
    Rule r;
    r.action = Action::skip;
    return r;
}

Rule split(StorageKind kind, std::optional<std::string> detail) {
    Rule r;
    r.action = Action::split;
    r.kind = kind;
    r.detail = std::move(detail);
    return r;
}

// A user folder: every entry inside is a row of the folder's kind.
Rule userFolder(StorageKind kind, std::set<std::string> skipNames) {
    Rule r = split(kind, std::nullopt);
    r.findsProjects = kind == StorageKind::documents || kind == StorageKind::desktop;
    r.skipHidden = false;
    r.skipNames = std::move(skipNames);
    return r;
}

// The same on both platforms: hidden folders of the home folder and their titles.
std::map<std::string, std::string> commonDotNames() {
    return {{".npm", "npm"},
            {".nvm", "Node versions"},
            {".bun", "Bun"},
            {".cargo", "Rust packages"},
            {".rustup", "Rust toolchains"},
            {".vscode", "VS Code extensions"},
            {".vscode-insiders", "VS Code Insiders extensions"},
            {".cursor", "Cursor extensions"},
            {".codex", "Codex"},
            {".claude", "Claude Code"},
            {".docker", "Docker"},
            {".gradle", "Gradle"},
            {".pnpm-store", "pnpm store"},
            {".cache", "Tool caches"},
            {".android", "Android tools"},
            {".m2", "Maven packages"},
            {".ollama", "Ollama models"},
            {".lmstudio", "LM Studio models"},
            {".pyenv", "Python versions"},
            {".rbenv", "Ruby versions"},
            {".expo", "Expo"},
            {".yarn", "Yarn"},
            {".deno", "Deno"},
            {".gem", "Ruby gems"},
            {".conda", "Conda"},
            {".swiftpm", "Swift packages"},
            {".local", "Local tools"}};
}

std::map<std::string, std::string> commonGrowthDotNames() {
    return {{".npm", "npm cache"},
            {".nvm", "Node versions"},
            {".bun", "Bun"},
            {".cargo", "Rust toolchain"},
            {".rustup", "Rust toolchain"},
            {".vscode", "VS Code extensions"},
            {".vscode-insiders", "VS Code Insiders extensions"},
            {".cursor", "Cursor extensions"},
            {".codex", "Codex data"},
            {".claude", "Claude Code data"},
            {".docker", "Docker data"},
            {".gradle", "Gradle cache"},
            {".pnpm-store", "pnpm package store"},
            {".local", "Local tools"}};
}

std::set<std::string> commonBuildNames() {
    return {".next", "dist", "build", "out", ".turbo", ".vercel", "target", ".build", ".output",
            ".svelte-kit", ".nuxt", ".expo", ".parcel-cache", ".open-next", "coverage", ".cache"};
}

// The path of `path` below `home`, or nothing when it lies elsewhere.
std::optional<std::string> relative(const std::string& path, const std::string& home) {
    if (path.size() > home.size() + 1 && path.starts_with(home) && path[home.size()] == '/')
        return path.substr(home.size() + 1);
    return std::nullopt;
}

} // namespace

StorageTables StorageTables::forMacos(const Places& p) {
    StorageTables t;
    const std::string& home = p.home;
    const std::string library = home + "/Library";

    t.outsideTools = {{"/opt/homebrew", StorageKind::developer, "Homebrew"},
                      {"/usr/local/Homebrew", StorageKind::developer, "Homebrew"},
                      {"/usr/local/Cellar", StorageKind::developer, "Homebrew packages"},
                      {"/Library/Developer/CommandLineTools", StorageKind::developer, "Command Line Tools"}};

    const std::set<std::string> finderFiles{".DS_Store", ".localized"};
    t.rules[home + "/.Trash"] = unit(StorageKind::trash, "Trash");
    t.rules[home + "/Applications"] = skip();
    t.rules[home + "/Desktop"] = userFolder(StorageKind::desktop, finderFiles);
    t.rules[home + "/Documents"] = userFolder(StorageKind::documents, finderFiles);
    t.rules[home + "/Downloads"] = userFolder(StorageKind::downloads, finderFiles);
    t.rules[home + "/Movies"] = userFolder(StorageKind::movies, finderFiles);
    t.rules[home + "/Pictures"] = userFolder(StorageKind::pictures, finderFiles);
    t.rules[home + "/Music"] = userFolder(StorageKind::music, finderFiles);

    t.rules[library] = split(StorageKind::appData, std::nullopt);
    for (const char* name : {"Mobile Documents", "CloudStorage", "Trial"}) t.rules[library + "/" + name] = skip();
    t.rules[library + "/Mail"] = unit(StorageKind::mail);
    t.rules[library + "/Messages"] = unit(StorageKind::mail);
    Rule developer = split(StorageKind::developer, std::nullopt);
    developer.skipHidden = false;
    developer.subNames = {{"Xcode", "Xcode builds and device support"}, {"CoreSimulator", "Simulators"}};
    t.rules[library + "/Developer"] = developer;
    t.rules[library + "/pnpm"] = unit(StorageKind::developer, "pnpm store", true);
    t.rules[library + "/Metadata"] = unit(StorageKind::appData, "Spotlight data");
    t.rules[library + "/Biome"] = unit(StorageKind::appData, "macOS activity data");
    const std::map<std::string, std::string> dataNames{
        {"Google", "Chrome"},       {"Code", "VS Code"},    {"Code - Insiders", "VS Code Insiders"},
        {"discord", "Discord"},     {"BraveSoftware", "Brave"}, {"com.docker.docker", "Docker"},
        {"zoom.us", "Zoom"},        {"Claude", "Claude"}};
    for (const char* name : {"Application Support", "Caches", "Containers", "Group Containers"}) {
        Rule r = split(StorageKind::appData, std::string(name));
        r.names = dataNames;
        r.titlesByAppId = true;
        t.rules[library + "/" + name] = r;
    }

    t.dotNames = commonDotNames();
    t.firstDots = {".pnpm-store", ".local"};
    t.projectMarkers = {".git", "package.json"};
    t.dataFolders = {{"com.google.Chrome", {"Google"}},
                     {"com.microsoft.VSCode", {"Code"}},
                     {"com.microsoft.VSCodeInsiders", {"Code - Insiders"}},
                     {"com.hnc.Discord", {"discord"}},
                     {"com.brave.Browser", {"BraveSoftware"}},
                     {"com.microsoft.edgemac", {"Microsoft Edge"}},
                     {"us.zoom.xos", {"zoom.us"}},
                     {"com.todesktop.230313mzl4w4u92", {"Cursor", "CursorWork", "CursorPersonal"}},
                     {"com.docker.docker", {"com.docker.docker", "Docker Desktop"}}};

    t.assetsRoot = "/System/Volumes/Data/System/Library/AssetsV2";
    t.assetNames = {{"com_apple_MobileAsset_iOSSimulatorRuntime", "iOS Simulator runtime"},
                    {"com_apple_MobileAsset_watchOSSimulatorRuntime", "watchOS Simulator runtime"},
                    {"com_apple_MobileAsset_tvOSSimulatorRuntime", "tvOS Simulator runtime"},
                    {"com_apple_MobileAsset_xrOSSimulatorRuntime", "visionOS Simulator runtime"},
                    {"com_apple_MobileAsset_MacSoftwareUpdate", "macOS updates"},
                    {"com_apple_MobileAsset_Font7", "Fonts"},
                    {"com_apple_MobileAsset_Font8", "Fonts"}};
    t.assetRules = {{{"Speech", "Siri", "Dictation"}, {}, "Speech and Siri"},
                    {{"GenerativeModels"}, "com_apple_MobileAsset_UAF", "Apple Intelligence models"},
                    {{"DeveloperDocumentation"}, {}, "Xcode documentation"},
                    {{"Font"}, {}, "Fonts"},
                    {{"Linguistic", "Dictionary", "Translation"}, {}, "Language and translation"}};
    t.assetPrefix = "com_apple_MobileAsset_";

    // Growth places.
    t.growthPlaces = {
        {".Trash", {true, {}, {}, GrowthBucket::files}},
        {"Applications", {true, {}, {}, GrowthBucket::files}},
        {"Library", {false, "place|Library", "~/Library", GrowthBucket::appData}},
        {"Movies", {false, "place|Videos in Movies", "~/Movies", GrowthBucket::files}},
        {"Library/CloudStorage", {true, {}, {}, GrowthBucket::appData}},
        {"Library/Mobile Documents", {true, {}, {}, GrowthBucket::appData}},
        {"Library/Metadata", {true, {}, {}, GrowthBucket::appData}},
        {"Library/Biome", {true, {}, {}, GrowthBucket::appData}},
        {"Library/Developer", {false, "place|Xcode and simulators", "~/Library/Developer", GrowthBucket::tools}},
        {"Library/pnpm", {false, "place|pnpm package store", "~/Library/pnpm", GrowthBucket::tools}},
        {".claude/projects", {false, "place|Claude Code transcripts", "~/.claude/projects", GrowthBucket::tools}},
    };
    for (const char* name : {"Application Support", "Caches", "Containers", "Group Containers"})
        t.growthPlaces[std::string("Library/") + name] =
            GrowthPlaceRule{false, std::string("place|") + name, std::string("~/Library/") + name, GrowthBucket::appData};
    t.growthChildren = {
        {"", {Naming::home, {}, {}, GrowthBucket::files}},
        {"Library", {Naming::fixed, "place|Library", "~/Library", GrowthBucket::appData}},
        {"Library/Application Support", {Naming::support, {}, "App Support/", GrowthBucket::appData}},
        {"Library/Caches", {Naming::cache, {}, "Caches/", GrowthBucket::appData}},
        {"Library/Containers", {Naming::container, {}, "Containers/", GrowthBucket::appData}},
        {"Library/Group Containers", {Naming::container, {}, "Containers/", GrowthBucket::appData}},
    };
    t.buildNames = commonBuildNames();
    t.toolSupport = {"Code", "Code - Insiders", "Cursor", "CursorWork", "CursorPersonal", "com.raycast.macos",
                     "Zed", "JetBrains", "Windsurf", "com.openai.codex", "Antigravity", "GitHub Desktop",
                     "com.github.GitHubClient"};
    t.supportNames = {{"Google", "Chrome data"},
                      {"Claude", "Claude app data"},
                      {"Code - Insiders", "VS Code Insiders data"},
                      {"Code", "VS Code data"},
                      {"com.raycast.macos", "Raycast data"},
                      {"Slack", "Slack data"},
                      {"discord", "Discord data"},
                      {"BraveSoftware", "Brave data"},
                      {"Microsoft Edge", "Edge data"},
                      {"Cursor", "Cursor data"},
                      {"CursorWork", "Cursor (work) data"},
                      {"com.openai.chat", "ChatGPT data"},
                      {"com.openai.codex", "Codex data"},
                      {"MobileSync", "iPhone backups"},
                      {"zoom.us", "Zoom data"}};
    t.cacheNames = {{"Google", "Chrome cache"},
                    {"pnpm", "pnpm metadata cache"},
                    {"Yarn", "Yarn cache"},
                    {"com.microsoft.VSCodeInsiders.ShipIt", "VS Code Insiders update files"},
                    {"com.microsoft.VSCode.ShipIt", "VS Code update files"},
                    {"claude-cli-nodejs", "Claude Code cache"},
                    {"ms-playwright", "Playwright browsers"},
                    {"Homebrew", "Homebrew downloads"},
                    {"typescript", "TypeScript cache"},
                    {"com.anthropic.claudefordesktop", "Claude cache"},
                    {"com.tinyspeck.slackmacgap.ShipIt", "Slack update files"}};
    t.growthDotNames = commonGrowthDotNames();
    return t;
}

StorageTables StorageTables::forLinux(const Places& p, const ScanTables& scan) {
    StorageTables t;
    const std::string& home = p.home;

    t.outsideTools = {{"/home/linuxbrew/.linuxbrew", StorageKind::developer, "Homebrew"}};

    // The Trash, and the user folders where they are (they may be localised or moved).
    t.rules[p.trash] = unit(StorageKind::trash, "Trash");
    const std::set<std::string> fileManagerFiles{".directory", ".DS_Store", ".localized"};
    const std::pair<const std::string*, StorageKind> folders[] = {
        {&p.desktop, StorageKind::desktop},   {&p.documents, StorageKind::documents},
        {&p.downloads, StorageKind::downloads}, {&p.movies, StorageKind::movies},
        {&p.pictures, StorageKind::pictures}, {&p.music, StorageKind::music}};
    for (const auto& [path, kind] : folders)
        if (!path->empty() && !t.rules.contains(*path)) t.rules[*path] = userFolder(kind, fileManagerFiles);

    // Hidden folders where apps keep their data: each entry is a row, with its folder as detail.
    const std::map<std::string, std::string> dataNames{
        {"google-chrome", "Chrome"}, {"chromium", "Chromium"},        {"BraveSoftware", "Brave"},
        {"Code", "VS Code"},         {"Code - Insiders", "VS Code Insiders"}, {"discord", "Discord"},
        {"Slack", "Slack"},          {"mozilla", "Firefox"},          {"microsoft-edge", "Edge"},
        {"JetBrains", "JetBrains"},  {"Cursor", "Cursor"},            {"Claude", "Claude"}};
    for (const std::string* parent : {&p.configHome, &p.xdgCache, &p.dataHome, &p.containers, &p.snapApps}) {
        if (parent->empty()) continue;
        Rule r = split(StorageKind::appData, FS::tilde(*parent, home));
        r.names = dataNames;
        r.titlesByAppId = true;
        t.rules[*parent] = r;
    }
    // The cache folder's entries read as the Clean tab names them ("Yarn cache", "pnpm metadata
    // cache", "Huggingface models"), and any other as "{Name} cache".
    Rule& cache = t.rules[p.xdgCache];
    for (const auto& [name, known] : scan.knownCaches) cache.subNames[name] = known.title;
    for (const auto& name : scan.modelDirs) cache.subNames[name] = Text::upperFirst(name) + " models";
    for (const auto* rows : {&scan.leadingToolRows, &scan.toolRows})
        for (const auto& row : *rows)
            if (FS::parent(row.path) == p.xdgCache) cache.subNames[FS::lastComponent(row.path)] = row.name;
    cache.unnamedSuffix = " cache";
    // Flatpak's per-user folder holds the apps and runtimes, which are measured as such; its
    // object store is mostly hard links of them.
    t.rules[p.dataHome + "/flatpak"] = skip();
    if (p.containers == home + "/.var/app") t.rules[home + "/.var"] = skip();
    t.rules[p.dataHome + "/pnpm/store"] = unit(StorageKind::developer, "pnpm store", true);
    for (const std::string& path : {home + "/.thunderbird", p.containers + "/org.mozilla.Thunderbird/.thunderbird",
                                    p.snapApps + "/thunderbird/common/.thunderbird"})
        t.rules[path] = unit(StorageKind::mail, "Thunderbird");
    for (const std::string& path : {p.dataHome + "/evolution/mail", p.containers + "/org.gnome.Evolution/data/evolution/mail"})
        t.rules[path] = unit(StorageKind::mail, "Evolution");
    for (const std::string& path : {p.dataHome + "/geary", p.containers + "/org.gnome.Geary/data/geary"})
        t.rules[path] = unit(StorageKind::mail, "Geary");
    // Hidden folders of the home folder that are app data, not tools.
    t.rules[home + "/.mozilla"] = unit(StorageKind::appData, "Firefox");
    t.rules[home + "/.zoom"] = unit(StorageKind::appData, "Zoom");
    t.rules[home + "/.steam"] = unit(StorageKind::appData, "Steam");
    t.rules[home + "/.wine"] = unit(StorageKind::appData, "Wine");

    t.dotNames = commonDotNames();
    for (auto [dot, title] : std::initializer_list<std::pair<const char*, const char*>>{
             {".sdkman", "SDKMAN"}, {".pub-cache", "Dart packages"}, {".stack", "Haskell Stack"},
             {".ghcup", "Haskell toolchains"}, {".opam", "OCaml packages"}, {".julia", "Julia packages"},
             {".nuget", "NuGet packages"}, {".dotnet", ".NET tools"}, {".platformio", "PlatformIO"}})
        t.dotNames[dot] = title;
    t.firstDots = {".pnpm-store", ".local"};
    t.projectMarkers = {".git", "package.json", "Cargo.toml", "pyproject.toml", "go.mod"};
    t.homeFoldersFindProjects = true;
    // Go's module cache holds a go.mod in every module: tools, not the user's code.
    t.rules[home + "/go/pkg"] = unit(StorageKind::developer, "Go modules");
    t.dataFolders = {{"google-chrome", {"google-chrome"}},
                     {"com.google.Chrome", {"google-chrome"}},
                     {"chromium", {"chromium"}},
                     {"org.chromium.Chromium", {"chromium"}},
                     {"code", {"Code"}},
                     {"com.visualstudio.code", {"Code"}},
                     {"code-insiders", {"Code - Insiders"}},
                     {"firefox", {"mozilla", "firefox"}},
                     {"firefox-esr", {"mozilla"}},
                     {"org.mozilla.firefox", {"mozilla"}},
                     {"brave-browser", {"BraveSoftware"}},
                     {"com.brave.Browser", {"BraveSoftware"}},
                     {"com.discordapp.Discord", {"discord"}},
                     {"slack", {"Slack"}},
                     {"com.slack.Slack", {"Slack"}},
                     {"microsoft-edge", {"microsoft-edge"}},
                     {"Zoom", {"zoom", "zoomus.conf"}},
                     {"cursor", {"Cursor"}}};

    t.optDir = "/opt";
    t.snapDesktopDir = "/var/lib/snapd/desktop/applications";
    t.snapMountDir = "/snap";
    t.snapFilesDir = "/var/lib/snapd/snaps";
    t.dpkgStatus = "/var/lib/dpkg/status";
    t.dpkgInfo = "/var/lib/dpkg/info";

    t.assetPlaces = {{"/var/cache/apt/archives", StorageKind::assets, "Downloaded packages"},
                     {"/var/cache/dnf", StorageKind::assets, "Downloaded packages"},
                     {"/var/cache/libdnf5", StorageKind::assets, "Downloaded packages"},
                     {"/var/cache/pacman/pkg", StorageKind::assets, "Downloaded packages"},
                     {"/var/cache/PackageKit", StorageKind::assets, "Downloaded updates"},
                     {"/var/lib/flatpak/runtime", StorageKind::assets, "Flatpak runtimes"},
                     {p.dataHome + "/flatpak/runtime", StorageKind::assets, "Flatpak runtimes"}};
    t.snapRevisionsTitle = "Snap revisions";
    t.snapRuntimesTitle = "Snap runtimes";

    const std::string runtime = "/run/user/" + std::to_string(getuid());
    t.temporary = {{"/tmp", StorageKind::temporary, "Temporary files"},
                   {"/var/tmp", StorageKind::temporary, "Kept temporary files"},
                   {runtime, StorageKind::temporary, "Session files"}};

    t.systemTitle = "The system";
    t.systemRoot = "/usr";
    t.systemPlaces = {{"/boot", StorageKind::macOS, "Startup files"}, {"/var/log", StorageKind::macOS, "System logs"}};
    t.procSwaps = "/proc/swaps";

    // Growth places.
    auto place = [&](const std::string& path, std::string key, GrowthBucket bucket) {
        if (auto rel = relative(path, home))
            t.growthPlaces[*rel] = GrowthPlaceRule{false, std::move(key), FS::tilde(path, home), bucket};
    };
    auto children = [&](const std::string& path, Naming naming) {
        if (auto rel = relative(path, home))
            t.growthChildren[*rel] = GrowthChildRule{naming, {}, FS::tilde(path, home) + "/", GrowthBucket::appData};
    };
    if (auto rel = relative(p.trash, home)) t.growthPlaces[*rel] = GrowthPlaceRule{true, {}, {}, GrowthBucket::files};
    place(p.configHome, "place|App settings", GrowthBucket::appData);
    place(p.xdgCache, "place|Caches", GrowthBucket::appData);
    place(p.dataHome, "place|App data", GrowthBucket::appData);
    place(p.containers, "place|Flatpak app data", GrowthBucket::appData);
    place(p.snapApps, "place|Snap app data", GrowthBucket::appData);
    place(p.dataHome + "/pnpm", "place|pnpm package store", GrowthBucket::tools);
    place(home + "/.claude/projects", "place|Claude Code transcripts", GrowthBucket::tools);
    children(p.configHome, Naming::support);
    children(p.dataHome, Naming::support);
    children(p.xdgCache, Naming::cache);
    children(p.containers, Naming::container);
    children(p.snapApps, Naming::container);
    t.growthChildren[""] = GrowthChildRule{Naming::home, {}, {}, GrowthBucket::files};

    t.buildNames = commonBuildNames();
    t.toolSupport = {"Code", "Code - Insiders", "Cursor", "JetBrains", "zed", "Windsurf", "GitHub Desktop",
                     "Antigravity"};
    t.supportNames = {{"google-chrome", "Chrome data"},
                      {"chromium", "Chromium data"},
                      {"Claude", "Claude app data"},
                      {"Code - Insiders", "VS Code Insiders data"},
                      {"Code", "VS Code data"},
                      {"Slack", "Slack data"},
                      {"discord", "Discord data"},
                      {"BraveSoftware", "Brave data"},
                      {"microsoft-edge", "Edge data"},
                      {"Cursor", "Cursor data"},
                      {"Steam", "Steam games"}};
    t.cacheNames = {{"google-chrome", "Chrome cache"},
                    {"chromium", "Chromium cache"},
                    {"mozilla", "Firefox cache"},
                    {"pnpm", "pnpm metadata cache"},
                    {"yarn", "Yarn cache"},
                    {"claude-cli-nodejs", "Claude Code cache"},
                    {"ms-playwright", "Playwright browsers"},
                    {"Homebrew", "Homebrew downloads"},
                    {"typescript", "TypeScript cache"},
                    {"pip", "pip cache"},
                    {"go-build", "Go build cache"},
                    {"thumbnails", "Thumbnails"}};
    t.growthDotNames = commonGrowthDotNames();
    t.growthDotNames[".mozilla"] = "Firefox data";
    t.growthDotNames[".thunderbird"] = "Thunderbird mail";
    return t;
}
