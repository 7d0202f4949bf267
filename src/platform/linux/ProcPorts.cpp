#include "platform/linux/ProcPorts.h"

#include "foundation/FS.h"
#include "platform/linux/AppUnits.h"
#include "platform/linux/ProcText.h"

#include <dirent.h>
#include <unistd.h>

#include <map>

namespace ProcPorts {

std::vector<int> listening(const std::string& procRoot, int32_t pid) {
    const std::string base = procRoot + "/" + std::to_string(pid);
    std::map<uint64_t, int> sockets;
    for (const char* table : {"/net/tcp", "/net/tcp6"})
        if (auto text = FS::readText(base + table, 16 << 20))
            for (const auto& [inode, port] : ProcText::listeningSockets(*text)) sockets[inode] = port;
    if (sockets.empty()) return {};

    std::set<int> ports;
    const std::string fdDir = base + "/fd";
    DIR* dir = opendir(fdDir.c_str());
    if (!dir) return {};
    while (dirent* e = readdir(dir)) {
        if (e->d_name[0] == '.') continue;
        auto link = FS::readLink(fdDir + "/" + e->d_name);
        if (!link) continue;
        if (auto inode = ProcText::socketInode(*link))
            if (auto it = sockets.find(*inode); it != sockets.end()) ports.insert(it->second);
    }
    closedir(dir);
    return {ports.begin(), ports.end()};
}

std::optional<std::string> cwd(const std::string& procRoot, int32_t pid) {
    auto link = FS::readLink(procRoot + "/" + std::to_string(pid) + "/cwd");
    if (!link || link->empty()) return std::nullopt;
    ProcText::dropDeletedMark(*link);
    return link;
}

std::set<int32_t> managedServices(const std::string& procRoot, uint32_t uid) {
    std::set<int32_t> pids;
    for (const auto& name : FS::children(procRoot)) {
        if (name.empty() || name.find_first_not_of("0123456789") != std::string::npos) continue;
        const std::string base = procRoot + "/" + name;
        auto status = FS::readText(base + "/status", 1 << 16);
        if (!status) continue;
        auto owner = ProcText::status(*status).uid;
        if (!owner || *owner != uid) continue;
        auto cgroup = FS::readText(base + "/cgroup", 1 << 16);
        if (!cgroup) continue;
        auto path = ProcText::cgroupPath(*cgroup);
        if (path && AppUnits::isManagedService(*path, uid))
            if (auto pid = ProcText::number(name); pid && *pid > 0 && *pid <= INT32_MAX) pids.insert(static_cast<int32_t>(*pid));
    }
    return pids;
}

} // namespace ProcPorts
