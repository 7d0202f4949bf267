#include "removal/Wording.h"

#include "foundation/FS.h"
#include "foundation/Text.h"

#include <cctype>
#include <cerrno>
#include <cstring>

namespace Wording {

std::string shown(std::string_view path, std::string_view home) {
    std::string repaired = Text::repairUtf8(FS::tilde(path, home));
    std::string out;
    out.reserve(repaired.size());
    for (char c : repaired) {
        auto u = static_cast<unsigned char>(c);
        if (u < 0x20 || u == 0x7F) out += "\xEF\xBF\xBD";
        else out += c;
    }
    return out;
}

std::string reason(int error) {
    switch (error) {
    case 0: return "it came back while it was being removed";
    case EXDEV: return "another disk is mounted inside it";
    default: break;
    }
    char buffer[256];
    std::string text = strerror_r(error, buffer, sizeof buffer);
    // "Permission denied" reads "permission denied"; "I/O error" keeps its capitals.
    if (text.size() > 1 && std::isupper(static_cast<unsigned char>(text[0])) &&
        !std::isupper(static_cast<unsigned char>(text[1])) && text[1] != '/')
        text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

} // namespace Wording
