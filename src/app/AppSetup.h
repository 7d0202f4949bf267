#pragma once
// Everything the application model reads and touches besides its own state: the clock, the
// settings store and support folder, the home folder's layout, the machine's facts, the
// notifier and the readings of the disk. The program's own is `host()`; tests make one over a
// generated home and replace what they must.
#include "app/AppClock.h"
#include "app/Notifier.h"
#include "advice/Actions.h"
#include "advice/Advisor.h"
#include "foundation/DiskInfo.h"
#include "foundation/ScanToken.h"
#include "foundation/SettingsStore.h"
#include "platform/AppBundles.h"
#include "platform/Layout.h"
#include "platform/ProcessFacts.h"
#include "platform/Probe.h"
#include "removal/Remover.h"
#include "scan/Scanner.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class History;

struct AppSetup {
    // What one cleaning scan hands back.
    struct ScanResult {
        std::vector<CleanItem> items;
        int folders = 0; // folders the build-folder walk checked
    };
    // Runs one whole scan on the calling worker thread.
    using ScanJob = std::function<ScanResult(const std::vector<Scanner::RunningId>& running,
                                             std::shared_ptr<ScanToken> cancel, const Scanner::Report& progress)>;
    using Advise = std::function<std::vector<Rec>(const Advisor::Situation&)>;

    AppClock* clock = nullptr;
    SettingsStore* settings = nullptr;
    std::string supportDir;
    Layout layout;
    History* history = nullptr;   // absent: the model keeps its own over supportDir
    Notifier* notifier = nullptr; // absent: nothing is posted
    const ProbeSource* probe = nullptr;
    const AppBundles* bundles = nullptr;
    const ProcessFacts* facts = nullptr;
    Remover::Context remover;
    Actions::Context actions;
    // The home volume now. Read on the main thread before a clean and on a worker after it.
    std::function<DiskInfo()> readDisk;
    // The apps that run now, read on the main thread before a scan.
    std::function<std::vector<Scanner::RunningId>()> runningApps;
    ScanJob scan;
    Advise advise = Advisor::recommendations;
    int cores = 1;
    // The autostart entry whose presence is the login item's state, and the program it starts.
    std::string loginItemFile;
    std::string executable;

    // The running program: the host's layout, the real machine and support folder.
    [[nodiscard]] static AppSetup host(AppClock& clock);
    // A generated home folder with the Linux layout, read without the process environment,
    // the real machine's processes and a support folder of its own.
    [[nodiscard]] static AppSetup forHome(const std::string& home, const std::string& supportDir, AppClock& clock,
                                          SettingsStore& settings);
    // The scan of `layout` with these process facts and installed apps.
    [[nodiscard]] static ScanJob scanner(Layout layout, const ProcessFacts& facts, const AppBundles& bundles);
};
