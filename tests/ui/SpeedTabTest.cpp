// The Speed tab: the words and colours of its pill and cards, the who panel's rows, the causes
// it keeps and the one it leaves out, the freed figure that goes by itself, and the tab on
// screen reaching the model when a person clicks.
#include "LiveScreens.h"

#include "foundation/Fmt.h"
#include "ui/Pictures.h"
#include "ui/ScreenPictures.h"
#include "ui/SpeedState.h"
#include "ui/UiEngine.h"
#include "ui/speed/SpeedWords.h"
#include "ui/speed/WhoPanel.h"

#include <QDir>

#include <ctime>

#include <gtest/gtest.h>

using namespace live;

namespace {

Vitals vitals(std::optional<double> cpu, int pressure = 1, TimePoint boot = addSeconds(Clock::now(), -3 * 86400.0)) {
    Vitals v;
    v.cpu = cpu;
    v.pressure = pressure;
    v.freePercent = 18;
    v.compressed = 2'100'000'000;
    v.swapUsed = 3'400'000'000;
    v.swapTotal = 8'000'000'000;
    v.swappedOut = 41'000'000'000;
    v.boot = boot;
    return v;
}

bool mentionsMac(const std::string& s) {
    return s.find("Mac") != std::string::npos || s.find("macOS") != std::string::npos;
}

// Nine apps, the busiest first by processor; by memory the order differs.
std::vector<AppUsage> nineApps(TimePoint now) {
    return {app("/usr/share/applications/firefox.desktop", "Firefox", 1.2, 2'400'000'000, 14, 3600, now),
            app("/usr/share/applications/code.desktop", "VS Code", 0.8, 1'900'000'000, 9, 5 * 86400.0, now),
            app("proc:node", "node", 0.6, 600'000'000, 2, std::nullopt, now),
            app("proc:System services", "System services", 0.3, 700'000'000, 40, std::nullopt, now),
            app("/usr/share/applications/slack.desktop", "Slack", 0.2, 900'000'000, 5, 600, now),
            app("/usr/share/applications/spotify.desktop", "Spotify", 0.1, 400'000'000, 3, 600, now),
            app("proc:dockerd", "dockerd", 0.05, 300'000'000, 1, 600, now),
            app("/usr/share/applications/thunderbird.desktop", "Thunderbird", 0.02, 500'000'000, 4, 600, now),
            app("proc:syncthing", "syncthing", 0.01, 100'000'000, 1, 600, now)};
}

// Slack busy in the background, to be quit with an arming button.
Rec slackQuit() {
    Rec quit = makeRec("quit:slack", RecAction::quit("/usr/share/applications/slack.desktop"), true, false, true);
    quit.title = "Quit Slack";
    quit.why = "Busy in the background for 14 minutes.";
    quit.shortLabel = "Quit";
    quit.busyLabel = "Quitting";
    quit.doneLabel = "Quit";
    quit.reason = RecReason::slow;
    quit.impact = RecImpact{RecImpact::Kind::cpu, "", 0};
    quit.cpuShare = 22;
    return quit;
}

} // namespace

TEST(SpeedWords, ThePillCountsSlowAppsFirstThenMemoryAndLeftoversNever) {
    const auto calm = SpeedWords::state(0, false);
    EXPECT_EQ(calm.text, "Running well");
    EXPECT_EQ(calm.symbol, "checkmark");
    EXPECT_EQ(calm.tint, "greenText");
    EXPECT_EQ(SpeedWords::state(1, false).text, "Slow: 1 app busy in the background");
    EXPECT_EQ(SpeedWords::state(3, true).text, "Slow: 3 apps busy in the background");
    EXPECT_EQ(SpeedWords::state(0, true).text, "Memory tight");
    EXPECT_EQ(SpeedWords::state(0, true).tint, "amberText");
}

TEST(SpeedWords, MemoryReadsFineTightOrCriticalAndSpeaksOfTheComputer) {
    const int64_t ram = 16LL << 30;
    Vitals v = vitals(40, 1);
    auto fine = SpeedWords::memory(v, ram);
    EXPECT_EQ(fine.word, "Fine");
    EXPECT_EQ(fine.fg, "greenText");
    EXPECT_EQ(fine.info, "The system has room to spare. It squeezes 2.1 GB of memory to fit more in, which is normal.");
    EXPECT_EQ(fine.value, "18%");
    EXPECT_EQ(fine.sub, "2.1 GB squeezed of 16 GB");
    // Nothing squeezed (no zram, no zswap): no sentence about squeezing.
    v.compressed = 0;
    EXPECT_EQ(SpeedWords::memory(v, ram).info, "The system has room to spare.");

    v.compressed = 2'100'000'000;
    for (int pressure : {2, 3}) {
        v.pressure = pressure; // 3 is never reported, and still reads "Tight"
        const auto tight = SpeedWords::memory(v, ram);
        EXPECT_EQ(tight.word, "Tight") << pressure;
        EXPECT_EQ(tight.fg, "amberText");
        EXPECT_EQ(tight.info, "Your apps want more than your 16 GB, so the system squeezes memory (2.1 GB of it now) and moves "
                              "the rest to disk. Switching apps then waits on the disk. That is the lag you feel.");
    }
    v.pressure = 4;
    EXPECT_EQ(SpeedWords::memory(v, ram).word, "Critical");
    EXPECT_EQ(SpeedWords::memory(v, ram).fg, "red");
}

TEST(SpeedWords, ProcessorSwapUptimeAndHeat) {
    EXPECT_EQ(SpeedWords::cpuValue(std::nullopt), "\u2026");
    EXPECT_EQ(SpeedWords::cpuValue(37.4), "37%");
    EXPECT_EQ(SpeedWords::cpuInfo(8), "Measured across all 8 cores. 100% would mean every core is busy. Quitting an app takes its share off at once.");
    EXPECT_EQ(SpeedWords::cpuSub(8), "Coloured by app, 8 cores");
    EXPECT_EQ(SpeedWords::freed(0.99), std::nullopt);
    EXPECT_EQ(SpeedWords::freed(1.0), "1% freed");
    EXPECT_EQ(SpeedWords::freed(24.6), "25% freed");

    const TimePoint now = Clock::now();
    Vitals v = vitals(10, 1, addSeconds(now, -5 * 3600.0));
    v.swapTotal = 0;
    v.swapUsed = 0;
    EXPECT_EQ(SpeedWords::swap(v, 0).sub, "None in use");
    EXPECT_FALSE(SpeedWords::swap(v, 0).warn);
    v.swapTotal = 8'000'000'000;
    v.swapUsed = 999'999'999;
    EXPECT_FALSE(SpeedWords::swap(v, 1).warn);
    v.swapUsed = 1'000'000'000;
    const auto swap = SpeedWords::swap(v, 1);
    EXPECT_TRUE(swap.warn);
    EXPECT_EQ(swap.sub, "of 8.0 GB, on your disk");
    EXPECT_EQ(swap.info, "Memory that did not fit in RAM, parked on your disk. The system has written 41.0 GB of it since you "
                         "last restarted, 1 day ago. A restart empties it.");
    EXPECT_NE(SpeedWords::swap(v, 3).info.find("3 days ago"), std::string::npos);

    auto up = SpeedWords::uptime(v, now);
    EXPECT_EQ(up.value, "5");
    EXPECT_EQ(up.unit, "hours");
    // A boot days ago still tells its time of day, not its date twice.
    {
        const std::time_t t = Clock::to_time_t(addSeconds(now, -3 * 86400.0));
        std::tm parts{};
        localtime_r(&t, &parts);
        parts.tm_hour = 9;
        parts.tm_min = 5;
        Vitals early = v;
        early.boot = Clock::from_time_t(std::mktime(&parts));
        EXPECT_EQ(SpeedWords::uptime(early, now).sub, "Since " + Fmt::dayMonth(early.boot) + ", 9:05");
    }
    v.boot = addSeconds(now, -3700);
    EXPECT_EQ(SpeedWords::uptime(v, now).unit, "hour");
    v.boot = addSeconds(now, -86400 - 60);
    EXPECT_EQ(SpeedWords::uptime(v, now).value, "1");
    EXPECT_EQ(SpeedWords::uptime(v, now).unit, "day");
    v.boot = addSeconds(now, -2.5 * 86400);
    EXPECT_EQ(SpeedWords::uptime(v, now).unit, "days");

    for (int t : {0, 1}) {
        v.thermal = t;
        EXPECT_EQ(SpeedWords::uptime(v, now).heat.text, "Heat normal");
        EXPECT_EQ(SpeedWords::uptime(v, now).heatInfo, "The system reports no heat limits, so nothing is being slowed down to cool off.");
    }
    v.thermal = 2;
    EXPECT_EQ(SpeedWords::uptime(v, now).heat.text, "Hot");
    EXPECT_EQ(SpeedWords::uptime(v, now).heat.tint, "orange");
    EXPECT_EQ(SpeedWords::uptime(v, now).heatInfo, "The system is slowing the processor to cool down. Quitting busy apps helps.");
    v.thermal = 3;
    EXPECT_EQ(SpeedWords::uptime(v, now).heat.text, "Too hot");
    EXPECT_EQ(SpeedWords::uptime(v, now).heat.tint, "red");

    EXPECT_FALSE(mentionsMac(SpeedWords::whoInfo(true, 8, 16LL << 30)));
    EXPECT_EQ(SpeedWords::whoTotal(true, 10, 9'400'000'000, 16LL << 30), "9.4 GB counted on a 16 GB computer");
    EXPECT_EQ(SpeedWords::whoTotal(false, std::nullopt, 0, 0), "0% of the processor busy");
    EXPECT_EQ(SpeedWords::whoTotal(false, 41.6, 0, 0), "42% of the processor busy");
}

TEST(WhoPanel, SevenAppsByTheChosenMeasureThenLeftoversThenTheRestNeverBelowZero) {
    const TimePoint now = Clock::now();
    const auto apps = nineApps(now);
    const std::vector<Leftover> lefts{leftover(501, "vite dev server", "/home/u/code/blog", 250'000'000, now),
                                      leftover(502, "tsc --watch", "/home/u/code/blog", 150'000'000, now)};
    WhoPanel::Input in;
    in.apps = &apps;
    in.leftovers = &lefts;
    in.cpu = 90;
    in.cores = 4;
    in.systemKey = "proc:System services";
    in.now = now;
    auto rows = WhoPanel::rows(in);
    ASSERT_EQ(rows.size(), 9u); // seven apps, the leftovers, the rest
    EXPECT_EQ(rows[0].name, "Firefox");
    EXPECT_DOUBLE_EQ(rows[0].value, 30); // 1.2 of 4 cores
    EXPECT_EQ(rows[0].label, "30%");
    EXPECT_EQ(rows[0].symbol, "app");
    EXPECT_EQ(rows[0].sub, "14 processes"); // started an hour ago
    EXPECT_EQ(rows[1].sub, "Open since " + Fmt::dayMonth(addSeconds(now, -5 * 86400.0)));
    EXPECT_EQ(rows[2].symbol, "terminal");
    EXPECT_EQ(rows[2].sub, "2 processes"); // no start known
    EXPECT_EQ(rows[3].symbol, "apple.logo");
    EXPECT_EQ(rows[3].tint, "slate");
    EXPECT_EQ(rows[6].name, "dockerd");
    EXPECT_EQ(rows[6].sub, "1 process");
    EXPECT_EQ(rows[7].id, "leftovers");
    EXPECT_EQ(rows[7].sub, "2 processes with no session");
    EXPECT_EQ(rows[7].value, 0); // their load isn't measured
    EXPECT_EQ(rows[7].label, "0%");
    const auto& rest = rows[8];
    EXPECT_EQ(rest.id, "rest");
    EXPECT_EQ(rest.sub, "The system and 2 more");
    EXPECT_NEAR(rest.value, 90 - (1.2 + 0.8 + 0.6 + 0.3 + 0.2 + 0.1 + 0.05) / 4 * 100, 1e-9);

    // Smoothed per app, the bars can add up past the total: the rest stays at 0.
    in.cpu = 20;
    EXPECT_EQ(WhoPanel::rows(in).back().value, 0);
    EXPECT_EQ(WhoPanel::rows(in).back().label, "0%");
    in.cpu = std::nullopt;
    EXPECT_EQ(WhoPanel::rows(in).back().value, 0);

    in.memoryMode = true;
    in.memoryCounted = 10'000'000'000;
    rows = WhoPanel::rows(in);
    EXPECT_EQ(rows[0].name, "Firefox");
    EXPECT_EQ(rows[1].name, "VS Code");
    EXPECT_EQ(rows[2].name, "Slack"); // 900 MB: third by memory, fifth by processor
    EXPECT_EQ(rows[2].label, "900 MB");
    EXPECT_EQ(rows[7].value, 400'000'000);
    EXPECT_EQ(rows[7].label, "400 MB");
    double sum = 0;
    for (std::size_t i = 0; i + 1 < rows.size(); ++i) sum += rows[i].value;
    EXPECT_DOUBLE_EQ(rows.back().value, 10'000'000'000 - sum);
    EXPECT_EQ(rows.back().sub, "The system and 2 more apps and tools");
    in.memoryCounted = 1;
    EXPECT_EQ(WhoPanel::rows(in).back().value, 0);

    // Few apps: nothing is left unshown to count.
    const std::vector<AppUsage> two(apps.begin(), apps.begin() + 2);
    in.apps = &two;
    in.leftovers = nullptr;
    rows = WhoPanel::rows(in);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows.back().sub, "");
}

TEST(WhoPanel, TheClaudeAppIsNamedForWhatItRunsOnlyWhereItExists) {
    const TimePoint now = Clock::now();
    AppUsage claude = app("/opt/Claude/claude.desktop", "Claude", 0.4, 800'000'000, 6, 600, now);
    claude.bundleID = "com.anthropic.claudefordesktop";
    const std::vector<AppUsage> apps{claude};
    WhoPanel::Input in;
    in.apps = &apps;
    in.now = now;
    EXPECT_EQ(WhoPanel::rows(in)[0].name, "Claude"); // no such app on this desktop
    in.claudeId = "com.anthropic.claudefordesktop";
    EXPECT_EQ(WhoPanel::rows(in)[0].name, "Claude and what it runs");
    EXPECT_EQ(WhoPanel::rows(in)[0].sub, "Includes this session");
    // The same colour for the same app, sample after sample.
    EXPECT_EQ(WhoPanel::rows(in)[0].tint, WhoPanel::rows(in)[0].tint);
}

TEST(SpeedState, FollowsTheMonitorAndKeepsOnlyAdviceThatGivesSpeedBack) {
    Machine h;
    Rec quit = makeRec("quit:slack", RecAction::quit("/usr/share/applications/slack.desktop"), true, true);
    quit.cpuShare = 25;
    h.canned = std::vector<Rec>{quit, makeRec("caches", RecAction::clearCaches()), makeRec("leftovers", RecAction::stopLeftovers()),
                                makeRec("idle-projects", RecAction::freeItems({"x"})), makeRec("restart", RecAction::restart())};
    AppModel& m = h.start();
    SpeedState speed;
    speed.setModel(&m);

    // Before the second sample there is no processor figure, and leftovers alone are not slow.
    h.sample(vitals(std::nullopt), {}, {leftover(77, "vite", "/tmp/x", 1, h.clock.now())});
    EXPECT_EQ(speed.processor()["value"].toString(), "\u2026");
    EXPECT_EQ(speed.pill()["text"].toString(), "Running well");
    h.sample(vitals(30, 2), nineApps(h.clock.now()));
    EXPECT_EQ(speed.pill()["text"].toString(), "Memory tight");
    EXPECT_EQ(speed.processor()["value"].toString(), "30%");
    EXPECT_EQ(speed.memory()["word"].toString(), "Tight");

    // Cleaning advice stays out of this tab.
    ASSERT_EQ(speed.causeCount(), 3);
    QStringList ids;
    for (int r = 0; r < speed.causes()->rowCount(); ++r)
        ids << speed.causes()->index(r, 0).data(m.recsModel()->roleNames().key("id")).toString();
    EXPECT_EQ(ids, (QStringList{"quit:slack", "leftovers", "restart"}));

    // An app wears the same colour in the processor bar as in its row, the system's services too.
    const QVariantList segments = speed.processor()["segments"].toList();
    ASSERT_GE(segments.size(), 3);
    for (const auto& segment : segments) {
        const auto seg = segment.toMap();
        const auto& rows = speed.whoRows();
        auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& r) { return r.id == seg["id"].toString().toStdString(); });
        ASSERT_NE(row, rows.end()) << seg["id"].toString().toStdString();
        EXPECT_EQ(seg["color"].toString().toStdString(), row->tint) << row->id;
    }

    // The who panel switches measure with the model.
    EXPECT_EQ(speed.whoRows()[2].name, "node");
    m.setWhoMode(AppModel::WhoMode::memory);
    EXPECT_EQ(speed.whoRows()[2].name, "Slack");
    EXPECT_TRUE(speed.who()["total"].toString().endsWith("computer"));

    // An app that ends between two samples leaves its row; the next app moves up.
    auto apps = nineApps(h.clock.now());
    apps.erase(apps.begin() + 4); // Slack
    h.clock.advance(3);
    h.sample(vitals(30, 2), apps);
    for (const auto& row : speed.whoRows()) EXPECT_NE(row.name, "Slack");
    EXPECT_EQ(speed.whoRows()[2].name, "System services");
}

TEST(SpeedState, WhatAQuitFreedShowsForThreeMinutesAndGoesByItself) {
    Machine h;
    Rec quit = makeRec("quit:slack", RecAction::quit("/usr/share/applications/slack.desktop"), true, true);
    quit.cpuShare = 24.6;
    h.canned = std::vector<Rec>{quit};
    AppModel& m = h.start();
    h.sample(vitals(30), nineApps(h.clock.now()));
    SpeedState speed;
    speed.setModel(&m);
    EXPECT_EQ(speed.processor()["freed"].toString(), "");

    m.run(m.recs()[0]);
    ASSERT_TRUE(AppHarness::waitUntil([&] { return !m.recentlyFreed().empty(); }));
    EXPECT_EQ(speed.processor()["freed"].toString(), "25% freed");
    h.clock.advance(179);
    EXPECT_EQ(speed.processor()["freed"].toString(), "25% freed");
    // No sample, no click: the clock alone takes it away.
    h.clock.advance(1.5);
    EXPECT_EQ(speed.processor()["freed"].toString(), "");
}

TEST(SpeedTab, ClicksReachTheModelAndEveryStateReadsRight) {
    Machine h;
    const Rec quit = slackQuit();
    // With no cause, the panel says so.
    h.canned = std::vector<Rec>{};
    AppModel& m = h.start();
    h.sample(vitals(12), nineApps(h.clock.now()));
    Screen screen("speed/SpeedTab.qml");
    ASSERT_TRUE(screen.find("statePill"));
    EXPECT_TRUE(showsText(screen.find("statePill"), "Running well"));
    EXPECT_TRUE(screen.shown("nothingSlow"));
    EXPECT_FALSE(screen.shown("claudeRow"));

    Rec stop = makeRec("leftovers", RecAction::stopLeftovers(), true, true);
    stop.shortLabel = "Stop";
    h.canned = std::vector<Rec>{quit, stop};
    h.clock.advance(3);
    const TimePoint now = h.clock.now();
    h.sample(vitals(30), nineApps(now),
             {leftover(501, "vite dev server", "/home/u/code/blog", 250'000'000, now),
              leftover(502, "tsc --watch", "/home/u/code/blog", 150'000'000, now)});
    ASSERT_TRUE(AppHarness::waitUntil([&] { return m.recs().size() == 2; }));
    EXPECT_FALSE(screen.shown("nothingSlow"));

    // An arming fix waits for the second press, then runs.
    QQuickItem* fix = within(screen.find("cause-quit:slack"), "fix");
    ASSERT_TRUE(fix);
    EXPECT_EQ(fix->property("text").toString(), "Quit");
    screen.click(fix);
    EXPECT_EQ(m.armed(), std::optional<std::string>("rec:quit:slack"));
    EXPECT_TRUE(fix->property("armed").toBool());
    screen.click(fix);
    EXPECT_TRUE(m.acting().contains("quit:slack"));

    // The switch of the who panel sets the model's measure.
    QQuickItem* memoryTab = within(screen.find("whoMode"), "tab-Memory");
    ASSERT_TRUE(memoryTab);
    screen.click(memoryTab);
    EXPECT_EQ(m.whoMode(), AppModel::WhoMode::memory);
    EXPECT_TRUE(showsText(screen.find("who"), "Slack"));

    // The stop names how many leftovers it ends, and goes straight to the model.
    QQuickItem* stopFix = within(screen.find("cause-leftovers"), "fix");
    ASSERT_TRUE(stopFix);
    EXPECT_EQ(stopFix->property("text").toString(), "Stop 2");
    screen.click(stopFix);
    EXPECT_TRUE(m.acting().contains("leftovers"));
}

TEST(SpeedTab, TheMemoryPictureOfTheWindowShowsTheSpeedTabByMemory) {
    Machine h;
    AppModel& m = h.start();
    m.go(Tab::week);
    const auto list = ScreenPictures::pictures();
    const auto picture = std::find_if(list.begin(), list.end(), [](const auto& p) { return p.file == "speed-memory.png"; });
    ASSERT_NE(picture, list.end());
    picture->state(m);
    EXPECT_EQ(m.tab(), Tab::speed);
    EXPECT_EQ(m.whoMode(), AppModel::WhoMode::memory);
    // Any picture after it is back on the processor.
    const auto speed = std::find_if(list.begin(), list.end(), [](const auto& p) { return p.file == "Speed.png"; });
    ASSERT_NE(speed, list.end());
    speed->state(m);
    EXPECT_EQ(m.whoMode(), AppModel::WhoMode::cpu);
}

// Pictures of the tab for a person to look at: a busy machine by processor and by memory, and
// a calm one before its second sample.
TEST(SpeedTab, Pictures) {
    Machine h;
    Rec quit = slackQuit();
    quit.why = "Busy in the background for 14 minutes, using 22% of the processor.";
    quit.tip = "Slack keeps your messages on its servers, so nothing is lost.";
    quit.symbol = "app";
    quit.tint = "purple";
    Rec stop = makeRec("leftovers", RecAction::stopLeftovers(), true, true);
    stop.title = "Stop 2 leftover processes";
    stop.why = "vite dev server and tsc --watch, running for 3 days after the session that started them ended.";
    stop.shortLabel = "Stop";
    stop.reason = RecReason::memory;
    stop.impact = RecImpact{RecImpact::Kind::memory, "", 400'000'000};
    stop.memory = 400'000'000;
    stop.symbol = "custom.ghost";
    stop.tint = "amber";
    Rec restart = makeRec("restart", RecAction::restart(), false);
    restart.title = "Restart your computer tonight";
    restart.why = "3.4 GB sits in swap, and only a restart empties it.";
    restart.shortLabel = "Restart\u2026";
    restart.reason = RecReason::wait;
    restart.impact = RecImpact{RecImpact::Kind::swap, "", 3'400'000'000};
    restart.symbol = "arrow.counterclockwise";
    restart.tint = "blue";
    h.canned = std::vector<Rec>{quit, stop, restart};
    AppModel& m = h.start();
    const TimePoint now = h.clock.now();
    h.sample(vitals(37, 2), nineApps(now),
             {leftover(501, "vite dev server", "/home/u/code/blog", 250'000'000, now),
              leftover(502, "tsc --watch", "/home/u/code/blog", 150'000'000, now)});

    Album album;
    album.draw("speed/SpeedTab.qml", "Speed.png", {1100, 1060});
    m.setWhoMode(AppModel::WhoMode::memory);
    album.draw("speed/SpeedTab.qml", "speed-memory.png", {1100, 1060});
    m.setWhoMode(AppModel::WhoMode::cpu);
    h.canned = std::vector<Rec>{};
    h.sample(vitals(std::nullopt), {app("proc:System services", "System services", 0, 700'000'000, 40)});
    album.draw("speed/SpeedTab.qml", "speed-calm.png", {1100, 1060});
}
