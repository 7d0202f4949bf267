#include "platform/ExeImage.h"

#include "foundation/FS.h"
#include "platform/linux/ProcText.h"

#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

namespace ExeImages {

std::optional<ExeImage> of(int32_t pid) { return of("/proc", pid); }

std::optional<ExeImage> of(const std::string& procRoot, int32_t pid) {
    const std::string link = procRoot + "/" + std::to_string(pid) + "/exe";
    auto path = FS::readLink(link);
    if (!path) return std::nullopt;
    ExeImage image;
    image.path = std::move(*path);
    if (ProcText::dropDeletedMark(image.path)) {
        image.stale = true;
        return image;
    }
    // The link itself resolves to the running image; the path to whatever lies there now.
    struct stat running {}, onDisk {};
    if (stat(link.c_str(), &running) != 0 || stat(image.path.c_str(), &onDisk) != 0) return std::nullopt;
    image.stale = running.st_ino != onDisk.st_ino || running.st_dev != onDisk.st_dev;
    return image;
}

} // namespace ExeImages
