#pragma once
// The one object that holds the state of the application. The window, the tray panel and the
// notifications read it and call it, and never touch a subsystem: scanning is the Scanner,
// removing the Remover, advice the Advisor, live figures the Monitor. What the model decides
// is what starts when, what a fresh scan ticks, which late results are dropped, and what the
// user is told. It lives on the main thread; long jobs run on its workers on copies and come
// back by a queued call that checks the job's token. All its time comes from one AppClock.
//
// The face a view uses (QML reads the properties, calls the Q_INVOKABLEs):
//
//   State, in this order, each with a NOTIFY signal that an equal write never emits (a list
//   is a constant object whose rows signal their own changes):
//     disk {name,total,available,reserved,used}; items (list); selected (ids); scanProgress
//     {stage,checked,done,total,label,found} or null; cleanProgress {done,total,label,source,
//     showsSheet} or null, its items in cleanItems; cleanSummary {report,before,dryRun} or null;
//     lastScan (date or null); report {freed,removedCount,trashed,failures,availableAfter,date,
//     source} or null; expanded (tier numbers); confirming; emptyingTrash; loginItemOn; tab;
//     tabForward; acting (rec id -> "queued"|"busy"|"done"); batch {done,total} or null;
//     doneToday; armed ("" when nothing is); toast {text,kind,action,seconds,id} or null;
//     whoMode ("cpu"|"memory"); restartSheet; projects (list); projectsBusy; shared
//     {group,apps,packages,today,shared} or null; showHow; sharedChecked; growth {made,total}
//     or null, its days in growthDays and places in growthBiggest; growthRunning; weekDay
//     (-1 for none); freedProjects; snoozeTick; recentlyFreed (rec id -> {share,at});
//     lastScanSeconds (0 before the first); failedRec; settingsOpen; storage, storageLive
//     {made,seconds,diskTotal,diskUsed,diskReserved,files,complete,vm,measured} or null;
//     storageBusy; trashing (paths).
//   Derived: isScanning, isCleaning, isLow, scanFraction (number or null), cleanable,
//     selectedItems (maps), tickedTotal, recs, nowRecs, laterRecs, safeRecs (lists), pace
//     {bytesPerDay,days,since,filling} or null, storageShown (as storage, its rows in
//     storageCategories, storageBiggest, storageApps), cachesToClearBytes/Count, freedToday,
//     historyHours, vitals {cpu,pressure,freePercent,compressed,swapUsed,swapTotal,swappedOut,
//     boot,thermal,uptimeDays}, measuredAt, appUsage, leftovers, slowApps (lists),
//     memoryCounted, cores, physicalMemory, monitorInterval; tabs [{id,title}].
//   Lists (ListModel: count, get(row), indexOf(key); roles from Qt::UserRole+1):
//     items and itemsIn(tier), cleanItems: id tier name location note shortNote shortLocation
//       fullLocation size locked lockedReason defaultOn removal cacheKind stale lastUsed
//       recentLabel isOpen symbol tint reveal refillNote ticked
//     recs, nowRecs, laterRecs, safeRecs: id now reason reasonLabel reasonSymbol title why
//       effect tip actionLabel shortLabel busyLabel doneLabel doneChip safe caveat arm symbol
//       tint appPath impact impactKey impactBytes cpuShare memory action actionKey actionTab
//       itemIDs state armed failed
//     projects: id name path apps claude mcp ports editors leftovers memory build idleBuild
//       idleItemIDs running lastChange isOlder recentlyChanged freed armed
//     storageCategories: id kind title blurb symbol colour bytes unreadable unreadableFolders canTrash
//       items
//     storageBiggest: id name path bytes kind kindTitle symbol category modified opened trashing
//     storageApps: id name path bundleID appBytes dataBytes total lastUsed
//     appUsage, slowApps: id name bundlePath bundleID mainPID pids cores memory started
//       accessory isFront isLoose canQuit kept nothingToSave
//     leftovers: id pids label cwd project started memory
//     growthDays: date buckets total top;  growthBiggest: name location bytes bucket
//   Calls: go, toggle, setAll, total, ticked, allSelected, itemsIn, setExpanded, scan,
//     scanIfStale, cancelScan, clean, cleanSelected, cleanSafeNow, emptyTrash, dismissReport,
//     dismissSummary, run, snooze, runSafe, quitFromAlert, restartNow, remindRestart,
//     moveToTrash, armTrash, armQuickClean, armFreeProject, stopProjectLeftovers, holdToast,
//     runToastAction, measureStorage, measureStorageIfStale, stopStorage, refreshGrowth,
//     refreshGrowthIfStale, refreshProjects, setLive, showWindow, openSettings, setLoginItem, refillNote,
//     freedShareWithin, canTrash.
//   For the desktop: menuBarReady(open) hands in what opens the window; showWindow calls it.
#include "app/AppClock.h"
#include "app/AppSetup.h"
#include "app/CleanRecords.h"
#include "app/MonitorHost.h"
#include "app/RecordListModel.h"
#include "app/Toast.h"
#include "app/Worker.h"
#include "advice/Rec.h"
#include "foundation/CleanItem.h"
#include "foundation/DiskInfo.h"
#include "foundation/ScanToken.h"
#include "foundation/Tab.h"
#include "history/GrowthReport.h"
#include "history/Pace.h"
#include "monitor/Monitor.h"
#include "projects/ProjectCard.h"
#include "scan/ScanProgress.h"
#include "storage/StorageReport.h"

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

