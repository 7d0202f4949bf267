#include "foundation/FS.h"

#include "foundation/Text.h"
#include "foundation/BlockSharing.h"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace FS {

const std::string& homeAsGiven() {
    static const std::string value = [] {
        const char* env = std::getenv("HOME");
        std::string h;
        if (env && *env) h = env;
        else if (passwd* pw = getpwuid(getuid()); pw && pw->pw_dir) h = pw->pw_dir;
        else h = "/";
        while (h.size() > 1 && h.back() == '/') h.pop_back();
        return h;
    }();
    return value;
}

const std::string& home() {
    static const std::string value = [] {
        const std::string& given = homeAsGiven();
        if (given.empty() || given.front() != '/') return given;
        char* real = realpath(given.c_str(), nullptr);
        if (!real) return given;
        std::string out = real;
        std::free(real);
        return out;
    }();
    return value;
}

std::string onHome(std::string path, std::string_view given, std::string_view h) {
    if (given.empty() || given == h || given == "/") return path;
    if (path == given) return std::string(h);
    if (path.size() > given.size() && path.starts_with(given) && path[given.size()] == '/')
        return std::string(h) + path.substr(given.size());
    return path;
}

std::string xdgFolder(const std::optional<std::string>& value, const std::string& fallback) {
    if (!value || value->empty() || value->front() != '/') return fallback;
    std::string s = *value;
    while (s.size() > 1 && s.back() == '/') s.pop_back();
    return s;
}

std::string xdgFolder(const char* variable, std::string_view belowHome) {
    const char* v = std::getenv(variable);
    return onHome(xdgFolder(v ? std::optional<std::string>(v) : std::nullopt, home() + std::string(belowHome)),
                  homeAsGiven(), home());
}

std::string tilde(std::string_view path) { return tilde(path, home()); }

std::string tilde(std::string_view path, std::string_view h) {
    if (path == h) return "~";
    if (!h.empty() && path.size() > h.size() && path.starts_with(h) && path[h.size()] == '/')
        return "~" + std::string(path.substr(h.size()));
    return std::string(path);
}

bool exists(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0;
}

bool isDir(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool isFile(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool isExecutableFile(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && access(path.c_str(), X_OK) == 0;
}

std::vector<std::string> children(const std::string& path) {
    std::vector<std::string> names;
    DIR* dir = opendir(path.c_str());
    if (!dir) return names;
    while (dirent* e = readdir(dir)) {
        std::string_view n = e->d_name;
        if (n == "." || n == "..") continue;
        names.emplace_back(n);
    }
    closedir(dir);
    return names;
}

std::vector<std::string> sortedChildren(const std::string& path) {
    auto names = children(path);
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<std::string> readLink(const std::string& path) {
    char buf[4096];
    ssize_t n = readlink(path.c_str(), buf, sizeof buf);
    if (n <= 0 || static_cast<std::size_t>(n) >= sizeof buf) return std::nullopt;
    return std::string(buf, static_cast<std::size_t>(n));
}

std::optional<TimePoint> mtime(const std::string& path, TimePoint now) {
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0) return std::nullopt;
    return fileDate(st.st_mtim, now);
}

std::optional<TimePoint> birthTime(const std::string& path, TimePoint now) {
    struct statx sx {};
    if (statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BTIME | STATX_MTIME, &sx) == 0) {
        if (sx.stx_mask & STATX_BTIME) return fileDate(sx.stx_btime, now);
        if (sx.stx_mask & STATX_MTIME) return fileDate(sx.stx_mtime, now);
    }
    return mtime(path, now);
}

std::optional<int64_t> privateSize(const std::string& path) {
    if (!BlockSharing::canShare(path.c_str())) return std::nullopt;
    return BlockSharing::unsharedBytes(path.c_str());
}

std::optional<std::string_view> readInto(const std::string& path, std::string& room, std::size_t limit) {
    int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) return std::nullopt;
    // Room for the whole file where it tells its size (one byte more, so that the read which
    // meets the end needs no room of its own): growing a large file's text step by step costs a
    // copy and fresh pages at every step. Files of /proc tell no size.
    std::size_t want = 8192;
    struct stat st {};
    if (fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && st.st_size > 0)
        want = std::min(static_cast<std::size_t>(st.st_size), limit) + 1;
    if (room.size() < want) room.resize(want);
    std::size_t used = 0;
    while (used < limit) {
        if (used == room.size()) room.resize(room.size() * 2);
        ssize_t n = read(fd, room.data() + used, room.size() - used);
        if (n < 0) {
            close(fd);
            return std::nullopt;
        }
        if (n == 0) break;
        used += static_cast<std::size_t>(n);
    }
    close(fd);
    return std::string_view(room.data(), std::min(used, limit));
}

std::optional<std::string> readText(const std::string& path, std::size_t limit) {
    std::string room;
    auto text = readInto(path, room, limit);
    if (!text) return std::nullopt;
    room.resize(text->size());
    return room;
}

std::string lastComponent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    auto at = path.rfind('/');
    return std::string(at == std::string_view::npos ? path : path.substr(at + 1));
}

std::string parent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    auto at = path.rfind('/');
    if (at == std::string_view::npos) return "";
    if (at == 0) return "/";
    return std::string(path.substr(0, at));
}

std::string extension(std::string_view path) {
    std::string name = lastComponent(path);
    auto dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0) return "";
    return Text::lower(std::string_view(name).substr(dot + 1));
}

} // namespace FS
