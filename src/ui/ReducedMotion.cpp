#include "ui/ReducedMotion.h"

#include "foundation/FS.h"
#include "foundation/Shell.h"
#include "foundation/Text.h"

#include <QStandardPaths>

#include <charconv>
#include <fstream>
#include <sstream>

namespace ReducedMotion {

std::optional<bool> fromGnome(std::string_view output) {
    std::string v = Text::trim(output);
    if (v == "false") return true;
    if (v == "true") return false;
    return std::nullopt;
}

std::optional<bool> fromKde(std::string_view text) {
    std::string group;
    for (const std::string& raw : Text::split(text, '\n')) {
        std::string line = Text::trim(raw);
        if (line.empty() || line[0] == '#' || line[0] == ';') continue;
        if (line.front() == '[') {
            group = line;
            continue;
        }
        if (group != "[KDE]") continue;
        auto eq = line.find('=');
        if (eq == std::string::npos || Text::trim(line.substr(0, eq)) != "AnimationDurationFactor") continue;
        std::string value = Text::trim(line.substr(eq + 1));
        double factor = 0;
        auto [end, err] = std::from_chars(value.data(), value.data() + value.size(), factor);
        if (err != std::errc() || end != value.data() + value.size()) return std::nullopt;
        return factor <= 0;
    }
    return std::nullopt;
}

namespace {

std::optional<bool> readGnome() {
    QString gsettings = QStandardPaths::findExecutable(QStringLiteral("gsettings"));
    if (gsettings.isEmpty()) return std::nullopt;
    Shell::Output out = Shell::run(gsettings.toStdString(), {"get", "org.gnome.desktop.interface", "enable-animations"}, 2);
    if (out.status != 0) return std::nullopt;
    return fromGnome(out.text);
}

std::optional<bool> readKde() {
    std::ifstream in(FS::xdgFolder("XDG_CONFIG_HOME", "/.config") + "/kdeglobals");
    if (!in) return std::nullopt;
    std::ostringstream text;
    text << in.rdbuf();
    return fromKde(text.str());
}

} // namespace

bool system() {
    static const bool reduced = readKde().value_or(false) || readGnome().value_or(false);
    return reduced;
}

} // namespace ReducedMotion
