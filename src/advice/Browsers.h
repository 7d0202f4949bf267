#pragma once
// Browsers that lay a new version beside the running one and finish the update only on a
// restart: they may run for weeks on an old version while the new one waits on disk. This
// tells, without the network and without asking the browser, whether that is the case.
#include "foundation/Time.h"
#include "monitor/AppUsage.h"
#include "platform/ExeImage.h"
#include "platform/Layout.h"
#include "platform/Snapshot.h"

#include <cstdint>
#include <optional>
#include <string>

namespace Browsers {

struct Update {
    std::string version;            // the version on disk
    std::optional<TimePoint> since; // when it arrived, where that can be told
    friend bool operator==(const Update&, const Update&) = default;
};

// What the update check reads of the machine.
class Reader {
public:
    virtual ~Reader() = default;
    [[nodiscard]] virtual std::optional<ExeImage> image(int32_t pid) const = 0;
    // The version the program at `binary` reports when run with `argument`.
    [[nodiscard]] virtual std::optional<std::string> version(const std::string& binary, const std::string& argument) const = 0;
    // When the file at `path` last changed status: for a replaced program, when it was put there.
    [[nodiscard]] virtual std::optional<TimePoint> changed(const std::string& path) const = 0;

    [[nodiscard]] static const Reader& live();
};

// The version in a program's version output: the first word that begins with a digit
// ("124.0.6367.60", "Mozilla Firefox 128.0" gives "128.0").
[[nodiscard]] std::optional<std::string> versionIn(const std::string& output);

[[nodiscard]] bool isBrowser(const AppUsage& app, const MonitorTables& tables = Layout::host().monitor);

// An update waiting for a restart of this browser. Answers are kept for 120 seconds under the
// app's path and main process, so a relaunch asks anew. Called on the owner thread only.
[[nodiscard]] std::optional<Update> pendingUpdate(const AppUsage& app, const Snapshot* snapshot,
                                                  TimePoint now = Clock::now(), const Reader& reader = Reader::live(),
                                                  const MonitorTables& tables = Layout::host().monitor);

} // namespace Browsers
