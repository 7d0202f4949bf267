#include "scan/BuildFolders.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <algorithm>
#include <map>

namespace BuildFolders {

namespace {

bool isDeployOutput(std::string_view dir) {
    std::string suffix = "/" + std::string(deployDir) + "/" + std::string(deployOutput);
    return dir.ends_with(suffix);
}

} // namespace

std::string projectRoot(const std::string& dir, const std::string& home) {
    std::string parent = FS::parent(dir);
    if (isDeployOutput(dir)) parent = FS::parent(parent);
    const std::string below = home + "/";
    std::string cur = parent;
    for (int step = 0; step < 5; ++step) {
        if (FS::exists(cur + "/.git")) return cur;
        std::string next = FS::parent(cur);
        // A folder directly in the home folder is never a root: a stray ".git" in ~/Documents
        // must not swallow every project below it.
        if (next == home || FS::parent(next) == home || !next.starts_with(below)) return parent;
        cur = next;
    }
    return parent;
}

std::string label(const std::string& dir) {
    if (isDeployOutput(dir)) return std::string(deployDir) + "/" + std::string(deployOutput);
    return FS::lastComponent(dir);
}

std::string joinLabels(const std::vector<std::string>& dirs) {
    std::map<std::string, int> counts;
    for (const auto& d : dirs) ++counts[label(d)];
    std::vector<std::string> parts;
    auto shown = [&](const std::string& name, int n) { return n > 1 ? name + " ×" + std::to_string(n) : name; };
    if (auto it = counts.find("node_modules"); it != counts.end()) parts.push_back(shown(it->first, it->second));
    for (const auto& [name, n] : counts)
        if (name != "node_modules") parts.push_back(shown(name, n));
    return Text::join(parts, " + ");
}

std::string word(const std::string& processName, const std::vector<ScanTables::BusyWord>& rules) {
    using Match = ScanTables::BusyWord::Match;
    for (const auto& rule : rules) {
        bool hit = false;
        switch (rule.match) {
        case Match::exact: hit = processName == rule.text; break;
        case Match::prefix: hit = processName.starts_with(rule.text); break;
        case Match::lowerPrefix: hit = Text::lower(processName).starts_with(rule.text); break;
        }
        if (hit) return rule.word;
    }
    return processName;
}

std::string busyWord(const std::set<std::string>& words, const std::vector<std::string>& order) {
    for (const auto& w : order)
        if (words.contains(w)) return w;
    if (!words.empty()) return *words.begin();
    return "a program";
}

} // namespace BuildFolders
