#include "tools/lyrinspect/text.h"

#include <gtest/gtest.h>

namespace lyrsdk::inspect {
namespace {

TEST(Text, LeavesPlainAndAccentedCharactersAlone) {
    EXPECT_EQ(Escaped("Lampe n\xC2\xB0 3, \xE7\x81\xAF, \xF0\x9F\x92\xA1"),
              "Lampe n\xC2\xB0 3, \xE7\x81\xAF, \xF0\x9F\x92\xA1");
}

TEST(Text, EscapesWhatCouldSteerATerminal) {
    EXPECT_EQ(Escaped("\x1B[2J"), "\\x1B[2J");
    EXPECT_EQ(Escaped("a\nb\tc\rd"), "a\\nb\\tc\\x0Dd");
    EXPECT_EQ(Escaped("\x7F"), "\\x7F");
    EXPECT_EQ(Escaped(std::string_view("\0", 1)), "\\x00");
    // A control sequence introducer, a line separator, an override of the writing direction with its end, and the end
    // of an isolate, all in UTF-8.
    EXPECT_EQ(Escaped("\xC2\x9B"), "\\xC2\\x9B");
    EXPECT_EQ(Escaped("\xE2\x80\xA8"), "\\xE2\\x80\\xA8");
    EXPECT_EQ(Escaped("\xE2\x80\xAE\xE2\x80\xAC"), "\\xE2\\x80\\xAE\\xE2\\x80\\xAC");
    EXPECT_EQ(Escaped("\xE2\x81\xA9"), "\\xE2\\x81\\xA9");
}

TEST(Text, EscapesTheBackslashSoThatEscapesAreUnambiguous) {
    EXPECT_EQ(Escaped("\\x1B"), "\\\\x1B");
}

TEST(Text, EscapesEveryByteThatIsNotUtf8) {
    EXPECT_EQ(Escaped("a\xFFz"), "a\\xFFz");
    EXPECT_EQ(Escaped("\xC3"), "\\xC3");
    EXPECT_EQ(Escaped("\xC0\xAF"), "\\xC0\\xAF");
    EXPECT_EQ(Escaped("\xE0\x80\x80"), "\\xE0\\x80\\x80");
    EXPECT_EQ(Escaped("\xED\xA0\x80"), "\\xED\\xA0\\x80");
    EXPECT_EQ(Escaped("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80");
    EXPECT_EQ(Escaped("\xE7\x81"), "\\xE7\\x81");
}

TEST(Text, FindsTheFirstByteThatIsNotUtf8) {
    EXPECT_EQ(FindInvalidUtf8("abc"), std::string_view::npos);
    EXPECT_EQ(FindInvalidUtf8(""), std::string_view::npos);
    EXPECT_EQ(FindInvalidUtf8("ab\xFF"), 2u);
    EXPECT_EQ(FindInvalidUtf8("\xC3\xA9\xC3"), 2u);
}

TEST(Text, QuotesWithABackslashBeforeInnerQuotes) {
    EXPECT_EQ(Quoted("a \"b\""), "\"a \\\"b\\\"\"");
    EXPECT_EQ(Quoted(""), "\"\"");
}

TEST(Text, CountsWithTheRightNumber) {
    EXPECT_EQ(Counted(0, "node"), "0 nodes");
    EXPECT_EQ(Counted(1, "node"), "1 node");
    EXPECT_EQ(Counted(2, "mesh", "meshes"), "2 meshes");
}

TEST(Text, ShortensBetweenCharacters) {
    EXPECT_EQ(Shortened("abcdef", 6), "abcdef");
    EXPECT_EQ(Shortened("abcdef", 3), "abc...");
    EXPECT_EQ(Shortened("a\xE7\x81\xAFz", 3), "a...");
    EXPECT_EQ(Shortened("\xE7\x81\xAFz", 2), "...");
    EXPECT_EQ(Shortened("", 0), "");
}

}  // namespace
}  // namespace lyrsdk::inspect
