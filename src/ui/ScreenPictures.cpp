#include "ui/ScreenPictures.h"

#include "app/AppModel.h"
#include "app/Prefs.h"
#include "foundation/Log.h"
#include "foundation/Rendering.h"
#include "foundation/Tab.h"
#include "ui/App.h"
#include "ui/UiEngine.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>

namespace ScreenPictures {

namespace {

// The main window with nothing over it, on `tab`.
void plain(AppModel& m, Tab tab) {
    m.setConfirming(false);
    m.setRestartSheet(false);
    m.setSettingsOpen(false);
    m.setWhoMode(AppModel::WhoMode::cpu);
    m.go(tab);
}

Picture window(const QString& file, std::function<void(AppModel&)> state) {
    return {file, {UiEngine::url("MainView.qml"), windowSize, {}}, std::move(state)};
}

// The tray panel, drawn as the settings sheet previews it: a picture asks the monitor for no
// faster sampling.
Picture panel(const QString& file) {
    return {file, {UiEngine::url("panel/MenuBarView.qml"), panelSize, {{QStringLiteral("preview"), true}}},
            [](AppModel& m) { m.refreshDisk(); }};
}

// Lets queued results land until `done` holds; a job that never ends gives up after `seconds`
// rather than hang the option.
void settle(AppModel& m, const std::function<bool()>& done, int seconds = 60) {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < seconds * 1000LL) {
        m.waitForWorkers();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QCoreApplication::sendPostedEvents();
        if (done()) return;
    }
    Log::note("pictures: a job of the model did not finish in time");
}

} // namespace

std::vector<Picture> pictures() {
    std::vector<Picture> list;
    for (Tab tab : Tabs::allCases)
        list.push_back(window(QString::fromStdString(std::string(Tabs::title(tab))) + ".png", [tab](AppModel& m) { plain(m, tab); }));
    list.push_back(window("speed-memory.png", [](AppModel& m) {
        plain(m, Tab::speed);
        m.setWhoMode(AppModel::WhoMode::memory);
    }));
    list.push_back(window("confirm.png", [](AppModel& m) {
        plain(m, Tab::clean);
        m.setConfirming(true);
    }));
    list.push_back(window("restart.png", [](AppModel& m) {
        plain(m, Tab::speed);
        m.setRestartSheet(true);
    }));
    list.push_back(panel("menu.png"));
    return list;
}

std::vector<Picture> firstPictures() { return {panel("menu-first.png")}; }

void prepare(AppModel& m, bool growth) {
    m.scan();
    settle(m, [&] { return !m.isScanning(); });
    m.settleForPictures(14);
    m.monitor().sampleForTools();
    m.refreshProjects(true);
    settle(m, [&] { return !m.projectsBusy(); });
    // The Storage tab shows the home folder's map: with no walk stored, measure it now (the
    // store writes nothing while rendering). A full home takes a minute or two.
    if (!m.storage()) {
        m.measureStorage();
        settle(m, [&] { return !m.storageBusy(); }, 600);
    }
    if (growth) {
        m.refreshGrowth();
        settle(m, [&] { return !m.growthRunning(); });
    }
    // The shared-package check runs after the cards; the settles above leave no job behind.
    settle(m, [] { return true; });
}

QStringList write(AppModel& m, const std::vector<Picture>& list, const QString& folder) {
    App::use(&m, nullptr);
    Pictures::Renderer renderer;
    const QDir dir(folder);
    QStringList missing;
    for (const Picture& p : list) {
        if (p.state) p.state(m);
        // Pictures are written or not, without a message; the log says which and why.
        QImage image = renderer.draw(p.scene);
        if (image.isNull() || !Pictures::writePng(image, dir.filePath(p.file))) {
            Log::note("picture " + p.file.toStdString() + " not written: " + renderer.error().toStdString());
            missing << p.file + QStringLiteral(": ") + renderer.error();
        }
    }
    return missing;
}

int run(int argc, char** argv, const std::string& folder, bool growth) {
    Tools::rendering = true;
    // The compiled QML would otherwise land in the user's cache folder.
    qputenv("QML_DISABLE_DISK_CACHE", "1");
    UiEngine::configureProcess(true);
    QGuiApplication app(argc, argv);
    AppModel& model = AppModel::shared();
    App::use(&model, &Prefs::shared());
    (void)write(model, firstPictures(), QString::fromStdString(folder));
    prepare(model, growth);
    (void)write(model, pictures(), QString::fromStdString(folder));
    return 0;
}

} // namespace ScreenPictures
