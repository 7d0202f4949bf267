#include "app/LoginItem.h"

#include "foundation/AtomicFile.h"
#include "foundation/FS.h"
#include "foundation/Log.h"

#include <string_view>

#include <unistd.h>

namespace LoginItem {

std::string execArgument(const std::string& path) {
    // Characters that make the desktop entry format read an argument differently.
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    std::string arg = path;
    if (path.empty() || path.find_first_of(reserved) != std::string::npos) {
        arg = "\"";
        for (char c : path) {
            if (c == '"' || c == '`' || c == '$' || c == '\\') arg += '\\';
            arg += c;
        }
        arg += '"';
    }
    // Then the rules of every value of the file: a literal percent sign written twice, and the
    // string escapes, which double the backslashes of the quoting too.
    std::string out;
    for (char c : arg) {
        if (c == '%') out += "%%";
        else if (c == '\\') out += "\\\\";
        else if (c == '\n') out += "\\n";
        else if (c == '\t') out += "\\t";
        else if (c == '\r') out += "\\r";
        else out += c;
    }
    return out;
}

std::string entry(const std::string& executable) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Sorrelin\n"
           "Comment=Watches your disk and what slows the computer, from the tray\n"
           "Exec=" + execArgument(executable) + " --background\n"
           "Icon=app.sorrelin.Sorrelin\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

bool isEnabled(const std::string& file) { return FS::exists(file); }

void set(const std::string& file, bool on, const std::string& executable) {
    if (on) {
        if (executable.empty()) return;
        if (!AtomicFile::write(file, entry(executable))) Log::note("login item not written: " + file);
    } else if (::unlink(file.c_str()) != 0 && FS::exists(file)) {
        Log::note("login item not removed: " + file);
    }
}

bool isInstalledCopy(const std::string& executable, const std::string& home) {
    if (executable.empty() || executable[0] != '/') return false;
    const std::string folder = executable.substr(0, executable.rfind('/'));
    // A build folder, wherever it lies, has its cache beside the program or one level up.
    const std::string parent = folder.substr(0, folder.rfind('/'));
    if (FS::exists(folder + "/CMakeCache.txt") || FS::exists(parent + "/CMakeCache.txt")) return false;
    if (executable.starts_with("/usr/") || executable.starts_with("/opt/")) return true;
    return !home.empty() && home != "/" && executable.starts_with(home + "/.local/");
    return false;
}

bool shouldOffer(SettingsStore& standard, const std::string& executable, const std::string& home) {
    if (!isInstalledCopy(executable, home) || standard.boolValue(offeredKey)) return false;
    standard.set(offeredKey, true);
    return true;
}

} // namespace LoginItem
