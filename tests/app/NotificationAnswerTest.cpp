#include "app/NotificationAnswer.h"

#include "app/AlertNotifier.h"
#include "app/DesktopNotifier.h"
#include "app/MenuLabel.h"

#include <gtest/gtest.h>

namespace {

using K = NotificationAnswer::Kind;

NotificationAnswer route(const char* action, const char* category, QVariantMap info = {}) {
    return NotificationAnswer::route(QString::fromLatin1(action), QString::fromLatin1(category), info);
}

} // namespace

TEST(NotificationAnswer, ButtonsGoByTheirKeyTheBodyByItsCategory) {
    const QVariantMap apps{{"apps", QStringList{"/a.desktop", "/b.desktop", "/c.desktop"}}};
    EXPECT_EQ(route("quit", "slow1", apps), (NotificationAnswer{K::quitApps, {"/a.desktop", "/b.desktop", "/c.desktop"}, {}}));
    EXPECT_EQ(route("restart", "restart"), (NotificationAnswer{K::restart, {}, {}}));
    EXPECT_EQ(route("show", "slow2", apps), (NotificationAnswer{K::show, {}, Tab::speed}));
    EXPECT_EQ(route("show", "memory"), (NotificationAnswer{K::show, {}, Tab::speed}));
    EXPECT_EQ(route("default", "space", {{"tab", "clean"}}).tab, Tab::clean);
    EXPECT_EQ(route("default", "space", {{"tab", "storage"}}).tab, Tab::storage);
    EXPECT_EQ(route("default", "space").tab, Tab::storage); // no "tab": Storage
    EXPECT_EQ(route("default", "slow2", apps).tab, Tab::home);
    EXPECT_EQ(route("default", "memory").tab, Tab::home);
    // The body of the reminder opens Home; only its button restarts.
    EXPECT_EQ(route("default", "restart"), (NotificationAnswer{K::show, {}, Tab::home}));
    EXPECT_EQ(route("default", "", {}), (NotificationAnswer{K::show, {}, std::nullopt}));
    EXPECT_EQ(route("something-new", "space", {{"tab", "clean"}}).tab, Tab::clean);
}

TEST(NotificationAnswer, AQuitWithoutAListOfAppsQuitsNothing) {
    EXPECT_TRUE(route("quit", "slow1").apps.empty());
    EXPECT_EQ(route("quit", "slow1").kind, K::quitApps);
    EXPECT_TRUE(route("quit", "slow1", {{"apps", QStringLiteral("/a.desktop")}}).apps.empty());
    EXPECT_TRUE(route("quit", "slow1", {{"apps", 3}}).apps.empty());
}

TEST(NotificationAnswer, AlertsKeepTheirKeysAndCategoriesTheirButtons) {
    Alerts::Alert a{"Your computer is slowing down", "A and B are...", "slow", "slow2", {"/a.desktop", "/b.desktop"}};
    const Notification n = AlertNotifier::notification(a);
    EXPECT_EQ(n.id, QStringLiteral("slow"));
    EXPECT_EQ(n.category, QStringLiteral("slow2"));
    EXPECT_FALSE(n.at);
    // What goes out comes back as the answer's list of apps.
    EXPECT_EQ(route("quit", "slow2", n.info).apps, a.apps);
    EXPECT_TRUE(AlertNotifier::notification({"Memory is tight", "x", "memory", "memory", {}}).info.isEmpty());

    using P = std::vector<std::pair<QString, QString>>;
    const QString open = QStringLiteral("Open");
    EXPECT_EQ(DesktopNotifier::actions(QStringLiteral("slow1")), (P{{"default", open}, {"quit", "Quit it"}, {"show", "Show me"}}));
    EXPECT_EQ(DesktopNotifier::actions(QStringLiteral("memory")), (P{{"default", open}, {"show", "Show me"}}));
    EXPECT_EQ(DesktopNotifier::actions(QStringLiteral("space")), (P{{"default", open}})); // no buttons of its own
    EXPECT_EQ(DesktopNotifier::actions(std::nullopt), (P{{"default", open}}));
}

TEST(MenuLabel, TheTooltipFollowsTheChosenLabel) {
    EXPECT_EQ(MenuLabel::text(MenuLabelStyle::freeSpace, 120'400'000'000, 40, false), "120 GB free");
    EXPECT_EQ(MenuLabel::text(MenuLabelStyle::freeAndMemory, 120'400'000'000, 40, false), "120 GB free 40%");
    EXPECT_EQ(MenuLabel::text(MenuLabelStyle::iconOnly, 120'400'000'000, 40, false), "Sorrelin");
    EXPECT_EQ(MenuLabel::text(MenuLabelStyle::freeSpace, 3'000'000'000, 40, true), "3.0 GB free, your computer is slow");
    EXPECT_EQ(MenuLabel::icon(true), MenuLabel::Icon::warning);
    EXPECT_EQ(MenuLabel::icon(false), MenuLabel::Icon::disk);
}
