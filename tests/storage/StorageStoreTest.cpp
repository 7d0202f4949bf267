#include "foundation/FS.h"
#include "foundation/Rendering.h"
#include "storage/StorageStore.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

StorageReport full() {
    StorageReport r;
    r.made = fromSeconds(1'700'000'000.5);
    r.seconds = 42.25;
    r.diskTotal = 500 * GB;
    r.diskUsed = 300 * GB;
    r.diskReserved = 25 * GB;
    r.categories = {StorageCategory{StorageKind::assets, 9 * GB,
                                    {StorageItem{"Fonts", "asset:Fonts", 9 * GB, true, "detail", "/System/Library/AssetsV2"}}, 2,
                                    {"/h/Library/Mail", "/h/Library/Safari"}}};
    r.biggest = {BigFile{"a.iso", "/h/a.iso", 4 * GB, FileKind::diskImage, StorageKind::downloads,
                         fromSeconds(1'600'000'000), fromSeconds(1'650'000'000)}};
    r.apps = {AppSize{"Code", "/usr/share/applications/code.desktop", "code", 400 * MB, 2 * GB, fromSeconds(1'690'000'000)},
              AppSize{"Vim", "/usr/share/applications/vim.desktop", std::nullopt, 3 * MB, 0, std::nullopt}};
    r.files = 123456;
    r.complete = true;
    r.vm = 8 * GB;
    return r;
}

} // namespace

TEST(StorageStore, SavesAtomicallyAndLoadsWhatItSaved) {
    TempTree dir;
    std::string folder = dir.path("support/deeper");
    StorageStore::save(full(), folder);
    auto loaded = StorageStore::load(folder);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(*loaded, full());
    // Raw values stand in the file, and the optional keys are left out when absent.
    auto j = nlohmann::json::parse(*FS::readText(StorageStore::url(folder)));
    EXPECT_EQ(j["categories"][0]["kind"], "assets");
    EXPECT_EQ(j["biggest"][0]["kind"], "diskImage");
    EXPECT_FALSE(j["apps"][1].contains("bundleID"));
    EXPECT_FALSE(j["apps"][1].contains("lastUsed"));
    EXPECT_DOUBLE_EQ(j["made"].get<double>(), 1'700'000'000.5);
}

TEST(StorageStore, OldFileWithoutVmLoadsOneWithoutFilesDoesNot) {
    auto j = nlohmann::json::parse(StorageStore::encode(full()));
    j.erase("vm");
    j.erase("diskReserved"); // files written before the reserve was told apart
    j["apps"][0].erase("lastUsed");
    j["categories"][0]["items"][0].erase("detail");
    j["categories"][0].erase("unreadableFolders"); // files written before the folders were named
    auto loaded = StorageStore::decode(j.dump());
    ASSERT_TRUE(loaded);
    EXPECT_FALSE(loaded->vm);
    EXPECT_EQ(loaded->diskReserved, 0);
    EXPECT_FALSE(loaded->apps[0].lastUsed);
    EXPECT_FALSE(loaded->categories[0].items[0].detail);
    EXPECT_EQ(loaded->categories[0].unreadable, 2);
    EXPECT_TRUE(loaded->categories[0].unreadableFolders.empty());

    auto noFiles = j;
    noFiles.erase("files");
    EXPECT_FALSE(StorageStore::decode(noFiles.dump()));
    // A required key deep inside a record fails the whole file too.
    auto noUnreadable = j;
    noUnreadable["categories"][0].erase("unreadable");
    EXPECT_FALSE(StorageStore::decode(noUnreadable.dump()));
    auto noBytes = j;
    noBytes["biggest"][0].erase("bytes");
    EXPECT_FALSE(StorageStore::decode(noBytes.dump()));
}

TEST(StorageStore, UnknownKindsWrongTypesAndBrokenFilesGiveNothing) {
    auto j = nlohmann::json::parse(StorageStore::encode(full()));
    auto badKind = j;
    badKind["categories"][0]["kind"] = "Applications";
    EXPECT_FALSE(StorageStore::decode(badKind.dump()));
    auto badType = j;
    badType["files"] = "many";
    EXPECT_FALSE(StorageStore::decode(badType.dump()));
    auto badFolders = j;
    badFolders["categories"][0]["unreadableFolders"] = nlohmann::json::array({"/h/a", 7});
    EXPECT_FALSE(StorageStore::decode(badFolders.dump()));
    auto fraction = j;
    fraction["diskUsed"] = 1.5;
    EXPECT_FALSE(StorageStore::decode(fraction.dump()));
    EXPECT_FALSE(StorageStore::decode("{\"made\": 1"));
    EXPECT_FALSE(StorageStore::decode("[]"));

    TempTree dir;
    EXPECT_FALSE(StorageStore::load(dir.root())); // no file
    dir.text("storage.json", "not json");
    EXPECT_FALSE(StorageStore::load(dir.root()));
    EXPECT_EQ(*FS::readText(StorageStore::url(dir.root())), "not json"); // left as it was
}

TEST(StorageStore, NamesWithInvalidUtf8AreRepairedOnTheWayOut) {
    StorageReport r = full();
    r.biggest[0].name = std::string("bad\xff name.iso");
    auto decoded = StorageStore::decode(StorageStore::encode(r));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->biggest[0].name, "bad\xEF\xBF\xBD name.iso");
}

TEST(StorageStore, NothingIsWrittenWhileRendering) {
    TempTree dir;
    Tools::rendering = true;
    StorageStore::save(full(), dir.root());
    Tools::rendering = false;
    EXPECT_FALSE(FS::exists(StorageStore::url(dir.root())));
    StorageStore::save(full(), dir.root());
    EXPECT_TRUE(FS::exists(StorageStore::url(dir.root())));
}

TEST(StorageStore, ADateOutsideTheYears1970To9999IsLeftOutAndABadMadeFailsTheFile) {
    auto j = nlohmann::json::parse(StorageStore::encode(full()));
    j["biggest"][0]["modified"] = 1e308;
    j["biggest"][0]["opened"] = -5;
    j["apps"][0]["lastUsed"] = 32'503'680'000.0; // the year 3000 stands
    auto r = StorageStore::decode(j.dump());
    ASSERT_TRUE(r);
    EXPECT_FALSE(r->biggest[0].modified);
    EXPECT_FALSE(r->biggest[0].opened);
    ASSERT_TRUE(r->apps[0].lastUsed);
    EXPECT_NEAR(secondsSince1970(*r->apps[0].lastUsed), 32'503'680'000.0, 1e-3);
    j["made"] = 1e308;
    EXPECT_FALSE(StorageStore::decode(j.dump()));
}

TEST(StorageStore, ASaveClearsTheTemporariesOfKilledSavesOfThisFileOnly) {
    TempTree dir;
    dir.text(".storage.json.x9Y8z7", "{\"made\":");
    dir.text(".history.json.x9Y8z7", "{\"samples\":");
    StorageStore::save(full(), dir.root());
    EXPECT_FALSE(FS::exists(dir.path(".storage.json.x9Y8z7")));
    EXPECT_TRUE(FS::exists(dir.path(".history.json.x9Y8z7")));
    EXPECT_EQ(StorageStore::load(dir.root()), full());
}
