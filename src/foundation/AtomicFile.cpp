#include "foundation/AtomicFile.h"

#include "foundation/FS.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace AtomicFile {

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
    std::string temp = folder + "/." + FS::lastComponent(path) + ".XXXXXX";
    int fd = mkostemp(temp.data(), O_CLOEXEC);
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
    if (close(fd) != 0) ok = false;
    if (ok) ok = std::rename(temp.c_str(), path.c_str()) == 0;
    if (!ok) unlink(temp.c_str());
    return ok;
}

} // namespace AtomicFile
