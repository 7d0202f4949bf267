// What the tray item says for each label style, and which icon it carries.
#include "app/MenuLabel.h"

#include "foundation/Fmt.h"

#include <gtest/gtest.h>

TEST(MenuLabel, EachStyleSaysWhatItPromisesAndSlownessIsToldInThePlatformsWords) {
    const int64_t free = 120 * GB;
    EXPECT_EQ(MenuLabel::text(MenuLabelStyle::freeSpace, free, 34, false), Fmt::bytes(free) + " free");
    EXPECT_EQ(MenuLabel::text(MenuLabelStyle::freeAndMemory, free, 34, false), Fmt::bytes(free) + " free 34%");
    // The icon alone still needs words for the tooltip and for assistive tools.
    EXPECT_EQ(MenuLabel::text(MenuLabelStyle::iconOnly, free, 34, false), "Sorrelin");
    EXPECT_EQ(MenuLabel::text(MenuLabelStyle::freeSpace, free, 34, true), Fmt::bytes(free) + " free, your computer is slow");
    EXPECT_EQ(MenuLabel::text(MenuLabelStyle::freeSpace, 0, 0, false), "0 bytes free");
}

TEST(MenuLabel, TheWarningIconStandsOnlyWhileSpaceIsLow) {
    EXPECT_EQ(MenuLabel::icon(true), MenuLabel::Icon::warning);
    EXPECT_EQ(MenuLabel::icon(false), MenuLabel::Icon::disk);
}
