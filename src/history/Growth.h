#pragma once
// Where the space went in the last 14 days: one walk of the home folder books every file born
// in the period on its day and on a named place. Files deleted since leave no trace, and
// packages hard-linked from a shared store keep their old dates.
#include "history/GrowthReport.h"
#include "platform/Layout.h"

#include <functional>
#include <optional>
#include <string>

namespace Growth {

// The state of one folder level during the walk.
struct Ctx {
    GrowthBucket bucket = GrowthBucket::files;
    std::optional<std::string> key;
    std::optional<std::string> project;
    int kind = 0; // 0 project files, 1 packages, 2 build output
    std::string location;
    friend bool operator==(const Ctx&, const Ctx&) = default;
};

struct ProjName {
    std::string label;
    std::string suffix;
    std::string location;
};

// Which date says when a file came into being.
enum class Dates {
    birth,    // the birth time where the file system keeps one, else the modification time
    modified, // the modification time alone
};

using Progress = std::function<void(int folders)>;

// Walks the host's home folder on every core; cannot be cancelled. `progress` gets the number of
// folders seen at every 1,000th folder, from whichever walking thread reached it.
[[nodiscard]] GrowthReport scan(TimePoint now, const Progress& progress = {});
[[nodiscard]] GrowthReport scan(const Layout& layout, TimePoint now, const Progress& progress = {},
                                Dates dates = Dates::birth);

// "com.foo.barApp" gives "BarApp": no leading dot, the last dot-separated part, a capital.
[[nodiscard]] std::string pretty(std::string_view name);

// The Ctx of a folder named `name` at `level` (1 or deeper), whose path below the home folder is
// `relative`, from its parent's. Absent when the folder and all it holds are left out. `folder`,
// where given, is the folder's open handle, to look inside it without its path.
[[nodiscard]] std::optional<Ctx> enter(const Ctx& parent, const std::string& path, const std::string& name,
                                       const std::optional<std::string>& relative, const StorageTables& tables,
                                       int folder = -1);

} // namespace Growth
