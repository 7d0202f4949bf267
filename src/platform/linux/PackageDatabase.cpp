#include "platform/PackageDatabase.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <charconv>

namespace PackageDatabase {

namespace {

struct Paragraph {
    std::string package, architecture, status, multiArch;
    int64_t size = -1;
};

template <typename Each>
void paragraphs(std::string_view text, Each each) {
    Paragraph p;
    auto flush = [&] {
        if (!p.package.empty()) each(p);
        p = Paragraph{};
    };
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty()) flush();
        else if (line.front() != ' ' && line.front() != '\t') {
            auto colon = line.find(':');
            if (colon != std::string_view::npos) {
                std::string_view key = line.substr(0, colon);
                std::string value = Text::trim(line.substr(colon + 1));
                if (key == "Package") p.package = value;
                else if (key == "Architecture") p.architecture = value;
                else if (key == "Status") p.status = value;
                else if (key == "Multi-Arch") p.multiArch = value;
                else if (key == "Installed-Size") {
                    int64_t v = 0;
                    auto [ptr, ec] = std::from_chars(value.data(), value.data() + value.size(), v);
                    if (ec == std::errc() && v >= 0) p.size = v * 1024;
                }
            }
        }
        if (end == text.size()) break;
        start = end + 1;
    }
    flush();
}

bool installed(const Paragraph& p) { return p.status.ends_with(" installed") && p.status.starts_with("install"); }

} // namespace

std::map<std::string, int64_t> parseStatus(std::string_view text) {
    std::map<std::string, int64_t> sizes;
    paragraphs(text, [&](const Paragraph& p) {
        if (!installed(p)) return;
        int64_t size = p.size < 0 ? 0 : p.size;
        sizes.emplace(p.package, size);
        if (!p.architecture.empty()) sizes[p.package + ":" + p.architecture] = size;
    });
    return sizes;
}

std::map<std::string, int64_t> readStatus(const std::string& statusFile) {
    auto text = FS::readText(statusFile, 256 << 20);
    if (!text) return {};
    return parseStatus(*text);
}

int64_t totalSize(std::string_view text) {
    int64_t total = 0;
    paragraphs(text, [&](const Paragraph& p) {
        if (installed(p) && p.size > 0) total += p.size;
    });
    return total;
}

std::map<std::string, std::string> owners(const std::string& infoDir, const std::set<std::string, std::less<>>& paths) {
    std::map<std::string, std::string> found;
    if (paths.empty()) return found;
    std::string room; // one buffer for all the lists: there are thousands of them
    for (const std::string& name : FS::children(infoDir)) {
        if (!name.ends_with(".list")) continue;
        auto text = FS::readInto(infoDir + "/" + name, room, 64 << 20);
        if (!text) continue;
        std::string package = name.substr(0, name.size() - 5);
        std::string_view all = *text;
        std::size_t start = 0;
        while (start < all.size()) {
            std::size_t end = all.find('\n', start);
            if (end == std::string_view::npos) end = all.size();
            std::string_view line = all.substr(start, end - start);
            if (auto it = paths.find(line); it != paths.end()) found.emplace(*it, package);
            start = end + 1;
        }
        if (found.size() == paths.size()) break;
    }
    return found;
}

} // namespace PackageDatabase
