#include "support/TreeListing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <vector>

namespace {

uint64_t contentHash(const std::string& path) {
    uint64_t h = 1469598103934665603ULL; // FNV-1a
    int fd = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0) return 0;
    char buf[1 << 16];
    ssize_t n;
    while ((n = read(fd, buf, sizeof buf)) > 0)
        for (ssize_t i = 0; i < n; ++i) h = (h ^ static_cast<unsigned char>(buf[i])) * 1099511628211ULL;
    close(fd);
    return h;
}

void list(const std::string& root, const std::string& rel, std::string& out) {
    std::string folder = rel.empty() ? root : root + "/" + rel;
    DIR* dir = opendir(folder.c_str());
    if (!dir) {
        out += rel + " <unreadable>\n";
        return;
    }
    std::vector<std::string> names;
    while (dirent* e = readdir(dir)) {
        std::string n = e->d_name;
        if (n != "." && n != "..") names.push_back(n);
    }
    closedir(dir);
    std::sort(names.begin(), names.end());
    for (const auto& n : names) {
        std::string r = rel.empty() ? n : rel + "/" + n;
        std::string p = root + "/" + r;
        struct stat st {};
        if (lstat(p.c_str(), &st) != 0) {
            out += r + " <gone>\n";
            continue;
        }
        out += r + " mode " + std::to_string(st.st_mode) + " links " + std::to_string(st.st_nlink);
        if (S_ISREG(st.st_mode)) {
            out += " size " + std::to_string(st.st_size) + " hash " + std::to_string(contentHash(p)) + "\n";
        } else if (S_ISLNK(st.st_mode)) {
            char target[4096];
            ssize_t k = readlink(p.c_str(), target, sizeof target);
            out += " -> " + std::string(target, k > 0 ? static_cast<std::size_t>(k) : 0) + "\n";
        } else if (S_ISDIR(st.st_mode)) {
            out += "\n";
            list(root, r, out);
        } else {
            out += "\n";
        }
    }
}

void write(const std::string& path, std::size_t size, char seed) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream f(path, std::ios::binary);
    for (std::size_t i = 0; i < size; ++i) f.put(static_cast<char>(seed + static_cast<char>(i % 61)));
}

} // namespace

std::string treeListing(const std::string& root) {
    std::string out;
    list(root, "", out);
    return out;
}

void plantCanary(const std::string& root) {
    write(root + "/tmpstuff/keep.txt", 1000, 'a');
    write(root + "/tmpstuff/deep/er/file.bin", 300000, 'b');
    write(root + "/usrstuff/b.iso", 2'000'000, 'c');
    write(root + "/usrstuff/lib/x.so", 4096, 'd');
    write(root + "/one", 5, 'e');
    std::filesystem::create_directories(root + "/empty");
    ::link((root + "/one").c_str(), (root + "/tmpstuff/one-again").c_str());
    ::symlink("../usrstuff", (root + "/tmpstuff/up").c_str());
}
