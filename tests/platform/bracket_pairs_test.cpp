// Which brackets belong together, and which stand alone.
#include "platform/parser/bracket_pairs.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

/// One character per token: the partner's index for a bracket that has one, "-" for one that stands
/// alone, "." for every other token.
std::string pairsOf(const std::string& source) {
  const TokenizedText text(source);
  const std::vector<Token>& tokens = text.command().tokens();
  const BracketPairs pairs(tokens, [&](std::size_t slash) {
    return slash + 1 < tokens.size() && text.command().textEquals(tokens[slash + 1], "SUB");
  });
  std::string shown;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (pairs.hasPartner(i)) {
      shown += std::to_string(pairs.partner(i));
    } else {
      shown += isBracket(tokens[i]) ? '-' : '.';
    }
  }
  return shown;
}

TEST(BracketPairs, ClosingBracketTakesTheInnermostOpenOneOfItsKind) {
  const std::pair<const char*, const char*> cases[] = {
      {"a b", ".."},
      {"( a )", "2.0"},
      {"( [ ] )", "3210"},
      {"( ) [ ]", "1032"},
      {"(", "-"},
      {")", "-"},
      {"( (", "--"},
      {"( ( )", "-21"},
      {"[ ( ]", "2-0"},
      {"( [ ) ]", "2-0-"},
      {") (", "--"},
      {"( ]", "--"},
      {"[ ( ( ] )", "3--0-"},
      {"( / a )", "3..0"},
      {"( / SUB )", "-..-"},
      {"/ SUB ( )", "..32"},
      {"( / SUB ( )", "-..43"},
      {"'(' )", ".-"},
  };
  for (const auto& [source, expected] : cases) EXPECT_EQ(pairsOf(source), expected) << source;
}

TEST(BracketPairs, OfNoTokensIsEmpty) {
  EXPECT_NO_THROW(BracketPairs({}, [](std::size_t) { return true; }));
}

}  // namespace
}  // namespace vornwout
