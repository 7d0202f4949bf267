#include "support/LoopMount.h"

#include "support/RunProgram.h"

#include <unistd.h>

#include <sstream>
#include <vector>

namespace {

// The first of the usual places where a system tool lies, or nothing.
std::optional<std::string> tool(const std::string& name) {
    for (const char* dir : {"/usr/sbin/", "/sbin/", "/usr/bin/", "/bin/"})
        if (std::string p = dir + name; access(p.c_str(), X_OK) == 0) return p;
    return std::nullopt;
}

} // namespace

LoopMount::LoopMount(int64_t bytes, int reservedPercent) {
    if (geteuid() != 0) {
        reason = "mounting a loop device needs root";
        return;
    }
    auto mkfs = tool("mkfs.ext4");
    auto mount = tool("mount");
    if (!mkfs || !mount) {
        reason = "mkfs.ext4 or mount is not installed";
        return;
    }
    std::string image = scratch.path("volume.img");
    if (truncate(scratch.file("volume.img").c_str(), bytes) != 0) {
        reason = "cannot size the image " + image;
        return;
    }
    // Initialised in full now, so no background job changes the counts while a test reads them.
    auto made = runProgram(*mkfs, {"-q", "-F", "-m", std::to_string(reservedPercent), "-E",
                                   "lazy_itable_init=0,lazy_journal_init=0", image}, {}, 120);
    if (made.status != 0) {
        reason = "mkfs.ext4 failed: " + made.err;
        return;
    }
    scratch.dir("mnt");
    auto done = runProgram(*mount, {"-o", "loop", image, point()}, {}, 60);
    if (done.status != 0) {
        reason = "this machine cannot loop-mount an image: " + done.err;
        return;
    }
    mounted = true;
}

LoopMount::~LoopMount() {
    // A loop device set up by mount is released by the unmount.
    if (mounted)
        if (auto umount = tool("umount")) (void)runProgram(*umount, {point()}, {}, 60);
}

std::optional<DfFigures> dfOf(const std::string& path) {
    auto df = tool("df");
    if (!df) return std::nullopt;
    auto run = runProgram(*df, {"-B1", "--output=size,used,avail", path}, {}, 60);
    if (run.status != 0) return std::nullopt;
    std::istringstream in(run.out);
    std::string header;
    std::getline(in, header);
    DfFigures f;
    if (!(in >> f.size >> f.used >> f.available)) return std::nullopt;
    return f;
}
