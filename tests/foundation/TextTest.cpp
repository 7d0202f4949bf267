#include "foundation/Text.h"

#include <gtest/gtest.h>

TEST(Text, RepairReplacesOnlyBrokenSequences) {
    EXPECT_EQ(Text::repairUtf8("plain"), "plain");
    EXPECT_EQ(Text::repairUtf8("caf\xC3\xA9"), "caf\xC3\xA9");
    EXPECT_EQ(Text::repairUtf8("a\xFF" "b"), "a\xEF\xBF\xBD" "b");
    EXPECT_EQ(Text::repairUtf8("\xC3"), "\xEF\xBF\xBD");                   // cut short at the end
    EXPECT_EQ(Text::repairUtf8("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"); // a surrogate
    EXPECT_EQ(Text::repairUtf8("\xC0\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD");   // overlong slash
    EXPECT_TRUE(Text::isValidUtf8("\xF0\x9F\x98\x80"));
    EXPECT_FALSE(Text::isValidUtf8("\xF4\x90\x80\x80")); // above U+10FFFF
}

TEST(Text, FitCountsGraphemesAndCutsWithEllipsis) {
    EXPECT_EQ(Text::fit("123 bytes", 8), "123 byt\xE2\x80\xA6");
    EXPECT_EQ(Text::fit("1 KB", 8), "1 KB    ");
    std::string name32(32, 'n');
    EXPECT_EQ(Text::fit(name32, 32), name32);
    std::string name33(33, 'n');
    EXPECT_EQ(Text::fit(name33, 32), std::string(31, 'n') + "\xE2\x80\xA6");
    // "é" written as e + combining acute is one character.
    std::string combining = "e\xCC\x81";
    EXPECT_EQ(Text::graphemeCount(combining + combining), 2u);
    EXPECT_EQ(Text::fit(combining, 3), combining + "  ");
    // A family emoji joined by ZWJ is one character; cutting never splits it.
    std::string family = "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";
    EXPECT_EQ(Text::graphemeCount(family), 1u);
    EXPECT_EQ(Text::fit(family + family + family, 2), family + "\xE2\x80\xA6");
    // Invalid bytes do not break the columns.
    EXPECT_EQ(Text::graphemeCount(Text::fit("ab\xFF\xFE" "cdef", 4)), 4u);
}

TEST(Text, SplitJoinTrim) {
    EXPECT_EQ(Text::split("/a//b/", '/'), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(Text::split("a::b", ':', true), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(Text::join({"x", "y", "z"}, " + "), "x + y + z");
    EXPECT_EQ(Text::trim("\n\t 18 \r\n"), "18");
    EXPECT_EQ(Text::replaceAll("a · b · c", " · ", ", "), "a, b, c");
}
