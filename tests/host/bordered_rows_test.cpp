#include "host/export/text/bordered_rows.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/text/shown_text.h"
#include "tests/support/text_file_output.h"

namespace vornwout {
namespace {

TextCell cell(int column, std::string_view text, int columnSpan = 1, int rowSpan = 1,
              CellAlignment alignment = CellAlignment::kLeft) {
  return {column,           rowSpan, columnSpan, alignment, text.find('\n') == std::string::npos,
          widestLine(text), text};
}

TextCell number(int column, std::string_view text) {
  return cell(column, text, 1, 1, CellAlignment::kRight);
}

using Rows = std::vector<std::vector<TextCell>>;

std::string drawn(const std::vector<int>& widths, const Rows& rows,
                  const TextBorders& borders = {}) {
  return textFileOf([&](TextOutput& out) {
    BorderedRows drawing(out, borders, widths);
    drawing.rule();
    for (const auto& row : rows) drawing.row(row);
  });
}

TEST(BorderedRows, TextsStandLeftNumbersRightAndMissingCellsAreBlank) {
  EXPECT_EQ(drawn({4, 5, 3}, {{cell(0, "ab"), number(1, "1.5")},
                              {cell(1, "x", 1, 1, CellAlignment::kCenter), cell(2, "abc")},
                              {}}),
            "----------------------\n"
            "| ab   |   1.5 |     |\n"
            "|      |   x   | abc |\n"
            "|      |       |     |\n");
}

TEST(BorderedRows, LabelOverColumnsHasTheRoomOfTheirBorders) {
  EXPECT_EQ(drawn({2, 2, 2}, {{cell(1, "spans", 2)},
                              {cell(1, "spans it", 2)},
                              {cell(0, "a"), cell(1, "c", 2, 1, CellAlignment::kCenter)},
                              {cell(1, "r", 2, 1, CellAlignment::kRight)}}),
            "----------------\n"
            "|    | spans   |\n"
            "|    | spans   |\n"
            "|    | it      |\n"
            "| a  |    c    |\n"
            "|    |       r |\n");
}

TEST(BorderedRows, LongTextIsWrappedWithinItsCell) {
  EXPECT_EQ(drawn({5, 3}, {{cell(0, "one two abcdefg"), number(1, "1\n22")}}),
            "---------------\n"
            "| one   |   1 |\n"
            "| two   |  22 |\n"
            "| abcde |     |\n"
            "| fg    |     |\n");
}

TEST(BorderedRows, LabelOverRowsFlowsThroughThem) {
  EXPECT_EQ(drawn({3, 1, 2}, {{cell(0, "a b c d e f", 1, 2), number(2, "1")},
                              {cell(1, "x"), number(2, "2")},
                              {cell(0, "one", 1, 2), number(2, "3")},
                              {number(2, "4")},
                              {cell(0, "big", 2, 2), number(2, "5")},
                              {number(2, "6")}}),
            "----------------\n"
            "| a b |   |  1 |\n"
            "| c d | x |  2 |\n"
            "| e f |   |    |\n"
            "| one |   |  3 |\n"
            "|     |   |  4 |\n"
            "| big     |  5 |\n"
            "|         |  6 |\n");
}

TEST(BorderedRows, WideAndCombiningCharactersLineUp) {
  EXPECT_EQ(drawn({4}, {{cell(0, "日本")}, {cell(0, "e\u0301a\u0308")}, {number(0, "日")}}),
            "--------\n"
            "| 日本 |\n"
            "| e\u0301a\u0308   |\n"
            "|   日 |\n");
}

TEST(BorderedRows, WideCharacterInANarrowColumnTakesTheBlankBehindIt) {
  EXPECT_EQ(drawn({1, 1}, {{cell(0, "日本"), cell(1, "x")}}),
            "---------\n"
            "| 日| x |\n"
            "| 本|   |\n");
}

struct BorderCase {
  const char* condition;
  TextBorders borders;
  const char* text;
};

class BordersOfRows : public testing::TestWithParam<BorderCase> {};

TEST_P(BordersOfRows, AreDrawn) {
  EXPECT_EQ(drawn({1, 1, 1}, {{cell(0, "a"), cell(1, "b", 2)}}, GetParam().borders),
            GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Characters, BordersOfRows,
    testing::Values(BorderCase{"Given", {"=", "!"}, "=============\n! a ! b     !\n"},
                    BorderCase{"Blank", {" ", " "}, "             \n  a   b      \n"},
                    BorderCase{"OfSeveralBytes", {"─", "│"}, "─────────────\n│ a │ b     │\n"},
                    // A line of an odd width has a blank behind the last whole character.
                    BorderCase{"Wide", {"＝", "|"}, "＝＝＝＝＝＝ \n| a | b     |\n"},
                    BorderCase{
                        "WideColumns", {"-", "｜"}, "-----------------\n｜ a ｜ b      ｜\n"},
                    BorderCase{"Empty", {"", ""}, "-------------\n| a | b     |\n"},
                    BorderCase{"Unseen", {"\u0301", "\u200B"}, "-------------\n| a | b     |\n"},
                    BorderCase{"Tab", {"=", "\t"}, "=============\n  a   b      \n"}),
    [](const testing::TestParamInfo<BorderCase>& test) { return test.param.condition; });

TEST(BorderedRows, ColumnsBetweenTextsAreCounted) {
  EXPECT_EQ(BorderedRows::columnsBetween({"-", "|"}), 3);
  EXPECT_EQ(BorderedRows::columnsBetween({"-", "｜"}), 4);
  EXPECT_EQ(BorderedRows::columnsBetween({"-", ""}), 3);
}

}  // namespace
}  // namespace vornwout
