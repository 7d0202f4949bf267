#include "foundation/PlatformWords.h"

#include <gtest/gtest.h>

TEST(PlatformWords, TheDesktopsOwnWords) {
    EXPECT_EQ(PlatformWords::say("Restart your Mac"), "Restart your computer");
    EXPECT_EQ(PlatformWords::say("a 16 GB Mac"), "a 16 GB computer");
    EXPECT_EQ(PlatformWords::say("macOS has written 3 GB. After that, macOS waits."),
              "The system has written 3 GB. After that, the system waits.");
    EXPECT_EQ(PlatformWords::say("Show in Finder"), "Show in Files");
    EXPECT_EQ(PlatformWords::say("Keep it in the Dock"), "Keep it in the panel");
    EXPECT_EQ(PlatformWords::say("Use Restart in the Apple menu."), "Use Restart in the system menu.");
    EXPECT_EQ(PlatformWords::say("Your Mac's disk"), "Your computer's disk");
    EXPECT_EQ(PlatformWords::title("macOS and the rest"), "System and the rest");
    EXPECT_EQ(PlatformWords::title("Restart your Mac"), "Restart your computer");
}

TEST(PlatformWords, OnlyWholeWordsChange) {
    for (const char* same : {"MacBook", "Macro", "iMac", "Docker", "Docked", "Finders keepers", "Apple", "macOS15",
                             "the Apple menus", "", "nothing to swap"})
        EXPECT_EQ(PlatformWords::say(same), same);
    EXPECT_EQ(PlatformWords::say("Mac"), "Computer");
    EXPECT_EQ(PlatformWords::say("(Mac)"), "(computer)");
}
