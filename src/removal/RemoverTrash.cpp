#include "removal/Remover.h"

#include "foundation/FS.h"
#include "platform/Trash.h"
#include "removal/Eraser.h"
#include "removal/RemoverTrashMove.h"
#include "removal/Wording.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace Remover {

namespace {

constexpr double dryRunTrashPause = 0.6;
constexpr double dryRunEmptyPause = 1.2;

bool missing(int e) { return e == ENOENT || e == ENOTDIR; }

std::string trashSentence(const Trash::Outcome& out, const std::string& path, const Context& context) {
    std::string what = Wording::shown(path, context.home);
    std::string folder = Wording::shown(out.folder, context.home);
    std::string why = Wording::reason(out.error);
    switch (out.step) {
    case Trash::Step::none: return {};
    case Trash::Step::look: return "Could not reach " + what + ": " + why + ".";
    case Trash::Step::makeFolder: return "Could not make the Trash folder " + folder + ": " + why + ".";
    case Trash::Step::writeInfo: return "Could not write to the Trash folder " + folder + ": " + why + ".";
    case Trash::Step::alreadyThere: return "It is in the Trash already.";
    case Trash::Step::occupied: return "Something new is already where it was.";
    case Trash::Step::move:
        if (out.error == EXDEV)
            return "Could not move " + what + " to the Trash: it lies on another disk than " + folder + ".";
        return "Could not move " + what + " to the Trash: " + why + ".";
    }
    return why;
}

// Empties one Trash folder's files/ and info/; the first errno that kept something, or 0.
int emptyFolder(const std::string& folder, bool& left) {
    int first = 0;
    auto note = [&](int e) {
        left = true;
        if (first == 0) first = e;
    };
    int trashFd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (trashFd < 0) {
        if (!missing(errno)) note(errno);
        return first;
    }
    for (const char* part : {"files", "info"}) {
        int fd = openat(trashFd, part, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (fd < 0) {
            if (!missing(errno)) note(errno);
            continue;
        }
        Eraser::Outcome out = Eraser::empty(fd);
        close(fd);
        if (!out.gone) note(out.error);
    }
    // The file managers' cache of folder sizes describes entries that are gone now.
    if (Eraser::Outcome out = Eraser::eraseAt(trashFd, "directorysizes"); !out.gone) note(out.error);
    close(trashFd);
    return first;
}

} // namespace

Trashed moveToTrash(const std::string& path, const Context& context) {
    Trash::Outcome out = Trash::put(path, context.trash);
    if (out.ok()) return {out.moved, std::nullopt};
    return {std::nullopt, trashSentence(out, path, context)};
}

Trashed trash(const std::string& path, const Context& context) {
    if (!isSafe(path, context)) return {std::nullopt, "Sorrelin only moves things inside your own folders."};
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0) {
        int e = errno;
        if (missing(e)) return {std::nullopt, "It is not there any more."};
        return {std::nullopt, "Could not reach " + Wording::shown(path, context.home) + ": " + Wording::reason(e) + "."};
    }
    if (context.dryRun.on) {
        if (context.pause) context.pause(dryRunTrashPause);
        if (context.dryRun.fails) return {std::nullopt, "it pretended to fail (dry run)"};
        return {path, std::nullopt};
    }
    return moveToTrash(path, context);
}

std::optional<std::string> putBack(const std::string& moved, const std::string& to, const Context& context) {
    if (context.dryRun.on) return std::nullopt;
    // Only a place that could have been trashed from is a place to put back to.
    if (!isSafe(to, context)) return "Sorrelin only moves things inside your own folders.";
    Trash::Outcome out = Trash::restore(moved, to);
    if (out.ok()) return std::nullopt;
    if (out.step == Trash::Step::look && missing(out.error)) return "It is not in the Trash any more.";
    if (out.step == Trash::Step::move || out.step == Trash::Step::makeFolder)
        return "Could not put " + Wording::shown(to, context.home) + " back: " + Wording::reason(out.error) + ".";
    return trashSentence(out, moved, context);
}

std::optional<std::string> emptyTrash(const Context& context) {
    if (context.dryRun.on) {
        if (context.pause) context.pause(dryRunEmptyPause);
        if (context.dryRun.fails) return "The Trash pretended not to empty (dry run).";
        return std::nullopt;
    }
    bool left = false;
    int first = 0;
    const std::string mounts = FS::readText(context.mountinfo).value_or("");
    for (const auto& folder : Trash::folders(context.trash, mounts)) {
        int e = emptyFolder(folder, left);
        if (first == 0) first = e;
    }
    if (!left) return std::nullopt;
    return "Some things stayed in the Trash: " + Wording::reason(first) + ".";
}

} // namespace Remover
