#include "foundation/AtomicFile.h"
#include "foundation/FS.h"
#include "foundation/Log.h"
#include "foundation/SettingsStore.h"
#include "foundation/Support.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

TEST(Support, SuiteNameIsFnv1aOfTheOverride) {
    // The empty override hashes to the offset basis.
    EXPECT_EQ(Support::suiteName(""), "app.sorrelin.Sorrelin.testing-cbf29ce484222325");
    EXPECT_EQ(Support::fnv1a("a"), 0xaf63dc4c8601ec8cull);
    EXPECT_NE(Support::suiteName("/tmp/a"), Support::suiteName("/tmp/b"));
    // No leading zeros.
    EXPECT_NE(Support::suiteName("x").substr(30, 1), "0");
    EXPECT_TRUE(Support::settingsFile(std::nullopt).ends_with("/sorrelin/settings.json"));
    EXPECT_TRUE(Support::settingsFile(std::string("/s")).ends_with(Support::suiteName("/s") + ".json"));
}

TEST(Log, AppendsLinesAndIgnoresMissingFolders) {
    TempTree t;
    std::string file = t.path("log.txt");
    Log::noteTo(file, "first");
    Log::noteTo(file, "second");
    auto text = FS::readText(file);
    ASSERT_TRUE(text);
    EXPECT_NE(text->find(" first\n"), std::string::npos);
    EXPECT_TRUE(text->ends_with(" second\n"));
    Log::noteTo(t.path("no/such/folder/log.txt"), "lost");
    EXPECT_FALSE(FS::exists(t.path("no")));
}

TEST(SettingsStore, PersistsAtomicallyAndSurvivesBrokenFiles) {
    TempTree t;
    std::string file = t.path("cfg/settings.json");
    {
        SettingsStore s(file);
        EXPECT_FALSE(s.value("scanFolders"));
        EXPECT_TRUE(s.set("loginItemOffered", true));
        EXPECT_TRUE(s.set("lastScanSeconds", 14.5));
    }
    SettingsStore again(file);
    EXPECT_TRUE(again.boolValue("loginItemOffered"));
    EXPECT_EQ(again.doubleValue("lastScanSeconds"), 14.5);
    again.remove("loginItemOffered");
    EXPECT_FALSE(SettingsStore(file).value("loginItemOffered"));

    t.text("broken.json", "{not json");
    SettingsStore broken(t.path("broken.json"));
    EXPECT_FALSE(broken.value("x"));
    EXPECT_EQ(FS::readText(t.path("broken.json")), "{not json"); // kept until the next write
    // No temporary files left behind.
    for (const auto& name : FS::children(t.path("cfg"))) EXPECT_EQ(name, "settings.json");
}

TEST(AtomicFile, ReplacesWholeAndFailsCleanly) {
    TempTree t;
    std::string file = t.path("a/b/c.json");
    ASSERT_TRUE(AtomicFile::write(file, "old"));
    ASSERT_TRUE(AtomicFile::write(file, "new content"));
    EXPECT_EQ(FS::readText(file), "new content");
    t.text("plainfile", "x");
    EXPECT_FALSE(AtomicFile::write(t.path("plainfile/inside.json"), "y"));
}
