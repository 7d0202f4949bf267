#include "platform/PackageDatabase.h"

#include "foundation/FS.h"
#include "foundation/Parallel.h"
#include "foundation/Text.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstring>
#include <mutex>
#include <unordered_set>
#include <vector>

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
                // Only the few fields read here are copied: a status file has tens of thousands of lines.
                std::string_view key = line.substr(0, colon);
                auto value = [&] { return Text::trim(line.substr(colon + 1)); };
                if (key == "Package") p.package = value();
                else if (key == "Architecture") p.architecture = value();
                else if (key == "Status") p.status = value();
                else if (key == "Multi-Arch") p.multiArch = value();
                else if (key == "Installed-Size") {
                    const std::string v = value();
                    int64_t n = 0;
                    auto [ptr, ec] = std::from_chars(v.data(), v.data() + v.size(), n);
                    if (ec == std::errc() && n >= 0) p.size = n * 1024;
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
    // The lists hold millions of bytes of paths, and almost no line has the length of one asked
    // for: that test comes before any lookup.
    const std::unordered_set<std::string_view> wanted(paths.begin(), paths.end());
    std::vector<bool> lengths;
    for (const std::string& p : paths) {
        if (p.size() >= lengths.size()) lengths.resize(p.size() + 1);
        lengths[p.size()] = true;
    }
    std::vector<std::string> lists;
    for (std::string& name : FS::children(infoDir))
        if (name.ends_with(".list")) lists.push_back(std::move(name));

    // Opening and reading a thousand small files costs more in calls than in reading: the lists
    // are read in parts side by side, and all stop once every path has its owner.
    const std::size_t parts = std::min<std::size_t>(lists.size(), 8);
    std::vector<std::map<std::string, std::string>> partFound(parts);
    std::mutex lock;
    std::set<std::string_view> anyFound; // under `lock`
    std::atomic<bool> done{false};
    parallelFor(parts, [&](std::size_t part) {
        std::string room; // one buffer for all the lists of a part
        for (std::size_t i = part; i < lists.size() && !done.load(std::memory_order_relaxed); i += parts) {
            const std::string& name = lists[i];
            auto text = FS::readInto(infoDir + "/" + name, room, 64 << 20);
            if (!text) continue;
            const char* at = text->data();
            const char* const end = at + text->size();
            while (at < end) {
                const char* stop = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
                if (!stop) stop = end;
                const auto length = static_cast<std::size_t>(stop - at);
                if (length < lengths.size() && lengths[length])
                    if (auto it = wanted.find(std::string_view(at, length)); it != wanted.end()) {
                        partFound[part].emplace(std::string(*it), name.substr(0, name.size() - 5));
                        std::lock_guard guard(lock);
                        anyFound.insert(*it);
                        if (anyFound.size() == paths.size()) done = true;
                    }
                at = stop + 1;
            }
        }
    });
    // Where two lists read name one path (a diverted file), the one first in the folder wins.
    std::map<std::string, std::size_t> order;
    for (std::size_t i = 0; i < lists.size(); ++i) order.emplace(lists[i].substr(0, lists[i].size() - 5), i);
    for (auto& part : partFound)
        for (auto& [path, package] : part) {
            auto [it, made] = found.try_emplace(path, package);
            if (!made && order[package] < order[it->second]) it->second = package;
        }
    return found;
}

} // namespace PackageDatabase
