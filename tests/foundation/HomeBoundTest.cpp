#include "foundation/FS.h"
#include "foundation/HomeBound.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

using V = HomeBound::Verdict;

TEST(HomeBound, OnlyWhatIsReachedFromTheHomeWithoutALinkIsInside) {
    TempTree t;
    const std::string home = t.dir("home");
    t.file("home/.cache/app/blob", 10);
    t.dir("home2/x");
    t.dir("outside/tmp");
    t.symLink(t.path("outside"), "home/.cache/linked"); // an entry of a cache folder that links out
    t.symLink(t.path("outside"), "home/Downloads");     // a user folder on another disk
    t.symLink(t.path("home/.cache/app"), "home/alias");  // a link that stays inside is not followed either

    EXPECT_EQ(HomeBound::check(t.path("home/.cache"), home), V::inside);
    EXPECT_EQ(HomeBound::check(t.path("home/.cache/app/blob"), home), V::inside);
    EXPECT_EQ(HomeBound::check(t.path("home/.cache/app/"), home), V::inside);
    EXPECT_EQ(HomeBound::check(t.path("home/.cache/linked"), home), V::link);
    EXPECT_EQ(HomeBound::check(t.path("home/.cache/linked/tmp"), home), V::link);
    EXPECT_EQ(HomeBound::check(t.path("home/Downloads/tmp"), home), V::link);
    EXPECT_EQ(HomeBound::check(t.path("home/alias/blob"), home), V::link);
    EXPECT_EQ(HomeBound::check(t.path("home/.cache/none"), home), V::missing);

    // The home itself, a sibling sharing its name's start, "/" and tricks are outside.
    for (const std::string& p : {home, t.path("home2/x"), std::string("/"), t.path("outside/tmp"),
                                 t.path("home/.cache/../../outside/tmp"), t.path("home//.cache"), std::string("relative")})
        EXPECT_EQ(HomeBound::check(p, home), V::outside) << p;

    EXPECT_TRUE(HomeBound::admit(t.path("home/.cache/app"), home));
    EXPECT_FALSE(HomeBound::admit(t.path("home/Downloads/tmp"), home));
    EXPECT_FALSE(HomeBound::admit("/", home));
}

TEST(HomeBound, PathsWrittenThroughALinkedHomeLandOnTheResolvedOne) {
    EXPECT_EQ(FS::onHome("/home/me/.cache", "/home/me", "/data/me"), "/data/me/.cache");
    EXPECT_EQ(FS::onHome("/home/me", "/home/me", "/data/me"), "/data/me");
    EXPECT_EQ(FS::onHome("/home/me2/x", "/home/me", "/data/me"), "/home/me2/x");
    EXPECT_EQ(FS::onHome("/srv/x", "/home/me", "/data/me"), "/srv/x");
    EXPECT_EQ(FS::onHome("/x", "/", "/data/me"), "/x"); // a home of "/" rewrites nothing
}
