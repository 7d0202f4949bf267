#include "foundation/Candidate.h"
#include "foundation/CleanItem.h"
#include "foundation/DiskInfo.h"

#include <gtest/gtest.h>

namespace {

CleanItem item(std::string id, std::string name, std::string note = "") {
    CleanItem it;
    it.id = std::move(id);
    it.name = std::move(name);
    it.note = std::move(note);
    return it;
}

} // namespace

TEST(Candidate, ItemLocksOffAndFillsReveal) {
    Candidate c;
    c.id = "x";
    c.paths = {"/a", "/b"};
    c.defaultOn = true;
    c.lockedReason = "In use by node · kept";
    CleanItem it = c.item(42);
    EXPECT_FALSE(it.defaultOn);
    EXPECT_TRUE(it.isLocked());
    EXPECT_EQ(it.size, 42);
    EXPECT_EQ(it.reveal, c.paths);

    c.lockedReason.reset();
    c.reveal = {"/shown"};
    it = c.item(1);
    EXPECT_TRUE(it.defaultOn);
    EXPECT_EQ(it.reveal, std::vector<std::string>{"/shown"});
}

TEST(CleanItem, DerivedTexts) {
    CleanItem it = item("project:/p", "p", "node_modules · open now · changed today · extra");
    EXPECT_TRUE(it.isOpen());
    EXPECT_EQ(it.recentLabel(), "Changed today");
    EXPECT_EQ(it.shortNote(), "node_modules, extra");
    it.note = "x · changed yesterday";
    EXPECT_EQ(it.recentLabel(), "Changed yesterday");
    it.note = "x";
    EXPECT_FALSE(it.recentLabel());

    it.location = "~/Library/Application Support/Slack/Cache";
    EXPECT_EQ(it.shortLocation(), "App Support/Slack/Cache");
    it.location = "~/Library/Caches/com.x";
    EXPECT_EQ(it.shortLocation(), "Caches/com.x");
    it.location = std::string(CleanItem::mergedLocation);
    EXPECT_EQ(it.shortLocation(), "Caches + App Support");

    it.location = "~/x";
    it.paths = {"/a"};
    EXPECT_EQ(it.fullLocation(), "~/x");
    it.paths = {"/a", "/b", "/c"};
    EXPECT_EQ(it.fullLocation(), "~/x, 3 folders");

    EXPECT_TRUE(item("safe-thing", "x").tracksRefill());
    CleanItem ds = item("device-support", "x");
    ds.tier = Tier::yourCall;
    EXPECT_TRUE(ds.tracksRefill());
    ds.id = "other";
    EXPECT_FALSE(ds.tracksRefill());
}

TEST(CleanItem, KindIsFirstMatch) {
    EXPECT_EQ(item("project:/a", "a").symbol(), "folder");
    EXPECT_EQ(item("download:x.dmg", "x.dmg", "Installer · added today").symbol(), "opticaldisc");
    EXPECT_EQ(item("download:x", "x", "Folder").symbol(), "folder");
    EXPECT_EQ(item("download:x", "x", "File").symbol(), "doc");
    EXPECT_EQ(item("chrome-model", "Chrome's built-in AI model").tint(), "#5B9BF8");
    EXPECT_EQ(item("chrome-model", "x").symbol(), "cpu");
    // A name with both "claude" and "code" stops at the assistant row.
    EXPECT_EQ(item("c", "Claude Code").symbol(), "sparkle");
    EXPECT_EQ(item("c", "VS Code").symbol(), "chevron.left.forwardslash.chevron.right");
    EXPECT_EQ(item("c", "uv cache").symbol(), "shippingbox");
    EXPECT_EQ(item("c", "uv cache").tint(), "pink");
    EXPECT_EQ(item("c", "uvx").tint(), "slate"); // "uv " needs its blank
    EXPECT_EQ(item("c", "Google Chrome update files").symbol(), "arrow.down.to.line");
    EXPECT_EQ(item("node:v18", "Node v18").symbol(), "terminal");
    EXPECT_EQ(item("brew", "Homebrew").symbol(), "mug");
}

TEST(DiskInfo, UsedNeverBelowZero) {
    DiskInfo d{"x", 100, 150};
    EXPECT_EQ(d.used(), 0);
    d.available = 40;
    EXPECT_EQ(d.used(), 60);
}
