#include "platform/DesktopEntry.h"

#include "foundation/Text.h"

#include <sys/stat.h>
#include <unistd.h>

namespace DesktopEntries {

namespace {

// The general escapes of a string value: \s \n \t \r \\.
std::string unescapeValue(std::string_view v) {
    std::string out;
    out.reserve(v.size());
    for (std::size_t i = 0; i < v.size(); ++i) {
        if (v[i] != '\\' || i + 1 == v.size()) {
            out += v[i];
            continue;
        }
        char c = v[++i];
        switch (c) {
        case 's': out += ' '; break;
        case 'n': out += '\n'; break;
        case 't': out += '\t'; break;
        case 'r': out += '\r'; break;
        case '\\': out += '\\'; break;
        default:
            out += '\\';
            out += c;
        }
    }
    return out;
}

bool truthy(std::string_view v) { return v == "true" || v == "1"; }

} // namespace

std::vector<std::string> splitExec(std::string_view value) {
    std::vector<std::string> args;
    std::string current;
    bool inArg = false, quoted = false;
    for (std::size_t i = 0; i < value.size(); ++i) {
        char c = value[i];
        if (quoted) {
            if (c == '\\' && i + 1 < value.size()) {
                current += value[++i];
            } else if (c == '"') {
                quoted = false;
            } else {
                current += c;
            }
            continue;
        }
        if (c == '"') {
            quoted = inArg = true;
            continue;
        }
        if (c == ' ' || c == '\t') {
            if (inArg) args.push_back(std::move(current));
            current.clear();
            inArg = false;
            continue;
        }
        current += c;
        inArg = true;
    }
    if (inArg) args.push_back(std::move(current));

    // Field codes stand for files, URLs and the like that a launch fills in: drop them.
    std::vector<std::string> kept;
    for (auto& a : args) {
        if (a.size() == 2 && a[0] == '%') {
            if (a[1] == '%') kept.emplace_back("%");
            continue;
        }
        kept.push_back(Text::replaceAll(std::move(a), "%%", "%"));
    }
    return kept;
}

std::string programOf(const std::vector<std::string>& exec, std::string_view searchPath) {
    std::size_t i = 0;
    if (!exec.empty() && (exec[0] == "env" || exec[0] == "/usr/bin/env")) {
        ++i;
        while (i < exec.size() && (exec[i].find('=') != std::string::npos || exec[i].starts_with("-"))) {
            if (exec[i] == "-u" || exec[i] == "--unset" || exec[i] == "-C" || exec[i] == "--chdir") ++i; // takes a value
            ++i;
        }
    }
    if (i >= exec.size()) return {};
    const std::string& program = exec[i];
    if (program.empty()) return {};
    if (program.front() == '/') return program;
    if (program.find('/') != std::string::npos) return {};
    for (const auto& dir : Text::split(searchPath, ':')) {
        std::string candidate = dir + "/" + program;
        struct stat st {};
        if (stat(candidate.c_str(), &st) == 0 && S_ISREG(st.st_mode) && access(candidate.c_str(), X_OK) == 0)
            return candidate;
    }
    return {};
}

std::string idFor(std::string_view relativePath) {
    std::string id(relativePath);
    if (id.ends_with(".desktop")) id.resize(id.size() - 8);
    for (char& c : id)
        if (c == '/') c = '-';
    return id;
}

std::optional<DesktopEntry> parse(std::string_view text, std::string id, std::string path) {
    DesktopEntry e;
    e.id = std::move(id);
    e.path = std::move(path);
    bool inMain = false, sawMain = false;
    std::string type;
    std::string execLine;
    for (const auto& rawLine : Text::split(text, '\n')) {
        std::string line = Text::trim(rawLine);
        if (line.empty() || line.front() == '#') continue;
        if (line.front() == '[') {
            inMain = line == "[Desktop Entry]";
            sawMain = sawMain || inMain;
            continue;
        }
        if (!inMain) continue;
        auto eq = line.find('=');
        if (eq == std::string::npos) continue;
        std::string key = Text::trim(std::string_view(line).substr(0, eq));
        if (key.find('[') != std::string::npos) continue; // localised variants: the plain key stands
        std::string value = unescapeValue(Text::trim(std::string_view(line).substr(eq + 1)));
        if (key == "Type") type = value;
        else if (key == "Name") e.name = value;
        else if (key == "GenericName") e.genericName = value;
        else if (key == "Icon") e.icon = value;
        else if (key == "StartupWMClass") e.startupWMClass = value;
        else if (key == "Exec") execLine = value;
        else if (key == "TryExec") e.tryExec = value;
        else if (key == "X-Flatpak") e.flatpak = value;
        else if (key == "Categories") e.categories = Text::split(value, ';');
        else if (key == "NoDisplay") e.noDisplay = truthy(value);
        else if (key == "Hidden") e.hidden = truthy(value);
        else if (key == "DBusActivatable") e.dbusActivatable = truthy(value);
        else if (key == "Terminal") e.terminal = truthy(value);
    }
    if (!sawMain || type != "Application") return std::nullopt;
    e.name = Text::repairUtf8(e.name);
    e.exec = splitExec(execLine);
    return e;
}

} // namespace DesktopEntries
