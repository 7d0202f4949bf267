#include "advice/Browsers.h"

#include "foundation/Shell.h"
#include "foundation/Text.h"

#include <sys/stat.h>

#include <map>
#include <set>

namespace Browsers {

namespace {

struct Cached {
    TimePoint at;
    std::optional<Update> update;
};
std::map<std::string, Cached> updateCache; // owner thread only: no lock

class LiveReader final : public Reader {
public:
    std::optional<ExeImage> image(int32_t pid) const override { return ExeImages::of(pid); }
    std::optional<std::string> version(const std::string& binary, const std::string& argument) const override {
        auto out = Shell::run(binary, {argument}, 10);
        if (out.status != 0) return std::nullopt;
        return versionIn(out.text);
    }
    std::optional<TimePoint> changed(const std::string& path) const override {
        struct stat st {};
        if (stat(path.c_str(), &st) != 0) return std::nullopt;
        return fileDate(st.st_ctim, Clock::now());
    }
};

std::optional<Update> findUpdate(const AppUsage& app, const Snapshot* snapshot, const Reader& reader,
                                 const MonitorTables& tables) {
    if (!app.bundleID || !app.bundlePath || !snapshot) return std::nullopt;
    auto browser = tables.browsers.find(*app.bundleID);
    if (browser == tables.browsers.end()) return std::nullopt;

    // Which processes still run a program that has since been replaced on disk, and whether any
    // runs the file that lies there now: a browser that runs in part on the new version counts
    // as updated.
    std::optional<std::string> oldProgram;
    for (int32_t pid : app.pids) {
        if (!snapshot->procs.contains(pid)) continue;
        auto image = reader.image(pid);
        if (!image) continue;
        if (!image->stale) return std::nullopt;
        if (!oldProgram || (app.mainPID && pid == *app.mainPID)) oldProgram = image->path;
    }
    if (!oldProgram) return std::nullopt;

    auto version = reader.version(*oldProgram, browser->second);
    if (!version) return std::nullopt;
    return Update{*version, reader.changed(*oldProgram)};
}

} // namespace

const Reader& Reader::live() {
    static const LiveReader reader;
    return reader;
}

std::optional<std::string> versionIn(const std::string& output) {
    for (const auto& line : Text::split(output, '\n'))
        for (const auto& word : Text::split(line, ' '))
            if (!word.empty() && word[0] >= '0' && word[0] <= '9') return Text::trim(word);
    return std::nullopt;
}

bool isBrowser(const AppUsage& app, const MonitorTables& tables) {
    return app.bundleID && tables.browsers.contains(*app.bundleID);
}

std::optional<Update> pendingUpdate(const AppUsage& app, const Snapshot* snapshot, TimePoint now, const Reader& reader,
                                    const MonitorTables& tables) {
    std::string key = app.bundlePath.value_or(app.id) + "|" + std::to_string(app.mainPID.value_or(0));
    if (auto it = updateCache.find(key); it != updateCache.end() && secondsBetween(it->second.at, now) < 120)
        return it->second.update;
    auto update = findUpdate(app, snapshot, reader, tables);
    updateCache[key] = Cached{now, update};
    return update;
}

} // namespace Browsers
