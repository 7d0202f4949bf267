#include "projects/ProjectRoots.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

TEST(ProjectRoots, GitRootWithinHome) {
    TempTree t;
    t.dir("home/a/repo/.git");
    t.dir("home/a/repo/x/y/z");
    t.text("home/a/worktree/.git", "gitdir: /elsewhere\n"); // a worktree's .git is a file
    t.dir("home/a/worktree/src");
    t.dir(".git"); // above home: never reached
    t.dir("home/a/plain/deep/1/2/3/4/5/6/7/8/9/10");
    t.dir("home/a/far/.git");
    t.dir("home/a/far/1/2/3/4/5/6/7/8/9/10");
    const std::string home = t.path("home/a");

    EXPECT_EQ(Projects::gitRoot(t.path("home/a/repo/x/y/z"), home), t.path("home/a/repo"));
    EXPECT_EQ(Projects::gitRoot(t.path("home/a/repo"), home), t.path("home/a/repo"));
    EXPECT_EQ(Projects::gitRoot(t.path("home/a/worktree/src"), home), t.path("home/a/worktree"));
    EXPECT_FALSE(Projects::gitRoot(t.path("home/a/plain/deep"), home));
    EXPECT_FALSE(Projects::gitRoot(home, home)); // home itself is not below home
    EXPECT_FALSE(Projects::gitRoot(t.root(), home));
    // Ten steps at most: the root eleven levels up is not found, ten levels up it is.
    EXPECT_FALSE(Projects::gitRoot(t.path("home/a/far/1/2/3/4/5/6/7/8/9/10"), home));
    EXPECT_EQ(Projects::gitRoot(t.path("home/a/far/1/2/3/4/5/6/7/8/9"), home), t.path("home/a/far"));

    EXPECT_EQ(Projects::rootName(t.path("home/a/repo/x/y"), home), "repo");
    EXPECT_EQ(Projects::rootName(t.path("home/a/plain/deep"), home), "deep");
}
