// Big files and folders in the Downloads folder: only the user can judge them, so they go to
// the Trash and start unticked. Their age plays no part; only their size does.
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "foundation/HomeBound.h"
#include "scan/Scanner.h"
#include "storage/FileKind.h"

#include <algorithm>

std::vector<Candidate> Scanner::downloads() {
    std::vector<Candidate> out;
    const std::string& folder = layout.downloads;
    if (!HomeBound::admit(folder, home)) return out;
    auto names = FS::children(folder);
    std::sort(names.begin(), names.end());
    const std::string shown = FS::tilde(folder, home);
    for (const auto& name : names) {
        if (name.starts_with(".")) continue;
        std::string path = folder + "/" + name;
        if (!HomeBound::admit(path, home)) continue;
        // A project kept in Downloads is not a download.
        const std::string below = path + "/";
        if (std::any_of(buildDirs.begin(), buildDirs.end(), [&](const std::string& d) { return d.starts_with(below); }))
            continue;
        std::string type = FileKinds::downloadWord(path, FS::isDir(path));
        auto date = FS::birthTime(path);
        Candidate c;
        c.id = "download:" + name;
        c.tier = Tier::yourCall;
        c.name = name;
        c.location = shown;
        c.note = date ? type + " · added " + Fmt::day(*date, now) : type;
        c.paths = {path};
        c.removal = Removal::trash();
        c.defaultOn = false;
        c.minSize = 100 * MB;
        out.push_back(std::move(c));
    }
    return out;
}
