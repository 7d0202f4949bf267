#include "platform/Layout.h"

#include "foundation/FS.h"
#include "foundation/HomeBound.h"
#include "foundation/Log.h"
#include "foundation/Text.h"

#include <algorithm>
#include <cstdlib>
#include <map>

namespace {

// $HOME as the environment writes it, which may name the home through a link.
std::string givenHome(const Layout::Env& env) {
    auto v = env ? env("HOME") : std::nullopt;
    std::string h = v.value_or("");
    while (h.size() > 1 && h.back() == '/') h.pop_back();
    return h;
}

// An XDG variable counts only when it holds an absolute path.
std::string xdg(const Layout::Env& env, const char* name, const std::string& fallback, const std::string& home) {
    return env ? FS::onHome(FS::xdgFolder(env(name), fallback), givenHome(env), home) : fallback;
}

// Places that XDG or user-dirs.dirs put outside the home, or behind a link, stay in the layout
// (they are where the apps write) but every source leaves them out; say so once, here.
void noteStrayPlaces(const Layout& l) {
    const std::pair<const char*, const std::string*> places[] = {
        {"XDG_CACHE_HOME", &l.xdgCache},   {"XDG_CONFIG_HOME", &l.configHome}, {"XDG_DATA_HOME", &l.dataHome},
        {"XDG_STATE_HOME", &l.stateHome},  {"XDG_DOWNLOAD_DIR", &l.downloads},  {"XDG_DOCUMENTS_DIR", &l.documents},
        {"XDG_DESKTOP_DIR", &l.desktop},   {"XDG_PICTURES_DIR", &l.pictures},   {"XDG_VIDEOS_DIR", &l.movies},
        {"XDG_MUSIC_DIR", &l.music},       {"XDG_PUBLICSHARE_DIR", &l.publicShare},
        {"XDG_TEMPLATES_DIR", &l.templates}};
    for (const auto& [name, path] : places) {
        auto verdict = HomeBound::check(*path, l.home);
        if (verdict == HomeBound::Verdict::outside)
            Log::note(std::string(name) + " names " + *path + ", outside the home folder: nothing there is measured or cleared");
        else if (verdict == HomeBound::Verdict::link)
            Log::note(std::string(name) + " " + FS::tilde(*path, l.home) +
                      " is reached through a symbolic link: nothing there is measured or cleared");
    }
}

// user-dirs.dirs: lines like XDG_DOWNLOAD_DIR="$HOME/Téléchargements". Only "$HOME/..." and
// absolute values are valid; "$HOME/" alone means the folder is disabled.
std::map<std::string, std::string> readUserDirs(const std::string& file, const std::string& home,
                                                const std::string& given) {
    std::map<std::string, std::string> dirs;
    auto text = FS::readText(file, 1 << 16);
    if (!text) return dirs;
    for (const auto& raw : Text::split(*text, '\n')) {
        std::string line = Text::trim(raw);
        if (line.empty() || line.front() == '#') continue;
        auto eq = line.find('=');
        if (eq == std::string::npos) continue;
        std::string key = Text::trim(std::string_view(line).substr(0, eq));
        std::string value = Text::trim(std::string_view(line).substr(eq + 1));
        if (value.size() < 2 || value.front() != '"' || value.back() != '"') continue;
        value = value.substr(1, value.size() - 2);
        std::string unescaped;
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (value[i] == '\\' && i + 1 < value.size()) ++i;
            unescaped += value[i];
        }
        std::string path;
        if (unescaped.starts_with("$HOME/")) path = home + unescaped.substr(5);
        else if (unescaped == "$HOME") path = home;
        else if (!unescaped.empty() && unescaped.front() == '/') path = FS::onHome(unescaped, given, home);
        else continue;
        while (path.size() > 1 && path.back() == '/') path.pop_back();
        if (path == home) continue; // a disabled folder
        dirs[key] = path;
    }
    return dirs;
}

} // namespace

std::vector<std::string> Places::userFolders() const {
    std::vector<std::string> out;
    for (const std::string* p : {&downloads, &documents, &desktop, &pictures, &movies, &music, &publicShare, &templates})
        if (!p->empty()) out.push_back(*p);
    return out;
}

Layout::Env Layout::processEnv() {
    return [](const char* name) -> std::optional<std::string> {
        const char* v = std::getenv(name);
        if (!v) return std::nullopt;
        return std::string(v);
    };
}

