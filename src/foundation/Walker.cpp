#include "foundation/Walker.h"

#include "foundation/Parallel.h"
#include "foundation/StatBatch.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <mutex>

namespace {

using Need = Walker::Need;
using Stat = Walker::Stat;

constexpr unsigned fileMask = STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_UID | STATX_INO | STATX_BLOCKS | STATX_MTIME;
constexpr unsigned folderMask = fileMask | STATX_MNT_ID;
constexpr int statFlags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

unsigned maskFor(Need need) {
    switch (need) {
    case Need::names: return STATX_TYPE | STATX_MODE;
    case Need::stat: return fileMask;
    case Need::birth: return fileMask | STATX_BTIME;
    }
    return fileMask;
}

void fill(Stat& s, const struct statx& x) {
    s.device = makedev(x.stx_dev_major, x.stx_dev_minor);
    s.inode = x.stx_ino;
    s.mount = (x.stx_mask & STATX_MNT_ID) ? x.stx_mnt_id : 0;
    s.mode = x.stx_mode;
    s.links = x.stx_nlink;
    s.owner = x.stx_uid;
    s.bytes = static_cast<int64_t>(x.stx_blocks) * 512;
    s.modified = x.stx_mtime.tv_sec;
    s.modifiedNanos = x.stx_mtime.tv_nsec;
    s.hasBirth = (x.stx_mask & STATX_BTIME) != 0;
    s.born = x.stx_btime.tv_sec;
    s.bornNanos = x.stx_btime.tv_nsec;
}

bool statAt(int at, const char* name, int flags, unsigned mask, Stat& out) {
    struct statx x {};
    if (statx(at, name, flags, mask, &x) != 0) return false;
    fill(out, x);
    return true;
}

// The facts of an open folder, and 0 when it can be searched, else why not: looking up "."
// in it needs the same search permission as every name inside it.
int statFolder(int fd, Stat& out) {
    if (statAt(fd, ".", statFlags, folderMask, out)) return 0;
    const int error = errno;
    if (!statAt(fd, "", AT_EMPTY_PATH | statFlags, folderMask, out)) return errno ? errno : EIO;
    return error ? error : EIO;
}

// Another mount than the walk's root: another device, or a bind mount of the same one (which
// could lead back to a folder above and round for ever).
bool otherMount(const Stat& folder, const Stat& root) {
    return folder.device != root.device || (folder.mount && root.mount && folder.mount != root.mount);
}

// The part of `path` before the name that starts at `nameStart`.
std::string_view folderOf(std::string_view path, std::size_t nameStart) {
    if (nameStart == 0) return {};
    if (nameStart == 1) return path.substr(0, 1);
    return path.substr(0, nameStart - 1);
}

bool dots(const char* name) { return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0)); }

// A folder handed from one thread to another: already open, not yet seen by a visitor.
struct Job {
    int fd = -1;
    std::string path;
    std::size_t nameStart = 0;
    std::size_t root = 0;
    int level = 0;
    uintptr_t parentTag = 0;
    Stat rootStat;
};

struct Shared {
    const std::vector<Walker::Root>& roots;
    const Walker::Options& options;
    unsigned mask = 0;
    std::size_t handleLimit = Walker::handlesPerThread;
    std::size_t queueLimit = Walker::queuedFolders;

    std::mutex lock;
    std::condition_variable wake;
    std::vector<Job> queue;   // under `lock`
    std::size_t nextRoot = 0; // under `lock`
    std::size_t busy = 0;     // threads with work in hand, under `lock`
    std::atomic<std::size_t> waiting{0};
    std::atomic<std::size_t> queued{0};
    std::atomic<bool> stopped{false};

    Shared(const std::vector<Walker::Root>& r, const Walker::Options& o) : roots(r), options(o) {}
};

// One folder of a thread's own depth-first walk.
struct Frame {
    int fd = -1;               // -1 while closed to spare handles; reopened from a folder below it
    std::size_t pathEnd = 0;   // the thread's path holds its path up to here
    std::size_t nameStart = 0; // where its name starts in that path
    int level = 0;
    uintptr_t tag = 0;
    uintptr_t parentTag = 0;
    Stat stat;                 // its own facts: its identity when reopened, and for `leave`
    bool together = false;
    bool listed = false;       // its listing was read to the end
    int64_t resume = 0;        // where a listing cut short goes on
    std::string pending;       // subfolders not walked yet, each name ended by a zero byte
    std::size_t next = 0;      // the first of them not taken
};

