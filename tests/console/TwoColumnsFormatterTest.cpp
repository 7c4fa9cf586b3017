#include "console/TwoColumnsFormatter.h"

#include <gtest/gtest.h>

#include <string>

#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

std::string Pad(const std::string& text, size_t width) {
    return text + std::string(width > text.size() ? width - text.size() : 0, ' ');
}

const std::string SEP = "    ";

class TwoColumnsFormatterTest : public test::TestEnv {
protected:
    std::string Formatted() { return Text(formatter.Format()); }
    static std::string Text(const char* text) { return text != nullptr ? text : "<null>"; }

    TwoColumnsFormatter formatter;
};

TEST_F(TwoColumnsFormatterTest, ConstantsHaveTheirValues) {
    EXPECT_STREQ("    ", TwoColumnsFormatter::INDENTATION);
    EXPECT_STREQ("    ", TwoColumnsFormatter::DEFAULT_SEPARATOR);
    EXPECT_EQ(40u, TwoColumnsFormatter::DEFAULT_COL1_WIDTH);
    EXPECT_EQ(40u, TwoColumnsFormatter::DEFAULT_COL2_WIDTH);
}

TEST_F(TwoColumnsFormatterTest, OneRowIsPaddedToBothColumnWidths) {
    formatter.PushRow("Routes", "12");
    EXPECT_EQ(Pad("Routes", 40) + SEP + Pad("12", 40) + "\n", Formatted());
}

TEST_F(TwoColumnsFormatterTest, PushRowWithANumberStoresItsDecimalText) {
    formatter.PushRow("Count", 7u);
    EXPECT_EQ(Pad("Count", 40) + SEP + Pad("7", 40) + "\n", Formatted());
}

TEST_F(TwoColumnsFormatterTest, LongLeftTextWrapsAtABlankAndTheContinuationStartsWithIt) {
    const std::string left = "aaaaaaaaa bbbbbbbbb ccccccccc ddddddddd eeeeeeeeee";
    ASSERT_EQ(50u, left.size());
    formatter.PushRow(left, "x");
    EXPECT_EQ(Pad("aaaaaaaaa bbbbbbbbb ccccccccc ddddddddd", 40) + SEP + Pad("x", 40) + "\n" +
                  Pad(" eeeeeeeeee", 40) + SEP + "\n",
              Formatted());
}

TEST_F(TwoColumnsFormatterTest, ContinuationLinesOfTheLeftColumnAreFourColumnsNarrower) {
    // 39 characters, then a continuation of 41 characters with blanks at
    // 0, 10, 20, 30 and 36 (relative to its start).
    const std::string left = std::string(39, 'a') + " bbbbbbbbb ccccccccc ddddddddd eeeee ffff";
    formatter.PushRow(left, "");
    std::string text = Formatted();
    EXPECT_EQ(Pad(std::string(39, 'a'), 40) + SEP + "\n" +
                  Pad(" bbbbbbbbb ccccccccc ddddddddd eeeee", 40) + SEP + "\n" + Pad(" ffff", 40) +
                  SEP + "\n",
              text);
}

TEST_F(TwoColumnsFormatterTest, ContinuationPieceHoldsAtMost36CharactersIncludingItsBlank) {
    std::string left(40, 'a');
    for (int i = 0; i < 10; ++i) {
        left += " bbbbbb";
    }
    formatter.PushRow(left, "");
    std::string text = Formatted();
    size_t start = 0;
    int line = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        ASSERT_NE(std::string::npos, end);
        std::string piece = text.substr(start, 40);
        size_t used = piece.find_last_not_of(' ') + 1;
        if (line == 0) {
            EXPECT_EQ(40u, used);
        } else {
            EXPECT_EQ(' ', piece[0]) << line;
            EXPECT_LE(used, 36u) << line;
        }
        start = end + 1;
        ++line;
    }
    EXPECT_GT(line, 2);
}

TEST_F(TwoColumnsFormatterTest, LongRightTextContinuesBelowABlankLeftColumn) {
    const std::string right = "one two three four five six seven eight nine ten";
    formatter.PushRow("L", right);
    EXPECT_EQ(Pad("L", 40) + SEP + Pad("one two three four five six seven eight", 40) + "\n" +
                  std::string(40, ' ') + SEP + Pad(" nine ten", 40) + "\n",
              Formatted());
}

TEST_F(TwoColumnsFormatterTest, LeftLinesAfterTheRightTextEndsStopAfterTheSeparator) {
    formatter.PushRow("aaaa bbbb cccc", "x");
    EXPECT_EQ(Pad("aaaa bbbb", 10) + ":" + Pad("x", 5) + "\n" + Pad(" cccc", 10) + ":" + "\n",
              Text(formatter.Format(10, 5, ":")));
}

TEST_F(TwoColumnsFormatterTest, RowWithBothTextsEmptyAddsNothing) {
    formatter.PushRow("", "");
    formatter.PushRow("A", "B");
    formatter.PushRow("", "");
    EXPECT_EQ(Pad("A", 40) + SEP + Pad("B", 40) + "\n", Formatted());
}