class History;
struct PerformRun;

class AppModel : public QObject {
    Q_OBJECT
    // Observed state, in its declared order.
    Q_PROPERTY(QVariantMap disk READ diskValue NOTIFY diskChanged)
    Q_PROPERTY(ListModel* items READ itemsModel CONSTANT)
    Q_PROPERTY(QStringList selected READ selectedIds NOTIFY selectedChanged)
    Q_PROPERTY(QVariant scanProgress READ scanProgressValue NOTIFY scanProgressChanged)
    Q_PROPERTY(QVariant cleanProgress READ cleanProgressValue NOTIFY cleanProgressChanged)
    Q_PROPERTY(QVariant cleanSummary READ cleanSummaryValue NOTIFY cleanSummaryChanged)
    Q_PROPERTY(QVariant lastScan READ lastScanValue NOTIFY lastScanChanged)
    Q_PROPERTY(QVariant report READ reportValue NOTIFY reportChanged)
    Q_PROPERTY(QVariantList expanded READ expandedValue NOTIFY expandedChanged)
    Q_PROPERTY(bool confirming READ confirming WRITE setConfirming NOTIFY confirmingChanged)
    Q_PROPERTY(bool emptyingTrash READ emptyingTrash NOTIFY emptyingTrashChanged)
    Q_PROPERTY(bool loginItemOn READ loginItemOn NOTIFY loginItemOnChanged)
    Q_PROPERTY(int tab READ tabValue WRITE goValue NOTIFY tabChanged)
    Q_PROPERTY(bool tabForward READ tabForward NOTIFY tabForwardChanged)
    Q_PROPERTY(QVariantMap acting READ actingValue NOTIFY actingChanged)
    Q_PROPERTY(QVariant batch READ batchValue NOTIFY batchChanged)
    Q_PROPERTY(QStringList doneToday READ doneTodayValue NOTIFY doneTodayChanged)
    Q_PROPERTY(QString armed READ armedValue NOTIFY armedChanged)
    Q_PROPERTY(QVariant toast READ toastValue NOTIFY toastChanged)
    Q_PROPERTY(QString whoMode READ whoModeValue WRITE setWhoModeValue NOTIFY whoModeChanged)
    Q_PROPERTY(bool restartSheet READ restartSheet WRITE setRestartSheet NOTIFY restartSheetChanged)
    Q_PROPERTY(ListModel* projects READ projectsModel CONSTANT)
    Q_PROPERTY(bool projectsBusy READ projectsBusy NOTIFY projectsBusyChanged)
    Q_PROPERTY(QVariant shared READ sharedValue NOTIFY sharedChanged)
    Q_PROPERTY(bool showHow READ showHow WRITE setShowHow NOTIFY showHowChanged)
    Q_PROPERTY(bool sharedChecked READ sharedChecked NOTIFY sharedCheckedChanged)
    Q_PROPERTY(QVariant growth READ growthValue NOTIFY growthChanged)
    Q_PROPERTY(bool growthRunning READ growthRunning NOTIFY growthRunningChanged)
    Q_PROPERTY(int weekDay READ weekDayValue WRITE setWeekDayValue NOTIFY weekDayChanged)
    Q_PROPERTY(QStringList freedProjects READ freedProjectsValue NOTIFY freedProjectsChanged)
    Q_PROPERTY(int snoozeTick READ snoozeTick NOTIFY snoozeTickChanged)
    Q_PROPERTY(QVariantMap recentlyFreed READ recentlyFreedValue NOTIFY recentlyFreedChanged)
    Q_PROPERTY(int lastScanSeconds READ lastScanSecondsValue NOTIFY lastScanSecondsChanged)
    Q_PROPERTY(QString failedRec READ failedRecValue NOTIFY failedRecChanged)
    Q_PROPERTY(bool settingsOpen READ settingsOpen WRITE setSettingsOpen NOTIFY settingsOpenChanged)
    Q_PROPERTY(QVariant storage READ storageValue NOTIFY storageChanged)
    Q_PROPERTY(QVariant storageLive READ storageLiveValue NOTIFY storageLiveChanged)
    Q_PROPERTY(bool storageBusy READ storageBusy NOTIFY storageBusyChanged)
    Q_PROPERTY(QStringList trashing READ trashingValue NOTIFY trashingChanged)

