// The least a walk of a tree can cost on this machine: every core lists folders and asks each
// entry's facts with plain calls, and does nothing else (no links, no rules, no limits on
// handles). `bench/walks.sh` runs it beside the reports, so that their throughput can be read
// against what the machine gives on that day, not only against `du`.
//   sorrelin_walk_limit FOLDER [THREADS]   prints: entries, seconds, M entries/s
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <vector>

namespace {

struct Folders {
    std::mutex lock;
    std::condition_variable wake;
    std::vector<int> open; // listed by nobody yet
    int busy = 0;
};

long walk(Folders& folders) {
    std::vector<char> buffer(64 * 1024);
    std::vector<int> found;
    long entries = 0;
    for (;;) {
        int fd = -1;
        {
            std::unique_lock guard(folders.lock);
            folders.wake.wait(guard, [&] { return !folders.open.empty() || folders.busy == 0; });
            if (folders.open.empty()) break;
            fd = folders.open.back();
            folders.open.pop_back();
            ++folders.busy;
        }
        for (;;) {
            const ssize_t n = getdents64(fd, buffer.data(), buffer.size());
            if (n <= 0) break;
            for (ssize_t at = 0; at < n;) {
                const auto* d = reinterpret_cast<const dirent64*>(buffer.data() + at);
                at += d->d_reclen;
                const char* name = d->d_name;
                if (name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0))) continue;
                ++entries;
                struct stat st {};
                if (d->d_type == DT_DIR) {
                    const int child = openat(fd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
                    if (child >= 0 && fstat(child, &st) == 0) found.push_back(child);
                    else if (child >= 0) close(child);
                } else {
                    fstatat(fd, name, &st, AT_SYMLINK_NOFOLLOW);
                }
            }
        }
        close(fd);
        std::lock_guard guard(folders.lock);
        folders.open.insert(folders.open.end(), found.begin(), found.end());
        found.clear();
        --folders.busy;
        folders.wake.notify_all();
    }
    return entries;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER [THREADS]\n", argv[0]);
        return 2;
    }
    const unsigned threads = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : std::thread::hardware_concurrency();
    Folders folders;
    const int root = open(argv[1], O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (root < 0) {
        std::perror(argv[1]);
        return 1;
    }
    folders.open.push_back(root);
    const auto start = std::chrono::steady_clock::now();
    std::vector<long> counts(std::max(1u, threads));
    {
        std::vector<std::jthread> running;
        for (std::size_t t = 0; t < counts.size(); ++t) running.emplace_back([&, t] { counts[t] = walk(folders); });
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    long entries = 0;
    for (long c : counts) entries += c;
    std::printf("%ld entries %.3f s %.2f M entries/s\n", entries, seconds, static_cast<double>(entries) / seconds / 1e6);
    return 0;
}
