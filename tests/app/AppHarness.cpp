#include "AppHarness.h"

#include <QDeadlineTimer>
#include <QTest>

#include <chrono>

AppSetup::ScanJob ScanGate::wrap(AppSetup::ScanJob real) {
    return [this, real = std::move(real)](const std::vector<Scanner::RunningId>& running, std::shared_ptr<ScanToken> cancel,
                                          const Scanner::Report& progress) {
        ++started;
        {
            std::unique_lock guard(lock);
            wake.wait(guard, [this] { return permits > 0; });
            --permits;
        }
        AppSetup::ScanResult result = real(running, cancel, progress);
        if (lateProgress) {
            ScanProgress late;
            late.stage = ScanProgress::Stage::measuring;
            late.done = 7;
            late.total = 9;
            progress(late);
        }
        return result;
    };
}

void ScanGate::release(int scans) {
    {
        std::lock_guard guard(lock);
        permits += scans;
    }
    wake.notify_all();
}

bool ScanGate::waitStarted(int n, double seconds) {
    return AppHarness::waitUntil([&] { return started.load() >= n; }, seconds);
}

AppHarness::AppHarness() : settings(support.path("settings.json")) {}

AppHarness::~AppHarness() {
    // A scan still held at the gate must be let go, or the model would wait for it forever.
    gate.release(100);
    model.reset();
}

AppModel& AppHarness::make(const std::function<void(AppSetup&)>& adjust) {
    AppSetup s = AppSetup::forHome(home.root(), support.root(), clock, settings);
    s.notifier = &notifier;
    s.probe = &probe;
    s.bundles = &bundles;
    s.facts = &facts;
    s.readDisk = [this] { return disk.read(); };
    s.scan = AppSetup::scanner(s.layout, facts, bundles);
    if (gated) s.scan = gate.wrap(s.scan);
    s.advise = [this](const Advisor::Situation& situation) {
        ++adviceBuilds;
        return canned ? *canned : Advisor::recommendations(situation);
    };
    s.cores = 4;
    if (adjust) adjust(s);
    model = std::make_unique<AppModel>(std::move(s));
    model->menuBarReady([this] { ++windowOpens; });
    return *model;
}

bool AppHarness::waitUntil(const std::function<bool()>& done, double seconds) {
    QDeadlineTimer deadline(std::chrono::milliseconds(static_cast<int64_t>(seconds * 1000)));
    while (!done()) {
        if (deadline.hasExpired()) return false;
        // Runs the event loop a little: queued results land, workers go on meanwhile.
        QTest::qWait(5);
    }
    return true;
}

void AppHarness::settle() {
    model->waitForWorkers();
    // A call queued now runs after everything the workers queued before it.
    bool flushed = false;
    QMetaObject::invokeMethod(model.get(), [&flushed] { flushed = true; }, Qt::QueuedConnection);
    (void)waitUntil([&] { return flushed; });
}

bool AppHarness::scanToEnd() {
    bool finished = false;
    auto connection = QObject::connect(model.get(), &AppModel::scanFinished, [&] { finished = true; });
    model->scan();
    if (gated) gate.release();
    const bool ok = waitUntil([&] { return finished; });
    QObject::disconnect(connection);
    return ok;
}

bool AppHarness::finishClean() {
    bool finished = false;
    auto connection = QObject::connect(model.get(), &AppModel::cleanFinished, [&] { finished = true; });
    // The settling wait is the only job due within 1.2 seconds once the removal is done.
    const bool removed = waitUntil([&] {
        auto due = clock.nextDue();
        return finished || (due && *due <= 1.2 + 1e-6 && *due > 1.2 - 1e-3);
    });
    if (removed && !finished) clock.advance(1.2);
    const bool ok = removed && waitUntil([&] { return finished; });
    QObject::disconnect(connection);
    return ok;
}

std::shared_ptr<std::vector<std::string>> AppHarness::recordToasts() {
    auto texts = std::make_shared<std::vector<std::string>>();
    QObject::connect(model.get(), &AppModel::toastChanged, model.get(), [this, texts] {
        if (model->toast()) texts->push_back(model->toast()->text);
    });
    return texts;
}

void cacheIn(const TempTree& home, const std::string& name, int64_t size, bool old) {
    const std::string folder = ".cache/" + name;
    home.file(folder + "/blob", size);
    if (!old) return;
    home.age(folder + "/blob", 40 * 86400);
    home.age(folder, 40 * 86400);
}

void projectIn(const TempTree& home, const std::string& folder, int64_t size) {
    home.text(folder + "/package.json", "{}");
    home.dir(folder + "/.git");
    home.file(folder + "/node_modules/pkg/blob", size);
}

CleanItem makeItem(std::string id, Tier tier, std::vector<std::string> paths, int64_t size, Removal removal) {
    CleanItem i;
    i.name = "Item " + id;
    i.id = std::move(id);
    i.tier = tier;
    i.paths = std::move(paths);
    i.size = size;
    i.removal = std::move(removal);
    return i;
}

Rec makeRec(std::string id, RecAction action, bool now, bool safe, bool arm) {
    Rec r;
    r.title = "Fix " + id;
    r.doneChip = id + " done";
    r.effect = "it helps";
    r.id = std::move(id);
    r.now = now;
    r.safe = safe;
    r.arm = arm;
    r.action = std::move(action);
    return r;
}
