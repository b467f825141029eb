#include "host/export/text/text_output.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/text_file_output.h"

namespace vornwout {
namespace {

using Encodings = ExportTextSpec::ENCODING_TYPE;

TEST(TextOutput, Utf8HasNoByteOrderMark) {
  EXPECT_EQ(textFileOf([](TextOutput& out) { out.line("größer"); }), "größer\n");
  EXPECT_EQ(textFileOf([](TextOutput&) {}), "");
}

TEST(TextOutput, Utf16IsLittleEndianBehindItsMark) {
  using namespace std::string_literals;
  EXPECT_EQ(textFileOf([](TextOutput& out) { out.line("aß🎉"); }, Encodings::UTF16),
            "\xFF\xFE"s
            "a\0\xDF\0\x3C\xD8\x89\xDF\n\0"s);
}

TEST(TextOutput, PiecesOfUtf16AreCutBetweenCharacters) {
  std::string text;
  for (int i = 0; i < 50'000; ++i) text += i % 3 == 0 ? "🎉" : "ü";
  const std::string bytes = textFileOf([&](TextOutput& out) { out.line(text); }, Encodings::UTF16);
  std::u16string units;
  for (std::size_t i = 2; i < bytes.size(); i += 2) {
    units += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                   static_cast<unsigned char>(bytes[i + 1]) << 8);
  }
  EXPECT_EQ(units, Encoding::utf8()->toUtf16(text + "\n"));
}

TEST(TextOutput, LocaleThatCannotHoldACharacterIsRefused) {
  const ScopedEnvironment locale("LC_ALL", "xx_XX.ISO-8859-1");
  const auto write = [](TextOutput& out) {
    try {
      out.shownText("ß日本");
      ADD_FAILURE() << "something was lost";
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(),
                   "because ISO-8859-1 cannot hold all of the text; ENCODING=UTF8 can");
    }
    EXPECT_THROW(out.shownLine("e\u0301\nx"), std::runtime_error);
    // What nobody should see has a mark in its place.
    out.line(out.shownText("ß\x1b"));
  };
  EXPECT_EQ(textFileOf(write, Encodings::LOCALE), "\xDF?\n");
}

TEST(TextOutput, NothingThatMovesPasses) {
  textFileOf([](TextOutput& out) {
    EXPECT_EQ(out.shownText("a\tb\r\nc\x1b[1m\u202Ed"), "a b\nc\uFFFD[1m\uFFFDd");
    EXPECT_EQ(out.shownLine("a\r\nb"), "a b");
  });
}

TEST(TextOutput, EmptyLineStandsBetweenAndNotAround) {
  const std::string text = textFileOf([](TextOutput& out) {
    out.separate();
    out.line("a");
    out.separate();
    out.separate();
    out.append("b\n");
    out.line("c");
    out.separate();
  });
  EXPECT_EQ(text, "a\n\nb\nc\n");
}

TEST(TextOutput, EmptyLineIsALine) {
  EXPECT_EQ(textFileOf([](TextOutput& out) {
              out.line("");
              out.append("");
              out.line("a");
            }),
            "\na\n");
}

}  // namespace
}  // namespace vornwout
