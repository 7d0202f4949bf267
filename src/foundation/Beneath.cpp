#include "foundation/Beneath.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace Beneath {

namespace {

// Whether openat2 may be asked: unknown until the first call says, then remembered.
std::atomic<int> kernelWalks{-1};

bool isLinkAt(int folder, const std::string& name) {
    struct stat st {};
    return fstatat(folder, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(st.st_mode);
}

Opened failed(int error) {
    Opened out;
    out.error = error;
    return out;
}

Opened linkMet(const std::vector<std::string>& pieces, std::size_t upTo) {
    Opened out = failed(ELOOP);
    out.throughLink = true;
    for (std::size_t i = 0; i <= upTo && i < pieces.size(); ++i) {
        if (i > 0) out.link += '/';
        out.link += pieces[i];
    }
    return out;
}

// One component after the other, each opened from the handle of the one before without
// following it. With `mode` set, a missing folder is made on the way.
Opened byHand(int root, const std::vector<std::string>& pieces, int flags, bool make, mode_t mode) {
    Fd current;
    int at = root;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const bool last = i + 1 == pieces.size();
        const char* name = pieces[i].c_str();
        const int how = (last ? flags : O_PATH | O_DIRECTORY) | O_NOFOLLOW | O_CLOEXEC;
        int fd = openat(at, name, how, 0600);
        if (fd < 0 && errno == ENOENT && make) {
            if (mkdirat(at, name, mode) != 0 && errno != EEXIST) return failed(errno);
            fd = openat(at, name, how, 0600);
        }
        if (fd < 0) {
            int e = errno;
            if ((e == ELOOP || e == ENOTDIR || e == EMLINK) && isLinkAt(at, pieces[i])) return linkMet(pieces, i);
            return failed(e);
        }
        current.reset(fd);
        at = fd;
    }
    Opened out;
    out.fd = std::move(current);
    return out;
}

// A walk never ends on a link: O_PATH | O_NOFOLLOW would hand back the link itself.
Opened notALink(Opened out, const std::vector<std::string>& pieces) {
    struct stat st {};
    if (out.ok() && fstat(out.fd.get(), &st) == 0 && S_ISLNK(st.st_mode)) return linkMet(pieces, pieces.size() - 1);
    return out;
}

} // namespace

std::vector<std::string> components(std::string_view relative) {
    std::vector<std::string> out;
    if (relative.empty() || relative.front() == '/') return {};
    std::size_t start = 0;
    while (start <= relative.size()) {
        std::size_t slash = relative.find('/', start);
        std::string_view piece = relative.substr(start, slash == std::string_view::npos ? std::string_view::npos : slash - start);
        if (piece.empty() || piece == "." || piece == ".." || piece.find('\0') != std::string_view::npos) return {};
        out.emplace_back(piece);
        if (slash == std::string_view::npos) break;
        start = slash + 1;
    }
    return out;
}

std::string_view below(std::string_view path, std::string_view root) {
    while (root.size() > 1 && root.back() == '/') root.remove_suffix(1);
    if (root == "/") return path.size() > 1 && path.front() == '/' ? path.substr(1) : std::string_view{};
    if (path.size() <= root.size() + 1 || !path.starts_with(root) || path[root.size()] != '/') return {};
    return path.substr(root.size() + 1);
}

Opened open(int root, std::string_view relative, int flags, Way way) {
    auto pieces = components(relative);
    if (pieces.empty()) return failed(EINVAL);
    if (way == Way::best && kernelWalks.load(std::memory_order_relaxed) != 0) {
        open_how how{};
        how.flags = static_cast<uint64_t>(flags | O_CLOEXEC);
        how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
        std::string path(relative);
        long fd;
        do {
            fd = syscall(SYS_openat2, root, path.c_str(), &how, sizeof how);
        } while (fd < 0 && errno == EAGAIN); // a rename elsewhere raced the walk: walk again
        if (fd >= 0) {
            kernelWalks.store(1, std::memory_order_relaxed);
            Opened out;
            out.fd.reset(static_cast<int>(fd));
            // Without O_NOFOLLOW the kernel refuses a last component that is a link by itself.
            if (flags & O_NOFOLLOW) return notALink(std::move(out), pieces);
            return out;
        }
        int e = errno;
        // ENOSYS: an older kernel; EPERM: a sandbox that forbids the call; EINVAL or E2BIG: a
        // kernel that does not know a flag. Each of these falls back on the walk by hand.
        bool unsupported = e == ENOSYS || e == EPERM || e == E2BIG || (e == EINVAL && kernelWalks.load() != 1);
        if (!unsupported) {
            kernelWalks.store(1, std::memory_order_relaxed);
            // Which component is the link is told by the walk by hand, which stops at it.
            if (e == ELOOP || e == EXDEV) {
                Opened again = notALink(byHand(root, pieces, O_PATH, false, 0), pieces);
                if (again.throughLink) return again;
                return failed(e);
            }
            return failed(e);
        }
        if (e == ENOSYS) kernelWalks.store(0, std::memory_order_relaxed);
    }
    return notALink(byHand(root, pieces, flags, false, 0), pieces);
}

Fd openRoot(const std::string& root) { return Fd(::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)); }

Parent parent(const std::string& root, const std::string& path, Way way, bool make, unsigned mode) {
    Parent out;
    std::string_view rel = below(path, root);
    while (rel.size() > 1 && rel.back() == '/') rel.remove_suffix(1);
    auto pieces = components(rel);
    if (pieces.empty()) {
        out.folder = failed(EINVAL);
        return out;
    }
    out.name = pieces.back();
    Fd top = openRoot(root);
    if (!top) {
        out.folder = failed(errno);
        return out;
    }
    if (pieces.size() == 1) {
        out.folder.fd = std::move(top);
        return out;
    }
    std::string_view folder = rel.substr(0, rel.size() - out.name.size() - 1);
    out.folder = open(top.get(), folder, O_PATH | O_DIRECTORY, way);
    if (!out.folder.ok() && out.folder.error == ENOENT && make) {
        pieces.pop_back();
        out.folder = byHand(top.get(), pieces, O_PATH | O_DIRECTORY, true, static_cast<mode_t>(mode));
    }
    return out;
}

} // namespace Beneath