// One run of a listing and the facts asked for it.
struct Asked {
    struct Listed {
        const char* name;
        int64_t offset;     // where the listing goes on after it
        unsigned char type; // as the listing gives it
        unsigned asked;     // its index in `names`, or StatBatch::capacity where nothing was asked
    };
    std::array<Listed, StatBatch::capacity> entries;
    std::array<const char*, StatBatch::capacity> names;
    std::array<struct statx, StatBatch::capacity> facts;
    std::array<int, StatBatch::capacity> errors;
};

class Worker {
public:
    Worker(Shared& s, Walker::Visitor& v)
        : shared(s), visitor(v), buffer(new char[Walker::listingBytes]), asked(std::make_unique<Asked>()) {}

    void run() {
        for (;;) {
            Job job;
            std::size_t root = 0;
            bool isRoot = false;
            {
                std::unique_lock guard(shared.lock);
                for (;;) {
                    if (shared.stopped) return;
                    if (!shared.queue.empty()) {
                        job = std::move(shared.queue.back());
                        shared.queue.pop_back();
                        --shared.queued;
                        break;
                    }
                    if (shared.nextRoot < shared.roots.size()) {
                        root = shared.nextRoot++;
                        isRoot = true;
                        break;
                    }
                    if (shared.busy == 0) {
                        shared.wake.notify_all();
                        return;
                    }
                    ++shared.waiting;
                    shared.wake.wait(guard);
                    --shared.waiting;
                }
                ++shared.busy;
            }
            if (isRoot) walkRoot(root);
            else walkJob(std::move(job));
            unwind();
            std::lock_guard guard(shared.lock);
            if (--shared.busy == 0 && shared.queue.empty() && shared.nextRoot == shared.roots.size())
                shared.wake.notify_all();
        }
    }

private:
    Shared& shared;
    Walker::Visitor& visitor;
    std::unique_ptr<char[]> buffer;
    std::unique_ptr<Asked> asked;
    StatBatch batch;
    static constexpr unsigned batchFrom = 16;
    std::string path;          // of the top frame
    std::vector<Frame> frames;
    std::size_t open = 0;      // frames with a handle
    std::size_t closedBelow = 1; // frames 1 .. closedBelow-1 hold no handle
    std::size_t emptyBelow = 0;  // frames below this have no subfolder left to hand out
    std::size_t root = 0;
    Stat rootStat;
    std::size_t counted = 0;

    bool stopping() {
        if (shared.stopped.load(std::memory_order_relaxed)) return true;
        if (++counted % 256 == 0 && shared.options.cancel && shared.options.cancel->isCancelled()) {
            shared.stopped = true;
            std::lock_guard guard(shared.lock);
            shared.wake.notify_all();
            return true;
        }
        return false;
    }

    void unwind() {
        for (Frame& f : frames)
            if (f.fd >= 0) close(f.fd);
        frames.clear();
        open = 0;
        closedBelow = 1;
        emptyBelow = 0;
        path.clear();
    }

    void closeFrame(Frame& f) {
        if (f.fd < 0) return;
        close(f.fd);
        f.fd = -1;
        --open;
    }

    // Keeps the thread's handles within bounds: the folders furthest down are closed first, but
    // never the first (which could not be reopened) nor the top (which is in use).
    void trim(std::size_t limit) {
        for (std::size_t& k = closedBelow; open > limit && k + 1 < frames.size(); ++k) closeFrame(frames[k]);
    }

    std::string_view nameOf(const Frame& f) const {
        return std::string_view(path).substr(f.nameStart, f.pathEnd - f.nameStart);
    }

    // Opens a folder inside `at`, making room when the process is out of handles.
    int openChild(int at, const char* name) {
        int fd = openat(at, name, openFlags);
        if (fd < 0 && (errno == EMFILE || errno == ENFILE)) {
            trim(1);
            fd = openat(at, name, openFlags);
        }
        return fd;
    }

    // Gives frame k a handle again, one step at a time from the nearest open folder below it,
    // never through a link; false when the way has changed since it was walked.
    bool reopen(std::size_t k) {
        if (frames[k].fd >= 0) return true;
        std::size_t j = k;
        while (j > 0 && frames[j].fd < 0) --j;
        if (frames[j].fd < 0) return false;
        closedBelow = std::max<std::size_t>(1, std::min(closedBelow, j + 1));
        for (std::size_t i = j + 1; i <= k; ++i) {
            std::string name(nameOf(frames[i]));
            int fd = openChild(frames[i - 1].fd, name.c_str());
            if (fd < 0) return false;
            Stat now;
            if (statFolder(fd, now) != 0 || now.device != frames[i].stat.device || now.inode != frames[i].stat.inode) {
                close(fd);
                return false;
            }
            frames[i].fd = fd;
            ++open;
        }
        trim(shared.handleLimit);
        return frames[k].fd >= 0;
    }

