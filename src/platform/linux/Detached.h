#pragma once
// Starts a program apart from this one, as a launcher would: in a session of its own, reparented
// away at once so that nothing here waits for it, with its output discarded, in the home folder,
// and without a startup-notification token, so that it opens behind the window in use.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Detached {

struct Started {
    std::optional<int32_t> pid;         // the program's process
    std::optional<std::string> problem; // why it did not start; exactly one of the two is present
};

// `arguments` begins with the program as it is named; `program` is that program's path, or a
// bare name looked up along `searchPath`.
[[nodiscard]] Started start(const std::string& program, const std::vector<std::string>& arguments,
                            const std::string& searchPath);

// The program a bare name stands for along `searchPath`; a name with a "/" stands for itself.
[[nodiscard]] std::optional<std::string> resolve(const std::string& program, const std::string& searchPath);

} // namespace Detached
