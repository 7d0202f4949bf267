#pragma once
// Parsers of the text files of /proc and /sys. Each takes the text as read, so that saved files
// from real machines (odd names, a missing final newline) serve as test fixtures, and each
// answers absent or empty rather than guessing when the text is not what it expects.
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ProcText {

// /proc/PID/stat. The command name sits in parentheses and may itself hold blanks and
// parentheses, so the fields after it are counted from the last ')'.
struct Stat {
    int32_t pid = 0;
    std::string name;
    char state = '?';
    int32_t ppid = 0;
    uint64_t flags = 0;
    uint64_t utime = 0;      // clock ticks
    uint64_t stime = 0;      // clock ticks
    uint64_t startTicks = 0; // clock ticks after boot
};
[[nodiscard]] std::optional<Stat> stat(std::string_view text);
constexpr uint64_t kernelThreadFlag = 0x00200000; // PF_KTHREAD

// A /proc link (exe, cwd) to a file or folder that was removed reads "<path> (deleted)".
// Drops the marker and tells whether it was there.
bool dropDeletedMark(std::string& path);

// /proc/PID/status: the effective user and the private memory.
struct Status {
    std::optional<uint32_t> uid; // effective user id
    int64_t rssAnon = 0;         // bytes
    int64_t vmSwap = 0;          // bytes
};
[[nodiscard]] Status status(std::string_view text);

// /proc/meminfo as bytes by key ("MemTotal" -> bytes); values in kB are converted.
[[nodiscard]] std::map<std::string, int64_t, std::less<>> meminfo(std::string_view text);

// The "cpu" line of /proc/stat: busy = user+nice+system+irq+softirq+steal, total = busy+idle+iowait.
struct CpuTicks {
    uint64_t busy = 0;
    uint64_t total = 0;
};
[[nodiscard]] std::optional<CpuTicks> cpu(std::string_view procStat);
// "btime" of /proc/stat: boot time in seconds since 1970.
[[nodiscard]] std::optional<int64_t> bootTime(std::string_view procStat);

// /proc/pressure/memory: the avg10 shares of "some" and "full".
struct Pressure {
    double some10 = 0;
    double full10 = 0;
};
[[nodiscard]] std::optional<Pressure> pressure(std::string_view text);

// mem_used_total of a zram device's mm_stat: the memory its compressed pages take.
[[nodiscard]] std::optional<int64_t> zramUsed(std::string_view mmStat);

// One counter of /proc/vmstat.
[[nodiscard]] std::optional<int64_t> vmstat(std::string_view text, std::string_view key);

// Listening sockets of /proc/net/tcp or tcp6: socket inode to local port, rows in state 0A only.
[[nodiscard]] std::map<uint64_t, int> listeningSockets(std::string_view text);
// The inode of an fd link "socket:[N]".
[[nodiscard]] std::optional<uint64_t> socketInode(std::string_view link);

// The unified hierarchy's path of /proc/PID/cgroup: the "0::" line.
[[nodiscard]] std::optional<std::string> cgroupPath(std::string_view text);

// A decimal number of the whole (trimmed) text.
[[nodiscard]] std::optional<int64_t> number(std::string_view text);

} // namespace ProcText
