#include "platform/AppInstalls.h"

#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/PackageDatabase.h"

#include <climits>
#include <cstdlib>
#include <map>
#include <set>
#include <unistd.h>

namespace AppInstalls {

namespace {

std::string realPath(const std::string& path) {
    if (path.empty()) return {};
    char buf[PATH_MAX];
    if (!realpath(path.c_str(), buf)) return {};
    return buf;
}

std::string readLink(const std::string& path) {
    char buf[PATH_MAX];
    ssize_t n = readlink(path.c_str(), buf, sizeof buf - 1);
    if (n <= 0) return {};
    return std::string(buf, static_cast<std::size_t>(n));
}

bool under(const std::string& path, const std::string& folder) {
    return !folder.empty() && path.size() > folder.size() + 1 && path.starts_with(folder) && path[folder.size()] == '/';
}

// A Flatpak export: <root>/exports/share/applications/<id>.desktop; the app is <root>/app/<id>.
std::optional<Install> flatpak(const DesktopEntry& e) {
    const std::string marker = "/exports/share/applications/";
    auto at = e.path.find(marker);
    if (at == std::string::npos) return std::nullopt;
    std::string id = e.flatpak.empty() ? e.id : e.flatpak;
    std::string dir = e.path.substr(0, at) + "/app/" + id;
    if (!FS::isDir(dir)) return std::nullopt;
    return Install{dir, dir, std::nullopt, id};
}

std::optional<Install> snap(const DesktopEntry& e, const StorageTables& t) {
    auto name = snapName(e, t);
    if (!name) return std::nullopt;
    std::string revision = readLink(t.snapMountDir + "/" + *name + "/current");
    if (revision.empty() || revision.find('/') != std::string::npos) return std::nullopt;
    std::string file = t.snapFilesDir + "/" + *name + "_" + revision + ".snap";
    if (!FS::isFile(file)) return std::nullopt;
    return Install{"snap:" + *name, file, std::nullopt, *name};
}

std::optional<Install> appImage(const DesktopEntry& e) {
    for (const std::string& candidate : {e.executable, e.exec.empty() ? std::string() : e.exec.front()}) {
        if (candidate.empty() || !Text::lower(candidate).ends_with(".appimage")) continue;
        std::string real = realPath(candidate);
        if (!real.empty() && FS::isFile(real)) return Install{real, real, std::nullopt, FS::lastComponent(real)};
    }
    return std::nullopt;
}

// /opt/<vendor>/<app>/<program> is the folder <vendor>/<app>; /opt/<app>/<program> and
// /opt/<app>/bin/<program> are <app>.
std::optional<Install> opt(const std::string& real, const StorageTables& t) {
    if (!under(real, t.optDir)) return std::nullopt;
    auto parts = Text::split(std::string_view(real).substr(t.optDir.size() + 1), '/');
    if (parts.size() < 2) return std::nullopt;
    std::string dir = t.optDir + "/" + parts[0];
    if (parts.size() >= 3 && parts[1] != "bin") dir += "/" + parts[1];
    if (!FS::isDir(dir)) return std::nullopt;
    return Install{dir, dir, std::nullopt, parts[0]};
}

// The forms a path may take in a package's file list: as given, resolved, and on either side
// of the /usr merge (/bin and /usr/bin are one folder on most systems).
std::vector<std::string> listForms(const std::string& path) {
    std::vector<std::string> forms;
    auto add = [&](const std::string& p) {
        if (p.empty()) return;
        for (const auto& f : forms)
            if (f == p) return;
        forms.push_back(p);
    };
    for (const std::string& p : {path, realPath(path)}) {
        add(p);
        for (const char* top : {"/bin/", "/sbin/", "/lib/", "/lib64/"}) {
            if (p.starts_with(top)) add("/usr" + p);
            if (p.starts_with(std::string("/usr") + top)) add(p.substr(4));
        }
    }
    return forms;
}

} // namespace

std::optional<std::string> snapName(const DesktopEntry& e, const StorageTables& t) {
    if (!under(e.path, t.snapDesktopDir)) return std::nullopt;
    std::string file = FS::lastComponent(e.path);
    auto underscore = file.find('_');
    if (underscore == std::string::npos || underscore == 0) return std::nullopt;
    return file.substr(0, underscore);
}

std::optional<std::string> snapOfFile(std::string_view fileName) {
    if (!fileName.ends_with(".snap")) return std::nullopt;
    auto underscore = fileName.rfind('_');
    if (underscore == std::string_view::npos || underscore == 0) return std::nullopt;
    return std::string(fileName.substr(0, underscore));
}

std::vector<std::optional<Install>> resolve(const std::vector<DesktopEntry>& entries, const StorageTables& t) {
    std::vector<std::optional<Install>> out(entries.size());
    std::vector<std::size_t> needPackages;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const DesktopEntry& e = entries[i];
        if (auto f = flatpak(e)) out[i] = f;
        else if (auto s = snap(e, t)) out[i] = s;
        else if (auto a = appImage(e)) out[i] = a;
        else if (auto o = opt(realPath(e.executable), t)) out[i] = o;
        else needPackages.push_back(i);
    }
    if (needPackages.empty()) return out;

    // Packages: the owner of the entry file, else of its program.
    std::set<std::string, std::less<>> wanted;
    for (std::size_t i : needPackages) {
        for (auto& f : listForms(entries[i].path)) wanted.insert(f);
        for (auto& f : listForms(entries[i].executable)) wanted.insert(f);
    }
    std::map<std::string, int64_t> sizes;
    std::map<std::string, std::string> owner;
    if (!t.dpkgStatus.empty()) sizes = PackageDatabase::readStatus(t.dpkgStatus);
    if (!sizes.empty()) owner = PackageDatabase::owners(t.dpkgInfo, wanted);

    for (std::size_t i : needPackages) {
        const DesktopEntry& e = entries[i];
        std::optional<std::string> package;
        for (const std::string& path : {e.path, e.executable}) {
            for (const auto& f : listForms(path))
                if (auto it = owner.find(f); it != owner.end()) {
                    package = it->second;
                    break;
                }
            if (package) break;
        }
        if (package) {
            if (auto size = sizes.find(*package); size != sizes.end()) {
                std::string name = package->substr(0, package->find(':'));
                out[i] = Install{"package:" + name, e.path, size->second, name};
                continue;
            }
        }
        // A program of its own outside any package: the file is the app.
        std::string real = realPath(e.executable);
        if (!real.empty() && FS::isFile(real)) out[i] = Install{real, real, std::nullopt, FS::lastComponent(real)};
    }
    return out;
}

} // namespace AppInstalls
