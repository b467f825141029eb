#include "runner/terminal/diagnostics.h"

#include <chrono>
#include <climits>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/display_width.h"

namespace vornwout {
namespace {

std::string print(const Diagnostic& diagnostic, const TerminalStyle& style = {}) {
  std::ostringstream out;
  printDiagnostic(out, diagnostic, style);
  return out.str();
}

Diagnostic at(int column, int length, const std::string& line) {
  Diagnostic diagnostic;
  diagnostic.file = "job.qxs";
  diagnostic.place = {3, column};
  diagnostic.length = length;
  diagnostic.text = "text";
  diagnostic.sourceLine = SourceLine{line};
  return diagnostic;
}

/// The source line and the caret line.
std::string excerpt(const Diagnostic& diagnostic, int width = 0) {
  const std::string printed = print(diagnostic, TerminalStyle{ColorDepth::kNone, width});
  return printed.substr(printed.find('\n') + 1);
}

TEST(Diagnostics, ShowPlaceSeverityTextLineAndCaret) {
  EXPECT_EQ(print(at(5, 0, "abc def")), "job.qxs:3:5: error: text\n  abc def\n      ^\n");
}

TEST(Diagnostics, SeveritiesHaveTheirWords) {
  Diagnostic diagnostic;
  diagnostic.file = "f";
  diagnostic.text = "t";
  EXPECT_EQ(print(diagnostic), "f: error: t\n");
  diagnostic.severity = MessageSeverity::kWarning;
  EXPECT_EQ(print(diagnostic), "f: warning: t\n");
  diagnostic.severity = MessageSeverity::kInformation;
  EXPECT_EQ(print(diagnostic), "f: note: t\n");
}

TEST(Diagnostics, ShowOnlyWhatIsKnownOfThePlace) {
  Diagnostic diagnostic = at(0, 0, "abc");
  EXPECT_EQ(print(diagnostic), "job.qxs:3: error: text\n  abc\n");
  diagnostic.sourceLine.reset();
  EXPECT_EQ(print(diagnostic), "job.qxs:3: error: text\n");
  diagnostic.place = {};
  diagnostic.sourceLine = SourceLine{"abc"};
  EXPECT_EQ(print(diagnostic), "job.qxs: error: text\n");
}

struct CaretCase {
  const char* name;
  int column;
  int length;
  const char* line;
  const char* expected;
};

TEST(Diagnostics, CaretStandsBelowItsCharacter) {
  const CaretCase cases[] = {
      {"known length", 5, 3, "abc def g", "  abc def g\n      ^~~\n"},
      {"length of one", 5, 1, "abc def", "  abc def\n      ^\n"},
      {"first column", 1, 0, "abc", "  abc\n  ^\n"},
      {"end of line", 4, 0, "abc", "  abc\n     ^\n"},
      {"far behind the end", INT_MAX, INT_MAX, "abc", "  abc\n     ^\n"},
      {"length beyond the end", 2, INT_MAX, "abc", "  abc\n   ^~\n"},
      {"empty line", 1, 0, "", "  \n  ^\n"},
      {"tab before", 2, 1, "\tx", "          x\n          ^\n"},
      {"tab in the middle", 4, 1, "ab\tx", "  ab      x\n          ^\n"},
      {"at a tab", 3, 1, "ab\tx", "  ab      x\n    ^~~~~~\n"},
      {"wide before", 3, 2, "日本ab", "  日本ab\n      ^~\n"},
      {"wide token", 2, 2, "a日本b", "  a日本b\n   ^~~~\n"},
      {"wide token of unknown length", 2, 0, "a日本b", "  a日本b\n   ^\n"},
      {"combining before", 3, 1, "e\u0301x", "  e\u0301x\n   ^\n"},
      {"at a combining mark", 2, 1, "e\u0301x", "  e\u0301x\n  ^\n"},
      {"emoji sequence before", 4, 1, "👩\u200d👧x", "  👩\u200d👧x\n    ^\n"},
      {"line end kept by the caller", 2, 0, "ab\r\n", "  ab\n   ^\n"},
      {"control characters", 3, 1, "\x1b\x07x", "  \uFFFD\uFFFDx\n    ^\n"},
      {"bytes that are not valid", 3, 1, "\xff\xfex", "  \uFFFD\uFFFDx\n    ^\n"},
  };
  for (const CaretCase& c : cases) {
    EXPECT_EQ(excerpt(at(c.column, c.length, c.line)), c.expected) << c.name;
  }
}

TEST(Diagnostics, LongLineIsCutAroundTheCaret) {
  const std::string line = "0123456789abcdefghijABCDEFGHIJ0123456789";
  EXPECT_EQ(excerpt(at(3, 2, line), 22), "  0123456789abcdefghi…\n    ^~\n");
  EXPECT_EQ(excerpt(at(21, 2, line), 22), "  …efghijABCDEFGHIJ01…\n         ^~\n");
  EXPECT_EQ(excerpt(at(40, 1, line), 22), "  …CDEFGHIJ0123456789\n                    ^\n");
}

TEST(Diagnostics, CutLinesFitAndTheCaretStaysBelowItsCharacter) {
  std::string line;
  for (int i = 0; i < 60; ++i) line += i % 3 == 0 ? "日" : i % 7 == 0 ? "e\u0301" : "x";
  for (int width = 12; width < 100; width += 3) {
    for (int column = 1; column <= 68; ++column) {
      const std::string shown = excerpt(at(column, 3, line), width);
      const std::string first = shown.substr(0, shown.find('\n'));
      const std::string second = shown.substr(shown.find('\n') + 1);
      ASSERT_LE(displayWidth(first), width) << column;
      ASSERT_LE(displayWidth(second.substr(0, second.size() - 1)), width) << column;
      ASSERT_NE(second.find('^'), std::string::npos);
    }
  }
}

TEST(Diagnostics, CaretOfACutLineMarksTheRightCharacter) {
  for (int column = 1; column <= 200; ++column) {
    std::string line(200, 'x');
    line[static_cast<std::size_t>(column - 1)] = '!';
    const std::string shown = excerpt(at(column, 1, line), 40);
    const std::string first = shown.substr(0, shown.find('\n'));
    const std::string second = shown.substr(shown.find('\n') + 1);
    ASSERT_EQ(static_cast<std::size_t>(displayWidth(first.substr(0, first.find('!')))),
              second.find('^'))
        << column;
  }
}

TEST(Diagnostics, HugeLineIsShownQuickly) {
  const std::string line(4 << 20, 'x');
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 20; ++i) {
    const std::string shown = excerpt(at(2'000'000, 5, line));
    EXPECT_LT(shown.size(), 3000u);
    EXPECT_THAT(shown, testing::HasSubstr("^~~~~"));
  }
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  EXPECT_LT(elapsed.count(), 10.0);
}

TEST(Diagnostics, PartOfALineIsShownAsThePartOfThatLine) {
  Diagnostic diagnostic = at(1002, 3, "");
  diagnostic.sourceLine = SourceLine{"abc def", 998, true, true};
  EXPECT_EQ(excerpt(diagnostic), "  …abc def…\n       ^~~\n");
  diagnostic.sourceLine->isCutAfter = false;
  EXPECT_EQ(excerpt(diagnostic), "  …abc def\n       ^~~\n");
}

TEST(Diagnostics, PartWithinReachIsShownLikeTheWholeLine) {
  std::string line;
  for (int i = 0; i < 2000; ++i) line += static_cast<char>('!' + i % 90);
  for (const int width : {12, 80, 400}) {
    const TerminalStyle style{ColorDepth::kNone, width};
    const int reach = excerptReach(style);
    Diagnostic part = at(1000, 3, "");
    part.sourceLine = SourceLine{
        line.substr(static_cast<std::size_t>(999 - reach), static_cast<std::size_t>(2 * reach)),
        1000 - reach, true, true};
    EXPECT_EQ(print(part, style), print(at(1000, 3, line), style)) << width;
  }
}

TEST(Diagnostics, TextAndFileAreSanitizedAndStayOnOneLine) {
  Diagnostic diagnostic;
  diagnostic.file = "a\x1b[2J";
  diagnostic.text = "x\ny\x1b[31m";
  EXPECT_EQ(print(diagnostic), "a\uFFFD[2J: error: x y\uFFFD[31m\n");
}

TEST(Diagnostics, StyledSeverityHasItsColour) {
  const TerminalStyle styled{ColorDepth::k256, 0};
  Diagnostic diagnostic = at(2, 2, "abc");
  EXPECT_EQ(print(diagnostic, styled),
            "\x1b[1mjob.qxs:3:2:\x1b[0m \x1b[1;31merror:\x1b[0m text\n  abc\n"
            "   \x1b[1;31m^~\x1b[0m\n");
  diagnostic.severity = MessageSeverity::kWarning;
  EXPECT_THAT(print(diagnostic, styled), testing::HasSubstr("\x1b[1;33mwarning:\x1b[0m"));
  diagnostic.severity = MessageSeverity::kInformation;
  EXPECT_THAT(print(diagnostic, styled), testing::HasSubstr("\x1b[1;36mnote:\x1b[0m"));
}

}  // namespace
}  // namespace vornwout
