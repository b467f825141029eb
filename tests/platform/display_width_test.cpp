// Columns, line breaks and safe display of texts, with hostile ones among them.
#include "platform/text/display_width.h"

#include <chrono>
#include <random>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "platform/text/utf8.h"
#include "tests/support/hostile_size.h"

namespace vornwout {
namespace {

const std::string kBad = "\xEF\xBF\xBD";

std::string utf8(std::u32string_view codePoints) {
  std::string text;
  for (const char32_t codePoint : codePoints) appendUtf8(text, codePoint);
  return text;
}

using Lines = std::vector<std::string>;

TEST(DisplayWidthTest, widthOfTexts) {
  const struct {
    std::u32string text;
    int width;
  } cases[] = {{U"", 0},
               {U"abc ~", 5},
               {U"\u00E9", 1},
               {U"e\u0301\u0302", 1},         // combining marks
               {U"\u0301", 0},                // a mark alone
               {U"a\u20DD", 1},               // enclosing mark
               {U"\u4E2D\u6587", 4},          // wide
               {U"\uFF21\uFF71", 3},          // full-width and half-width
               {U"\uD55C\uAE00", 4},          // Hangul
               {U"\u1112\u1161\u11AB", 2},    // the same from its parts
               {U"a\u200Bb\u200D\u2060", 2},  // zero-width characters
               {U"\uFEFFa", 1},
               {U"x\u00ADy", 3},  // a soft hyphen is drawn
               {U"\U0001F600", 2},
               {U"\U0001F469\u200D\U0001F52C", 2},  // joined
               {U"\U0001F468\u200D\U0001F469\u200D\U0001F467", 2},
               {U"\U0001F44D\U0001F3FD", 2},  // skin tone
               {U"\U0001F1E9\U0001F1EA", 2},  // a flag
               {U"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", 4},
               {U"\u2764", 1},
               {U"\u2764\uFE0F", 2},   // shown as emoji
               {U"1\uFE0F\u20E3", 2},  // keycap
               {U"a\uFE0F", 1},        // the selector means nothing here
               {U"\u0600", 1},         // drawn format character
               {U"\t", 1},
               {U"a\nb", 3},
               {U"\r\n", 2},
               {U"\x1B[31m", 5},
               {U"\u0085\u009B", 2},
               {U"\u202Ex\u2066", 3}};
  for (const auto& c : cases) EXPECT_EQ(displayWidth(utf8(c.text)), c.width) << utf8(c.text);
}

TEST(DisplayWidthTest, bytesThatAreNotValidTakeOneColumnEach) {
  EXPECT_EQ(displayWidth("a\xE2\x82"), 3);
  EXPECT_EQ(displayWidth("\x9B"), 1);
  EXPECT_EQ(displayWidth(std::string(3, '\0')), 3);
}

TEST(DisplayWidthTest, sanitizedTextControlsNothing) {
  const struct {
    std::string text;
    std::string shown;
  } cases[] = {{"", ""},
               {"plain", "plain"},
               {"a\tb", "a b"},
               {"\x1B[2Jx", kBad + "[2Jx"},
               {"a\rb\b\a\f\v", "a" + kBad + "b" + kBad + kBad + kBad + kBad},
               {"a\nb", "a" + kBad + "b"},
               {std::string("a\0b", 3), "a" + kBad + "b"},
               {"\x7F", kBad},
               {"\xC2\x9B"
                "31m",
                kBad + "31m"},  // one-character form of the escape sequence
               {"\x9B"
                "31m",
                kBad + "31m"},  // the same as a bare byte
               {"\xE2\x80\xAE"
                "fdp.exe",
                kBad + "fdp.exe"},
               {"\xE2\x81\xA6x\xE2\x81\xA9", kBad + "x" + kBad},
               {"\xE2\x80\xA8\xE2\x80\xA9", kBad + kBad},
               {"caf\xC3\xA9 \xE4\xB8\xAD", "caf\xC3\xA9 \xE4\xB8\xAD"},
               {"\xE2\x80\x8D\xC2\xA0", "\xE2\x80\x8D\xC2\xA0"}};
  for (const auto& c : cases) EXPECT_EQ(sanitizeForTerminal(c.text), c.shown);
}

TEST(DisplayWidthTest, newlinesStayOnlyWhereAskedFor) {
  EXPECT_EQ(sanitizeForTerminal("a\r\nb\n", NewlineHandling::kKeep), "a" + kBad + "\nb\n");
  EXPECT_EQ(sanitizeForTerminal("a\r\nb\n", NewlineHandling::kReplace),
            "a" + kBad + kBad + "b" + kBad);
}

TEST(DisplayWidthTest, textWrapsAtWordsAndInsideOnlyWhereItMust) {
  const struct {
    std::string text;
    int columns;
    Lines lines;
  } cases[] = {
      {"", 10, {""}},
      {"", 0, {""}},
      {"short", 10, {"short"}},
      {"the quick brown fox", 10, {"the quick", "brown fox"}},
      {"the quick brown fox", 9, {"the quick", "brown fox"}},
      {"the quick brown fox", 8, {"the", "quick", "brown", "fox"}},
      {"well-known", 6, {"well-", "known"}},
      {"abcdefgh", 3, {"abc", "def", "gh"}},
      {"a abcdefgh", 3, {"a", "abc", "def", "gh"}},
      {"ab   cd", 3, {"ab", "cd"}},
      {"ab   cd", 2, {"ab", "cd"}},
      {"ab ", 2, {"ab"}},
      {"ab ", 3, {"ab "}},
      {"a\nb", 10, {"a", "b"}},
      {"a\r\nb\n", 10, {"a", "b", ""}},
      {"\n\n", 10, {"", "", ""}},
      {"  indented text", 10, {"  indented", "text"}},
      {"     ", 3, {""}},
      {"abc", 0, {"a", "b", "c"}},
      {"abc", -7, {"a", "b", "c"}},
      {"\xE4\xB8\xAD\xE6\x96\x87\xE5\xAD\x97", 4, {"\xE4\xB8\xAD\xE6\x96\x87", "\xE5\xAD\x97"}},
      {"\xE4\xB8\xAD\xE6\x96\x87", 1, {"\xE4\xB8\xAD", "\xE6\x96\x87"}},
      {"a\xE4\xB8\xAD", 1, {"a", "\xE4\xB8\xAD"}},
      {"ae\xCC\x81"
       "bc",
       2,
       {"ae\xCC\x81", "bc"}},
      {"\xFF\xFF", 1, {kBad, kBad}},
      // A blank within a word, and blanks of two kinds at a break.
      {"ab \xC2\xA0"
       "cd",
       4,
       {"ab",
        "\xC2\xA0"
        "cd"}},
      {"(word \t\xC2\xA0\xE6\x97\xA5", 5, {"(word", "\xC2\xA0\xE6\x97\xA5"}},
      {"ab \t cd", 2, {"ab", "cd"}}};
  for (const auto& c : cases) EXPECT_EQ(wrapToWidth(c.text, c.columns), c.lines) << c.text;
}

TEST(DisplayWidthTest, joinedEmojiAreNeverTornApart) {
  const std::string family = utf8(U"\U0001F468\u200D\U0001F469\u200D\U0001F467");
  EXPECT_EQ(wrapToWidth(family + family, 1), (Lines{family, family}));
  EXPECT_EQ(wrapToWidth(family + family, 2), (Lines{family, family}));
  EXPECT_EQ(wrapToWidth(family + family, 4), (Lines{family + family}));
}

TEST(DisplayWidthTest, anyTextWrapsIntoLinesThatFitAndLosesOnlyBlanks) {
  const std::vector<std::string> pieces = {"a",
                                           "word",
                                           " ",
                                           "  ",
                                           "-",
                                           "\t",
                                           "\xCC\x81",
                                           "\n",
                                           "\r\n",
                                           "\r",
                                           "\x1B",
                                           "\xE4\xB8\xAD",
                                           "\xFF",
                                           "\xE2\x80\x8D",
                                           "\xF0\x9F\x91\xA8",
                                           "\xEF\xB8\x8F",
                                           "\xF0\x9F\x87\xA9",
                                           "1",
                                           "\xD8\x80",
                                           "\xE2\x80\xAE",
                                           "\xE1\x84\x92",
                                           "\xE1\x85\xA1",
                                           "\xF0\x9F\x8F\xBD",
                                           "/",
                                           "("};
  std::mt19937 random(3);
  for (int round = 0; round < 4000; ++round) {
    std::string text;
    for (std::size_t i = random() % 20; i > 0; --i) text += pieces[random() % pieces.size()];
    ASSERT_EQ(displayWidth(text), displayWidth(sanitizeForTerminal(text)));
    const int columns = static_cast<int>(random() % 12) + 1;
    std::string kept;
    for (const std::string& line : wrapToWidth(text, columns)) {
      const int width = displayWidth(line);
      const bool isOneCluster = width <= 2;
      ASSERT_TRUE(width <= columns || isOneCluster) << ::testing::PrintToString(text) << columns;
      kept += line;
    }
    const auto withoutBlanks = [](const std::string& from) {
      std::string result;
      for (const char c : from) {
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') result.push_back(c);
      }
      return result;
    };
    ASSERT_EQ(withoutBlanks(kept), withoutBlanks(repairedUtf8(text)));
  }
}

TEST(DisplayWidthTest, aMegabyteTakesNoNoticeableTime) {
  for (const std::string piece : {"word ", "x", "\xE4\xB8\xAD", "e\xCC\x81", "\xFF", " ",
                                  "\xF0\x9F\x91\xA8\xE2\x80\x8D", "\n", "\xE0\xB8\x81"}) {
    std::string text;
    while (text.size() < kHostileSize) text += piece;
    const auto start = std::chrono::steady_clock::now();
    const int width = displayWidth(text);
    const Lines lines = wrapToWidth(text, 80);
    const auto taken = std::chrono::steady_clock::now() - start;
    EXPECT_GT(width, 0);
    EXPECT_FALSE(lines.empty());
    // Generous, for instrumented builds; anything that grows faster than the text takes far longer.
    EXPECT_LT(taken, std::chrono::seconds(5)) << piece;
    RecordProperty(
        "milliseconds",
        static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(taken).count()));
  }
}

TEST(ForEachCluster, GivesWhatATerminalDrawsInOnePlaceWithItsColumns) {
  std::vector<std::pair<std::string, int>> clusters;
  forEachCluster("ae\u0301表\t\r\n\u0301", [&](std::string_view cluster, int columns) {
    clusters.emplace_back(cluster, columns);
  });
  const std::vector<std::pair<std::string, int>> expected = {
      {"a", 1}, {"e\u0301", 1}, {"表", 2}, {"\t", 1}, {"\r\n", 1}, {"\u0301", 0}};
  EXPECT_EQ(clusters, expected);
  forEachCluster("", [](std::string_view, int) { ADD_FAILURE() << "nothing is no cluster"; });
}

}  // namespace
}  // namespace vornwout
