#include "projects/ProjectGroups.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

TEST(ProjectGroups, AWorkspaceNeedsTwoRootsAMarkerOrAppsNamedAfterIt) {
    TempTree home;
    const std::string h = home.root();
    home.dir("code/shop/shop-admin");
    home.dir("code/worktrees");
    home.text("code/mono/turbo.json", "{}");
    EXPECT_EQ(Projects::groupName(h + "/code/shop", {h + "/code/shop/shop-admin", h + "/code/shop/Shop-Web"}, h), "shop");
    EXPECT_FALSE(Projects::groupName(h + "/code/shop", {h + "/code/shop/shop-admin"}, h));
    EXPECT_FALSE(Projects::groupName(h + "/code/worktrees", {h + "/code/worktrees/a-cf", h + "/code/worktrees/b-cf"}, h));
    EXPECT_EQ(Projects::groupName(h + "/code/mono", {h + "/code/mono/api", h + "/code/mono/web"}, h), "mono");
    // A folder directly in the home folder is never a group, marker or not.
    home.text("Projects/nx.json", "{}");
    EXPECT_FALSE(Projects::groupName(h + "/Projects", {h + "/Projects/projects-a", h + "/Projects/projects-b"}, h));
    EXPECT_FALSE(Projects::groupName("/elsewhere/shop", {"/elsewhere/shop/shop-a", "/elsewhere/shop/shop-b"}, h));
}
