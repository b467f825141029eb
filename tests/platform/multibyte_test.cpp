// The multibyte functions in several encodings, with trail bytes and malformed bytes in the way.
#include "platform/text/multibyte.h"

#include <array>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "gtest/gtest.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

int sign(int value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

struct Comparison {
  const char* encoding;
  std::string left;
  std::string right;
  int order;
};

TEST(MultibyteTest, comparisonWithoutCaseFollowsCodePointsAndKeepsMalformedBytesApart) {
  const Comparison cases[] = {{"UTF-8", "", "", 0},
                              {"UTF-8", "Yes", "yES", 0},
                              {"UTF-8", "ab", "abc", -1},
                              {"UTF-8", "abc", "AB", 1},
                              {"UTF-8", "a", "B", -1},
                              {"UTF-8", "[", "a", -1},
                              {"UTF-8", "\xC3\x89t\xC3\xA9", "\xC3\xA9T\xC3\x89", 0},
                              {"UTF-8", "\xCE\xA3", "\xCF\x82", 0},  // all sigmas fold together
                              {"UTF-8", "\xE2\x84\xAA", "k", 0},     // Kelvin sign
                              {"UTF-8", "x\xE2\x84\xAA", "XK", 0},
                              {"UTF-8", "stra\xC3\x9F\x65", "STRASSE", 1},  // simple folding
                              {"UTF-8", "\xFF", "\xFE", 1},
                              {"UTF-8", "\xFF", "\xFF", 0},
                              {"UTF-8", "\xFF", "\xEF\xBF\xBD", 1},
                              {"UTF-8", "a\xC3", "A\xC3", 0},
                              {"UTF-8", "\xF0\x90\x90\x80", "\xF0\x90\x90\xA8", 0},
                              {"windows-1252", "\xC9", "\xE9", 0},
                              {"windows-1252", "\xC9", "e", 1},
                              // The second byte of the character is "a" and "A": two characters.
                              {"Shift-JIS", "\x83\x41", "\x83\x61", -1},
                              {"Shift-JIS", "\x83\x41x", "\x83\x41X", 0},
                              {"Shift-JIS", "\x82\x60", "\x82\x81", 0},  // full-width A
                              {"GB18030", "\xA6\xA1", "\xA6\xC1", 0}};   // alpha
  for (const Comparison& c : cases) {
    const ScopedEncoding scope(Encoding::find(c.encoding));
    const char* left = c.left.c_str();
    const char* right = c.right.c_str();
    EXPECT_EQ(sign(VORNMBstricmp_A(left, right)), c.order) << c.encoding << c.left << c.right;
    EXPECT_EQ(sign(VORNMBstricmp_A(right, left)), -c.order) << c.encoding << c.left << c.right;
    EXPECT_EQ(AreStringsEqualCase(c.left, c.right), c.order == 0) << c.left << ' ' << c.right;
    EXPECT_EQ(AreStringsEqualCase(c.right, c.left), c.order == 0);
  }
}

TEST(MultibyteTest, equalityLooksBehindZeroBytes) {
  EXPECT_FALSE(AreStringsEqualCase(std::string("a\0b", 3), std::string("a\0c", 3)));
  EXPECT_TRUE(AreStringsEqualCase(std::string("a\0b", 3), std::string("A\0B", 3)));
  EXPECT_FALSE(AreStringsEqualCase("a", std::string("a\0", 2)));
}

TEST(MultibyteTest, byteComparisonTakesBytesAsUnsigned) {
  EXPECT_EQ(VORNMBstrcmp_A("a", "a"), 0);
  EXPECT_LT(VORNMBstrcmp_A("A", "a"), 0);
  EXPECT_GT(VORNMBstrcmp_A("\xC3\xA9", "z"), 0);
  EXPECT_LT(VORNMBstrcmp_A("ab", "abc"), 0);
}

TEST(MultibyteTest, aNullTextCountsAsAnEmptyOne) {
  EXPECT_EQ(VORNMBstricmp_A(nullptr, ""), 0);
  EXPECT_LT(VORNMBstricmp_A(nullptr, "a"), 0);
  EXPECT_GT(VORNMBstrcmp_A("a", nullptr), 0);
  const char* none = nullptr;
  EXPECT_EQ(VORNMBstrchr_A(none, 'a'), nullptr);
  EXPECT_EQ(VORNMBmbclen_A(nullptr), 0);
  EXPECT_EQ(VORNMBMvLower_A(nullptr), "");
  EXPECT_EQ(VORNMBTranscodeGeneric(nullptr), nullptr);
}

TEST(MultibyteTest, searchNeverFindsATrailByte) {
  const struct {
    const char* encoding;
    std::string text;
    int wanted;
    int offset;
  } cases[] = {{"UTF-8", "a/b/c", '/', 1},
               {"UTF-8", "abc", '/', -1},
               {"UTF-8", "\xC3\xA9/", '/', 2},
               {"UTF-8", "\xC3\xA9", 0xA9, -1},
               {"UTF-8", "\xA9", 0xA9, 0},
               {"Shift-JIS", "\x95\\\\", '\\', 2},
               {"Shift-JIS", "\x95\\", '\\', -1},
               {"Shift-JIS", "\x83|x|", '|', 3},
               {"Shift-JIS", "\x95", 0x95, 0},
               {"Shift-JIS", "\x83\x83", 0x83, -1},
               {"Big5", "\xA5\\a", 'a', 2},
               {"Big5", "\xA5\\", '\\', -1},
               {"GB18030", "\x81\x30\x89\x38\x30", '0', 4},
               {"GB18030", "\x81\x30", '0', 1},
               {"windows-1252", "caf\xE9", 0xE9, 3},
               {"windows-1252", "caf\xE9", static_cast<char>(0xE9), 3},
               {"Shift-JIS", "ab", 0, 2},
               {"UTF-8", "ab", 0, 2}};
  for (const auto& c : cases) {
    const ScopedEncoding scope(Encoding::find(c.encoding));
    const char* text = c.text.c_str();
    const char* found = VORNMBstrchr_A(text, c.wanted);
    EXPECT_EQ(found == nullptr ? -1 : found - text, c.offset) << c.encoding << ' ' << c.wanted;
  }
}

TEST(MultibyteTest, searchInAWritableTextGivesAWritablePlace) {
  const ScopedEncoding scope(Encoding::find("Shift-JIS"));
  std::string text = "\x95\\/a/";
  for (char* at = VORNMBstrchr_A(text.data(), '/'); at != nullptr;
       at = VORNMBstrchr_A(at + 1, '/')) {
    *at = '\\';
  }
  EXPECT_EQ(text, "\x95\\\\a\\");
}

TEST(MultibyteTest, characterLengthStopsAtTheEndOfTheText) {
  const struct {
    const char* encoding;
    std::string text;
    int length;
  } cases[] = {{"UTF-8", "", 0},
               {"UTF-8", "a", 1},
               {"UTF-8", "\xF0\x9F\x98\x80z", 4},
               {"UTF-8", "\xF0\x9F\x98", 1},
               {"UTF-8", "\xE2", 1},
               {"Shift-JIS", "\x95\\", 2},
               {"Shift-JIS", "\x95", 1},
               {"GB18030", "\x81\x30\x81\x30", 4},
               {"GB18030", "\x81\x30\x81", 1},
               {"windows-1252", "\xE9", 1}};
  for (const auto& c : cases) {
    const ScopedEncoding scope(Encoding::find(c.encoding));
    // An exact copy on the heap, so that a read behind the zero is caught under sanitizers.
    std::vector<char> exact(c.text.c_str(), c.text.c_str() + c.text.size() + 1);
    EXPECT_EQ(VORNMBmbclen_A(exact.data()), c.length) << c.encoding;
  }
}

TEST(MultibyteTest, caseIsMappedWhereTheEncodingHoldsTheResult) {
  const struct {
    const char* encoding;
    std::string text;
    std::string upper;
    std::string lower;
  } cases[] = {
      {"UTF-8", "", "", ""},
      {"UTF-8", "aZ{`@[9", "AZ{`@[9", "az{`@[9"},
      {"UTF-8", "\xC3\xA9t\xC3\x89", "\xC3\x89T\xC3\x89", "\xC3\xA9t\xC3\xA9"},
      {"UTF-8", "\xC3\x9F", "\xC3\x9F", "\xC3\x9F"},
      {"UTF-8", "a\xC3", "A\xC3", "a\xC3"},
      {"UTF-8", "\xF0\x90\x90\xA8", "\xF0\x90\x90\x80", "\xF0\x90\x90\xA8"},
      {"windows-1252", "\xE9\xFF", "\xC9\x9F", "\xE9\xFF"},
      {"latin1", "a\xFF\xB5", "A\xFF\xB5", "a\xFF\xB5"},  // neither upper case is in Latin 1
      {"windows-1252", "\xB5", "\xB5", "\xB5"},
      {"Shift-JIS", "\x83\x61z", "\x83\x61Z", "\x83\x61z"},
      {"Shift-JIS", "\x82\x81\x83", "\x82\x60\x83", "\x82\x81\x83"},
      {"GB18030", "\x81\x61x", "\x81\x61X", "\x81\x61x"}};
  for (const auto& c : cases) {
    const ScopedEncoding scope(Encoding::find(c.encoding));
    EXPECT_EQ(toUpperCase(c.text), c.upper) << c.encoding << ::testing::PrintToString(c.text);
    EXPECT_EQ(VORNMBMvLower_A(c.text.c_str()), c.lower) << c.encoding;
  }
}

TEST(MultibyteTest, transcodingGivesZeroTerminatedUtf16UntilTheNextCall) {
  EXPECT_EQ(std::u16string(VORNMBTranscodeGeneric("a\xF0\x9F\x98\x80\xFF")), u"a\U0001F600\uFFFD");
  EXPECT_EQ(std::u16string(VORNMBTranscodeGeneric("")), u"");
  const ScopedEncoding scope(Encoding::find("windows-1252"));
  EXPECT_EQ(std::u16string(VORNMBTranscodeGeneric("\x80\xE9")), u"\u20AC\u00E9");
}

TEST(MultibyteTest, utf16ToUtf8ReplacesTheResultAndLoneSurrogates) {
  const std::pair<std::u16string, std::string> cases[] = {
      {u"", ""},
      {u"a\u00E9\u20AC", "a\xC3\xA9\xE2\x82\xAC"},
      {u"\U0001F600", "\xF0\x9F\x98\x80"},
      {std::u16string{0xD83D}, "\xEF\xBF\xBD"},
      {std::u16string{0xDE00, 0xD83D}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
      {std::u16string{0xD83D, u'x'}, "\xEF\xBF\xBDx"}};
  for (const auto& [text, utf8] : cases) {
    std::string result = "old";
    VORNMBU16ToU8(text, result);
    EXPECT_EQ(result, utf8);
  }
}

}  // namespace
}  // namespace vornwout
