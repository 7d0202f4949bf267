#pragma once
// When a file was last opened, as far as the file system tells: its access time, where the
// mount keeps access times and the file was read after it was last written. Absent otherwise,
// which reads as "not opened since it was saved".
#include "foundation/Time.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace FileOpened {

// One answer per path, in order. The mount table is read once for all of them.
[[nodiscard]] std::vector<std::optional<TimePoint>> dates(const std::vector<std::string>& paths,
                                                          const std::string& mountInfo = "/proc/self/mountinfo");

// Whether a mount with these options ("rw,noatime,...") records access times.
[[nodiscard]] bool keepsAccessTimes(std::string_view mountOptions);

} // namespace FileOpened
