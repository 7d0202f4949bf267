// Big files and folders in the Downloads folder: only the user can judge them, so they go to
// the Trash and start unticked. Their age plays no part; only their size does.
#include "foundation/FS.h"
#include "foundation/Fmt.h"
#include "foundation/HomeBound.h"
#include "foundation/Walker.h"
#include "scan/Scanner.h"
#include "storage/FileKind.h"

#include <algorithm>

// The names in the folder that could reach `floor`: every folder, and the other entries that
// occupy at least that much. One pass over the listing, nothing kept of the many small files a
// Downloads folder gathers, which could never become a row.
std::vector<std::string> Scanner::downloadNames(const std::string& folder, int64_t floor) const {
    class Listing : public Walker::Visitor {
    public:
        explicit Listing(int64_t f) : floor(f) {}
        std::vector<std::string> names;
        bool admit(const Walker::Entry& e) override {
            names.emplace_back(e.name);
            return false;
        }
        std::optional<Walker::Enter> folder(const Walker::Entry&, int) override { return Walker::Enter{}; }
        void other(const Walker::Entry& e) override {
            if (e.level == 1 && e.stat->bytes >= floor) names.emplace_back(e.name);
        }

    private:
        int64_t floor;
    };
    Walker::Options options;
    options.threads = 1;
    options.followRoot = true; // as the folder's listing always was
    options.cancel = cancel.get();
    std::vector<std::string> names;
    for (auto& listing : Walker::walk<Listing>({{folder, 0}}, options, [&] { return std::make_unique<Listing>(floor); }))
        names.insert(names.end(), listing->names.begin(), listing->names.end());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<Candidate> Scanner::downloads() {
    std::vector<Candidate> out;
    const std::string& folder = layout.downloads;
    if (!HomeBound::admit(folder, home)) return out;
    constexpr int64_t floor = 100 * MB;
    const auto names = downloadNames(folder, floor);
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
        c.minSize = floor;
        out.push_back(std::move(c));
    }
    return out;
}
