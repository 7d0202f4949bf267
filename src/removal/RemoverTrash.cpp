#include "removal/Remover.h"

#include "foundation/FS.h"
#include "platform/Trash.h"
#include "removal/Eraser.h"
#include "removal/RemoverReach.h"
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
    case Trash::Step::link:
        return "The way to the Trash folder " + folder + " runs through a symbolic link, so Sorrelin leaves it alone.";
    case Trash::Step::outside:
        return "The Trash folder " + folder + " lies outside your home folder, so Sorrelin does not use it.";
    case Trash::Step::move:
        if (out.error == EXDEV)
            return "Could not move " + what + " to the Trash: it lies on another disk than " + folder + ".";
        return "Could not move " + what + " to the Trash: " + why + ".";
    }
    return why;
}

// The sentence for a path whose way runs through a link.
std::string linkSentence(const std::string& link, const Context& context) {
    return "Sorrelin does not follow " + Wording::shown(link, context.home) + ": it is a symbolic link.";
}

// The Trash folders whose contents an empty clears: the user's own, reached from the home
// folder, and those of the writable mounts, reached from their tops.
std::vector<Trash::Folder> trashFolders(const Context& context) {
    const std::string mounts = FS::readText(context.mountinfo).value_or("");
    return Trash::folders({context.home, context.trash}, mounts);
}

// Empties one Trash folder's files/ and info/; the first errno that kept something, or 0.
int emptyFolder(const Trash::Folder& folder, bool& left) {
    int first = 0;
    auto note = [&](int e) {
        left = true;
        if (first == 0) first = e;
    };
    Beneath::Opened trash = Trash::open(folder);
    if (!trash.ok()) {
        if (trash.throughLink) note(ELOOP);
        else if (!missing(trash.error)) note(trash.error);
        return first;
    }
    for (const char* part : {"files", "info"}) {
        Fd fd(openat(trash.fd.get(), part, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!fd) {
            if (!missing(errno)) note(errno == ENOTDIR ? ELOOP : errno);
            continue;
        }
        Eraser::Outcome out = Eraser::empty(fd.get());
        if (!out.gone) note(out.error);
    }
    // The file managers' cache of folder sizes describes entries that are gone now.
    if (Eraser::Outcome out = Eraser::eraseAt(trash.fd.get(), "directorysizes"); !out.gone) note(out.error);
    return first;
}

} // namespace

Trashed moveToTrash(const Reached& reached, const std::string& path, const Context& context) {
    Trash::Outcome out = Trash::put(reached.folder(), reached.name(), path, {context.home, context.trash});
    if (out.ok()) return {out.moved, std::nullopt};
    return {std::nullopt, trashSentence(out, path, context)};
}

Trashed trash(const std::string& path, const Context& context) {
    if (!isSafe(path, context)) return {std::nullopt, "Sorrelin only moves things inside your own folders."};
    Reached r = reach(path, context);
    if (r.link) return {std::nullopt, linkSentence(*r.link, context)};
    int e = r.missing ? ENOENT : r.error ? r.error : look(r);
    if (missing(e)) return {std::nullopt, "It is not there any more."};
    if (e) return {std::nullopt, "Could not reach " + Wording::shown(path, context.home) + ": " + Wording::reason(e) + "."};
    if (context.dryRun.on) {
        if (context.pause) context.pause(dryRunTrashPause);
        if (context.dryRun.fails) return {std::nullopt, "it pretended to fail (dry run)"};
        return {path, std::nullopt};
    }
    return moveToTrash(r, path, context);
}

std::optional<std::string> putBack(const std::string& moved, const std::string& to, const Context& context) {
    if (context.dryRun.on) return std::nullopt;
    // Only a place that could have been trashed from is a place to put back to, and only what
    // lies in one of the user's Trash folders comes back.
    if (!isSafe(to, context)) return "Sorrelin only moves things inside your own folders.";
    auto holder = Trash::holder(moved, {context.home, context.trash});
    if (!holder) return "It is not in the Trash any more.";
    Reached r = reach(to, context, /*make=*/true);
    if (r.link) return linkSentence(*r.link, context);
    if (!r.where.ok())
        return "Could not put " + Wording::shown(to, context.home) + " back: " + Wording::reason(r.error ? r.error : ENOENT) + ".";
    Trash::Outcome out = Trash::restore(holder->first, holder->second, r.folder(), r.name(), to);
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
    for (const auto& folder : trashFolders(context)) {
        int e = emptyFolder(folder, left);
        if (first == 0) first = e;
    }
    if (!left) return std::nullopt;
    if (first == ELOOP) return "Some things stayed in the Trash: the way to a Trash folder runs through a symbolic link.";
    return "Some things stayed in the Trash: " + Wording::reason(first) + ".";
}

} // namespace Remover