TEST_F(TwoColumnsFormatterTest, RowsThatAreAllEmptyGiveNull) {
    formatter.PushRow("", "");
    formatter.PushRow("", "");
    EXPECT_EQ(nullptr, formatter.Format());
}

TEST_F(TwoColumnsFormatterTest, EmptyLeftWithRightTextStartsWithABlankLeftColumn) {
    formatter.PushRow("", "v");
    EXPECT_EQ(std::string(40, ' ') + SEP + Pad("v", 40) + "\n", Formatted());
}

TEST_F(TwoColumnsFormatterTest, NoRowsZeroWidthOrBadSeparatorGiveNull) {
    EXPECT_EQ(nullptr, formatter.Format());
    formatter.PushRow("a", "b");
    EXPECT_EQ(nullptr, formatter.Format(0, 40, "    "));
    EXPECT_EQ(nullptr, formatter.Format(40, 0, "    "));
    EXPECT_EQ(nullptr, formatter.Format(40, 40, ""));
    EXPECT_EQ(nullptr, formatter.Format(40, 40, nullptr));
    EXPECT_EQ(nullptr, formatter.Format(nullptr));
}

TEST_F(TwoColumnsFormatterTest, RejectedFormatLeavesThePreviousText) {
    formatter.PushRow("a", "b");
    const char* first = formatter.Format(3, 3, "|");
    ASSERT_NE(nullptr, first);
    std::string before = first;
    formatter.ClearRows();
    EXPECT_EQ(0u, formatter.RowCount());
    EXPECT_EQ(nullptr, formatter.Format());
    EXPECT_EQ(before, std::string(first));
    EXPECT_EQ("a  |b  \n", before);
}

TEST_F(TwoColumnsFormatterTest, FormatWithSeparatorUsesDefaultWidths) {
    formatter.PushRow("k", "v");
    EXPECT_EQ(Pad("k", 40) + ":  " + Pad("v", 40) + "\n", Text(formatter.Format(":  ")));
}

TEST_F(TwoColumnsFormatterTest, SeveralRowsFollowEachOther) {
    formatter.PushRow("Route Type", "local");
    formatter.PushRow("Age", 30u);
    EXPECT_EQ(Pad("Route Type", 20) + ":  " + Pad("local", 40) + "\n" + Pad("Age", 20) + ":  " +
                  Pad("30", 40) + "\n",
              Text(formatter.Format(20, 40, ":  ")));
}

TEST_F(TwoColumnsFormatterTest, RunWithoutBlankLongerThanTheWidthIsBrokenHardAtTheWidth) {
    formatter.PushRow(std::string(50, 'a'), std::string(45, 'b'));
    EXPECT_EQ(std::string(40, 'a') + SEP + std::string(40, 'b') + "\n" +
                  Pad(std::string(10, 'a'), 40) + SEP + Pad(std::string(5, 'b'), 40) + "\n",
              Formatted());
}

TEST_F(TwoColumnsFormatterTest, SegmentOfEmptyTextOrZeroWidthIsTheFirstPosition) {
    const char* empty = "";
    EXPECT_EQ(empty, TwoColumnsFormatter::Segment(empty, 10));
    const char* text = "abc";
    EXPECT_EQ(text, TwoColumnsFormatter::Segment(text, 0));
}

TEST_F(TwoColumnsFormatterTest, SegmentOfFittingTextIsItsLastCharacter) {
    const char* text = "abc def";
    EXPECT_EQ(text + 6, TwoColumnsFormatter::Segment(text, 7));
    EXPECT_EQ(text + 6, TwoColumnsFormatter::Segment(text, 40));
}

TEST_F(TwoColumnsFormatterTest, SegmentBreaksBeforeTheLastBlankWithinWidthPlusOne) {
    const char* text = "abc def ghi";
    EXPECT_EQ(text + 2, TwoColumnsFormatter::Segment(text, 5));
    EXPECT_EQ(text + 6, TwoColumnsFormatter::Segment(text, 7));  // blank exactly at the width
    EXPECT_EQ(text + 6, TwoColumnsFormatter::Segment(text, 8));
}

TEST_F(TwoColumnsFormatterTest, SegmentWithTheOnlyBlankFirstGivesAOneCharacterPiece) {
    const char* text = " abcdefgh";
    EXPECT_EQ(text, TwoColumnsFormatter::Segment(text, 4));
}

TEST_F(TwoColumnsFormatterTest, SegmentWithoutBlankBreaksAtTheWidth) {
    const char* text = "abcdefgh";
    EXPECT_EQ(text + 3, TwoColumnsFormatter::Segment(text, 4));
}

TEST_F(TwoColumnsFormatterTest, NarrowLeftColumnStillProgresses) {
    formatter.PushRow("abcdef", "");
    EXPECT_EQ("abc|\nd  |\ne  |\nf  |\n", Text(formatter.Format(3, 3, "|")));
}

}  // namespace
}  // namespace Zavrel
