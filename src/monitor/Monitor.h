#pragma once
// The one live sampling object: it samples often while a person looks and rarely when nobody
// does, turns two successive snapshots into smoothed figures, keeps a per-app minute history
// of up to three hours, and holds the judgements the rest of the program reads: what is slow,
// what may be quit, what has nothing to save.
//
// The monitor owns no timer and no thread. Its host (the application's event loop, or a test)
// gives it a repeating timer, delayed calls and a worker, and calls it back on the one thread
// that owns it; every field changes only there.
#include "monitor/AppUsage.h"
#include "monitor/Grouping.h"
#include "monitor/Leftover.h"
#include "monitor/Vitals.h"
#include "platform/AppBundles.h"
#include "platform/Layout.h"
#include "platform/Probe.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

class Monitor {
public:
    // One app's line for one closed minute.
    struct MinuteSample {
        double cores = 0;  // raw load over the minute, not smoothed
        bool front = false; // the app had the keyboard when the minute closed
        TimePoint date{};   // the snapshot that closed the minute
    };

    // What the monitor needs of the application around it. Every callback is delivered on the
    // thread that owns the monitor.
    class Host {
    public:
        virtual ~Host() = default;
        // Replaces any repeating timer with one firing every `interval` seconds, within `tolerance`.
        virtual void repeat(double interval, double tolerance, std::function<void()> tick) = 0;
        // Runs `job` once after `seconds`.
        virtual void after(double seconds, std::function<void()> job) = 0;
        // Runs `work` on a background thread of low priority, then `done` on the owner thread.
        virtual void work(std::function<void()> work, std::function<void()> done) = 0;
    };

    explicit Monitor(Host* host = nullptr, const ProbeSource& probe = ProbeSource::live(),
                     Layout layout = Layout::host(), const AppBundles& bundles = AppBundles::system());

    // Observed by the views.
    Vitals vitals;
    std::vector<AppUsage> apps; // heaviest processor load first
    std::vector<Leftover> leftovers;
    std::optional<TimePoint> measuredAt;
    RunningApps runningApps;

    // Told after each sample has been applied, and at each closed minute (where alerts are decided).
    std::function<void()> changed;
    std::function<void(Monitor&)> minuteClosed;
    // The present time, for the age of minute samples and of the last leftover sweep.
    std::function<TimePoint()> clock = [] { return Clock::now(); };

    // Starts sampling: the slow timer, and one sample at once.
    void start();
    // A sample now (`soon` 0) or after `soon` seconds. A request while a sample is under way is dropped.
    void sample(double soon = 0);
    // A view opened (`on`) or closed. While any is live the timer runs at 3 seconds, else at 60.
    void setLive(const std::string& key, bool on);
    // Two samples `gap` seconds apart on the calling thread, for the reports; no timer runs.
    void sampleForTools(double gap = defaultGap);
    static constexpr double defaultGap = 2.0;

    // One taken sample, applied on the owner thread: publishes rows and vitals and closes a
    // minute when one is due. `found` is absent when no leftover sweep ran.
    void apply(Snapshot snapshot, RunningApps apps, const GroupKeys& keys, std::optional<std::vector<Leftover>> found);

    // Removes these leftover groups at once, without waiting for the next sweep.
    void forgetLeftovers(const std::set<int32_t>& ids);

    [[nodiscard]] bool isKept(const AppUsage& app) const;
    [[nodiscard]] bool canQuit(const AppUsage& app) const;
    [[nodiscard]] bool nothingToSave(const AppUsage& app) const;
    // Closed minutes, newest back, at 0.4 cores or more without being front; stops at the first that isn't.
    [[nodiscard]] int busyMinutes(const std::string& key) const;
    // What slows the machine right now from the background.
    [[nodiscard]] std::vector<AppUsage> slowApps() const;
    // What has been slow in the background for ten close minutes.
    [[nodiscard]] std::vector<AppUsage> sustainedSlow() const;
    // Memory pressure at warning or worse in each of the last ten minutes.
    [[nodiscard]] bool memoryTightTenMinutes() const;
    [[nodiscard]] const AppUsage* app(const std::string& key) const;
    [[nodiscard]] int64_t memoryCounted() const;

    [[nodiscard]] const std::optional<Snapshot>& latest() const { return snapshot; }
    [[nodiscard]] const std::map<std::string, std::deque<MinuteSample>>& minuteHistory() const { return minutes; }
    [[nodiscard]] const std::deque<int>& pressureHistory() const { return pressureMinutes; }
    [[nodiscard]] bool isSampling() const { return sampling; }

    static constexpr std::size_t minutesKept = 180;      // three hours
    static constexpr std::size_t pressureKept = 30;
    static constexpr double minuteSeconds = 55;         // below the 60-second tick, so none is skipped
    static constexpr double sweepSeconds = 50;          // leftover sweeps at most this often
    static constexpr double smoothingSeconds = 12;      // time constant of the smoothed figures

private:
    void reschedule();
    // Tests 1, 2, 3 and 7 of slowness: an app that may be named for slowing the machine.
    [[nodiscard]] bool mayBeSlow(const AppUsage& app) const;
    [[nodiscard]] bool keptId(const AppUsage& app) const;
    [[nodiscard]] bool systemBundle(const AppUsage& app) const;

    Host* host;
    const ProbeSource& probe;
    const Layout layout; // a copy: the monitor may outlive the layout it was given
    const AppBundles& bundles;

    std::optional<Snapshot> snapshot;
    std::optional<Snapshot> minuteBase;
    std::map<std::string, std::deque<MinuteSample>> minutes;
    std::deque<int> pressureMinutes;
    std::map<std::string, double> smooth;
    bool sampling = false;
    std::optional<TimePoint> lastLeftoverScan;
    std::set<std::string> liveViews;
};