    // Derived values.
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY scanProgressChanged)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY cleanProgressChanged)
    Q_PROPERTY(bool isLow READ isLow NOTIFY diskChanged)
    Q_PROPERTY(QVariant scanFraction READ scanFractionValue NOTIFY scanProgressChanged)
    Q_PROPERTY(qint64 cleanable READ cleanable NOTIFY itemsChanged)
    Q_PROPERTY(QVariantList selectedItems READ selectedItemsValue NOTIFY selectedChanged)
    Q_PROPERTY(qint64 tickedTotal READ tickedTotal NOTIFY selectedChanged)
    Q_PROPERTY(ListModel* cleanItems READ cleanItemsModel CONSTANT)
    Q_PROPERTY(ListModel* recs READ recsModel CONSTANT)
    Q_PROPERTY(ListModel* nowRecs READ nowRecsModel CONSTANT)
    Q_PROPERTY(ListModel* laterRecs READ laterRecsModel CONSTANT)
    Q_PROPERTY(ListModel* safeRecs READ safeRecsModel CONSTANT)
    Q_PROPERTY(QVariant pace READ paceValue NOTIFY paceChanged)
    Q_PROPERTY(QVariant storageShown READ storageShownValue NOTIFY storageShownChanged)
    Q_PROPERTY(ListModel* storageCategories READ storageCategoriesModel CONSTANT)
    Q_PROPERTY(ListModel* storageBiggest READ storageBiggestModel CONSTANT)
    Q_PROPERTY(ListModel* storageApps READ storageAppsModel CONSTANT)
    Q_PROPERTY(ListModel* growthDays READ growthDaysModel CONSTANT)
    Q_PROPERTY(ListModel* growthBiggest READ growthBiggestModel CONSTANT)
    Q_PROPERTY(qint64 cachesToClearBytes READ cachesToClearBytes NOTIFY cachesToClearChanged)
    Q_PROPERTY(int cachesToClearCount READ cachesToClearCount NOTIFY cachesToClearChanged)
    Q_PROPERTY(qint64 freedToday READ freedToday NOTIFY historyChanged)
    Q_PROPERTY(int historyHours READ historyHours NOTIFY historyChanged)
    Q_PROPERTY(QVariantMap vitals READ vitalsValue NOTIFY monitorChanged)
    Q_PROPERTY(QVariant measuredAt READ measuredAtValue NOTIFY monitorChanged)
    Q_PROPERTY(ListModel* appUsage READ appUsageModel CONSTANT)
    Q_PROPERTY(ListModel* slowApps READ slowAppsModel CONSTANT)
    Q_PROPERTY(ListModel* leftovers READ leftoversModel CONSTANT)
    Q_PROPERTY(qint64 memoryCounted READ memoryCounted NOTIFY monitorChanged)
    Q_PROPERTY(int cores READ cores CONSTANT)
    Q_PROPERTY(qint64 physicalMemory READ physicalMemory CONSTANT)
    Q_PROPERTY(double monitorInterval READ monitorInterval NOTIFY monitorIntervalChanged)
    Q_PROPERTY(QVariantList tabs READ tabs CONSTANT)

