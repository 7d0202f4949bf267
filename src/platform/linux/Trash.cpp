#include "platform/Trash.h"
#include "platform/MountTable.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <set>
#include <utility>

namespace Trash {

namespace {

constexpr std::string_view infoSuffix = ".trashinfo";
// Past this many things of one name, a Trash is taken as full for that name.
constexpr int maxNumber = 100000;

bool missing(int e) { return e == ENOENT || e == ENOTDIR; }

std::string join(const std::string& folder, std::string_view name) {
    if (folder == "/") return "/" + std::string(name);
    return folder + "/" + std::string(name);
}

std::optional<std::string> realPath(const std::string& path) {
    char* r = realpath(path.c_str(), nullptr);
    if (!r) return std::nullopt;
    std::string out = r;
    std::free(r);
    return out;
}

// Makes `path` and its missing parents with `mode`; 0 or the errno that stopped it.
int makeFolders(const std::string& path, mode_t mode) {
    if (path.empty() || path.front() != '/') return EINVAL;
    for (std::size_t at = 1; at <= path.size(); ++at) {
        if (at != path.size() && path[at] != '/') continue;
        std::string prefix = path.substr(0, at);
        if (mkdir(prefix.c_str(), mode) != 0 && errno != EEXIST) return errno;
    }
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) return errno;
    return S_ISDIR(st.st_mode) ? 0 : ENOTDIR;
}

// The device that a folder which may not exist yet will be on: its nearest existing ancestor's.
std::optional<dev_t> deviceOf(std::string path) {
    while (!path.empty()) {
        struct stat st {};
        if (stat(path.c_str(), &st) == 0) return st.st_dev;
        if (path == "/") break;
        path = FS::parent(path);
    }
    return std::nullopt;
}

// The top of the mount that holds `folder` (a real path on device `dev`).
std::string topOf(std::string folder, dev_t dev) {
    while (folder != "/") {
        std::string up = FS::parent(folder);
        struct stat st {};
        if (stat(up.c_str(), &st) != 0 || st.st_dev != dev) return folder;
        folder = up;
    }
    return folder;
}

bool ownFolder(const std::string& path, uid_t uid) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == uid;
}

bool sharedTrash(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && (st.st_mode & S_ISVTX);
}

// A mount's Trash for this user: inside an administrator's shared ".Trash" (sticky, not a link)
// when there is one, else ".Trash-<uid>" at the top, made private when new.
int mountTrash(const std::string& top, uid_t uid, std::string& folder) {
    std::string shared = join(top, ".Trash");
    if (sharedTrash(shared)) {
        folder = join(shared, std::to_string(uid));
        if (mkdir(folder.c_str(), 0700) == 0 || ownFolder(folder, uid)) return 0;
    }
    folder = join(top, ".Trash-" + std::to_string(uid));
    if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return errno;
    return ownFolder(folder, uid) ? 0 : EACCES;
}

