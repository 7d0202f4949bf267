#include "platform/linux/ProcText.h"

#include "foundation/Text.h"

#include <charconv>

namespace ProcText {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Blank-separated fields of one line (a stray line feed counts as a blank).
std::vector<std::string_view> fields(std::string_view line) {
    std::vector<std::string_view> out;
    std::size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && isBlank(line[i])) ++i;
        std::size_t start = i;
        while (i < line.size() && !isBlank(line[i])) ++i;
        if (i > start) out.push_back(line.substr(start, i - start));
    }
    return out;
}

std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> out;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        out.push_back(line);
        start = end + 1;
    }
    return out;
}

template <typename T> std::optional<T> parse(std::string_view s, int base = 10) {
    T value{};
    auto [end, err] = std::from_chars(s.data(), s.data() + s.size(), value, base);
    if (err != std::errc() || end != s.data() + s.size()) return std::nullopt;
    return value;
}

} // namespace

std::optional<Stat> stat(std::string_view text) {
    auto open = text.find('(');
    auto close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) return std::nullopt;
    Stat s;
    auto pid = parse<int32_t>(Text::trim(text.substr(0, open)));
    if (!pid) return std::nullopt;
    s.pid = *pid;
    s.name = Text::repairUtf8(text.substr(open + 1, close - open - 1));
    auto f = fields(text.substr(close + 1));
    // f[0] is field 3 (state); field n sits at f[n - 3]. Field 22 (start time) is the last one needed.
    if (f.size() < 20 || f[0].size() != 1) return std::nullopt;
    auto ppid = parse<int32_t>(f[1]);
    auto flags = parse<uint64_t>(f[6]);
    auto utime = parse<uint64_t>(f[11]);
    auto stime = parse<uint64_t>(f[12]);
    auto start = parse<uint64_t>(f[19]);
    if (!ppid || !flags || !utime || !stime || !start) return std::nullopt;
    s.state = f[0][0];
    s.ppid = *ppid;
    s.flags = *flags;
    s.utime = *utime;
    s.stime = *stime;
    s.startTicks = *start;
    return s;
}

Status status(std::string_view text) {
    Status s;
    for (auto line : lines(text)) {
        auto colon = line.find(':');
        if (colon == std::string_view::npos) continue;
        std::string_view key = line.substr(0, colon);
        auto f = fields(line.substr(colon + 1));
        if (key == "Uid") {
            // real, effective, saved, file system
            if (f.size() >= 2)
                if (auto v = parse<uint32_t>(f[1])) s.uid = *v;
        } else if (key == "RssAnon" || key == "VmSwap") {
            if (f.empty()) continue;
            auto v = parse<int64_t>(f[0]);
            if (!v) continue;
            int64_t bytes = *v * (f.size() > 1 && f[1] == "kB" ? 1024 : 1);
            (key == "RssAnon" ? s.rssAnon : s.vmSwap) = bytes;
        }
    }
    return s;
}

std::map<std::string, int64_t, std::less<>> meminfo(std::string_view text) {
    std::map<std::string, int64_t, std::less<>> out;
    for (auto line : lines(text)) {
        auto colon = line.find(':');
        if (colon == std::string_view::npos) continue;
        auto f = fields(line.substr(colon + 1));
        if (f.empty()) continue;
        auto v = parse<int64_t>(f[0]);
        if (!v) continue;
        out[std::string(line.substr(0, colon))] = *v * (f.size() > 1 && f[1] == "kB" ? 1024 : 1);
    }
    return out;
}

std::optional<CpuTicks> cpu(std::string_view procStat) {
    for (auto line : lines(procStat)) {
        auto f = fields(line);
        if (f.empty() || f[0] != "cpu") continue;
        // user nice system idle iowait irq softirq steal [guest guest_nice]; guest time is
        // already inside user and nice.
        if (f.size() < 5) return std::nullopt;
        uint64_t v[8] = {};
        for (std::size_t i = 0; i < 8 && i + 1 < f.size(); ++i) {
            auto n = parse<uint64_t>(f[i + 1]);
            if (!n) return std::nullopt;
            v[i] = *n;
        }
        CpuTicks t;
        t.busy = v[0] + v[1] + v[2] + v[5] + v[6] + v[7];
        t.total = t.busy + v[3] + v[4];
        return t;
    }
    return std::nullopt;
}

std::optional<int64_t> bootTime(std::string_view procStat) {
    for (auto line : lines(procStat)) {
        auto f = fields(line);
        if (f.size() == 2 && f[0] == "btime") return parse<int64_t>(f[1]);
    }
    return std::nullopt;
}

std::optional<Pressure> pressure(std::string_view text) {
    Pressure p;
    bool some = false;
    for (auto line : lines(text)) {
        auto f = fields(line);
        if (f.size() < 2) continue;
        for (std::size_t i = 1; i < f.size(); ++i) {
            if (!f[i].starts_with("avg10=")) continue;
            std::string value(f[i].substr(6));
            char* end = nullptr;
            double v = std::strtod(value.c_str(), &end);
            if (end == value.c_str()) continue;
            if (f[0] == "some") {
                p.some10 = v;
                some = true;
            } else if (f[0] == "full") {
                p.full10 = v;
            }
        }
    }
    if (!some) return std::nullopt;
    return p;
}

bool dropDeletedMark(std::string& path) {
    constexpr std::string_view deleted = " (deleted)";
    if (!std::string_view(path).ends_with(deleted)) return false;
    path.resize(path.size() - deleted.size());
    return true;
}

std::optional<int64_t> zramUsed(std::string_view mmStat) {
    // orig_data_size compr_data_size mem_used_total ...
    auto f = fields(mmStat);
    if (f.size() < 3) return std::nullopt;
    return parse<int64_t>(f[2]);
}

std::optional<int64_t> vmstat(std::string_view text, std::string_view key) {
    for (auto line : lines(text)) {
        auto f = fields(line);
        if (f.size() == 2 && f[0] == key) return parse<int64_t>(f[1]);
    }
    return std::nullopt;
}

std::map<uint64_t, int> listeningSockets(std::string_view text) {
    std::map<uint64_t, int> out;
    for (auto line : lines(text)) {
        // sl local_address rem_address st tx:rx tr:when retrnsmt uid timeout inode ...
        auto f = fields(line);
        if (f.size() < 10 || f[3] != "0A") continue;
        auto colon = f[1].rfind(':');
        if (colon == std::string_view::npos) continue;
        auto port = parse<int>(f[1].substr(colon + 1), 16);
        auto inode = parse<uint64_t>(f[9]);
        if (!port || !inode || *inode == 0) continue;
        out[*inode] = *port;
    }
    return out;
}

std::optional<uint64_t> socketInode(std::string_view link) {
    constexpr std::string_view head = "socket:[";
    if (!link.starts_with(head) || !link.ends_with("]")) return std::nullopt;
    return parse<uint64_t>(link.substr(head.size(), link.size() - head.size() - 1));
}

std::optional<std::string> cgroupPath(std::string_view text) {
    for (auto line : lines(text))
        if (line.starts_with("0::")) return std::string(line.substr(3));
    return std::nullopt;
}

std::optional<int64_t> number(std::string_view text) { return parse<int64_t>(Text::trim(text)); }

} // namespace ProcText