public:
    enum class WhoMode { cpu, memory };
    struct Batch {
        int done = 0;
        int total = 0;
        friend bool operator==(const Batch&, const Batch&) = default;
    };
    struct Freed {
        double share = 0; // percent of the whole processor a quit gave back
        TimePoint at{};
        friend bool operator==(const Freed&, const Freed&) = default;
    };
    // Everything the advice cache is keyed on; a change of any field rebuilds the advice.
    struct RecsKey {
        std::optional<TimePoint> sample;
        std::vector<int32_t> leftovers;
        std::optional<TimePoint> scan;
        int items = 0;
        int64_t free = 0; // free space in steps of 50 MB
        int snooze = 0;
        std::map<std::string, RecState> acting;
        std::optional<TimePoint> restart;
        friend bool operator==(const RecsKey&, const RecsKey&) = default;
    };

    static constexpr int64_t warnBelow = 10 * GB;

    // The program's one model over the host; made at first use, after the QCoreApplication.
    static AppModel& shared();
    explicit AppModel(AppSetup setup, QObject* parent = nullptr);
    ~AppModel() override;

    // ---- State (C++ side) ----
    [[nodiscard]] const DiskInfo& disk() const { return disk_; }
    [[nodiscard]] const std::vector<CleanItem>& items() const { return items_; }
    [[nodiscard]] const std::set<std::string>& selected() const { return selected_; }
    [[nodiscard]] const std::optional<ScanProgress>& scanProgress() const { return scanProgress_; }
    [[nodiscard]] const std::optional<CleanProgress>& cleanProgress() const { return cleanProgress_; }
    [[nodiscard]] const std::optional<CleanSummary>& cleanSummary() const { return cleanSummary_; }
    [[nodiscard]] const std::optional<TimePoint>& lastScan() const { return lastScan_; }
    [[nodiscard]] const std::optional<CleanReport>& report() const { return report_; }
    [[nodiscard]] const std::set<Tier>& expanded() const { return expanded_; }
    [[nodiscard]] bool confirming() const { return confirming_; }
    [[nodiscard]] bool emptyingTrash() const { return emptyingTrash_; }
    [[nodiscard]] bool loginItemOn() const { return loginItemOn_; }
    [[nodiscard]] Tab tab() const { return tab_; }
    [[nodiscard]] bool tabForward() const { return tabForward_; }
    [[nodiscard]] const std::map<std::string, RecState>& acting() const { return acting_; }
    [[nodiscard]] const std::optional<Batch>& batch() const { return batch_; }
    [[nodiscard]] const std::vector<std::string>& doneToday() const { return doneToday_; }
    [[nodiscard]] const std::optional<std::string>& armed() const { return armed_; }
    [[nodiscard]] const std::optional<Toast>& toast() const { return toast_; }
    [[nodiscard]] WhoMode whoMode() const { return whoMode_; }
    [[nodiscard]] bool restartSheet() const { return restartSheet_; }
    [[nodiscard]] const std::vector<ProjectCard>& projects() const { return projects_; }
    [[nodiscard]] bool projectsBusy() const { return projectsBusy_; }
    [[nodiscard]] const std::optional<SharedPackages>& sharedInsight() const { return shared_; }
    [[nodiscard]] bool showHow() const { return showHow_; }
    [[nodiscard]] bool sharedChecked() const { return sharedChecked_; }
    [[nodiscard]] const std::optional<GrowthReport>& growth() const { return growth_; }
    [[nodiscard]] bool growthRunning() const { return growthRunning_; }
    [[nodiscard]] const std::optional<int>& weekDay() const { return weekDay_; }
    [[nodiscard]] const std::set<std::string>& freedProjects() const { return freedProjects_; }
    [[nodiscard]] int snoozeTick() const { return snoozeTick_; }
    [[nodiscard]] const std::map<std::string, Freed>& recentlyFreed() const { return recentlyFreed_; }
    [[nodiscard]] const std::optional<int>& lastScanSeconds() const { return lastScanSeconds_; }
    [[nodiscard]] const std::optional<std::string>& failedRec() const { return failedRec_; }
    [[nodiscard]] bool settingsOpen() const { return settingsOpen_; }
    [[nodiscard]] const std::optional<StorageReport>& storage() const { return storage_; }
    [[nodiscard]] const std::optional<StorageReport>& storageLive() const { return storageLive_; }
    [[nodiscard]] bool storageBusy() const { return storageBusy_; }
    [[nodiscard]] const std::set<std::string>& trashing() const { return trashing_; }

    void setConfirming(bool on);
    void setRestartSheet(bool on);
    void setShowHow(bool on);
    void setSettingsOpen(bool on);
    void setWhoMode(WhoMode mode);
    void setWeekDay(std::optional<int> day);

    // ---- Derived ----
    [[nodiscard]] bool isScanning() const { return scanProgress_.has_value(); }
    [[nodiscard]] bool isCleaning() const { return cleanProgress_.has_value(); }
    [[nodiscard]] bool isLow() const { return disk_.available < warnBelow; }
    [[nodiscard]] std::optional<double> scanFraction() const;
    [[nodiscard]] std::vector<CleanItem> itemsIn(Tier tier) const;
    [[nodiscard]] int64_t total(Tier tier) const;
    [[nodiscard]] int64_t ticked(Tier tier) const;
    [[nodiscard]] int64_t cleanable() const;
    [[nodiscard]] std::vector<CleanItem> selectedItems() const;
    [[nodiscard]] int64_t tickedTotal() const;
    [[nodiscard]] bool allSelected(Tier tier) const;
    [[nodiscard]] bool startsTicked(const CleanItem& item) const;
    // The advice, from the cache while nothing it is keyed on changed.
    [[nodiscard]] const std::vector<Rec>& recs();
    [[nodiscard]] std::vector<Rec> nowRecs();
    [[nodiscard]] std::vector<Rec> laterRecs();
    [[nodiscard]] std::vector<Rec> safeRecs();
    [[nodiscard]] std::optional<Pace> pace() const;
    [[nodiscard]] std::vector<CleanItem> cachesToClear() const;
    [[nodiscard]] const StorageReport* storageShown() const;

    // ---- Operations ----
    void refreshDisk();
    void go(Tab tab);
    void toggle(const CleanItem& item);
    void setAll(Tier tier, bool on);
    void setExpanded(Tier tier, bool on);
    void say(std::string text, Toast::Kind kind, std::optional<std::string> action = std::nullopt,
             std::function<void()> perform = {});
    Q_INVOKABLE void holdToast(bool hovering);
    Q_INVOKABLE void runToastAction();

    // Scan and clean.
    void scan(std::function<void()> then);
    Q_INVOKABLE void scan() { scan(std::function<void()>{}); }
    Q_INVOKABLE void scanIfStale(double maxAge = 600);
    Q_INVOKABLE void cancelScan();
    void finishScan(std::vector<CleanItem> found, int folders, const std::shared_ptr<ScanToken>& token);
    // The scanned state that pictures of the screens show: every unlocked item that is on by
    // default ticked (the user's own choices and the staleness rules aside), the scan dated now
    // and said to have taken `seconds`, the disk read again.
    void settleForPictures(int seconds);
    void clean(const std::vector<CleanItem>& chosen, const std::string& source, std::optional<std::string> label = std::nullopt,
               std::function<void(const CleanReport&)> finished = {});
    Q_INVOKABLE void cleanSelected();
    Q_INVOKABLE void cleanSafeNow(const QString& source = QStringLiteral("menu"));
    Q_INVOKABLE void emptyTrash();
    Q_INVOKABLE void dismissReport();
    Q_INVOKABLE void dismissSummary();

    // Acting on advice.
    void arm(const std::string& key, std::function<void()> action);
    // Both take a copy: acting on a piece of advice rebuilds the list it came from.
    void run(Rec rec);
    void perform(std::vector<Rec> chosen, bool batch, std::function<void()> finished = {});
    void snooze(Rec rec);
    Q_INVOKABLE void runSafe();
    void quitFromAlert(const std::vector<std::string>& keys);
    Q_INVOKABLE void restartNow();
    Q_INVOKABLE void remindRestart();
    void moveToTrash(const std::string& path, const std::string& name, int64_t bytes);
    void lowSpace();

    // Background refreshes.
    Q_INVOKABLE void measureStorage();
    Q_INVOKABLE void measureStorageIfStale(double maxAge = 21600);
    Q_INVOKABLE void stopStorage();
    Q_INVOKABLE void refreshGrowth();
    Q_INVOKABLE void refreshGrowthIfStale(double maxAge = 43200);
    Q_INVOKABLE void refreshProjects(bool wanted);

    // Start-up and the window.
    void start(bool background);
    Q_INVOKABLE void setLive(const QString& view, bool on);
    void showWindow(std::optional<Tab> tab);
    Q_INVOKABLE void showWindow(int tab = -1);
    Q_INVOKABLE void openSettings();
    // Writes or removes the autostart entry, then shows what is on disk: a failed write
    // leaves the switch off.
    Q_INVOKABLE void setLoginItem(bool on);
    // The desktop hands in what opens the window once it can; a launch by hand then opens it.
    void menuBarReady(std::function<void()> open);

    // ---- QML calls by id ----
    Q_INVOKABLE void go(int tab) { goValue(tab); }
    Q_INVOKABLE void toggle(const QString& itemId);
    Q_INVOKABLE void setAll(int tier, bool on);
    Q_INVOKABLE bool isTicked(const QString& itemId) const;
    Q_INVOKABLE qint64 total(int tier) const;
    Q_INVOKABLE qint64 ticked(int tier) const;
    Q_INVOKABLE bool allSelected(int tier) const;
    Q_INVOKABLE ListModel* itemsIn(int tier);
    Q_INVOKABLE void setExpanded(int tier, bool on);
    Q_INVOKABLE void clean(const QStringList& itemIds, const QString& source, const QString& label = {});
    Q_INVOKABLE void run(const QString& recId);
    Q_INVOKABLE void snooze(const QString& recId);
    Q_INVOKABLE void quitFromAlert(const QStringList& keys);
    Q_INVOKABLE void moveToTrash(const QString& path, const QString& name, qint64 bytes);
    Q_INVOKABLE void armTrash(const QString& path, const QString& name, qint64 bytes);
    Q_INVOKABLE void armQuickClean();
    Q_INVOKABLE void armFreeProject(const QString& cardId);
    Q_INVOKABLE void stopProjectLeftovers(const QString& cardId);
    Q_INVOKABLE QString refillNote(const QString& itemId) const;
    // Percent of the processor given back by quits within the last `seconds`.
    Q_INVOKABLE double freedShareWithin(double seconds) const;
    // Whether a storage row at `path` may be offered for the Trash.
    Q_INVOKABLE bool canTrash(const QString& path) const;

    // ---- For the desktop and tests ----
    [[nodiscard]] AppClock& clock() const { return *setup.clock; }
    [[nodiscard]] History& history() const { return *history_; }
    [[nodiscard]] Monitor& monitor() { return *monitor_; }
    [[nodiscard]] const Monitor& monitor() const { return *monitor_; }
    [[nodiscard]] const AppSetup& environment() const { return setup; }
    // The desktop's notifier, handed in once the program knows it runs on a desktop; before
    // `start`, so that a pending restart reminder reaches it.
    void attachNotifier(Notifier* notifier) { setup.notifier = notifier; }
    [[nodiscard]] bool warned() const { return warned_; }
    [[nodiscard]] bool warnedCritical() const { return warnedCritical_; }
    [[nodiscard]] const std::map<std::string, bool>& overrides() const { return overrides_; }
    [[nodiscard]] bool wantsWindowAtLaunch() const { return wantsWindowAtLaunch_; }
    // Blocks until every job on the workers has returned and posted its result; the results
    // land with the next pass of the event loop.
    void waitForWorkers() { worker.waitForDone(); }
    // Finds a piece of advice on screen by its id, the ones just done included.
    [[nodiscard]] std::optional<Rec> recById(const std::string& id);

    // QML getters.
    [[nodiscard]] QVariantMap diskValue() const;
    [[nodiscard]] QStringList selectedIds() const;
    [[nodiscard]] QVariant scanProgressValue() const;
    [[nodiscard]] QVariant cleanProgressValue() const;
    [[nodiscard]] QVariant cleanSummaryValue() const;
    [[nodiscard]] QVariant lastScanValue() const;
    [[nodiscard]] QVariant reportValue() const;
    [[nodiscard]] QVariantList expandedValue() const;
    [[nodiscard]] int tabValue() const { return Tabs::id(tab_); }
    void goValue(int tab);
    [[nodiscard]] QVariantMap actingValue() const;
    [[nodiscard]] QVariant batchValue() const;
    [[nodiscard]] QStringList doneTodayValue() const;
    [[nodiscard]] QString armedValue() const;
    [[nodiscard]] QVariant toastValue() const;
    [[nodiscard]] QString whoModeValue() const;
    void setWhoModeValue(const QString& mode);
    [[nodiscard]] QVariant sharedValue() const;
    [[nodiscard]] QVariant growthValue() const;
    [[nodiscard]] int weekDayValue() const { return weekDay_.value_or(-1); }
    void setWeekDayValue(int day);
    [[nodiscard]] QStringList freedProjectsValue() const;
    [[nodiscard]] QVariantMap recentlyFreedValue() const;
    [[nodiscard]] int lastScanSecondsValue() const { return lastScanSeconds_.value_or(0); }
    [[nodiscard]] QString failedRecValue() const;
    [[nodiscard]] QVariant storageValue() const;
    [[nodiscard]] QVariant storageLiveValue() const;
    [[nodiscard]] QStringList trashingValue() const;
    [[nodiscard]] QVariant scanFractionValue() const;
    [[nodiscard]] QVariantList selectedItemsValue() const;
    [[nodiscard]] QVariant paceValue() const;
    [[nodiscard]] QVariant storageShownValue() const;
    [[nodiscard]] qint64 cachesToClearBytes() const;
    [[nodiscard]] int cachesToClearCount() const;
    [[nodiscard]] qint64 freedToday() const;
    [[nodiscard]] int historyHours() const;
    [[nodiscard]] QVariantMap vitalsValue() const;
    [[nodiscard]] QVariant measuredAtValue() const;
    [[nodiscard]] qint64 memoryCounted() const;
    [[nodiscard]] int cores() const { return setup.cores; }
    [[nodiscard]] qint64 physicalMemory() const;
    [[nodiscard]] double monitorInterval() const;
    [[nodiscard]] static QVariantList tabs();

    [[nodiscard]] ListModel* itemsModel() { return &itemsList; }
    [[nodiscard]] ListModel* cleanItemsModel() { return &cleanItemsList; }
    [[nodiscard]] ListModel* recsModel() { return &recsList; }
    [[nodiscard]] ListModel* nowRecsModel() { return &nowRecsList; }
    [[nodiscard]] ListModel* laterRecsModel() { return &laterRecsList; }
    [[nodiscard]] ListModel* safeRecsModel() { return &safeRecsList; }
    [[nodiscard]] ListModel* projectsModel() { return &projectsList; }
    [[nodiscard]] ListModel* storageCategoriesModel() { return &categoriesList; }
    [[nodiscard]] ListModel* storageBiggestModel() { return &biggestList; }
    [[nodiscard]] ListModel* storageAppsModel() { return &appSizesList; }
    [[nodiscard]] ListModel* growthDaysModel() { return &growthDaysList; }
    [[nodiscard]] ListModel* growthBiggestModel() { return &growthPlacesList; }
    [[nodiscard]] ListModel* appUsageModel() { return &appUsageList; }
    [[nodiscard]] ListModel* slowAppsModel() { return &slowAppsList; }
    [[nodiscard]] ListModel* leftoversModel() { return &leftoversList; }

