#include "platform/Trash.h"
#include "platform/MountTable.h"

#include "foundation/Beneath.h"
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

// The real path of an open folder, as the kernel knows it now.
std::optional<std::string> realPathOf(int fd) {
    return FS::readLink("/proc/self/fd/" + std::to_string(fd));
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

Outcome failed(Outcome out, Step step, int error) {
    out.step = step;
    out.error = error;
    return out;
}

// Opens part `name` of an open Trash folder, making it first when asked; never through a link.
int openPart(int trashFd, const char* name, Fd& fd, bool make = true) {
    if (make && mkdirat(trashFd, name, 0700) != 0 && errno != EEXIST) return errno;
    fd.reset(openat(trashFd, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return fd ? 0 : errno;
}

// The step and error of a Trash folder that could not be opened.
Outcome unopened(Outcome out, const Beneath::Opened& opened) {
    if (opened.throughLink) return failed(out, Step::link, ELOOP);
    if (opened.error == EXDEV) return failed(out, Step::outside, EXDEV);
    return failed(out, Step::makeFolder, opened.error);
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

Beneath::Opened open(const Folder& trash, bool make) {
    Beneath::Opened out;
    std::string_view rel = Beneath::below(trash.path, trash.root);
    if (rel.empty()) {
        out.error = EXDEV;
        return out;
    }
    Beneath::Parent parent = Beneath::parent(trash.root, trash.path, Beneath::Way::best, make, 0700);
    if (!parent.ok()) return std::move(parent.folder);
    if (make && mkdirat(parent.folder.fd.get(), parent.name.c_str(), 0700) != 0 && errno != EEXIST) {
        out.error = errno;
        return out;
    }
    return Beneath::open(parent.folder.fd.get(), parent.name, O_PATH | O_DIRECTORY);
}

std::vector<Folder> folders(const Folder& homeTrash) {
    return folders(homeTrash, FS::readText("/proc/self/mountinfo").value_or(""));
}

std::vector<Folder> folders(const Folder& homeTrash, std::string_view mountinfo) {
    std::vector<Folder> out;
    std::set<std::pair<dev_t, ino_t>> seen;
    auto add = [&](const Folder& folder) {
        struct stat st {};
        if (lstat(folder.path.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) return;
        if (seen.insert({st.st_dev, st.st_ino}).second) out.push_back(folder);
    };
    add(homeTrash);
    uid_t uid = geteuid();
    for (const auto& m : mounts(mountinfo)) {
        if (!m.writable) continue;
        std::string own = join(m.point, ".Trash-" + std::to_string(uid));
        if (ownFolder(own, uid)) add({m.point, own});
        std::string shared = join(m.point, ".Trash");
        if (sharedTrash(shared)) {
            std::string mine = join(shared, std::to_string(uid));
            if (ownFolder(mine, uid)) add({m.point, mine});
        }
    }
    return out;
}

std::optional<std::pair<Folder, std::string>> holder(const std::string& moved, const Folder& homeTrash) {
    if (moved.empty() || moved.front() != '/' || moved.find("/../") != std::string::npos ||
        moved.find("/./") != std::string::npos || moved.find("//") != std::string::npos)
        return std::nullopt;
    const std::string entry = FS::lastComponent(moved);
    const std::string files = FS::parent(moved);
    if (entry.empty() || entry == "." || entry == ".." || FS::lastComponent(files) != "files") return std::nullopt;
    const std::string folder = FS::parent(files);
    if (folder == homeTrash.path) return std::pair{homeTrash, entry};
    const std::string uid = std::to_string(geteuid());
    std::string top;
    if (FS::lastComponent(folder) == ".Trash-" + uid) top = FS::parent(folder);
    else if (FS::lastComponent(folder) == uid && FS::lastComponent(FS::parent(folder)) == ".Trash")
        top = FS::parent(FS::parent(folder));
    else return std::nullopt;
    // Only at the top of a mount does such a folder stand for a Trash.
    struct stat here {}, above {};
    if (top.empty() || stat(top.c_str(), &here) != 0) return std::nullopt;
    if (top != "/" && stat(FS::parent(top).c_str(), &above) == 0 && above.st_dev == here.st_dev) return std::nullopt;
    return std::pair{Folder{top, folder}, entry};
}

Outcome put(int folder, const std::string& name, const std::string& path, const Folder& homeTrash, TimePoint now) {
    Outcome out;
    out.folder = homeTrash.path;
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos)
        return failed(out, Step::look, EINVAL);
    struct stat st {};
    if (fstatat(folder, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0) return failed(out, Step::look, errno);
    auto realFolder = realPathOf(folder);
    if (!realFolder) return failed(out, Step::look, errno);

    // What lies on the home Trash's file system goes there, with its absolute path; anything
    // else to its own mount's Trash, with its path from the mount's top.
    Folder trashFolder = homeTrash;
    std::string pathValue = path;
    auto homeDevice = deviceOf(homeTrash.path);
    if (!homeDevice || *homeDevice != st.st_dev) {
        std::string top = topOf(*realFolder, st.st_dev);
        if (int e = mountTrash(top, geteuid(), out.folder)) return failed(out, Step::makeFolder, e);
        trashFolder = {top, out.folder};
        std::string real = join(*realFolder, name);
        pathValue = top == "/" ? real.substr(1) : real.substr(top.size() + 1);
    }

    Beneath::Opened trash = open(trashFolder, /*make=*/true);
    if (!trash.ok()) return unopened(out, trash);
    if (auto realTrash = realPathOf(trash.fd.get()))
        if (*realFolder == *realTrash || realFolder->starts_with(*realTrash + "/"))
            return failed(out, Step::alreadyThere, EEXIST);

    Fd files, info;
    if (int e = openPart(trash.fd.get(), "files", files)) return failed(out, Step::makeFolder, e);
    if (int e = openPart(trash.fd.get(), "info", info)) return failed(out, Step::makeFolder, e);

    const std::string content = Trash::info(pathValue, now);
    for (int n = 1; n <= maxNumber; ++n) {
        std::string entry = entryName(name, n);
        std::string infoName = entry + std::string(infoSuffix);
        // The .trashinfo comes first and claims the name: O_EXCL makes two trashers never share one.
        int fd = openat(info.get(), infoName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
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
            unlinkat(info.get(), infoName.c_str(), 0);
            return failed(out, Step::writeInfo, writeError);
        }
        int e = moveNoReplace(folder, name.c_str(), files.get(), entry.c_str());
        if (e == 0) {
            out.moved = join(out.folder, "files/" + entry);
            return out;
        }
        unlinkat(info.get(), infoName.c_str(), 0);
        if (e != EEXIST) return failed(out, Step::move, e);
    }
    return failed(out, Step::writeInfo, EEXIST);
}

Outcome restore(const Folder& trash, const std::string& entry, int toFolder, const std::string& toName,
                const std::string& to) {
    Outcome out;
    out.folder = trash.path;
    struct stat st {};
    if (fstatat(toFolder, toName.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0) return failed(out, Step::occupied, EEXIST);
    if (!missing(errno)) return failed(out, Step::look, errno);
    Beneath::Opened opened = open(trash);
    if (!opened.ok()) {
        if (opened.throughLink) return failed(out, Step::link, ELOOP);
        return failed(out, Step::look, opened.error);
    }
    Fd files, info;
    if (int e = openPart(opened.fd.get(), "files", files, /*make=*/false)) return failed(out, Step::look, e);
    if (fstatat(files.get(), entry.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0) return failed(out, Step::look, errno);
    if (int e = moveNoReplace(files.get(), entry.c_str(), toFolder, toName.c_str()))
        return failed(out, e == EEXIST ? Step::occupied : Step::move, e);
    out.moved = to;
    if (openPart(opened.fd.get(), "info", info, /*make=*/false) == 0)
        unlinkat(info.get(), (entry + std::string(infoSuffix)).c_str(), 0);
    return out;
}

} // namespace Trash
