#pragma once
// An application model over a generated home folder: a clock the test moves, a settings store
// and support folder of its own, a disk reading the test sets, no processes and no installed
// apps unless a test adds them, and a notifier that writes down what it is asked to post.
#include "app/AppModel.h"
#include "app/ManualClock.h"
#include "monitor/MonitorFixtures.h"
#include "support/FakeAppBundles.h"
#include "support/FakeFacts.h"
#include "support/TempTree.h"
#include "RecordingNotifier.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

// The disk reading, set by the test. Read from worker threads too.
struct FakeDisk {
    std::atomic<int64_t> available{500 * GB};
    std::atomic<int64_t> total{1000 * GB};
    [[nodiscard]] DiskInfo read() const { return DiskInfo{"Test disk", total.load(), available.load(), 0}; }
};

// Holds each scan at its start until the test lets one through, so that requests can arrive
// while a scan runs. The scan itself is the real one over the generated home.
class ScanGate {
public:
    [[nodiscard]] AppSetup::ScanJob wrap(AppSetup::ScanJob real);
    void release(int scans = 1);
    // Waits (real time) until `n` scans have reached the gate.
    [[nodiscard]] bool waitStarted(int n, double seconds = 30);
    // After the real scan, one more progress report, as a slow worker thread would send it.
    std::atomic<bool> lateProgress{false};
    std::atomic<int> started{0};

private:
    std::mutex lock;
    std::condition_variable wake;
    int permits = 0;
};

struct AppHarness {
    AppHarness();
    ~AppHarness();

    TempTree home;
    TempTree support;
    ManualClock clock;
    SettingsStore settings;
    RecordingNotifier notifier;
    FakeDisk disk;
    FakeFacts facts;
    FakeAppBundles bundles;
    fixtures::FakeProbe probe;
    ScanGate gate;
    bool gated = false;
    // Counts the advisor's runs; when `canned` is set it stands in for the advisor, whose own
    // rules are tested in the core.
    std::atomic<int> adviceBuilds{0};
    std::optional<std::vector<Rec>> canned;
    int windowOpens = 0;
    std::unique_ptr<AppModel> model;

    // The setup over the generated home, before `adjust` changes it.
    AppModel& make(const std::function<void(AppSetup&)>& adjust = {});

    // Runs the event loop until `done` holds, at most `seconds` of real time.
    [[nodiscard]] static bool waitUntil(const std::function<bool()>& done, double seconds = 60);
    // Every worker job returned and its result delivered.
    void settle();
    // A whole scan (through the gate when gated) and its delivery.
    [[nodiscard]] bool scanToEnd();
    // Waits for the removal, lets the 1.2 seconds of settling pass on the clock and waits for
    // the report.
    [[nodiscard]] bool finishClean();
    // The texts of every toast shown from now on.
    [[nodiscard]] std::shared_ptr<std::vector<std::string>> recordToasts();
};

// A cache folder below ~/.cache with one file, untouched for 40 days when `old`.
void cacheIn(const TempTree& home, const std::string& name, int64_t size, bool old);
// A project with a repository and a node_modules folder of `size` bytes below `folder`.
void projectIn(const TempTree& home, const std::string& folder, int64_t size);
// A clean item of the generated home, made by hand.
CleanItem makeItem(std::string id, Tier tier, std::vector<std::string> paths, int64_t size,
                   Removal removal = Removal::deleteForGood());
// A piece of advice with the given action.
Rec makeRec(std::string id, RecAction action, bool now = true, bool safe = false, bool arm = false);