signals:
    void diskChanged();
    void itemsChanged();
    void selectedChanged();
    void scanProgressChanged();
    void cleanProgressChanged();
    void cleanSummaryChanged();
    void lastScanChanged();
    void reportChanged();
    void expandedChanged();
    void confirmingChanged();
    void emptyingTrashChanged();
    void loginItemOnChanged();
    void tabChanged();
    void tabForwardChanged();
    void actingChanged();
    void batchChanged();
    void doneTodayChanged();
    void armedChanged();
    void toastChanged();
    void whoModeChanged();
    void restartSheetChanged();
    void projectsChanged();
    void projectsBusyChanged();
    void sharedChanged();
    void showHowChanged();
    void sharedCheckedChanged();
    void growthChanged();
    void growthRunningChanged();
    void weekDayChanged();
    void freedProjectsChanged();
    void snoozeTickChanged();
    void recentlyFreedChanged();
    void lastScanSecondsChanged();
    void failedRecChanged();
    void settingsOpenChanged();
    void storageChanged();
    void storageLiveChanged();
    void storageBusyChanged();
    void trashingChanged();

    void paceChanged();
    void storageShownChanged();
    void cachesToClearChanged();
    void historyChanged();
    void monitorChanged();
    void monitorIntervalChanged();
    void recsChanged();
    // A scan finished and its results landed; a clean finished and its report stands.
    void scanFinished();
    void cleanFinished();

