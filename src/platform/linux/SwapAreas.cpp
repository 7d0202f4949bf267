#include "platform/SwapAreas.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <algorithm>
#include <charconv>

namespace SwapAreas {

namespace {

// /proc files escape blanks, tabs, newlines and backslashes in paths as three octal digits.
std::string unescape(std::string_view s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        bool octal = s[i] == '\\' && i + 3 < s.size();
        if (octal)
            for (std::size_t k = 1; k <= 3; ++k) octal = octal && s[i + k] >= '0' && s[i + k] <= '7';
        if (octal) {
            out += static_cast<char>((s[i + 1] - '0') * 64 + (s[i + 2] - '0') * 8 + (s[i + 3] - '0'));
            i += 3;
        } else {
            out += s[i];
        }
    }
    return out;
}

int64_t kib(std::string_view s) {
    int64_t v = 0;
    auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
    if (ec != std::errc() || ptr != s.data() + s.size() || v < 0) return 0;
    return v * 1024;
}

std::vector<std::string_view> fields(std::string_view line) {
    std::vector<std::string_view> out;
    std::size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
        std::size_t start = i;
        while (i < line.size() && line[i] != ' ' && line[i] != '\t') ++i;
        if (i > start) out.push_back(line.substr(start, i - start));
    }
    return out;
}

} // namespace

std::vector<Area> parse(std::string_view text) {
    std::vector<Area> areas;
    bool header = true;
    for (const auto& line : Text::split(text, '\n')) {
        if (header) {
            header = false;
            if (line.starts_with("Filename")) continue;
        }
        auto f = fields(line);
        if (f.size() < 4) continue;
        areas.push_back(Area{unescape(f[0]), std::string(f[1]), kib(f[2]), kib(f[3])});
    }
    return areas;
}

std::vector<Area> read(const std::string& path) {
    auto text = FS::readText(path, 1 << 16);
    if (!text) return {};
    return parse(*text);
}

bool inMemory(const Area& area) { return area.path.starts_with("/dev/zram"); }

} // namespace SwapAreas
