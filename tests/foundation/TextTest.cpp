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

TEST(Text, VisibleShowsWhatWouldDriveTheTerminal) {
    // Escape sequences: a title change, a screen clear, a colour.
    EXPECT_EQ(Text::visible("a\x1b]0;owned\x07" "b"), "a\\e]0;owned\\x07b");
    EXPECT_EQ(Text::visible("\x1b[2J\x1b[31mred"), "\\e[2J\\e[31mred");
    EXPECT_EQ(Text::visible("two\nlines\rback\ttab"), "two\\nlines\\rback\\ttab");
    EXPECT_EQ(Text::visible(std::string("nul\0del\x7f", 8)), "nul\\x00del\\x7f");
    // C1 controls, as UTF-8: CSI and NEL.
    EXPECT_EQ(Text::visible("a\xC2\x9B" "31m\xC2\x85z"), "a\\u009b31m\\u0085z");
    // A right-to-left override that would show "exe.txt" for "txt.exe", and an isolate.
    EXPECT_EQ(Text::visible("\xE2\x80\xAEtxt.exe\xE2\x81\xA6"), "\\u202etxt.exe\\u2066");
    // Invalid UTF-8, and a lone C1 byte, are U+FFFD.
    EXPECT_EQ(Text::visible("bad\xFF\x9B"), "bad\xEF\xBF\xBD\xEF\xBF\xBD");
    // Ordinary text stands: accents, emoji, joiners, a backslash.
    const std::string fine = "caf\xC3\xA9 \xF0\x9F\x98\x80 e\xCC\x81 a\\nb";
    EXPECT_EQ(Text::visible(fine), fine);
    // Shown once, a name stays as it is when shown again.
    for (std::string s : {"\x1b[2J\n\xFF", "\xC2\x9B\xE2\x80\xAE", "plain"})
        EXPECT_EQ(Text::visible(Text::visible(s)), Text::visible(s)) << s;
}

TEST(Text, FitCountsTheEscapesAsTheTerminalShowsThem) {
    EXPECT_EQ(Text::fit("a\nb", 6), "a\\nb  ");
    EXPECT_EQ(Text::fit("\x1b[2J", 3), "\\e\xE2\x80\xA6");
    std::string fitted = Text::fit("x\x1b[31m\r\xFFy", 12);
    EXPECT_EQ(Text::graphemeCount(fitted), 12u);
    for (unsigned char c : fitted) EXPECT_TRUE(c >= 0x20 && c != 0x7f) << int(c);
}

TEST(Text, SplitJoinTrim) {
    EXPECT_EQ(Text::split("/a//b/", '/'), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(Text::split("a::b", ':', true), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(Text::join({"x", "y", "z"}, " + "), "x + y + z");
    EXPECT_EQ(Text::trim("\n\t 18 \r\n"), "18");
    EXPECT_EQ(Text::replaceAll("a · b · c", " · ", ", "), "a, b, c");
}
