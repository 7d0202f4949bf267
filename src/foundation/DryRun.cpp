#include "foundation/DryRun.h"

#include <chrono>
#include <cstdlib>
#include <thread>

namespace DryRun {

const std::optional<std::string>& mode() {
    static const std::optional<std::string> value = []() -> std::optional<std::string> {
        const char* v = std::getenv("SORRELIN_DRYRUN");
        if (!v) return std::nullopt;
        return std::string(v);
    }();
    return value;
}

Mode modeFor(const char* value) {
    if (!value) return {};
    return {true, std::string_view(value) == "fail"};
}

bool on() { return mode().has_value(); }
bool fails() { return mode() && *mode() == "fail"; }

void pause(double seconds) {
    if (seconds <= 0) return;
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

} // namespace DryRun
