// Particular heavy things that only the user can judge: an assistant's virtual machine, the
// browsers' on-device AI models, Docker's disk image and device backups. All of them go to the
// Trash and start unticked.
#include "foundation/FS.h"
#include "foundation/HomeBound.h"
#include "foundation/Text.h"
#include "scan/Scanner.h"

#include <algorithm>

namespace {

Candidate bigItem(std::string id, std::string name, const std::string& path, std::string note, int64_t minSize,
                  const std::string& home) {
    Candidate c;
    c.id = std::move(id);
    c.tier = Tier::yourCall;
    c.name = std::move(name);
    c.location = FS::tilde(path, home);
    c.note = std::move(note);
    c.paths = {path};
    c.removal = Removal::trash();
    c.defaultOn = false;
    c.minSize = minSize;
    return c;
}

} // namespace

std::vector<Candidate> Scanner::bigItems() {
    const auto& t = layout.scan;
    std::vector<Candidate> out;

    if (!t.vmBundles.empty() && HomeBound::admit(t.vmBundles, home) && FS::isDir(t.vmBundles)) {
        // Doubt counts as in use: a machine process whose open files cannot be read locks it.
        const std::string below = t.vmBundles + "/";
        bool inUse = false;
        for (const auto& p : procs) {
            if (!p.name.starts_with(t.vmProcessPrefix)) continue;
            auto open = facts->openPaths(p.pid);
            if (!open || std::any_of(open->begin(), open->end(), [&](const std::string& f) { return f.starts_with(below); })) {
                inUse = true;
                break;
            }
        }
        auto c = bigItem("claude-vm", "Claude sandbox VM", t.vmBundles,
                         "Linux VM image the Claude app downloads again when it needs it", 100 * MB, home);
        if (inUse) c.lockedReason = "Claude's VM is running from it · quit Claude to free it";
        out.push_back(std::move(c));
    }

    for (const auto& model : t.browserModels) {
        if (!HomeBound::admit(model.path, home) || !FS::isDir(model.path)) continue;
        out.push_back(bigItem(model.id, model.browser + "'s built-in AI model", model.path,
                              "Comes back unless you turn it off in " + Text::lower(model.browser) + "://flags",
                              100 * MB, home));
    }

    // Data left behind after the app was removed is not listed.
    bool docker = std::any_of(t.dockerAppPaths.begin(), t.dockerAppPaths.end(), [](const std::string& p) { return FS::exists(p); }) ||
                  std::any_of(t.dockerAppIds.begin(), t.dockerAppIds.end(), [&](const std::string& id) { return apps->entry(id).has_value(); });
    if (docker && !t.dockerImage.empty() && HomeBound::admit(t.dockerImage, home))
        out.push_back(bigItem("docker", "Docker disk image", t.dockerImage, "Every container, image and volume", 500 * MB, home));

    if (!t.deviceBackups.empty() && HomeBound::admit(t.deviceBackups, home)) {
        std::vector<std::string> backups;
        auto names = FS::children(t.deviceBackups);
        std::sort(names.begin(), names.end());
        for (const auto& name : names)
            if (!name.starts_with(".") && HomeBound::admit(t.deviceBackups + "/" + name, home))
                backups.push_back(t.deviceBackups + "/" + name);
        // The folder itself stays.
        if (!backups.empty()) {
            auto c = bigItem("ios-backups", "iPhone and iPad backups", t.deviceBackups, "Local device backups", 100 * MB, home);
            c.paths = std::move(backups);
            c.reveal = {t.deviceBackups};
            out.push_back(std::move(c));
        }
    }
    return out;
}