private:
    // Writes a field and notifies only when the value differs.
    template <class T>
    bool put(T& field, T value, void (AppModel::*signal)()) {
        if (field == value) return false;
        field = std::move(value);
        emit(this->*signal)();
        return true;
    }
    void setDisk(DiskInfo value);
    void setItems(std::vector<CleanItem> value);
    void setSelected(std::set<std::string> value);
    void setScanProgress(std::optional<ScanProgress> value);
    void setActing(const std::string& id, std::optional<RecState> state);
    void setArmed(std::optional<std::string> key);
    void setFailedRec(std::optional<std::string> id);
    void setProjects(std::vector<ProjectCard> cards);
    void setStorage(std::optional<StorageReport> report);
    void setStorageLive(std::optional<StorageReport> report);
    void setGrowth(std::optional<GrowthReport> report);
    void setTrashing(const std::string& path, bool on);
    void showStorage();
    // Rebuilds the advice lists when what the advice is keyed on changed.
    void refreshRecs();
    [[nodiscard]] RecsKey recsKey() const;
    void dismissToast(double seconds);
    void monitorSampled();
    void finishClean(const std::vector<CleanItem>& targets, const std::vector<CleanItem>& order, RemovalResult result,
                     int64_t before, int64_t after, const std::string& source, const std::optional<std::string>& label,
                     const std::function<void(const CleanReport&)>& finished);
    void performStep(std::shared_ptr<PerformRun> run);
    void execute(const Rec& rec, std::function<void(Actions::Outcome)> done);
    [[nodiscard]] std::vector<CleanItem> itemsWithIds(const std::vector<std::string>& ids) const;
    [[nodiscard]] TimePoint now() const { return setup.clock->now(); }
    void after(double seconds, std::function<void()> job) { setup.clock->after(seconds, this, std::move(job)); }
    void touchTicks(const std::set<std::string>& ids);
    void touchRec(const std::string& id);
    void touchArmedRows(const std::optional<std::string>& a, const std::optional<std::string>& b);

    AppSetup setup;
    std::unique_ptr<History> ownHistory;
    History* history_;
    Worker worker;
    MonitorHost monitorHost;
    std::unique_ptr<Monitor> monitor_;

    // Observed state.
    DiskInfo disk_;
    std::vector<CleanItem> items_;
    std::set<std::string> selected_;
    std::optional<ScanProgress> scanProgress_;
    std::optional<CleanProgress> cleanProgress_;
    std::optional<CleanSummary> cleanSummary_;
    std::optional<TimePoint> lastScan_;
    std::optional<CleanReport> report_;
    std::set<Tier> expanded_;
    bool confirming_ = false;
    bool emptyingTrash_ = false;
    bool loginItemOn_ = false;
    Tab tab_ = Tab::home;
    bool tabForward_ = true;
    std::map<std::string, RecState> acting_;
    std::optional<Batch> batch_;
    std::vector<std::string> doneToday_;
    std::optional<std::string> armed_;
    std::optional<Toast> toast_;
    WhoMode whoMode_ = WhoMode::cpu;
    bool restartSheet_ = false;
    std::vector<ProjectCard> projects_;
    bool projectsBusy_ = false;
    std::optional<SharedPackages> shared_;
    bool showHow_ = false;
    bool sharedChecked_ = false;
    std::optional<GrowthReport> growth_;
    bool growthRunning_ = false;
    std::optional<int> weekDay_;
    std::set<std::string> freedProjects_;
    int snoozeTick_ = 0;
    std::map<std::string, Freed> recentlyFreed_;
    std::optional<int> lastScanSeconds_;
    std::optional<std::string> failedRec_;
    bool settingsOpen_ = false;
    std::optional<StorageReport> storage_;
    std::optional<StorageReport> storageLive_;
    bool storageBusy_ = false;
    std::set<std::string> trashing_;

    // Plain state.
    std::shared_ptr<ScanToken> storageToken;
    std::function<void()> openWindowAction;
    bool wantsWindowAtLaunch_ = false;
    std::map<std::string, bool> overrides_;
    bool warned_ = false;
    bool warnedCritical_ = false;
    std::vector<std::function<void()>> afterScan;
    std::optional<AppClock::Id> diskTimer;
    std::map<std::string, Rec> snaps;
    std::optional<AppClock::Id> armTimer;
    std::optional<AppClock::Id> toastTimer;
    std::function<void()> toastPerform;
    TimePoint scanStarted{};
    std::shared_ptr<ScanToken> scanToken;
    std::optional<std::pair<RecsKey, std::vector<Rec>>> recsCache;
    uint64_t nextToastId = 1;
    bool started = false;

    // The lists views show.
    RecordListModel<CleanItem> itemsList;
    std::array<std::unique_ptr<RecordListModel<CleanItem>>, 3> tierLists;
    RecordListModel<CleanItem> cleanItemsList;
    RecordListModel<Rec> recsList, nowRecsList, laterRecsList, safeRecsList;
    RecordListModel<ProjectCard> projectsList;
    RecordListModel<StorageCategory> categoriesList;
    RecordListModel<BigFile> biggestList;
    RecordListModel<AppSize> appSizesList;
    RecordListModel<GrowthDay> growthDaysList;
    RecordListModel<GrowthPlace> growthPlacesList;
    RecordListModel<AppUsage> appUsageList, slowAppsList;
    RecordListModel<Leftover> leftoversList;
};
