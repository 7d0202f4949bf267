#include "storage/StorageText.h"

#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "foundation/Text.h"

namespace StorageText {

std::string remainderLabel(Platform platform) {
    return platform == Platform::macos ? "macOS and the rest: " : "The system and the rest: ";
}

int64_t swapShown(const StorageReport& report, int64_t swapUsed) { return report.vm ? *report.vm : swapUsed; }

std::string text(const StorageReport& r, int64_t swapUsed, Platform platform, const std::string& home, double seconds) {
    std::string out;
    auto line = [&](const std::string& s) {
        out += s;
        out += '\n';
    };
    line(Fmt::bytes(r.diskUsed) + " used of " + Fmt::bytes(r.diskTotal) + ", " + Fmt::bytes(r.measured()) +
         " measured in " + std::to_string(r.files) + " files, swap " + Fmt::bytes(swapUsed));
    line(remainderLabel(platform) + Fmt::bytes(r.remainder(r.diskUsed, swapShown(r, swapUsed))));
    if (r.diskReserved > 0) line(std::string(reservedLabel) + Fmt::bytes(r.diskReserved));
    for (const auto& c : r.categories) {
        std::string head = Text::fit(StorageKinds::title(c.kind, platform), 22) + Fmt::bytes(c.bytes);
        if (c.unreadable > 0) head += "  (" + std::to_string(c.unreadable) + " unreadable)";
        line("");
        line(head);
        for (const auto& item : c.items) {
            std::string row = "    " + Text::fit(Fmt::bytes(item.bytes), 10) + Text::visible(item.name);
            if (item.detail) row += "  · " + Text::visible(*item.detail);
            else if (item.path.starts_with("/")) row += "  · " + Text::visible(FS::tilde(item.path, home));
            line(row);
        }
    }
    line("\n== Biggest files ==");
    for (const auto& f : r.biggest)
        line(Text::fit(Fmt::bytes(f.bytes), 10) + Text::fit(FileKinds::title(f.kind), 13) +
             Text::visible(FS::tilde(f.path, home)));
    line("\n== Apps " + std::to_string(r.apps.size()) + " ==");
    for (const auto& a : r.apps) {
        std::string row = Text::fit(a.name, 30) + Text::fit(Fmt::bytes(a.total()), 10) + " app " + Fmt::bytes(a.appBytes) +
                          " data " + Fmt::bytes(a.dataBytes);
        if (a.lastUsed) row += " used " + Fmt::dayMonth(*a.lastUsed);
        line(row);
    }
    line(Text::format("\ntook %.1f s", seconds));
    return out;
}

} // namespace StorageText
