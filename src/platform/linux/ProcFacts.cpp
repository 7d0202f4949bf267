// Process facts for the scan, read from /proc. A process whose facts cannot be read (another
// user's, or one that ended meanwhile) is simply absent.
#include "foundation/FS.h"
#include "foundation/Text.h"
#include "platform/linux/ProcText.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace FS {

namespace {

bool isPid(std::string_view name) {
    if (name.empty()) return false;
    for (char c : name)
        if (c < '0' || c > '9') return false;
    return true;
}

} // namespace

std::vector<ProcInfo> processes() { return processes("/proc", getuid(), getpid()); }

std::vector<ProcInfo> processes(const std::string& procRoot, uint32_t uid, int32_t self) {
    std::vector<ProcInfo> list;
    DIR* dir = opendir(procRoot.c_str());
    if (!dir) return list;
    while (dirent* e = readdir(dir)) {
        std::string_view name = e->d_name;
        if (!isPid(name)) continue;
        int32_t pid = static_cast<int32_t>(std::strtol(e->d_name, nullptr, 10));
        if (pid <= 0 || pid == self) continue;
        std::string base = procRoot + "/" + std::string(name);
        struct stat st {};
        if (stat(base.c_str(), &st) != 0 || st.st_uid != uid) continue;
        auto statText = readText(base + "/stat", 4096);
        if (!statText) continue;
        if (auto stat = ProcText::stat(*statText); !stat || (stat->flags & ProcText::kernelThreadFlag)) continue;
        auto cwd = FS::readLink(base + "/cwd");
        if (!cwd) continue;
        ProcInfo info;
        info.pid = pid;
        auto comm = readText(base + "/comm", 256);
        info.name = comm ? Text::trim(*comm) : std::string();
        info.cwd = *cwd;
        if (auto exe = FS::readLink(base + "/exe")) {
            ProcText::dropDeletedMark(*exe);
            info.exe = *exe;
        }
        list.push_back(std::move(info));
    }
    closedir(dir);
    return list;
}

std::vector<std::string> arguments(int32_t pid) { return arguments("/proc", pid); }

std::vector<std::string> arguments(const std::string& procRoot, int32_t pid) {
    std::vector<std::string> args;
    auto text = readText(procRoot + "/" + std::to_string(pid) + "/cmdline", 1 << 20);
    if (!text || text->empty()) return args;
    std::string_view rest = *text;
    if (rest.back() == '\0') rest.remove_suffix(1);
    std::size_t start = 0;
    while (start <= rest.size()) {
        std::size_t at = rest.find('\0', start);
        if (at == std::string_view::npos) at = rest.size();
        args.push_back(Text::repairUtf8(rest.substr(start, at - start)));
        start = at + 1;
    }
    return args;
}

std::optional<std::vector<std::string>> openPaths(int32_t pid) { return openPaths("/proc", pid); }

std::optional<std::vector<std::string>> openPaths(const std::string& procRoot, int32_t pid) {
    std::string fdDir = procRoot + "/" + std::to_string(pid) + "/fd";
    DIR* dir = opendir(fdDir.c_str());
    if (!dir) return std::nullopt;
    std::vector<std::string> paths;
    while (dirent* e = readdir(dir)) {
        if (e->d_name[0] == '.') continue;
        auto target = FS::readLink(fdDir + "/" + e->d_name);
        // Sockets, pipes and anonymous inodes are not paths.
        if (target && !target->empty() && target->front() == '/') paths.push_back(std::move(*target));
    }
    closedir(dir);
    return paths;
}

} // namespace FS
