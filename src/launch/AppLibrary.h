#pragma once
// The window, the tray and the pictures live in a library of their own, loaded only when one of
// them is asked for: the reports and self-checks then start without mapping Qt and the desktop
// libraries, whose loading alone would outweigh a whole walk of the disk.
#include <string>
#include <vector>

namespace AppLibrary {

inline constexpr const char* fileName = "libsorrelin-app.so";
// The one symbol the library exports. The number changes with the signature, so that an
// executable never calls a library of another build with the wrong arguments.
inline constexpr const char* entryName = "sorrelin_app_run_1";
using Entry = int(int argc, char** argv);

// The status of a start whose library could not be loaded: the shell's "not found".
inline constexpr int notLoaded = 127;

// Where the library is looked for, in order, for the executable at `exe`: beside it (the build
// folder), then where an installation puts it relative to its program.
[[nodiscard]] std::vector<std::string> places(const std::string& exe);

// Loads the library and hands it the arguments. Its exit status, or `notLoaded` after one line
// on standard error saying which file could not be loaded and why.
[[nodiscard]] int run(int argc, char** argv);

} // namespace AppLibrary
