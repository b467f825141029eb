// One token as commands see it, the tokens of the current command, and the readers of numbers.
#include "platform/parser/token_sequence.h"

#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

TEST(TokenSequence, WithoutACurrentCommandHasNoTokens) {
  const VORN_TokenSequence sequence(true);
  EXPECT_EQ(sequence.command(), nullptr);
  EXPECT_THAT(sequence.tokens(), IsEmpty());
}

TEST(TokenSequence, OfTheCurrentCommandBeginsBehindItsName) {
  const TokenizedText text("OUTPUT NEW NAME=a.");
  const CurrentCommand current(text.command(), 2);
  const VORN_TokenSequence sequence(true);
  EXPECT_EQ(sequence.command(), &text.command());
  ASSERT_THAT(sequence.tokens(), SizeIs(3));
  EXPECT_EQ(text.command().text(sequence.tokens().front()), "NAME");
}

TEST(TokenSequence, MadeWithFalseHasNoTokens) {
  const TokenizedText text("OUTPUT NEW NAME=a.");
  const CurrentCommand current(text.command(), 2);
  EXPECT_THAT(VORN_TokenSequence(false).tokens(), IsEmpty());
}

struct TokenCase {
  const char* source;
  const char* text;
  const char* upper;
  char kind;  // w, n, s or o
  int code;
  bool isInteger;
  int integer;
  double number;
};

void PrintTo(const TokenCase& row, std::ostream* out) { *out << row.source; }

class TokenInfo : public testing::TestWithParam<TokenCase> {};

TEST_P(TokenInfo, KnowsItsTextsKindAndValue) {
  const TokenCase& row = GetParam();
  const TokenizedText text(std::string("A ") + row.source + " B");
  const TokenInfoObj token(text.command(), text.command().tokens()[1]);
  EXPECT_EQ(token.getString(), row.text);
  EXPECT_EQ(token.getUpperString(), row.upper);
  EXPECT_EQ(token.getSourceText(), row.source);
  EXPECT_EQ(token.IsWord(), row.kind == 'w');
  EXPECT_EQ(token.IsNumber(), row.kind == 'n');
  EXPECT_EQ(token.IsLiteral(), row.kind == 's');
  EXPECT_EQ(token.IsOperator(), row.kind == 'o');
  EXPECT_EQ(token.getOperatorCode(), row.code);
  EXPECT_EQ(token.IsInteger(), row.isInteger);
  EXPECT_EQ(token.getInteger(), row.integer);
  EXPECT_EQ(token.getNumber(), row.number);
  EXPECT_EQ(token.place(), (SourcePlace{1, 3}));
}

const TokenCase kTokenCases[] = {
    {"doc1", "doc1", "DOC1", 'w', 0, false, 0, 0},
    {"été", "été", "ÉTÉ", 'w', 0, false, 0, 0},
    {"'it''s'", "it's", "IT'S", 's', 0, false, 0, 0},
    {"\"12\"", "12", "12", 's', 0, false, 0, 0},
    {"''", "", "", 's', 0, false, 0, 0},
    {"=", "=", "=", 'o', 3, false, 0, 0},
    {"*", "*", "*", 'o', 10, false, 0, 0},
    {"all", "all", "ALL", 'o', 35, false, 0, 0},
    {"12", "12", "12", 'n', 0, true, 12, 12},
    {"-12", "-12", "-12", 'n', 0, true, -12, -12},
    {"+12", "+12", "+12", 'n', 0, true, 12, 12},
    {"007", "007", "007", 'n', 0, true, 7, 7},
    {"2147483647", "2147483647", "2147483647", 'n', 0, true, 2147483647, 2147483647},
    {"-2147483648", "-2147483648", "-2147483648", 'n', 0, true, -2147483647 - 1, -2147483648.0},
    {"2147483648", "2147483648", "2147483648", 'n', 0, false, 2147483647, 2147483648.0},
    {"1.9", "1.9", "1.9", 'n', 0, false, 1, 1.9},
    {"-1.9", "-1.9", "-1.9", 'n', 0, false, -1, -1.9},
    {"5.", "5.", "5.", 'n', 0, false, 5, 5},
    {".5", ".5", ".5", 'n', 0, false, 0, 0.5},
    {"1e2", "1e2", "1E2", 'n', 0, false, 100, 100},
};

INSTANTIATE_TEST_SUITE_P(TokenSequence, TokenInfo, testing::ValuesIn(kTokenCases));

TEST(TokenInfo, OfANumberThatNoDoubleHoldsIsInfiniteOrZero) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::string zeros(400, '0');
  const std::pair<std::string, double> cases[] = {
      {"1e999", kInfinity},
      {"-1e999", -kInfinity},
      {"+1e999", kInfinity},
      {"1e400", kInfinity},
      {"9" + zeros, kInfinity},
      {"-9" + zeros + ".5", -kInfinity},
      {".0001E400", kInfinity},
      {"0." + zeros + "1e800", kInfinity},
      {"1e99999999999999999999999999999999", kInfinity},
      {"1e-999", 0},
      {"-1e-999", 0},
      {"." + zeros + "1", 0},
      {"9" + zeros + "e-800", 0},
      {"1e-99999999999999999999999999999999", 0},
      {"0e999", 0},
      {"0" + zeros + "e" + zeros + "1", 0},
      {"1" + zeros + "e-400", 1},
      {"0." + zeros + "1e401", 1},
  };
  for (const auto& [source, value] : cases) {
    const TokenizedText text("A " + source + " B");
    const TokenInfoObj token(text.command(), text.command().tokens()[1]);
    ASSERT_TRUE(token.IsNumber()) << source;
    EXPECT_EQ(token.getNumber(), value) << source;
    const bool isFinite = value == 0 || value == 1;
    EXPECT_EQ(token.getInteger(), isFinite    ? static_cast<int>(value)
                                  : value > 0 ? std::numeric_limits<int>::max()
                                              : std::numeric_limits<int>::min())
        << source;
  }
}

TEST(ReadNumber, TakesWhatANumberTokenMayHold) {
  const std::vector<std::pair<const char*, double>> cases = {
      {"0", 0}, {"+1", 1}, {"-1", -1}, {"1.5", 1.5}, {".5", 0.5}, {"5.", 5}, {"1e-2", 0.01}};
  for (const auto& [text, expected] : cases) {
    double value = -99;
    EXPECT_TRUE(readNumber(text, value)) << text;
    EXPECT_EQ(value, expected) << text;
  }
}

TEST(ReadNumber, RefusesEverythingElseAndLeavesItsOutValueAlone) {
  for (const char* text : {"", "+", "-", "+-1", "-+1", "--1", "nan", "inf", "-inf", "+nan", "1 ",
                           " 1", "1x", "0x10", "1e999", "."}) {
    double value = -99;
    EXPECT_FALSE(readNumber(text, value)) << text;
    EXPECT_EQ(value, -99) << text;
  }
}

TEST(ReadInteger, RefusesWhatIsNoIntegerOrDoesNotFit) {
  for (const char* text : {"", "+", "1.0", "1e2", "2147483648", "-2147483649", "+-1", "1 "}) {
    int value = -99;
    EXPECT_FALSE(readInteger(text, value)) << text;
    EXPECT_EQ(value, -99) << text;
  }
  int value = 0;
  EXPECT_TRUE(readInteger("+7", value));
  EXPECT_EQ(value, 7);
}

}  // namespace
}  // namespace vornwout
