#include "app/AppSetup.h"

#include "foundation/FS.h"
#include "foundation/Support.h"
#include "history/History.h"

AppSetup::ScanJob AppSetup::scanner(Layout layout, const ProcessFacts& facts, const AppBundles& bundles) {
    return [layout = std::move(layout), &facts, &bundles](const std::vector<Scanner::RunningId>& running,
                                                          std::shared_ptr<ScanToken> cancel, const Scanner::Report& progress) {
        Scanner scanner(layout, running, std::move(cancel), facts, bundles);
        ScanResult result;
        result.items = scanner.run(progress);
        result.folders = scanner.checkedFolders();
        return result;
    };
}

AppSetup AppSetup::host(AppClock& clock) {
    AppSetup s;
    s.clock = &clock;
    s.settings = &Support::defaults();
    s.supportDir = Support::dir();
    s.layout = Layout::host();
    s.history = &History::shared();
    s.probe = &ProbeSource::live();
    s.bundles = &AppBundles::system();
    s.facts = &ProcessFacts::system();
    s.remover = Remover::context();
    s.actions = Actions::context();
    s.readDisk = [] { return DiskInfo::current(); };
    s.runningApps = [] { return Scanner::runningApps(); };
    s.scan = scanner(s.layout, *s.facts, *s.bundles);
    s.cores = Probe::cores();
    s.loginItemFile = s.layout.loginItem;
    s.executable = FS::readLink("/proc/self/exe").value_or("");
    return s;
}

AppSetup AppSetup::forHome(const std::string& home, const std::string& supportDir, AppClock& clock, SettingsStore& settings) {
    AppSetup s;
    s.clock = &clock;
    s.settings = &settings;
    s.supportDir = supportDir;
    s.layout = Layout::linux(home);
    s.probe = &ProbeSource::live();
    s.bundles = &AppBundles::system();
    s.facts = &ProcessFacts::system();
    s.remover = Remover::Context::forLayout(s.layout, {});
    s.actions = Actions::context();
    s.readDisk = [home] { return DiskInfo::of(home); };
    s.runningApps = [] { return std::vector<Scanner::RunningId>{}; };
    s.scan = scanner(s.layout, *s.facts, *s.bundles);
    s.cores = Probe::cores();
    s.loginItemFile = s.layout.loginItem;
    return s;
}
