#include "launch/AppLibrary.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include <dlfcn.h>
#include <unistd.h>

#ifndef SORRELIN_APP_LIBRARY_DIR
#error "SORRELIN_APP_LIBRARY_DIR names the installed library's folder relative to the program's"
#endif

namespace AppLibrary {

namespace {

namespace fs = std::filesystem;

int fail(const std::string& why) {
    std::fprintf(stderr, "sorrelin: the window cannot start: %s. The reports (--scan, --storage, --growth, "
                         "--speed, --projects) still run.\n", why.c_str());
    return notLoaded;
}

} // namespace

std::vector<std::string> places(const std::string& exe) {
    const fs::path folder = fs::path(exe).parent_path();
    return {(folder / fileName).lexically_normal().string(),
            (folder / SORRELIN_APP_LIBRARY_DIR / fileName).lexically_normal().string()};
}

int run(int argc, char** argv) {
    std::error_code error;
    // The program's own file, links resolved: an installation reached through a link in another
    // folder still finds its library.
    const fs::path exe = fs::read_symlink("/proc/self/exe", error);
    if (error) return fail("its own file cannot be found (" + error.message() + ")");
    const std::vector<std::string> candidates = places(exe.string());
    for (const std::string& path : candidates) {
        if (access(path.c_str(), F_OK) != 0) continue;
        // Bound at once so that a library of another build fails here, not in the middle of a run.
        void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!library) return fail(dlerror());
        auto* entry = reinterpret_cast<Entry*>(dlsym(library, entryName));
        if (!entry) return fail(path + " is not this version's window library (no " + entryName + ")");
        // Never closed: Qt's threads and exit handlers may outlive the entry's return.
        return entry(argc, argv);
    }
    return fail(std::string(fileName) + " is neither in " + fs::path(candidates[0]).parent_path().string() +
                " nor in " + fs::path(candidates[1]).parent_path().string());
}

} // namespace AppLibrary
