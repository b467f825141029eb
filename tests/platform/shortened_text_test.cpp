// Long texts inside a sentence.
#include "platform/text/shortened_text.h"

#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/display_width.h"
#include "tests/support/hostile_size.h"

namespace vornwout {
namespace {

using testing::EndsWith;
using testing::StartsWith;

std::string repeat(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

TEST(ShortenedText, LeavesUpToEightyColumns) {
  for (const std::string& text : {std::string(), std::string("a"), std::string(80, 'a'),
                                  repeat("ä", 80), repeat("表", 40), repeat("e\u0301", 80)}) {
    EXPECT_EQ(shortenedText(text), text);
  }
}

TEST(ShortenedText, KeepsBothEndsAndCountsWhatIsLeftOut) {
  EXPECT_EQ(shortenedText(std::string(30, 'a') + "bcd" + std::string(48, 'e')),
            std::string(28, 'a') + " … 25 characters … " + std::string(28, 'e'));
  EXPECT_EQ(shortenedText(repeat("表", 41)),
            repeat("表", 14) + " … 13 characters … " + repeat("表", 14));
  EXPECT_EQ(shortenedText(repeat("e\u0301", 81)),
            repeat("e\u0301", 28) + " … 50 characters … " + repeat("e\u0301", 28));
}

TEST(ShortenedText, IsNeverWiderThanEightyColumns) {
  for (const std::size_t size : {81U, 1000U, 5000U, 1'000'000U}) {
    EXPECT_LE(displayWidth(shortenedText(std::string(size, 'a'))), 80) << size;
  }
}

TEST(TextHead, TakesNoMoreThanItsColumns) {
  EXPECT_EQ(textHead("", 1), "");
  EXPECT_EQ(textHead("abc", 3), "abc");
  EXPECT_EQ(textHead("abcd", 3), "ab…");
  EXPECT_EQ(textHead("表表", 4), "表表");
  EXPECT_EQ(textHead("表表表", 4), "表…");
  EXPECT_EQ(textHead(repeat("e\u0301", 5), 4), repeat("e\u0301", 3) + "…");
  EXPECT_EQ(textHead(std::string(kHostileSize, 'a'), 5), "aaaa…");
}

TEST(ShortenedText, OfAMillionCharactersOrMarksIsShortAndQuick) {
  const auto start = std::chrono::steady_clock::now();
  const std::string letters = shortenedText(std::string(kHostileSize, 'a'));
  EXPECT_THAT(letters, StartsWith(std::string(28, 'a') + " … "));
  EXPECT_THAT(letters, EndsWith(" … " + std::string(28, 'a')));
  std::string marks = "x";
  while (marks.size() < kHostileSize) marks += "\u0301";
  EXPECT_LT(shortenedText(marks).size(), 4096U);
  // Bytes that are no text are cut like any other.
  EXPECT_LT(shortenedText(std::string(kHostileSize, '\xBF')).size(), 4096U);
  EXPECT_LT(shortenedText(std::string(kHostileSize, '\xE8')).size(), 4096U);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

}  // namespace
}  // namespace vornwout
