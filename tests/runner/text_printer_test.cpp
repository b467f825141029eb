#include "runner/terminal/text_printer.h"

#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/display_width.h"

namespace vornwout {
namespace {

using Kind = TextParagraph::Kind;

TextParagraph paragraph(Kind kind, int level, std::vector<TextRun> runs, int number = 0) {
  TextParagraph result;
  result.kind = kind;
  result.level = level;
  result.number = number;
  result.runs = std::move(runs);
  return result;
}

std::string printed(std::vector<TextParagraph> paragraphs, int width = 0,
                    ColorDepth depth = ColorDepth::kNone) {
  std::ostringstream out;
  printTextContent(out, {std::move(paragraphs)}, TerminalStyle{depth, width});
  return out.str();
}

TextRun run(std::string text, bool bold = false, bool italic = false) {
  TextRun result;
  result.text = std::move(text);
  result.style.bold = bold;
  result.style.italic = italic;
  return result;
}

TEST(TextPrinter, ParagraphsStandApartAndListItemsTogether) {
  EXPECT_EQ(
      printed({paragraph(Kind::kHeading, 1, {run("H")}), paragraph(Kind::kPlain, 0, {run("p")}),
               paragraph(Kind::kBullet, 1, {run("a")}), paragraph(Kind::kBullet, 2, {run("b")}),
               paragraph(Kind::kNumbered, 1, {run("c")}, 12),
               paragraph(Kind::kQuote, 2, {run("q")}), paragraph(Kind::kCode, 0, {run("x\n y")})}),
      "H\n\np\n\n  • a\n    • b\n  12. c\n\n│ │ q\n\n    x\n     y\n");
}

TEST(TextPrinter, LinesAreWrappedBelowTheirBeginning) {
  EXPECT_EQ(printed({paragraph(Kind::kBullet, 1, {run("one two "), run("three four")})}, 14),
            "  • one two\n    three four\n");
  EXPECT_EQ(printed({paragraph(Kind::kQuote, 1, {run("one two three")})}, 12),
            "│ one two\n│ three\n");
}

TEST(TextPrinter, StylesGoOnOverABreak) {
  EXPECT_EQ(printed({paragraph(Kind::kPlain, 0,
                               {run("aa "), run("bbbb cccc", true), run(" dd", false, true)})},
                    10, ColorDepth::k256),
            "aa \x1b[1mbbbb\x1b[0m\n\x1b[1mcccc\x1b[0m\x1b[3m dd\x1b[0m\n");
  EXPECT_EQ(printed({paragraph(Kind::kHeading, 1, {run("H", false, true)})}, 0, ColorDepth::k256),
            "\x1b[1;3mH\x1b[0m\n");
}

TEST(TextPrinter, LinkIsToldUnlessItsTextSaysIt) {
  TextRun link = run("site");
  link.link = "https://a.example";
  EXPECT_EQ(printed({paragraph(Kind::kPlain, 0, {link})}), "site <https://a.example>\n");
  link.text = "https://a.example";
  EXPECT_EQ(printed({paragraph(Kind::kPlain, 0, {link})}), "https://a.example\n");
}

TEST(TextPrinter, NothingMovesTheCursorAndNoLineIsTooWide) {
  TextRun hostile =
      run("a\x1b[31m\x9b x\xFF日本語のとても長い文 \xE2\x80\xAE"
          "abc " +
          std::string(50, 'w'));
  hostile.link = "x\x1b]8;;y\x07";
  for (int kind = 0; kind < 6; ++kind) {
    const std::string text =
        printed({paragraph(static_cast<Kind>(kind), 2'000'000'000, {hostile}, -1)}, 40);
    EXPECT_THAT(text, testing::Not(testing::HasSubstr("\x1b")));
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      EXPECT_LE(displayWidth(line), 48) << line;
    }
  }
}

TEST(TextPrinter, EmptyTextPrintsNothing) { EXPECT_EQ(printed({}), ""); }

}  // namespace
}  // namespace vornwout
