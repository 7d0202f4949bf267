#include "removal/Remover.h"

#include "foundation/FS.h"
#include "foundation/Shell.h"
#include "foundation/Text.h"
#include "platform/Layout.h"
#include "removal/Eraser.h"
#include "removal/RemoverReach.h"
#include "removal/RemoverTrashMove.h"
#include "removal/Wording.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace Remover {

namespace {

constexpr double commandTimeout = 900;
constexpr double dryRunBytesPerSecond = 8'000'000'000;
constexpr double dryRunLongestPause = 1.2;
constexpr double dryRunPauseExtra = 0.35;

int rank(const Removal& r) {
    switch (r.kind) {
    case Removal::Kind::deleteForGood: return 0;
    case Removal::Kind::trash: return 1;
    case Removal::Kind::command: return 2;
    }
    return 2;
}

bool missing(int e) { return e == ENOENT || e == ENOTDIR; }

void pause(const Context& context, double seconds) {
    if (context.pause) context.pause(seconds);
}

// Why something is left after a delete: a running app when the item was marked open, some
// other writer otherwise, unless the system named a cause that no writer explains.
std::string partly(const CleanItem& item, int error) {
    switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EXDEV:
    case EBUSY:
    case ENAMETOOLONG:
    case EIO: return "partly cleared, " + Wording::reason(error);
    default: break;
    }
    if (Text::contains(item.note, "open now")) return "partly cleared, the app is still open";
    return "partly cleared, something is still writing to it";
}

// Why a path that passed the guards cannot be touched; nothing when it can, or is gone.
std::optional<std::string> unreachable(const std::string& path, const Reached& r, const Context& context) {
    const std::string shown = Wording::shown(path, context.home);
    if (r.link) return "refused to touch " + shown + ": " + Wording::shown(*r.link, context.home) + " is a symbolic link";
    if (r.error) return "could not reach " + shown + ", " + Wording::reason(r.error);
    return std::nullopt;
}

std::optional<std::string> deletePaths(const CleanItem& item, const Context& context) {
    for (const auto& path : item.paths) {
        if (!isSafe(path, context)) return "refused to touch " + Wording::shown(path, context.home);
        Reached r = reach(path, context);
        if (auto problem = unreachable(path, r, context)) return problem;
        if (r.missing) continue; // what is gone is gone
        if (int e = look(r)) {
            if (missing(e)) continue;
            return "could not reach " + Wording::shown(path, context.home) + ", " + Wording::reason(e);
        }
        Eraser::Outcome out = Eraser::eraseAt(r.folder(), r.name());
        if (out.gone) continue;
        // A second, independent try; rm does not follow links and is kept on this disk. It is
        // given the folder already reached, through this process's handle of it, so that no
        // link swapped in on the way since can lead it elsewhere.
        const std::string held = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(r.folder()) + "/" + r.name();
        (void)Shell::run("/bin/rm", {"-rf", "--one-file-system", "--", held}, commandTimeout);
        if (missing(look(r))) continue;
        return partly(item, out.error);
    }
    return std::nullopt;
}

std::optional<std::string> trashPaths(const CleanItem& item, const Context& context) {
    for (const auto& path : item.paths) {
        if (!isSafe(path, context)) return "refused to touch " + Wording::shown(path, context.home);
        Reached r = reach(path, context);
        if (auto problem = unreachable(path, r, context)) return problem;
        if (r.missing || missing(look(r))) continue;
        if (auto problem = moveToTrash(r, path, context).problem) return problem;
    }
    return std::nullopt;
}

std::optional<std::string> runCommand(const std::vector<std::string>& arguments) {
    if (arguments.empty()) return std::nullopt;
    std::vector<std::string> rest(arguments.begin() + 1, arguments.end());
    Shell::Output out = Shell::run(arguments.front(), rest, commandTimeout);
    if (out.status == 0) return std::nullopt;
    auto lines = Text::split(out.text, '\n');
    for (auto it = lines.rbegin(); it != lines.rend(); ++it) {
        std::string line = Text::trim(*it);
        if (!line.empty()) return line;
    }
    return "exited with " + std::to_string(out.status);
}

} // namespace

Context Context::forLayout(const Layout& layout, DryRun::Mode dryRun) {
    Context c;
    c.allowedRoots = {layout.home};
    c.protectedPaths = layout.removal.protectedPaths;
    c.home = layout.home;
    c.trash = layout.trash;
    c.dryRun = dryRun;
    return c;
}

Context& context() {
    static Context process = Context::forLayout(Layout::host(), DryRun::Mode{DryRun::on(), DryRun::fails()});
    return process;
}

std::vector<std::string>& allowedRoots() { return context().allowedRoots; }

std::vector<CleanItem> order(std::vector<CleanItem> items) {
    std::stable_sort(items.begin(), items.end(),
                     [](const CleanItem& a, const CleanItem& b) { return rank(a.removal) < rank(b.removal); });
    return items;
}

RemovalResult run(const std::vector<CleanItem>& items, const Progress& progress, const Context& context) {
    RemovalResult result;
    const std::vector<CleanItem> ordered = order(items);
    const int count = static_cast<int>(ordered.size());
    for (int i = 0; i < count; ++i) {
        const CleanItem& item = ordered[static_cast<std::size_t>(i)];
        if (progress) progress(i, item.name);
        std::optional<std::string> problem;
        if (context.dryRun.on) {
            double size = static_cast<double>(std::max<int64_t>(item.size, 0));
            pause(context, std::min(size / dryRunBytesPerSecond, dryRunLongestPause) + dryRunPauseExtra);
            if (context.dryRun.fails && i % 2 == 1) problem = "dry run, pretended to fail";
            else if (item.removal.isTrash()) result.trashedBytes += item.size;
            else result.pretendFreed += item.size;
        } else if (item.removal.isDelete()) {
            problem = deletePaths(item, context);
        } else if (item.removal.isTrash()) {
            problem = trashPaths(item, context);
            if (!problem) result.trashedBytes += item.size;
        } else {
            problem = runCommand(item.removal.arguments);
        }
        if (problem) {
            result.failures.push_back(Wording::shown(item.name, "") + ": " + *problem);
        } else {
            ++result.removed;
            result.removedIDs.insert(item.id);
        }
    }
    if (progress) progress(count, "");
    return result;
}

} // namespace Remover
