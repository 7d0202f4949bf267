// Fuzz target for the settings file's reader: it always gives an object, and what the writer
// makes of that object the reader takes back equal. A value nested past the reader's depth
// would crash the next write; the reader must refuse it.
// Built and run by scripts/fuzz (clang's libFuzzer); not part of the gcc build.
#include "foundation/SettingsStore.h"
#include "fuzz/FuzzCheck.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const nlohmann::json loaded = SettingsStore::decode(std::string_view(reinterpret_cast<const char*>(data), size));
    FUZZ_REQUIRE(loaded.is_object());
    const std::string written = SettingsStore::encode(loaded);
    FUZZ_REQUIRE(SettingsStore::decode(written) == loaded);
    return 0;
}
