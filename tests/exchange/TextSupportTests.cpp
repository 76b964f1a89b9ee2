// The text helpers every text coder reads through: what they accept here, each coder accepts without a test
// of its own for byte-order marks, line endings and padding.
#include <gtest/gtest.h>

#include "exchange/coders/TextSupport.h"

using namespace PAL;
using namespace std::string_literals;
using Lines = std::vector<std::string_view>;

TEST(TextSupportTest, DecodesEveryByteOrderMarkAndFallsBackToLatin1) {
    EXPECT_EQ(textfile::fromBytes("\xEF\xBB\xBF" "Caf\xC3\xA9"), "Caf\u00e9");
    EXPECT_EQ(textfile::fromBytes("\xFF\xFE" "C\0\xE9\0"s), "C\u00e9");
    EXPECT_EQ(textfile::fromBytes("\xFE\xFF" "\0C\0\xE9"s), "C\u00e9");
    EXPECT_EQ(textfile::fromBytes("Caf\xE9"), "Caf\u00e9");
}

TEST(TextSupportTest, SplitsLinesUnderAnyEndingAndTrimsBlanks) {
    EXPECT_EQ(textfile::splitLines("a\r\nb\rc\n\nd\n"), (Lines{"a", "b", "c", "", "d"}));
    EXPECT_EQ(textfile::trimmed(" \t a b \t"), "a b");
    EXPECT_EQ(textfile::words("  1\t 2   three "), (Lines{"1", "2", "three"}));
}

TEST(TextSupportTest, NumbersAreDecimalAndFinite) {
    EXPECT_EQ(textfile::integer("007"), 7);
    EXPECT_EQ(textfile::integer("-4"), -4);
    for (const char* token : {"", "0x1F", "1.5", "1 2", "+"}) EXPECT_EQ(textfile::integer(token), std::nullopt) << token;
    EXPECT_EQ(textfile::number("2.5E-1"), 0.25);
    for (const char* token : {"0,5", "inf", "nan", "1e999", "."}) EXPECT_EQ(textfile::number(token), std::nullopt) << token;
}
