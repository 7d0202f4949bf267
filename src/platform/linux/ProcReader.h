#pragma once
// Reads the user's processes from a /proc folder and ties them to their apps. The folder is an
// argument so that saved trees drive the tests; the live machine passes "/proc".
#include "platform/AppBundles.h"
#include "platform/RunningApp.h"
#include "platform/Snapshot.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ProcReader {

struct Entry {
    ProcRecord record;
    std::string cgroup; // the unified control-group path; empty when unreadable
};

struct Options {
    uint32_t uid = 0;           // only this user's processes
    int32_t self = 0;           // never this one
    int64_t bootSeconds = 0;    // btime: start ticks count from here
    long ticksPerSecond = 100;  // the kernel's clock tick
    bool liveClock = false;     // ask the kernel for each process's exact processor time
};

// Every process of `options.uid` but `options.self` and kernel threads. A process that ends
// while it is read is left out; one whose program cannot be read keeps an empty `exe`.
[[nodiscard]] std::vector<Entry> read(const std::string& procRoot, const Options& options);

// Sets `group` and `responsible` of each record from its app group, and gives the running apps:
// of each group, the oldest process that can be the app itself. A group with no such process
// (an app that ended and left processes in its unit) is no app, and its processes join none.
RunningApps attachApps(std::vector<Entry>& entries, const AppBundles& bundles);

// Marks as active the app whose group holds `frontPid`, or the app of its nearest ancestor
// that has one (a window may belong to a helper process).
void markFront(RunningApps& apps, const std::vector<Entry>& entries, int32_t frontPid);

} // namespace ProcReader