// Opens part `name` of an open Trash folder, making it first; never through a link.
int openPart(int trashFd, const char* name, int& fd) {
    if (mkdirat(trashFd, name, 0700) != 0 && errno != EEXIST) return errno;
    fd = openat(trashFd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    return fd < 0 ? errno : 0;
}

// rename without replacing what stands at the target, where the file system allows it.
int moveNoReplace(int fromFd, const char* from, int toFd, const char* to) {
    if (renameat2(fromFd, from, toFd, to, RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
    struct stat st {};
    if (fstatat(toFd, to, &st, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
    return renameat(fromFd, from, toFd, to) == 0 ? 0 : errno;
}

bool writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        ssize_t n = ::write(fd, text.data(), text.size());
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

Outcome failed(Outcome out, Step step, int error) {
    out.step = step;
    out.error = error;
    return out;
}

struct Fd {
    int fd = -1;
    ~Fd() {
        if (fd >= 0) close(fd);
    }
};

} // namespace

std::string percentEncode(std::string_view path) {
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string out;
    for (unsigned char c : path) {
        bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
                     c == '_' || c == '.' || c == '~' || c == '/';
        if (plain) {
            out += static_cast<char>(c);
        } else {
            out += '%';
            out += hex[c >> 4];
            out += hex[c & 15];
        }
    }
    return out;
}

std::string percentDecode(std::string_view text) {
    auto digit = [](char c) -> int {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        return -1;
    };
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && digit(text[i + 1]) >= 0 && digit(text[i + 2]) >= 0) {
            out += static_cast<char>(digit(text[i + 1]) * 16 + digit(text[i + 2]));
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}

std::string info(std::string_view pathValue, TimePoint when) {
    std::time_t t = Clock::to_time_t(when);
    std::tm local {};
    localtime_r(&t, &local);
    char date[32];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + percentEncode(pathValue) + "\nDeletionDate=" + date + "\n";
}

std::string entryName(std::string_view name, int n) {
    // "photo.jpg" becomes "photo.2.jpg", so that the kind still shows; ".bashrc" ".bashrc.2".
    std::string stem(name), tail;
    auto dot = name.rfind('.');
    if (dot != std::string_view::npos && dot > 0 && name.size() - dot <= 16) {
        stem = std::string(name.substr(0, dot));
        tail = std::string(name.substr(dot));
    }
    if (n > 1) tail = "." + std::to_string(n) + tail;
    const std::size_t limit = NAME_MAX - infoSuffix.size();
    if (stem.size() + tail.size() > limit) {
        std::size_t keep = tail.size() < limit ? limit - tail.size() : 0;
        // Cut at the start of a UTF-8 sequence, never inside one.
        while (keep > 0 && (static_cast<unsigned char>(stem[keep]) & 0xC0) == 0x80) --keep;
        stem.resize(keep);
    }
    return stem + tail;
}

std::vector<Mount> mounts(std::string_view mountinfo) {
    static const std::set<std::string, std::less<>> virtualKinds = {
        "proc", "sysfs", "cgroup", "cgroup2", "devpts", "mqueue", "debugfs", "tracefs", "securityfs", "pstore",
        "bpf", "autofs", "fusectl", "configfs", "binfmt_misc", "hugetlbfs", "efivarfs", "nsfs", "rpc_pipefs",
        "selinuxfs", "devtmpfs"};
    std::vector<Mount> out;
    for (const auto& m : MountTable::parse(mountinfo))
        if (!virtualKinds.count(m.fsType)) out.push_back({m.point, !m.readOnly()});
    return out;
}

std::vector<std::string> folders(const std::string& homeTrash) {
    return folders(homeTrash, FS::readText("/proc/self/mountinfo").value_or(""));
}

std::vector<std::string> folders(const std::string& homeTrash, std::string_view mountinfo) {
    std::vector<std::string> out;
    std::set<std::pair<dev_t, ino_t>> seen;
    auto add = [&](const std::string& folder) {
        struct stat st {};
        if (lstat(folder.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) return;
        if (seen.insert({st.st_dev, st.st_ino}).second) out.push_back(folder);
    };
    add(homeTrash);
    uid_t uid = geteuid();
    for (const auto& m : mounts(mountinfo)) {
        if (!m.writable) continue;
        std::string own = join(m.point, ".Trash-" + std::to_string(uid));
        if (ownFolder(own, uid)) add(own);
        std::string shared = join(m.point, ".Trash");
        if (sharedTrash(shared)) {
            std::string mine = join(shared, std::to_string(uid));
            if (ownFolder(mine, uid)) add(mine);
        }
    }
    return out;
}

Outcome put(const std::string& path, const std::string& homeTrash, TimePoint now) {
    Outcome out;
    out.folder = homeTrash;
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0) return failed(out, Step::look, errno);
    std::string name = FS::lastComponent(path);
    auto realFolder = realPath(FS::parent(path));
    if (!realFolder || name.empty() || name == "/" || name == "." || name == "..")
        return failed(out, Step::look, realFolder ? EINVAL : errno);

    // What lies on the home Trash's file system goes there, with its absolute path; anything
    // else to its own mount's Trash, with its path from the mount's top.
    std::string pathValue = path;
    auto homeDevice = deviceOf(homeTrash);
    if (homeDevice && *homeDevice == st.st_dev) {
        if (int e = makeFolders(homeTrash, 0700)) return failed(out, Step::makeFolder, e);
    } else {
        std::string top = topOf(*realFolder, st.st_dev);
        if (int e = mountTrash(top, geteuid(), out.folder)) return failed(out, Step::makeFolder, e);
        std::string real = join(*realFolder, name);
        pathValue = top == "/" ? real.substr(1) : real.substr(top.size() + 1);
    }

    if (auto realTrash = realPath(out.folder))
        if (*realFolder == *realTrash || realFolder->starts_with(*realTrash + "/"))
            return failed(out, Step::alreadyThere, EEXIST);

    Fd trash, files, info;
    trash.fd = open(out.folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (trash.fd < 0) return failed(out, Step::makeFolder, errno);
    if (int e = openPart(trash.fd, "files", files.fd)) return failed(out, Step::makeFolder, e);
    if (int e = openPart(trash.fd, "info", info.fd)) return failed(out, Step::makeFolder, e);

    const std::string content = Trash::info(pathValue, now);
    for (int n = 1; n <= maxNumber; ++n) {
        std::string entry = entryName(name, n);
        std::string infoName = entry + std::string(infoSuffix);
        // The .trashinfo comes first and claims the name: O_EXCL makes two trashers never share one.
        int fd = openat(info.fd, infoName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (fd < 0) {
            if (errno == EEXIST) continue;
            return failed(out, Step::writeInfo, errno);
        }
        bool written = writeAll(fd, content);
        int writeError = errno;
        if (close(fd) != 0 && written) {
            written = false;
            writeError = errno;
        }
        if (!written) {
            unlinkat(info.fd, infoName.c_str(), 0);
            return failed(out, Step::writeInfo, writeError);
        }
        int e = moveNoReplace(AT_FDCWD, path.c_str(), files.fd, entry.c_str());
        if (e == 0) {
            out.moved = join(out.folder, "files/" + entry);
            return out;
        }
        unlinkat(info.fd, infoName.c_str(), 0);
        if (e != EEXIST) return failed(out, Step::move, e);
    }
    return failed(out, Step::writeInfo, EEXIST);
}

Outcome restore(const std::string& moved, const std::string& to) {
    Outcome out;
    std::string filesFolder = FS::parent(moved);
    out.folder = FS::parent(filesFolder);
    struct stat st {};
    if (lstat(to.c_str(), &st) == 0) return failed(out, Step::occupied, EEXIST);
    if (!missing(errno)) return failed(out, Step::look, errno);
    if (lstat(moved.c_str(), &st) != 0) return failed(out, Step::look, errno);
    if (int e = makeFolders(FS::parent(to), 0755)) return failed(out, Step::makeFolder, e);
    if (int e = moveNoReplace(AT_FDCWD, moved.c_str(), AT_FDCWD, to.c_str()))
        return failed(out, e == EEXIST ? Step::occupied : Step::move, e);
    out.moved = to;
    if (FS::lastComponent(filesFolder) == "files") {
        std::string infoFile = join(out.folder, "info/" + FS::lastComponent(moved) + std::string(infoSuffix));
        unlink(infoFile.c_str());
    }
    return out;
}

} // namespace Trash