    void pushFrame(int fd, std::size_t nameStart, int level, const Walker::Enter& enter, uintptr_t parentTag,
                   const Stat& stat, bool together) {
        Frame f;
        f.fd = fd;
        f.pathEnd = path.size();
        f.nameStart = nameStart;
        f.level = level;
        f.tag = enter.tag;
        f.parentTag = parentTag;
        f.stat = stat;
        f.together = together || enter.together;
        frames.push_back(std::move(f));
        ++open;
        trim(shared.handleLimit);
    }

    void walkRoot(std::size_t index) {
        const Walker::Root& r = shared.roots[index];
        root = index;
        path = r.path;
        while (path.size() > 1 && path.back() == '/') path.pop_back();
        const std::size_t slash = path == "/" ? std::string::npos : path.rfind('/');
        const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
        const bool follow = shared.options.followRoot;

        Walker::Entry e;
        e.folder = folderOf(path, nameStart);
        e.name = std::string_view(path).substr(nameStart);
        e.root = index;
        e.tag = r.tag;
        Stat st;
        int fd = ::open(path.c_str(), follow ? openFlags & ~O_NOFOLLOW : openFlags);
        if (fd < 0) {
            const int error = errno;
            if (error == ENOENT) return;
            if (!statAt(AT_FDCWD, path.c_str(), follow ? AT_NO_AUTOMOUNT : statFlags, shared.mask | folderMask, st)) return;
            e.stat = &st;
            if (S_ISDIR(st.mode)) {
                e.error = error;
                visitor.folder(e, -1);
            } else {
                visitor.other(e);
            }
            return;
        }
        e.error = statFolder(fd, st);
        e.stat = &st;
        rootStat = st;
        auto enter = visitor.folder(e, e.error ? -1 : fd);
        if (!enter || e.error) {
            close(fd);
            return;
        }
        pushFrame(fd, nameStart, 0, *enter, r.tag, st, false);
        descend();
    }

    void walkJob(Job job) {
        root = job.root;
        rootStat = job.rootStat;
        path = std::move(job.path);
        Walker::Entry e;
        e.folder = folderOf(path, job.nameStart);
        e.name = std::string_view(path).substr(job.nameStart);
        e.level = job.level;
        e.root = job.root;
        e.tag = job.parentTag;
        Stat st;
        e.error = statFolder(job.fd, st);
        e.stat = &st;
        e.mountPoint = otherMount(st, rootStat);
        auto enter = visitor.folder(e, e.error || e.mountPoint ? -1 : job.fd);
        if (!enter || e.error || e.mountPoint) {
            close(job.fd);
            return;
        }
        pushFrame(job.fd, job.nameStart, job.level, *enter, job.parentTag, st, false);
        descend();
    }

    void descend() {
        while (!frames.empty()) {
            if (shared.stopped.load(std::memory_order_relaxed)) return;
            std::size_t top = frames.size() - 1;
            Frame& f = frames[top];
            if (f.next < f.pending.size()) {
                share();
                enterNext();
                continue;
            }
            if (!f.listed) {
                f.pending.clear();
                f.next = 0;
                if (!reopen(top)) f.listed = true;
                else list(frames[top]);
                continue;
            }
            leaveTop();
        }
    }

    void leaveTop() {
        Frame f = std::move(frames.back());
        frames.pop_back();
        closeFrame(f);
        closedBelow = std::max<std::size_t>(1, std::min(closedBelow, frames.size()));
        emptyBelow = std::min(emptyBelow, frames.size());
        if (f.together) {
            Walker::Entry e;
            e.folder = folderOf(path, f.nameStart);
            e.name = nameOf(f);
            e.level = f.level;
            e.root = root;
            e.tag = f.parentTag;
            e.stat = &f.stat;
            visitor.leave(e, f.tag);
        }
        path.resize(frames.empty() ? 0 : frames.back().pathEnd);
    }

