#include "foundation/AtomicFile.h"

#include "foundation/FS.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace AtomicFile {

namespace {

bool isTemplateChar(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); }

int removeStaleIn(int folder, std::string_view name) {
    int listing = dup(folder);
    if (listing < 0) return 0;
    DIR* dir = fdopendir(listing);
    if (!dir) {
        close(listing);
        return 0;
    }
    int removed = 0;
    while (dirent* e = readdir(dir)) {
        if (!isTemporaryName(e->d_name, name)) continue;
        // O_NOFOLLOW: a link by this name is none of the writer's, and where it points is not
        // looked at.
        int fd = openat(folder, e->d_name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
        if (fd < 0) continue;
        struct stat held {}, named {};
        bool ours = fstat(fd, &held) == 0 && S_ISREG(held.st_mode) && held.st_uid == geteuid();
        // A live writer holds its lock until its rename; a killed one lost it with its life.
        if (ours && flock(fd, LOCK_EX | LOCK_NB) == 0 &&
            fstatat(folder, e->d_name, &named, AT_SYMLINK_NOFOLLOW) == 0 && named.st_ino == held.st_ino &&
            named.st_dev == held.st_dev && unlinkat(folder, e->d_name, 0) == 0)
            ++removed;
        close(fd);
    }
    closedir(dir);
    return removed;
}

// A temporary file of ours, created and locked. A sweep of another writer may unlink the file
// between its creation and the lock; then it is made again.
int lockedTemporary(std::string& temp, const std::string& pattern) {
    for (int attempt = 0; attempt < 8; ++attempt) {
        temp = pattern;
        int fd = mkostemp(temp.data(), O_CLOEXEC);
        if (fd < 0) return -1;
        struct stat st {};
        if (flock(fd, LOCK_EX) == 0 && fstat(fd, &st) == 0 && st.st_nlink > 0) return fd;
        close(fd);
        unlink(temp.c_str());
    }
    return -1;
}

} // namespace

bool isTemporaryName(std::string_view entry, std::string_view name) {
    if (entry.size() != name.size() + 8 || entry[0] != '.' || entry.substr(1, name.size()) != name ||
        entry[name.size() + 1] != '.')
        return false;
    for (char c : entry.substr(name.size() + 2))
        if (!isTemplateChar(c)) return false;
    return true;
}

int removeStale(const std::string& path) {
    std::string folder = FS::parent(path);
    if (folder.empty()) folder = ".";
    int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return 0;
    int removed = removeStaleIn(fd, FS::lastComponent(path));
    close(fd);
    return removed;
}

bool makeFolders(const std::string& path) {
    if (path.empty()) return false;
    struct stat st {};
    if (stat(path.c_str(), &st) == 0) return S_ISDIR(st.st_mode);
    std::string up = FS::parent(path);
    if (!up.empty() && up != path) makeFolders(up);
    return mkdir(path.c_str(), 0755) == 0 || errno == EEXIST;
}

bool write(const std::string& path, std::string_view content, bool makeFolder) {
    std::string folder = FS::parent(path);
    if (folder.empty()) folder = ".";
    if (makeFolder && !makeFolders(folder)) return false;
    const std::string name = FS::lastComponent(path);
    (void)removeStale(path);
    std::string temp;
    int fd = lockedTemporary(temp, folder + "/." + name + ".XXXXXX");
    if (fd < 0) return false;
    std::size_t written = 0;
    bool ok = true;
    while (written < content.size()) {
        ssize_t n = ::write(fd, content.data() + written, content.size() - written);
        if (n < 0) {
            if (errno == EINTR) continue;
            ok = false;
            break;
        }
        written += static_cast<std::size_t>(n);
    }
    if (ok) ok = fchmod(fd, 0644) == 0 && fsync(fd) == 0;
    // Renamed while still locked, so that no sweep takes it for a stale one.
    if (ok) ok = std::rename(temp.c_str(), path.c_str()) == 0;
    if (!ok) unlink(temp.c_str());
    close(fd); // after fsync, an error here loses nothing
    return ok;
}

} // namespace AtomicFile
