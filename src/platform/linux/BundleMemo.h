#pragma once
// Installed apps with each lookup by id and by program remembered. The monitor asks for the
// same few programs and unit ids at every sample; the installed entries don't change while
// the program runs, so each question is answered from disk once.
#include "platform/AppBundles.h"

#include <map>
#include <mutex>

class BundleMemo final : public AppBundles {
public:
    explicit BundleMemo(const AppBundles& source) : source(source) {}

    [[nodiscard]] const std::vector<DesktopEntry>& all() const override { return source.all(); }
    [[nodiscard]] std::optional<DesktopEntry> entry(const std::string& id) const override;
    [[nodiscard]] std::optional<DesktopEntry> entryAt(const std::string& path) const override { return source.entryAt(path); }
    [[nodiscard]] std::optional<DesktopEntry> entryForExecutable(const std::string& exe) const override;
    [[nodiscard]] std::optional<TimePoint> lastUsed(const DesktopEntry& e) const override { return source.lastUsed(e); }

    // The memo over the machine's installed apps.
    [[nodiscard]] static const BundleMemo& system();

private:
    const AppBundles& source;
    mutable std::mutex lock;
    mutable std::map<std::string, std::optional<DesktopEntry>> byId;
    mutable std::map<std::string, std::optional<DesktopEntry>> byProgram;
};
