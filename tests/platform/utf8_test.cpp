// UTF-8 characters against ICU for every sequence of up to three bytes and the bounds of four.
#include "platform/text/utf8.h"

#include <string>

#include <unicode/utf8.h>

#include "gtest/gtest.h"

namespace vornwout {
namespace {

/// Length of the valid character at the start by ICU's rules; 0 when there is none.
int referenceLength(const std::string& text) {
  std::int32_t at = 0;
  UChar32 codePoint = 0;
  U8_NEXT(text.data(), at, static_cast<std::int32_t>(text.size()), codePoint);
  return codePoint < 0 ? 0 : at;
}

TEST(Utf8Test, lengthAgreesWithReferenceForEverySequenceOfThreeBytes) {
  std::string text(3, '\0');
  int differences = 0;
  for (unsigned value = 0; value < 1U << 24U; ++value) {
    text[0] = static_cast<char>(value >> 16U);
    text[1] = static_cast<char>(value >> 8U);
    text[2] = static_cast<char>(value);
    if (validUtf8Length(text) != referenceLength(text)) ++differences;
  }
  EXPECT_EQ(differences, 0);
}

TEST(Utf8Test, lengthOfLongAndBrokenSequences) {
  const struct {
    std::string text;
    int length;
  } cases[] = {{"", 0},
               {"a", 1},
               {std::string(1, '\0'), 1},
               {"\xC2\xA9", 2},
               {"\xE2\x82\xAC", 3},
               {"\xF0\x9F\x98\x80", 4},
               {"\xF0\x90\x80\x80", 4},
               {"\xF4\x8F\xBF\xBF", 4},
               {"\xF0\x8F\xBF\xBF", 0},  // overlong
               {"\xF4\x90\x80\x80", 0},  // above U+10FFFF
               {"\xF5\x80\x80\x80", 0},
               {"\xED\xA0\x80", 0},  // surrogate
               {"\xC0\x80", 0},      // overlong zero
               {"\xF0\x9F\x98", 0},  // truncated
               {"\xE2\x82", 0},
               {"\xC2", 0},
               {"\x80", 0},
               {"\xFF", 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(validUtf8Length(c.text), c.length) << ::testing::PrintToString(c.text);
  }
}

TEST(Utf8Test, everyScalarValueRoundTrips) {
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint == 0xD800) codePoint = 0xE000;
    std::string text;
    appendUtf8(text, codePoint);
    const int length = validUtf8Length(text);
    ASSERT_EQ(static_cast<std::size_t>(length), text.size());
    ASSERT_EQ(utf8CodePoint(text, length), codePoint);
  }
}

TEST(Utf8Test, whatIsNoScalarValueIsAppendedAsReplacement) {
  for (const char32_t codePoint : {0xD800U, 0xDFFFU, 0x110000U, 0xFFFFFFFFU}) {
    std::string text = "a";
    appendUtf8(text, codePoint);
    EXPECT_EQ(text, "a\xEF\xBF\xBD");
  }
}

TEST(Utf8Test, asciiPrefixEndsBeforeFirstHighByteAtEveryOffset) {
  for (std::size_t offset = 0; offset < 40; ++offset) {
    EXPECT_EQ(asciiPrefixLength(std::string(offset, 'x')), offset);
    EXPECT_EQ(asciiPrefixLength(std::string(offset, 'x') + "\x80" + "yyyyyyyyyyyyyyyyyyy"), offset);
  }
}

TEST(Utf8Test, repairReplacesEachBadByteAndKeepsTheRest) {
  const struct {
    std::string text;
    std::string repaired;
  } cases[] = {{"", ""},
               {"plain", "plain"},
               {"\xE2\x82\xAC", "\xE2\x82\xAC"},
               {"a\xE2\x82", "a\xEF\xBF\xBD\xEF\xBF\xBD"},
               {"\xED\xA0\x80z", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDz"},
               {"\xFFok\xFF", "\xEF\xBF\xBDok\xEF\xBF\xBD"},
               {"\xC3\xC3\xA9", "\xEF\xBF\xBD\xC3\xA9"}};
  for (const auto& c : cases) EXPECT_EQ(repairedUtf8(c.text), c.repaired);
}

}  // namespace
}  // namespace vornwout