Layout Layout::linux(const std::string& home, const Env& env) {
    Layout l;
    l.platform = Platform::linux;
    l.home = home;
    l.xdgCache = xdg(env, "XDG_CACHE_HOME", home + "/.cache", home);
    l.caches = l.xdgCache;
    l.configHome = xdg(env, "XDG_CONFIG_HOME", home + "/.config", home);
    l.appSupport = l.configHome;
    l.dataHome = xdg(env, "XDG_DATA_HOME", home + "/.local/share", home);
    l.stateHome = xdg(env, "XDG_STATE_HOME", home + "/.local/state", home);
    l.containers = home + "/.var/app";
    l.snapApps = home + "/snap";
    l.trash = l.dataHome + "/Trash";
    l.supportDir = l.dataHome + "/sorrelin";
    l.loginItem = l.configHome + "/autostart/app.sorrelin.Sorrelin.desktop";

    auto dirs = env ? readUserDirs(l.configHome + "/user-dirs.dirs", home, givenHome(env)) : std::map<std::string, std::string>{};
    auto user = [&](const char* key, const char* fallback) {
        auto it = dirs.find(key);
        return it != dirs.end() ? it->second : home + "/" + fallback;
    };
    l.downloads = user("XDG_DOWNLOAD_DIR", "Downloads");
    l.documents = user("XDG_DOCUMENTS_DIR", "Documents");
    l.desktop = user("XDG_DESKTOP_DIR", "Desktop");
    l.pictures = user("XDG_PICTURES_DIR", "Pictures");
    l.movies = user("XDG_VIDEOS_DIR", "Videos");
    l.music = user("XDG_MUSIC_DIR", "Music");
    l.publicShare = user("XDG_PUBLICSHARE_DIR", "Public");
    l.templates = user("XDG_TEMPLATES_DIR", "Templates");

    l.applicationDirs.push_back(l.dataHome + "/applications");
    l.applicationDirs.push_back(l.dataHome + "/flatpak/exports/share/applications");
    std::string dataDirs = "/usr/local/share:/usr/share";
    if (env)
        if (auto v = env("XDG_DATA_DIRS"); v && !v->empty()) dataDirs = *v;
    for (const auto& d : Text::split(dataDirs, ':'))
        if (!d.empty() && d.front() == '/') l.applicationDirs.push_back(d + "/applications");
    l.applicationDirs.push_back("/var/lib/flatpak/exports/share/applications");
    l.applicationDirs.push_back("/var/lib/snapd/desktop/applications");
    // Keep the first of any folder named twice.
    std::vector<std::string> unique;
    for (auto& d : l.applicationDirs)
        if (std::find(unique.begin(), unique.end(), d) == unique.end()) unique.push_back(d);
    l.applicationDirs = std::move(unique);

    l.brewPaths = {"/home/linuxbrew/.linuxbrew/bin/brew", home + "/.linuxbrew/bin/brew"};
    l.mergedLocation = "~/.cache and ~/.config";

    const Places& places = l;
    l.scan = ScanTables::forLinux(places);
    l.removal = RemovalTables::forLinux(places);
    l.monitor = MonitorTables::forLinux(places);
    l.storage = StorageTables::forLinux(places, l.scan);
    l.actions = ActionTables::forLinux(places);
    l.projects = ProjectTables::forLinux(places);
    if (env) noteStrayPlaces(l);
    return l;
}

Layout Layout::macos(const std::string& home) {
    Layout l;
    l.platform = Platform::macos;
    l.home = home;
    const std::string library = home + "/Library";
    l.caches = library + "/Caches";
    l.xdgCache = home + "/.cache";
    l.appSupport = library + "/Application Support";
    l.configHome = home + "/.config";
    l.dataHome = home + "/.local/share";
    l.stateHome = home + "/.local/state";
    l.containers = library + "/Containers";
    l.groupContainers = library + "/Group Containers";
    l.logs = library + "/Logs";
    l.trash = home + "/.Trash";
    l.supportDir = l.appSupport + "/Sorrelin";
    l.loginItem = library + "/LaunchAgents/app.sorrelin.Sorrelin.plist";
    l.downloads = home + "/Downloads";
    l.documents = home + "/Documents";
    l.desktop = home + "/Desktop";
    l.pictures = home + "/Pictures";
    l.movies = home + "/Movies";
    l.music = home + "/Music";
    l.publicShare = home + "/Public";
    l.applicationDirs = {"/Applications", home + "/Applications"};
    l.brewPaths = {"/opt/homebrew/bin/brew", "/usr/local/bin/brew"};
    l.mergedLocation = "~/Library/Caches and Application Support";

    const Places& places = l;
    l.scan = ScanTables::forMacos(places);
    l.removal = RemovalTables::forMacos(places);
    l.monitor = MonitorTables::forMacos(places);
    l.storage = StorageTables::forMacos(places);
    l.actions = ActionTables::forMacos(places);
    l.projects = ProjectTables::forMacos(places);
    return l;
}

const Layout& Layout::host() {
    static const Layout layout = linux(FS::home(), processEnv());
    return layout;
}
