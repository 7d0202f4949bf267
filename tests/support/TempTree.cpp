#include "support/TempTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace fs = std::filesystem;

TempTree::TempTree() {
    std::string pattern = (fs::temp_directory_path() / "sorrelin-test-XXXXXX").string();
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    if (!mkdtemp(buf.data())) throw std::runtime_error("mkdtemp failed");
    base = buf.data();
}

TempTree::~TempTree() {
    std::error_code ec;
    // Tests may leave folders without permissions; give them back before removing.
    for (auto it = fs::recursive_directory_iterator(base, fs::directory_options::skip_permission_denied, ec);
         !ec && it != fs::recursive_directory_iterator(); it.increment(ec)) {
        if (it->is_directory(ec) && !it->is_symlink(ec)) chmod(it->path().c_str(), 0755);
    }
    chmod(base.c_str(), 0755);
    fs::remove_all(base, ec);
    // Paths longer than the system allows (a very deep chain) defeat remove_all; rm walks by handles.
    if (ec && fs::exists(base)) [[maybe_unused]] int status = std::system(("rm -rf '" + base + "'").c_str());
}

std::string TempTree::path(std::string_view relative) const {
    if (relative.empty()) return base;
    if (relative.front() == '/') return base + std::string(relative);
    return base + "/" + std::string(relative);
}

std::string TempTree::dir(std::string_view relative) const {
    std::string p = path(relative);
    fs::create_directories(p);
    return p;
}

std::string TempTree::file(std::string_view relative, int64_t size) const {
    std::string p = path(relative);
    fs::create_directories(fs::path(p).parent_path());
    int fd = open(p.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0) throw std::runtime_error("cannot create " + p);
    // Big files get their blocks by fallocate: allocated like written data, but quick to make.
    if (size >= (1 << 22) && posix_fallocate(fd, 0, size) == 0) {
        close(fd);
        return p;
    }
    std::vector<char> chunk(1 << 20, 'x');
    int64_t left = size;
    while (left > 0) {
        auto n = static_cast<std::size_t>(std::min<int64_t>(left, static_cast<int64_t>(chunk.size())));
        if (::write(fd, chunk.data(), n) != static_cast<ssize_t>(n)) break;
        left -= static_cast<int64_t>(n);
    }
    close(fd);
    return p;
}

std::string TempTree::text(std::string_view relative, std::string_view content) const {
    std::string p = path(relative);
    fs::create_directories(fs::path(p).parent_path());
    int fd = open(p.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0) throw std::runtime_error("cannot create " + p);
    [[maybe_unused]] auto n = ::write(fd, content.data(), content.size());
    close(fd);
    return p;
}

std::string TempTree::hardLink(std::string_view existing, std::string_view link) const {
    std::string p = path(link);
    fs::create_directories(fs::path(p).parent_path());
    fs::create_hard_link(path(existing), p);
    return p;
}

std::string TempTree::symLink(std::string_view target, std::string_view link) const {
    std::string p = path(link);
    fs::create_directories(fs::path(p).parent_path());
    fs::create_symlink(std::string(target), p);
    return p;
}

void TempTree::age(std::string_view relative, double secondsAgo) const {
    timeval now{};
    gettimeofday(&now, nullptr);
    timeval times[2];
    times[0].tv_sec = now.tv_sec - static_cast<time_t>(secondsAgo);
    times[0].tv_usec = 0;
    times[1] = times[0];
    lutimes(path(relative).c_str(), times);
}

std::string TempTree::reserved(std::string_view relative, int64_t size) const {
    const std::string p = path(relative);
    std::filesystem::create_directories(std::filesystem::path(p).parent_path());
    int fd = open(p.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0 || posix_fallocate(fd, 0, size) != 0) {
        if (fd >= 0) close(fd);
        throw std::runtime_error("cannot reserve " + p);
    }
    close(fd);
    return p;
}

bool TempTree::dateAt(std::string_view relative, int64_t seconds) const {
    const std::string p = path(relative);
    timespec times[2] = {{static_cast<time_t>(seconds), 0}, {static_cast<time_t>(seconds), 0}};
    struct stat st {};
    return utimensat(AT_FDCWD, p.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0 && lstat(p.c_str(), &st) == 0 &&
           st.st_mtim.tv_sec == seconds;
}

int64_t allocatedSize(const std::string& p) {
    struct stat st {};
    if (lstat(p.c_str(), &st) != 0) return 0;
    return static_cast<int64_t>(st.st_blocks) * 512;
}
