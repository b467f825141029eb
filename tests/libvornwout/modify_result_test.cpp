// Reading what a host answers to a modify document, whatever it answers.
#include "libvornwout/modify/modify_result.h"

#include <chrono>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// "3 2 1", or "none" for an answer without counts.
std::string countsOf(const std::string& answer) {
  const ModifyResult result = readModifyResult(answer);
  if (!result.hasCounts) {
    EXPECT_EQ(result.selected + result.modified + result.deleted, 0) << answer;
    return "none";
  }
  return std::to_string(result.selected) + " " + std::to_string(result.modified) + " " +
         std::to_string(result.deleted);
}

TEST(ModifyResultCounts, StandInTheFirstParentheses) {
  const struct {
    const char* answer;
    const char* counts;
  } cases[] = {
      {"(3,2,1)", "3 2 1"},
      {"Objects: (3,2,1) done (9,9,9)", "3 2 1"},
      {"(3,2)", "3 2 0"},
      {"(3)", "3 0 0"},
      {"( 3, 2 ,1 )", "3 2 1"},
      {"(3,,1)", "3 0 1"},
      {"(,2,)", "0 2 0"},
      {"(,,)", "0 0 0"},
      {"(3,2,1,4)", "3 2 1"},
      {"(-3,+2,007)", "-3 2 7"},
      {"(3x,x2,0x1)", "3 0 0"},
      {"(many)", "0 0 0"},
      {"( )", "0 0 0"},
      {"((3,2,1))", "0 2 1"},
      {"", "none"},
      {"3,2,1", "none"},
      {"()", "none"},
      {"(", "none"},
      {")", "none"},
      {"(3,2,1", "none"},
      {"3,2,1)", "none"},
      // The first of each counts, so a pair that begins with its end is none.
      {")(3,2,1)", "none"},
      {"() (3,2,1)", "none"},
      // A number beyond all counts is the largest one.
      {"(99999999999999999999,-99999999999999999999)",
       "9223372036854775807 -9223372036854775808 0"},
      // Deliberate: a note before the counts is taken for them.
      {"Invalid format (F99) (3,2,1)", "0 0 0"},
      {"(3,2,1) Invalid format (F99)", "3 2 1"},
  };
  for (const auto& test : cases) EXPECT_EQ(countsOf(test.answer), test.counts) << test.answer;
}

TEST(ModifyResultCounts, EndAtAZeroByteOfTheirOwn) {
  EXPECT_EQ(countsOf(std::string("(3\0004,2,1)", 9)), "3 2 1");
}

TEST(ModifyResultNotes, AreReadByKindInTheirOrder) {
  const struct {
    const char* answer;
    std::vector<std::string> formats;
    std::vector<std::string> fonts;
  } cases[] = {
      {"", {}, {}},
      {"(3,2,1)", {}, {}},
      {"Invalid format (F99)", {"F99"}, {}},
      {"Invalid font (Foo)", {}, {"Foo"}},
      {"Invalid format(F99)Invalid format (A1) Invalid format: (F99)", {"F99", "A1", "F99"}, {}},
      {"(3,2,1) Invalid font (b) Invalid format (c) Invalid font (a)", {"c"}, {"b", "a"}},
      {"Invalid format ()", {""}, {}},
      {"Invalid format (a(b)c)", {"a(b"}, {}},
      {"Invalid format (\xC3\xA4 & ^1)", {"\xC3\xA4 & ^1"}, {}},
      // A value is what comes next in parentheses, whoever it was meant for.
      {"Invalid format Invalid font (x)", {"x"}, {"x"}},
      {"Invalid format) (x)", {"x"}, {}},
      {"Invalid format and (Invalid format (x)", {"Invalid format (x", "x"}, {}},
      // What is never closed is no value.
      {"Invalid format", {}, {}},
      {"Invalid format (x", {}, {}},
      {"(x) Invalid format", {}, {}},
      {"Invalid format (a) Invalid format (b", {"a"}, {}},
      // Exactly so, with case.
      {"invalid format (x) INVALID FONT (y) Invalid  format (z)", {}, {}},
  };
  for (const auto& test : cases) {
    const ModifyResult result = readModifyResult(test.answer);
    EXPECT_EQ(result.invalidFormats, test.formats) << test.answer;
    EXPECT_EQ(result.invalidFonts, test.fonts) << test.answer;
  }
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  all.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

TEST(ModifyResult, ReadsALongHostileAnswerInLinearTime) {
  constexpr std::size_t kTimes = 400000;
  // A reader that looked for the ends again and again would take minutes.
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THAT(readModifyResult(repeated("Invalid format", kTimes)).invalidFormats, IsEmpty());
  EXPECT_THAT(readModifyResult(repeated("Invalid font ", kTimes) + "(").invalidFonts, IsEmpty());
  EXPECT_THAT(readModifyResult(repeated("Invalid format (", kTimes)).invalidFormats, IsEmpty());
  EXPECT_THAT(readModifyResult(repeated(")", kTimes) + repeated("Invalid format", kTimes) + "(")
                  .invalidFormats,
              IsEmpty());
  EXPECT_EQ(readModifyResult(repeated("Invalid format", kTimes) + "(x)").invalidFormats,
            std::vector<std::string>(kTimes, "x"));
  EXPECT_EQ(readModifyResult(repeated("Invalid font (x)", kTimes)).invalidFonts.size(), kTimes);
  EXPECT_EQ(countsOf("(" + repeated(",", kTimes * 10) + ")"), "0 0 0");
  EXPECT_EQ(countsOf("(" + repeated("1", kTimes * 10) + ",2)"), "9223372036854775807 2 0");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace vornwout
