// What stands around a token in its line, whatever the encoding and the length of the line.
#include "platform/parser/token.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

TEST(PartOfLine, OfAShortLineIsTheLine) {
  const TokenizedText text("\xEF\xBB\xBFone two\r\n\tthree four\rfive.");
  const std::vector<Token>& tokens = text.command().tokens();
  const char* const lines[] = {"one two", "one two", "\tthree four", "\tthree four", "five."};
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const auto part = text.command().partOfLine(tokens[i].offset, tokens[i].line, 100);
    EXPECT_EQ(part.text, lines[i]);
    EXPECT_EQ(part.column, 1);
    EXPECT_FALSE(part.isCutBefore);
    EXPECT_FALSE(part.isCutAfter);
  }
}

TEST(PartOfLine, OfALongLineHoldsWholeCharactersAroundThePlace) {
  for (const auto& [name, character] :
       {std::pair{"UTF-8", "\xE6\x97\xA5"}, std::pair{"Shift-JIS", "\x95\x5C"},
        std::pair{"GB18030", "\x81\x30\x81\x30"}, std::pair{"windows-1252", "x"}}) {
    SCOPED_TRACE(name);
    const ScopedEncoding encoding(Encoding::find(name));
    const std::string word = std::string(character) + "abc ";
    std::string source = "first\n";
    for (int i = 0; i < 5000; ++i) source += word;
    const TokenizedText text(source);
    const std::vector<Token>& tokens = text.command().tokens();
    for (const std::size_t i : {4990U, 1U, 2U, 300U, 4000U, 5000U}) {
      const Token& token = tokens[i];
      const auto part = text.command().partOfLine(token.offset, token.line, 50);
      const auto begin =
          static_cast<std::size_t>(part.text.data() - text.command().jobText().data());
      ASSERT_LE(begin, token.offset);
      // Five characters per word: a stretch that began inside one would count others.
      const std::size_t into = (begin - 6) % word.size();
      const std::size_t lead = std::string_view(character).size();
      ASSERT_TRUE(into == 0 || into >= lead) << into;
      const std::size_t columns = (begin - 6) / word.size() * 5 + (into == 0 ? 0 : into - lead + 1);
      EXPECT_EQ(part.column, static_cast<int>(columns) + 1);
      EXPECT_EQ(part.isCutBefore, begin > 6);
      EXPECT_EQ(part.isCutAfter, begin + part.text.size() < source.size());
      EXPECT_TRUE(!part.isCutBefore || token.offset - begin >= 50);
      EXPECT_TRUE(!part.isCutAfter || begin + part.text.size() - token.offset >= 50);
      EXPECT_LT(part.text.size(), 500U);
    }
  }
}

}  // namespace
}  // namespace vornwout