    // Reads the top folder's listing: other entries go to the visitor at once, subfolders wait
    // in `pending`. A listing with very many subfolders is cut short and taken up again later.
    void list(Frame& f) {
        const int fd = f.fd;
        if (f.resume != 0 && lseek(fd, f.resume, SEEK_SET) < 0) {
            f.listed = true;
            return;
        }
        const Need need = shared.options.need;
        Walker::Entry e;
        e.folder = path;
        e.level = f.level + 1;
        e.root = root;
        e.tag = f.tag;
        e.at = fd;
        Stat st;
        Asked& a = *asked;
        for (;;) {
            ssize_t n = getdents64(fd, buffer.get(), Walker::listingBytes);
            if (n <= 0) {
                f.listed = true; // the end, or a folder that broke while read: what was read counts
                return;
            }
            for (ssize_t at = 0; at < n;) {
                // A run of entries, their facts asked all at once, then handed on in listing order.
                unsigned count = 0;
                unsigned asking = 0;
                for (; at < n && count < StatBatch::capacity;) {
                    auto* d = reinterpret_cast<dirent64*>(buffer.get() + at);
                    at += d->d_reclen;
                    if (dots(d->d_name)) continue;
                    const bool ask = d->d_type == DT_UNKNOWN || (d->d_type != DT_DIR && need != Need::names);
                    a.entries[count++] = {d->d_name, d->d_off, d->d_type, ask ? asking : StatBatch::capacity};
                    if (ask) a.names[asking++] = d->d_name;
                }
                askAll(fd, asking);
                for (unsigned i = 0; i < count; ++i) {
                    if (stopping()) return;
                    const Asked::Listed& l = a.entries[i];
                    unsigned char type = l.type;
                    const bool known = l.asked < StatBatch::capacity;
                    if (known) {
                        if (a.errors[l.asked] != 0) continue; // gone since the listing
                        fill(st, a.facts[l.asked]);
                        type = S_ISDIR(st.mode) ? DT_DIR : DT_REG;
                    }
                    if (type == DT_DIR) {
                        f.pending.append(l.name);
                        f.pending.push_back('\0');
                        if (f.pending.size() >= Walker::pendingBytes) {
                            f.resume = l.offset;
                            return;
                        }
                        continue;
                    }
                    e.name = l.name;
                    e.stat = known ? &st : nullptr;
                    visitor.other(e);
                }
            }
        }
    }

    // The facts of the first `count` names of `asked`, in one call where there are enough of
    // them to be worth it: a handful costs less asked one by one than handed to the kernel's workers.
    void askAll(int at, unsigned count) {
        Asked& a = *asked;
        if (count >= batchFrom && batch.ask(at, a.names.data(), count, statFlags, shared.mask, a.facts.data(), a.errors.data()))
            return;
        for (unsigned i = 0; i < count; ++i) a.errors[i] = statx(at, a.names[i], statFlags, shared.mask, &a.facts[i]) == 0 ? 0 : errno;
    }

    static std::string takePending(Frame& f) {
        std::string name(f.pending.c_str() + f.next);
        f.next += name.size() + 1;
        return name;
    }

    // A subfolder of `f` (whose path is `folder`), as a visitor first sees it.
    Walker::Entry childOf(const Frame& f, std::string_view folder, std::string_view name) const {
        Walker::Entry e;
        e.folder = folder;
        e.name = name;
        e.level = f.level + 1;
        e.root = root;
        e.tag = f.tag;
        e.at = f.fd;
        return e;
    }

    // Takes the next pending subfolder of the top frame and enters it.
    void enterNext() {
        const std::size_t top = frames.size() - 1;
        if (!reopen(top)) {
            frames[top].pending.clear();
            frames[top].next = 0;
            frames[top].listed = true;
            return;
        }
        Frame& parent = frames[top];
        if (parent.next >= parent.pending.size()) return; // handed to another thread meanwhile
        const std::string name = takePending(parent);
        Walker::Entry e = childOf(parent, path, name);
        if (!visitor.admit(e)) return;
        int fd = openChild(parent.fd, name.c_str());
        Stat st;
        if (fd < 0) {
            failed(e, parent.fd, errno, st);
            return;
        }
        e.error = statFolder(fd, st);
        e.stat = &st;
        e.mountPoint = otherMount(st, rootStat);
        auto enter = visitor.folder(e, e.error || e.mountPoint ? -1 : fd);
        if (!enter || e.error || e.mountPoint) {
            close(fd);
            return;
        }
        const uintptr_t parentTag = parent.tag;
        const bool together = parent.together;
        const int level = parent.level + 1;
        if (path.back() != '/') path.push_back('/');
        const std::size_t nameStart = path.size();
        path += name;
        pushFrame(fd, nameStart, level, *enter, parentTag, st, together);
    }

