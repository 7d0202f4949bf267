// The tray panel's preferences: what a stored value loads as, what is written, and when.
#include "app/Prefs.h"
#include "foundation/Rendering.h"
#include "support/TempTree.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

std::vector<std::string> ids(const std::vector<MenuSection>& list) {
    std::vector<std::string> out;
    for (MenuSection s : list) out.emplace_back(MenuSections::raw(s));
    return out;
}

struct Store {
    TempTree dir;
    SettingsStore store{dir.path("settings.json")};
};

} // namespace

TEST(Prefs, AFreshStartShowsFourSectionsAndIsTheDefault) {
    Store s;
    Prefs prefs(s.store);
    EXPECT_EQ(ids(prefs.visible()), (std::vector<std::string>{"freeSpace", "nextStep", "quickClean", "openApp"}));
    EXPECT_TRUE(prefs.isDefault());
    EXPECT_FALSE(s.store.value(Prefs::key)); // loading writes nothing
}

TEST(Prefs, AStoredOrderOfTwoSectionsGetsTheOthersAtTheEndSwitchedOff) {
    Store s;
    ASSERT_TRUE(s.store.set(Prefs::key, {{"order", {"freeSpace", "status"}}, {"hidden", nlohmann::json::array()}, {"label", "iconOnly"}}));
    Prefs prefs(s.store);
    EXPECT_EQ(ids(prefs.menuOrder()),
              (std::vector<std::string>{"freeSpace", "status", "vitals", "nextStep", "quickClean", "storage", "openApp"}));
    EXPECT_EQ(ids(prefs.visible()), (std::vector<std::string>{"freeSpace", "status"}));
    EXPECT_EQ(prefs.labelStyle(), MenuLabelStyle::iconOnly);
    EXPECT_FALSE(prefs.isDefault());
    // Loading wrote nothing back: the stored value is as it was.
    EXPECT_EQ(s.store.value(Prefs::key)->at("order").size(), 2u);
}

TEST(Prefs, ABrokenValueGivesDefaultsAndStaysUntilTheNextSave) {
    for (const nlohmann::json& broken :
         {nlohmann::json("not an object"),
          nlohmann::json{{"order", {"freeSpace", "rainbow"}}, {"hidden", nlohmann::json::array()}, {"label", "freeSpace"}},
          nlohmann::json{{"order", {"freeSpace"}}, {"hidden", {"status"}}, {"label", "huge"}},
          nlohmann::json{{"order", {"freeSpace"}}, {"label", "freeSpace"}},
          nlohmann::json{{"order", {1, 2}}, {"hidden", nlohmann::json::array()}, {"label", "freeSpace"}}}) {
        Store s;
        ASSERT_TRUE(s.store.set(Prefs::key, broken));
        Prefs prefs(s.store);
        EXPECT_TRUE(prefs.isDefault()) << broken.dump();
        EXPECT_EQ(*s.store.value(Prefs::key), broken);
        prefs.set(MenuSection::vitals, true);
        EXPECT_EQ(Prefs::decode(*s.store.value(Prefs::key))->hidden,
                  (std::set<MenuSection>{MenuSection::status, MenuSection::storage}));
    }
}

TEST(Prefs, AMoveAndAMoveBackRestoreTheDefault) {
    Store s;
    Prefs prefs(s.store);
    QSignalSpy isDefault(&prefs, &Prefs::isDefaultChanged);
    QAbstractItemModelTester tester(prefs.sectionsModel(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    prefs.move(std::vector<int>{0}, 3); // freeSpace to stand before openApp
    EXPECT_EQ(ids(prefs.menuOrder()),
              (std::vector<std::string>{"nextStep", "quickClean", "freeSpace", "openApp", "status", "vitals", "storage"}));
    EXPECT_EQ(prefs.sectionsModel()->get(2).value("id").toString(), "freeSpace");
    EXPECT_FALSE(prefs.isDefault());
    prefs.move(std::vector<int>{2}, 0);
    EXPECT_TRUE(prefs.isDefault());
    EXPECT_EQ(isDefault.count(), 2);
    // Several rows at once, to the end.
    prefs.move(std::vector<int>{4, 0}, 7);
    EXPECT_EQ(ids(prefs.menuOrder()),
              (std::vector<std::string>{"nextStep", "quickClean", "openApp", "vitals", "storage", "freeSpace", "status"}));
    EXPECT_EQ(ids(Prefs::decode(*s.store.value(Prefs::key))->order), ids(prefs.menuOrder()));
    prefs.reset();
    EXPECT_TRUE(prefs.isDefault());
}

TEST(Prefs, SwitchingEverythingOffKeepsTheOrderAndAnEqualWriteNotifiesNobody) {
    Store s;
    Prefs prefs(s.store);
    QSignalSpy hidden(&prefs, &Prefs::menuHiddenChanged), label(&prefs, &Prefs::labelStyleChanged);
    for (MenuSection sec : MenuSections::allCases) prefs.set(sec, false);
    EXPECT_TRUE(prefs.visible().empty());
    EXPECT_EQ(prefs.menuOrder().size(), 7u);
    EXPECT_FALSE(prefs.sectionsModel()->get(0).value("on").toBool());
    const int changes = hidden.count();
    prefs.set(MenuSection::status, false);
    prefs.setLabelStyle(MenuLabelStyle::freeSpace);
    EXPECT_EQ(hidden.count(), changes);
    EXPECT_EQ(label.count(), 0);
    // The equal write was still saved.
    EXPECT_EQ(Prefs::decode(*s.store.value(Prefs::key))->hidden.size(), 7u);
}

TEST(Prefs, NothingReachesTheStoreWhileScreensAreRendered) {
    Store s;
    Prefs prefs(s.store);
    Tools::rendering = true;
    prefs.set(MenuSection::storage, true);
    prefs.setLabelStyleId("freeAndMemory");
    Tools::rendering = false;
    EXPECT_FALSE(s.store.value(Prefs::key));
    EXPECT_EQ(prefs.labelStyleId(), "freeAndMemory"); // the change holds for this run
}
