#include "removal/Eraser.h"

#include "foundation/FS.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace Eraser {

namespace {

// Deeper trees are left to the caller's fallback rather than risking the stack.
constexpr int maxDepth = 2048;
// A folder whose entries keep coming back is read again at most this often.
constexpr int passes = 3;
// An entry that keeps changing kind under the walk is tried at most this often.
constexpr int attempts = 4;

struct Walk {
    dev_t dev = 0;  // the item's own file system; no other is entered
    int error = 0;  // first errno met
    bool abandoned = false; // too deep: unwind at once, touching nothing more
    void note(int e) {
        if (error == 0) error = e;
    }
};

struct Entry {
    std::string name;
    unsigned char type = DT_UNKNOWN;
};

// The entries of an open folder, read through a fresh handle of its own so that a repeated
// read starts at the beginning.
std::vector<Entry> entries(int fd, Walk& walk) {
    std::vector<Entry> out;
    int again = openat(fd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (again < 0) {
        walk.note(errno);
        return out;
    }
    DIR* dir = fdopendir(again);
    if (!dir) {
        walk.note(errno);
        close(again);
        return out;
    }
    errno = 0;
    while (dirent* e = readdir(dir)) {
        std::string_view n = e->d_name;
        if (n != "." && n != "..") out.push_back({std::string(n), e->d_type});
        errno = 0;
    }
    if (errno != 0) walk.note(errno);
    closedir(dir);
    return out;
}

// Gives the owner back write and search rights on a folder of the item whose entries could not
// be removed (read-only module caches are made that way). Only the owner may do it.
bool makeWritable(int fd) {
    struct stat st {};
    if (fstat(fd, &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != geteuid()) return false;
    if ((st.st_mode & S_IRWXU) == S_IRWXU) return false;
    return fchmod(fd, (st.st_mode & 07777) | S_IRWXU) == 0;
}

// A folder inside the item that cannot even be opened: reached without following anything
// (O_PATH), checked, and given its owner's rights through its own handle.
bool makeOpenable(int dirFd, const char* name, const Walk& walk) {
    int fd = openat(dirFd, name, O_PATH | O_NOFOLLOW | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat st {};
    bool done = false;
    if (fstat(fd, &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == geteuid() && st.st_dev == walk.dev &&
        (st.st_mode & S_IRWXU) != S_IRWXU) {
        std::string self = "/proc/self/fd/" + std::to_string(fd);
        done = chmod(self.c_str(), (st.st_mode & 07777) | S_IRWXU) == 0;
    }
    close(fd);
    return done;
}

bool removeEntry(int dirFd, const char* name, bool asFolder, Walk& walk, int depth);

// Reads the folder again only while every entry of the last reading went: what is left then
// arrived meanwhile. An entry that failed would fail the same way again.
void emptyFolder(int fd, Walk& walk, int depth) {
    for (int pass = 0; pass < passes; ++pass) {
        auto list = entries(fd, walk);
        if (list.empty()) return;
        bool all = true;
        for (const auto& e : list) {
            all = removeEntry(fd, e.name.c_str(), e.type == DT_DIR, walk, depth) && all;
            if (walk.abandoned) return;
        }
        if (!all) return;
    }
}

// True when the entry is gone. `depth` is 0 for the item itself, whose parent lies outside it
// and is never changed.
bool removeEntry(int dirFd, const char* name, bool asFolder, Walk& walk, int depth) {
    bool rightsGiven = false;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (!asFolder) {
            if (unlinkat(dirFd, name, 0) == 0 || errno == ENOENT) return true;
            int e = errno;
            if (e == EISDIR || e == EPERM) {
                struct stat st {};
                if (fstatat(dirFd, name, &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode)) {
                    asFolder = true;
                    continue;
                }
            }
            if (e == EACCES && depth > 0 && !rightsGiven && makeWritable(dirFd)) {
                rightsGiven = true;
                continue;
            }
            walk.note(e);
            return false;
        }
        if (depth >= maxDepth) {
            walk.note(ENAMETOOLONG);
            walk.abandoned = true;
            return false;
        }
        int sub = openat(dirFd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (sub < 0) {
            int e = errno;
            if (e == ENOENT) return true;
            if (e == ELOOP || e == ENOTDIR) { // a link or a file stands there now: remove that
                asFolder = false;
                continue;
            }
            if (e == EACCES && !rightsGiven && makeOpenable(dirFd, name, walk)) {
                rightsGiven = true;
                continue;
            }
            walk.note(e);
            return false;
        }
        struct stat st {};
        if (fstat(sub, &st) != 0) {
            walk.note(errno);
            close(sub);
            return false;
        }
        if (st.st_dev != walk.dev) { // a mount point: what lies there is another disk's
            walk.note(EXDEV);
            close(sub);
            return false;
        }
        emptyFolder(sub, walk, depth + 1);
        close(sub);
        if (unlinkat(dirFd, name, AT_REMOVEDIR) == 0 || errno == ENOENT) return true;
        int e = errno;
        if (e == ENOTDIR) { // emptied, then swapped for a link or a file
            asFolder = false;
            continue;
        }
        if (e == EACCES && depth > 0 && !rightsGiven && makeWritable(dirFd)) {
            rightsGiven = true;
            continue;
        }
        walk.note(e);
        return false;
    }
    return false;
}

bool missing(int e) { return e == ENOENT || e == ENOTDIR; }

} // namespace

Outcome eraseAt(int dirFd, const std::string& name) {
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) return {false, EINVAL};
    struct stat st {};
    if (fstatat(dirFd, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0) {
        int e = errno;
        return missing(e) ? Outcome{true, 0} : Outcome{false, e};
    }
    Walk walk{st.st_dev, 0};
    removeEntry(dirFd, name.c_str(), S_ISDIR(st.st_mode), walk, 0);
    bool gone = fstatat(dirFd, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0 && missing(errno);
    return {gone, walk.error};
}

Outcome empty(int dirFd) {
    struct stat st {};
    if (fstat(dirFd, &st) != 0) return {false, errno};
    if (!S_ISDIR(st.st_mode)) return {false, ENOTDIR};
    Walk walk{st.st_dev, 0};
    emptyFolder(dirFd, walk, 0);
    Walk check{st.st_dev, 0};
    bool gone = entries(dirFd, check).empty() && check.error == 0;
    return {gone, walk.error};
}

Outcome erase(const std::string& path) {
    std::string name = FS::lastComponent(path);
    std::string folder = FS::parent(path);
    if (folder.empty() || name.empty() || name == "/") return {false, EINVAL};
    int dirFd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dirFd < 0) {
        int e = errno;
        return missing(e) ? Outcome{true, 0} : Outcome{false, e};
    }
    Outcome out = eraseAt(dirFd, name);
    close(dirFd);
    return out;
}

} // namespace Eraser
