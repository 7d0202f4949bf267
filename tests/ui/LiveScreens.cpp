#include "LiveScreens.h"

#include "foundation/AtomicFile.h"
#include "history/History.h"
#include "history/HistoryFile.h"
#include "ui/App.h"
#include "ui/UiEngine.h"

#include <QDir>
#include <QQmlEngine>
#include <QTest>
#include <QtQuickTest/quicktest.h>

#include <ctime>

#include <gtest/gtest.h>

namespace live {

AppUsage app(const std::string& id, const std::string& name, double cores, int64_t memory, int pids,
             std::optional<double> startedAgo, TimePoint now) {
    AppUsage a;
    a.id = id;
    a.name = name;
    if (!id.starts_with("proc:")) a.bundlePath = id;
    a.cores = cores;
    a.memory = memory;
    for (int i = 0; i < pids; ++i) a.pids.push_back(1000 + i);
    if (startedAgo) a.started = addSeconds(now, -*startedAgo);
    return a;
}

Leftover leftover(int32_t pid, const std::string& label, const std::string& cwd, int64_t memory, TimePoint started) {
    Leftover l;
    l.id = pid;
    l.pids = {pid};
    l.label = label;
    l.cwd = cwd;
    l.project = cwd.substr(cwd.rfind('/') + 1);
    l.started = started;
    l.memory = memory;
    return l;
}

Machine::Machine() = default;

Machine::~Machine() { App::use(nullptr, nullptr); }

AppModel& Machine::start() {
    AppModel& m = make([](AppSetup& s) {
        // Quits and stops pretend and succeed at once: no real app is touched.
        s.actions.dryRun = DryRun::Mode{true, false};
        s.actions.pause = [](double) {};
        // Shares of the machine come out the same on every test machine.
        s.cores = 4;
    });
    prefs = std::make_unique<Prefs>(settings);
    App::use(&m, prefs.get());
    return m;
}

void Machine::sample(const Vitals& vitals, std::vector<AppUsage> apps, std::vector<Leftover> leftovers) {
    Monitor& monitor = model->monitor();
    monitor.vitals = vitals;
    monitor.apps = std::move(apps);
    monitor.leftovers = std::move(leftovers);
    monitor.measuredAt = clock.now();
    if (monitor.changed) monitor.changed();
}

void Machine::fillingHistory(int days, int64_t freeNow, int64_t perDay) {
    auto& samples = model->history().data.samples;
    samples.clear();
    for (int d = days; d >= 1; --d)
        samples.push_back({addSeconds(clock.now(), -d * 86400.0), freeNow + perDay * d, 0});
    disk.available = freeNow;
    model->refreshDisk();
}

void Machine::keepGrowth(const std::vector<int64_t>& totals) {
    HistoryData data;
    data.growth = growthReport(clock.now(), totals);
    // Written by hand: once a picture was drawn in this process, History::save writes nothing.
    ASSERT_TRUE(AtomicFile::write(support.path("history.json"), HistoryFile::encode(data)));
}

GrowthReport Machine::growthReport(TimePoint now, const std::vector<int64_t>& totals) {
    static const std::vector<std::pair<std::string, GrowthBucket>> places{
        {"node_modules packages", GrowthBucket::projects}, {"Downloads", GrowthBucket::files},
        {"Firefox cache", GrowthBucket::appData},         {"Cargo build output", GrowthBucket::tools}};
    GrowthReport r;
    r.made = now;
    const std::time_t t = Clock::to_time_t(now);
    std::tm parts{};
    localtime_r(&t, &parts);
    parts.tm_hour = parts.tm_min = parts.tm_sec = 0;
    parts.tm_isdst = -1;
    const TimePoint today = Clock::from_time_t(std::mktime(&parts)); // local midnight, as the growth report's days
    for (std::size_t i = 0; i < 14; ++i) {
        GrowthDay d;
        d.date = addSeconds(today, -static_cast<double>(13 - i) * 86400);
        const int64_t total = i < totals.size() ? totals[i] : 0;
        if (total > 0) {
            const auto& [name, bucket] = places[i % places.size()];
            d.buckets[static_cast<std::size_t>(bucket)] = total * 3 / 4;
            d.buckets[static_cast<std::size_t>(GrowthBucket::files)] += total - total * 3 / 4;
            d.top.push_back({name, "~/code/shop", total * 3 / 4, bucket});
            if (bucket != GrowthBucket::files) d.top.push_back({"Downloads", "~/Downloads", total - total * 3 / 4, GrowthBucket::files});
        }
        r.days.push_back(d);
    }
    for (const auto& [name, bucket] : places) {
        int64_t sum = 0;
        for (const auto& d : r.days)
            for (const auto& p : d.top)
                if (p.name == name) sum += p.bytes;
        if (sum > 0) r.biggest.push_back({name, name == "Downloads" ? "~/Downloads" : "~/code/shop", sum, bucket});
    }
    std::sort(r.biggest.begin(), r.biggest.end(), [](const auto& a, const auto& b) { return a.bytes > b.bytes; });
    return r;
}

Screen::Screen(const QString& file, QSize size) {
    UiEngine::prepare(*window.engine());
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.resize(size);
    window.setSource(UiEngine::url(file));
    window.show();
    (void)QTest::qWaitForWindowExposed(&window, 5000);
}

namespace {

// Delegates of a Repeater or a view hang in the tree of items, not always in the tree of objects.
QQuickItem* search(QObject* o, const QString& objectName) {
    auto* item = qobject_cast<QQuickItem*>(o);
    if (item && item->objectName() == objectName) return item;
    for (QObject* child : o->children())
        if (QQuickItem* found = search(child, objectName)) return found;
    if (item)
        for (QQuickItem* child : item->childItems())
            if (child->parent() != o)
                if (QQuickItem* found = search(child, objectName)) return found;
    return nullptr;
}

} // namespace

QQuickItem* within(QQuickItem* item, const QString& objectName) { return item ? search(item, objectName) : nullptr; }

QQuickItem* Screen::find(const QString& objectName) const { return within(window.rootObject(), objectName); }

namespace {

void collect(QObject* o, std::vector<std::string>& out) {
    const QVariant t = o->property("text");
    if (o->inherits("QQuickText") && t.isValid() && !t.toString().isEmpty()) {
        auto* item = qobject_cast<QQuickItem*>(o);
        if (item && item->isVisible()) out.push_back(t.toString().toStdString());
    }
    for (QObject* child : o->children()) collect(child, out);
    if (auto* item = qobject_cast<QQuickItem*>(o))
        for (QQuickItem* child : item->childItems())
            if (child->parent() != o) collect(child, out);
}

} // namespace

void Album::draw(const QString& file, const QString& name, QSize size) {
    const QDir out(SORRELIN_PICTURES);
    ASSERT_TRUE(QDir().mkpath(out.path()));
    const QImage image = renderer.draw({UiEngine::url(file), size, {}});
    ASSERT_FALSE(image.isNull()) << renderer.error().toStdString();
    ASSERT_TRUE(Pictures::writePng(image, out.filePath(name)));
}

std::vector<std::string> texts(QQuickItem* root) {
    std::vector<std::string> out;
    if (root) collect(root, out);
    return out;
}

bool showsText(QQuickItem* root, const std::string& text) {
    for (const auto& t : texts(root))
        if (t == text) return true;
    return false;
}

std::string Screen::text(const QString& objectName) const {
    QQuickItem* item = find(objectName);
    if (!item) return "<no " + objectName.toStdString() + ">";
    const auto all = texts(item);
    return all.empty() ? std::string() : all.front();
}

bool Screen::shown(const QString& objectName) const {
    QQuickItem* item = find(objectName);
    return item && item->isVisible();
}

void Screen::click(QQuickItem* item) {
    if (!item) {
        ADD_FAILURE() << "nothing to click";
        return;
    }
    // Rows the model just added are placed at the next polish; click where they will be seen.
    if (!QQuickTest::qWaitForPolish(&window)) ADD_FAILURE() << "the window was not laid out";
    const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseClick(&window, Qt::LeftButton, Qt::NoModifier, centre.toPoint());
}

} // namespace live
