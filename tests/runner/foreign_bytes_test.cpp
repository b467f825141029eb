#include "runner/foreign_bytes.h"

#include <chrono>
#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

struct Case {
  const char* encoding;
  std::string text;
  int offset;  // -1: every byte is known
  unsigned line;
  unsigned value;
};

TEST(ForeignBytes, FirstOneIsFoundInEveryEncoding) {
  const Case cases[] = {
      {"UTF-8", "", -1, 0, 0},
      {"UTF-8",
       "a\nGr\xC3\xBC\xC3\x9F"
       "e\n",
       -1, 0, 0},
      {"UTF-8",
       "\xEF\xBB\xBF"
       "a",
       -1, 0, 0},
      {"UTF-8",
       "a\xFC"
       "b\xFF",
       1, 1, 0xFC},
      {"UTF-8", "\xC3\xBC\nx\xC3", 4, 2, 0xC3},
      {"UTF-8",
       "a\xEF\xBF\xBD"
       "b",
       -1, 0, 0},
      {"UTF-8",
       "a\xEF\xBF\xBD"
       "b\x80",
       5, 1, 0x80},
      {"UTF-8", "a\rb\r\nc\n\r\n\xE9", 9, 5, 0xE9},
      {"windows-1252",
       "Gr\xFC\xDF"
       "e \x80",
       -1, 0, 0},
      {"ISO-8859-7", "\xE1\n\n\xFF", 3, 3, 0xFF},
      {"Shift-JIS", "\x83\x5C\x83\x5B \xB1", -1, 0, 0},
      {"Shift-JIS", "\x83\x5C\r\x83", 3, 2, 0x83},
      {"Shift-JIS", "\x83\x5C\r\n'\xFF\x41'", 5, 2, 0xFF},
      {"EUC-KR", "\xB0\xA1 \xFF", 3, 1, 0xFF},
      {"Big5", "\xA4\xA4 \xA4", 3, 1, 0xA4},
      {"GB18030", "\xCE\xC4\x81\x39\xEF\x36", -1, 0, 0},
      {"GB18030", "\x84\x31\xA4\x37", -1, 0, 0},  // U+FFFD as it is written there
      {"GB18030", "\x84\x31\xA4\x37 \xFF", 5, 1, 0xFF},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.encoding) + ": " + testing::PrintToString(c.text));
    const auto encoding = Encoding::find(c.encoding);
    ASSERT_NE(encoding, nullptr);
    const std::optional<ForeignByte> found = findForeignByte(c.text, *encoding);
    ASSERT_EQ(found.has_value(), c.offset >= 0);
    if (!found) continue;
    EXPECT_EQ(static_cast<int>(found->offset), c.offset);
    EXPECT_EQ(found->line, c.line);
    EXPECT_EQ(found->value, c.value);
  }
}

TEST(ForeignBytes, LongLineIsLookedAtOnce) {
  std::string text;
  for (int i = 0; i < 300'000; ++i) text += "\xEF\xBF\xBD";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(findForeignByte(text, *Encoding::utf8()));
  EXPECT_TRUE(findForeignByte(text + "\xFF", *Encoding::utf8()));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace vornwout
