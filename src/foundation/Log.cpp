#include "foundation/Log.h"

#include "foundation/AtomicFile.h"
#include "foundation/Text.h"
#include "foundation/Time.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

namespace Log {

const std::optional<std::string>& path() {
    static const std::optional<std::string> value = []() -> std::optional<std::string> {
        const char* v = std::getenv("FENNELBOX_LOG");
        if (!v) return std::nullopt;
        return std::string(v);
    }();
    return value;
}

void note(std::string_view text) {
    if (const auto& p = path()) noteTo(*p, text);
}

void noteTo(const std::string& file, std::string_view text) {
    std::string line = Text::format("%.2f ", secondsSince1970(Clock::now()));
    line += Text::repairUtf8(text);
    line += '\n';
    int fd = open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd >= 0) {
        // One write per line, so lines from several threads do not cut into each other.
        [[maybe_unused]] ssize_t n = ::write(fd, line.data(), line.size());
        close(fd);
        return;
    }
    // Not there yet: the line becomes the whole file. A missing folder is not made.
    [[maybe_unused]] bool ok = AtomicFile::write(file, line, /*makeFolder=*/false);
}

} // namespace Log