    // A subfolder that would not open: gone costs nothing; something else in its place (a link
    // swapped in) is an entry of its own, never followed; a folder we may not read is counted.
    void failed(Walker::Entry& e, int at, int error, Stat& st) {
        if (error == ENOENT) return;
        if (!statAt(at, std::string(e.name).c_str(), statFlags, shared.mask | folderMask, st)) return;
        e.stat = &st;
        if (!S_ISDIR(st.mode)) {
            visitor.other(e);
            return;
        }
        e.error = error;
        visitor.folder(e, -1);
    }

    // Hands subfolders to the threads that wait for work, one each, all at once: a thread left
    // waiting until the next folder here is listed would idle that long.
    void share() {
        for (;;) {
            const std::size_t waiting = shared.waiting.load(std::memory_order_relaxed);
            const std::size_t queued = shared.queued.load(std::memory_order_relaxed);
            if (waiting <= queued || queued >= shared.queueLimit || !shareOne()) return;
        }
    }

    // Hands on one subfolder, taken from the lowest folder that still has some: the biggest part
    // of the tree that is left. False where none could be.
    bool shareOne() {
        for (std::size_t k = emptyBelow; k < frames.size(); ++k) {
            Frame& f = frames[k];
            if (f.together) return false;
            if (f.next >= f.pending.size() && f.listed && k == emptyBelow) ++emptyBelow;
            if (f.fd < 0 || f.next >= f.pending.size()) continue;
            if (k + 1 == frames.size() && f.listed && f.next + std::strlen(f.pending.c_str() + f.next) + 1 >= f.pending.size())
                return false; // the top's last subfolder: walking it here is as quick
            const std::string name = takePending(f);
            const std::string_view folder = std::string_view(path).substr(0, f.pathEnd);
            Walker::Entry e = childOf(f, folder, name);
            if (!visitor.admit(e)) return false;
            int fd = openChild(f.fd, name.c_str());
            if (fd < 0) {
                Stat st;
                failed(e, f.fd, errno, st);
                return false;
            }
            Job job;
            job.fd = fd;
            job.path.reserve(folder.size() + 1 + name.size());
            job.path.assign(folder);
            if (job.path.back() != '/') job.path.push_back('/');
            job.nameStart = job.path.size();
            job.path += name;
            job.root = root;
            job.level = f.level + 1;
            job.parentTag = f.tag;
            job.rootStat = rootStat;
            std::lock_guard guard(shared.lock);
            shared.queue.push_back(std::move(job));
            ++shared.queued;
            shared.wake.notify_one();
            return true;
        }
        return false;
    }
};

// A thread whose facts go through a ring sleeps while the kernel's worker for that ring looks
// the names up, one after the other: two such threads per core keep every core busy. A walk of
// names alone asks almost nothing of the ring.
std::size_t defaultThreads(Need need) {
    const std::size_t width = parallelWidth();
    return need != Need::names && StatBatch::available() ? 2 * width : width;
}

} // namespace

std::string Walker::Entry::path() const {
    if (folder.empty()) return std::string(name);
    std::string out;
    out.reserve(folder.size() + 1 + name.size());
    out.assign(folder);
    if (out.back() != '/') out.push_back('/');
    out += name;
    return out;
}

std::vector<std::unique_ptr<Walker::Visitor>> Walker::run(const std::vector<Root>& roots, const Options& options,
                                                          const std::function<std::unique_ptr<Visitor>()>& make) {
    const std::size_t threads = std::max<std::size_t>(1, options.threads ? options.threads : defaultThreads(options.need));
    std::vector<std::unique_ptr<Visitor>> visitors;
    visitors.reserve(threads);
    for (std::size_t i = 0; i < threads; ++i) visitors.push_back(make());

    Shared shared(roots, options);
    shared.mask = maskFor(options.need);
    // Half of the process's handles at most, whatever else it has open.
    struct rlimit limit {};
    std::size_t budget = 1024;
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
        budget = static_cast<std::size_t>(limit.rlim_cur) / 2;
    shared.handleLimit = std::clamp<std::size_t>(budget / (2 * threads), 3, handlesPerThread);
    shared.queueLimit = std::clamp<std::size_t>(budget / 4, 1, queuedFolders);

    parallelRunApart(threads, [&](std::size_t t) { Worker(shared, *visitors[t]).run(); });
    for (Job& job : shared.queue) close(job.fd); // left by a cancelled walk
    return visitors;
}
