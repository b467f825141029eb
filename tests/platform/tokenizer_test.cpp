// The tokeniser: where commands begin and end, what a token is, where it stands, and that no text
// takes more than linear time.
#include "platform/parser/tokenizer.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/hostile_size.h"
#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

/// The commands of a job as written, without their periods.
std::vector<std::string> commandsOf(const std::string& job) {
  Tokenizer tokenizer(job);
  TokenizedCommand command;
  std::vector<std::string> sources;
  while (tokenizer.next(command)) sources.emplace_back(command.source());
  return sources;
}

/// "w:NAME" for every token of the first command: w, n, s or o, and the token as written.
std::vector<std::string> tokensOf(const std::string& text) {
  const TokenizedText tokenized(text);
  std::vector<std::string> tokens;
  for (const Token& token : tokenized.command().tokens()) {
    const std::string kind(1, "wnso"[static_cast<int>(token.kind)]);
    tokens.push_back(kind + ":" + std::string(tokenized.command().sourceText(token)));
  }
  return tokens;
}

/// "line:column" of every token of every command.
std::vector<std::string> placesOf(const std::string& job) {
  Tokenizer tokenizer(job);
  TokenizedCommand command;
  std::vector<std::string> places;
  while (tokenizer.next(command)) {
    for (const Token& token : command.tokens()) {
      const SourcePlace place = command.place(token);
      places.push_back(std::to_string(place.line) + ":" + std::to_string(place.column));
    }
  }
  return places;
}

/// "string@2:5", "comment@..." or "nul@..." for every lexical error of the job.
std::vector<std::string> errorsOf(const std::string& job) {
  static const char* const kNames[] = {"string", "comment", "nul"};
  Tokenizer tokenizer(job);
  TokenizedCommand command;
  std::vector<std::string> errors;
  while (tokenizer.next(command)) {
    for (const LexicalError& error : command.errors()) {
      const SourcePlace place = command.place(error.offset, error.line);
      errors.push_back(std::string(kNames[static_cast<int>(error.kind)]) + "@" +
                       std::to_string(place.line) + ":" + std::to_string(place.column));
    }
  }
  return errors;
}

struct CommandsCase {
  const char* name;
  std::string job;
  std::vector<std::string> commands;
};

void PrintTo(const CommandsCase& row, std::ostream* out) { *out << row.name; }

class CommandEnds : public testing::TestWithParam<CommandsCase> {};

TEST_P(CommandEnds, AreWhereTheLanguageHasThem) {
  EXPECT_THAT(commandsOf(GetParam().job), ElementsAreArray(GetParam().commands));
}

const CommandsCase kCommandCases[] = {
    {"NothingAtAll", "", {}},
    {"OnlyBlanksAndLines", " \t\r\n\n \r ", {}},
    {"OnlyPeriods", ".\n . \n.", {}},
    {"OnlyAByteOrderMark", "\xEF\xBB\xBF", {}},
    {"PeriodAtTheLinesEnd", "A 1.\nB 2.\n", {"A 1", "B 2"}},
    {"PeriodWithBlanksBehind", "A. \t\nB", {"A", "B"}},
    {"PeriodOnItsOwnLine", "A\n.\nB", {"A", "B"}},
    {"PeriodInsideTheLineEndsNothing", "A . B\nC.", {"A . B\nC"}},
    {"OnlyTheLastOfSeveralPeriodsEnds", "A. .\nB", {"A.", "B"}},
    {"PeriodBehindAWordThatEndsWithOne", "A..\nB", {"A.", "B"}},
    {"PeriodBehindANumber", "A 5.\nB", {"A 5", "B"}},
    {"PeriodBehindAnExponent", "A 1e5.\nB", {"A 1e5", "B"}},
    {"PeriodBehindAString", "A 'x.'.\nB", {"A 'x.'", "B"}},
    {"PeriodInsideAStringEndsNothing", "A 'x.'\nB", {"A 'x.'\nB"}},
    {"CommentBehindThePeriodIsBlank", "A. /* c */\nB", {"A", "B"}},
    {"CommentBehindThePeriodMayGoOn", "A. /* c\n c */ B", {"A", "B"}},
    {"PeriodInsideACommentEndsNothing", "A /* c. */\nB.", {"A /* c. */\nB"}},
    {"PeriodBeforeALineOfComment", "A 5. /* c */ /* d */ \t\nB", {"A 5", "B"}},
    {"EmptyLine", "A\n\nB", {"A", "B"}},
    {"LineOfBlanksIsEmpty", "A\n \t \nB", {"A", "B"}},
    {"LineOfCommentIsNotEmpty", "A\n/* c */\nB", {"A\n/* c */\nB"}},
    {"EmptyLineInsideACommentEndsNothing", "A /* \n\n */ B", {"A /* \n\n */ B"}},
    {"EndOfTheJob", "A B", {"A B"}},
    {"EndOfTheJobBehindALineEnd", "A B\n", {"A B"}},
    {"CarriageReturnsAndLineFeeds", "A\r\nB.\r\nC\r\n\r\nD", {"A\r\nB", "C", "D"}},
    {"CarriageReturnsAlone", "A\rB.\rC\r\rD", {"A\rB", "C", "D"}},
    {"CommentLine", "* note.\nA", {"A"}},
    {"CommentLineGoesOnToItsPeriod", "* note\nmore\nend.\nA", {"A"}},
    {"CommentLineGoesOnToAnEmptyLine", "* note\nmore\n \nA", {"A"}},
    {"CommentLineToTheEndOfTheJob", "A.\n* note\nB", {"A"}},
    {"CommentLineWithAPeriodInside", "* a. b\nc.\nA", {"A"}},
    {"CommentLineWithACommentBehindItsPeriod", "* note. /* c */ /* d */ \nA", {"A"}},
    {"CommentLineThatNamesAPattern", "* see dir/*.\nA", {"A"}},
    {"CommentLineWithAnOddEnd", "* see */\nA.\nB", {"B"}},
    {"CommentLineBehindBlanks", "  * note.\nA", {"A"}},
    {"CommentLineBehindAComment", "/* c */ * note.\nA", {"A"}},
    {"AsteriskInsideACommandIsNoComment", "A\n* B.\nC", {"A\n* B", "C"}},
    {"CommentBeforeTheCommand", "/* c */ A /* d */.\nB", {"A", "B"}},
    {"ShortestComment", "A/**/B", {"A/**/B"}},
    {"HalfACommentIsNone", "A /*/ B */ C", {"A /*/ B */ C"}},
    {"ByteOrderMarkInFront", "\xEF\xBB\xBF* note.\nA", {"A"}},
    {"ControlCharactersAreBlanks", "A\v\f\x01 B", {"A\v\f\x01 B"}},
};

INSTANTIATE_TEST_SUITE_P(Tokenizer, CommandEnds, testing::ValuesIn(kCommandCases),
                         [](const auto& row) { return std::string(row.param.name); });

struct TokensCase {
  const char* name;
  std::string text;
  std::vector<std::string> tokens;
};

void PrintTo(const TokensCase& row, std::ostream* out) { *out << row.name; }

class Tokens : public testing::TestWithParam<TokensCase> {};

TEST_P(Tokens, AreThoseOfTheLanguage) {
  EXPECT_THAT(tokensOf(GetParam().text), ElementsAreArray(GetParam().tokens));
}

const TokensCase kTokenCases[] = {
    {"WordStarts", "a _b #c @d $e é 表", {"w:a", "w:_b", "w:#c", "w:@d", "w:$e", "w:é", "w:表"}},
    {"WordGoesOn", "a1.b_#@$é2 x", {"w:a1.b_#@$é2", "w:x"}},
    {"WordKeepsItsPeriodInsideTheLine", "a. b", {"w:a.", "w:b"}},
    {"DigitsStartNoWord", "2x", {"n:2", "w:x"}},
    {"PeriodStartsNoWord", "x .a b", {"w:x", "o:.", "w:a", "w:b"}},
    {"InvalidByteIsAnOperator",
     "a\xFF"
     "b",
     {"w:a", "o:\xFF", "w:b"}},
    {"CommentSeparatesWords", "a/*c*/b", {"w:a", "w:b"}},
    {"Numbers", "1 12.5 .5 5. x", {"n:1", "n:12.5", "n:.5", "n:5.", "w:x"}},
    {"Exponents", "1e5 1E+5 2.5e-3 .5e1 x", {"n:1e5", "n:1E+5", "n:2.5e-3", "n:.5e1", "w:x"}},
    {"LetterWithoutExponent", "1e 1e+ x", {"n:1", "w:e", "n:1", "w:e", "o:+", "w:x"}},
    {"SecondPointStartsANumber", "1.2.3 x", {"n:1.2", "n:.3", "w:x"}},
    {"SignBehindABlank", "5 -1 +2", {"n:5", "n:-1", "n:+2"}},
    {"SignBehindANumber", "5-1", {"n:5", "o:-", "n:1"}},
    {"SignBehindAWord", "a-1", {"w:a", "o:-", "n:1"}},
    {"SignBehindAString", "'a'-1", {"s:'a'", "o:-", "n:1"}},
    {"SignBehindAnOperator",
     "a=-1,+2(-3[-4",
     {"w:a", "o:=", "n:-1", "o:,", "n:+2", "o:(", "n:-3", "o:[", "n:-4"}},
    {"SignBehindAClosingParenthesis", "(1)-1", {"o:(", "n:1", "o:)", "o:-", "n:1"}},
    {"SignBehindAClosingBracket", "[1]-1", {"o:[", "n:1", "o:]", "o:-", "n:1"}},
    {"SignBehindAClosingBracketAndABlank", "[1] -1", {"o:[", "n:1", "o:]", "n:-1"}},
    {"SignBehindAComment", "5/**/-1", {"n:5", "n:-1"}},
    {"SignAtALinesStart", "5\n-1", {"n:5", "n:-1"}},
    {"SignApartFromItsDigit", "5 - 1", {"n:5", "o:-", "n:1"}},
    {"TwoSigns", "5 --1", {"n:5", "o:-", "n:-1"}},
    {"SignBeforeAPoint", "5 -.5 -. x", {"n:5", "n:-.5", "o:-", "o:.", "w:x"}},
    {"Strings", "'a' \"b\" '' \"\"", {"s:'a'", "s:\"b\"", "s:''", "s:\"\""}},
    {"OtherQuoteInside", "'a\"b' \"c'd\"", {"s:'a\"b'", "s:\"c'd\""}},
    {"DoubledQuote", "'a''b' ''''", {"s:'a''b'", "s:''''"}},
    {"CommentMarksInsideAString", "'a /* b */'", {"s:'a /* b */'"}},
    {"Operators",
     "= * ( ) , / [ ] < > <= >= <> ~= & | ~ + - ; !",
     {"o:=",  "o:*",  "o:(",  "o:)", "o:,", "o:/", "o:[", "o:]", "o:<", "o:>", "o:<=",
      "o:>=", "o:<>", "o:~=", "o:&", "o:|", "o:~", "o:+", "o:-", "o:;", "o:!"}},
    {"OperatorsStandClose", "<==>~~=", {"o:<=", "o:=", "o:>", "o:~", "o:~="}},
    {"ReservedWord",
     "ALL all aLL ALLE .ALL x",
     {"o:ALL", "o:all", "o:aLL", "w:ALLE", "o:.", "o:ALL", "w:x"}},
    {"QuotedReservedWordIsAString", "'ALL'", {"s:'ALL'"}},
    {"NulSeparates", std::string("a\0b", 3), {"w:a", "w:b"}},
    {"UnterminatedStringLeavesThePeriod", "A 'b c.\nD", {"w:A", "s:'b c"}},
    {"UnterminatedStringLeavesBlanks", "A 'b \nC.", {"w:A", "s:'b", "w:C"}},
    {"UnterminatedStringOfNothing", "A '.\nC", {"w:A", "s:'"}},
    {"UnterminatedStringBehindADoubledQuote", "A 'b''\nC.", {"w:A", "s:'b''", "w:C"}},
    {"UnterminatedCommentLeavesThePeriod", "A /* b.\nC", {"w:A"}},
    {"UnterminatedCommentTakesItsLineAlone", "A /* b\nC.", {"w:A", "w:C"}},
};

INSTANTIATE_TEST_SUITE_P(Tokenizer, Tokens, testing::ValuesIn(kTokenCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(OperatorCodes, AreTheAgreedOnes) {
  const TokenizedText text("= * ( ) , ALL");
  std::vector<int> codes;
  for (const Token& token : text.command().tokens()) codes.push_back(static_cast<int>(token.code));
  EXPECT_THAT(codes, ElementsAre(3, 10, 13, 14, 17, 35));
}

TEST(OperatorCodes, OfTheOthersDifferFromTheAgreedOnesAndAmongThemselves) {
  const TokenizedText text("/ [ ] < > <= >= <> & | ~ + - . = * ( ) , ALL a");
  std::vector<int> codes;
  for (const Token& token : text.command().tokens()) codes.push_back(static_cast<int>(token.code));
  EXPECT_EQ(codes.back(), 0) << "a word has no code";
  std::sort(codes.begin(), codes.end());
  EXPECT_EQ(std::adjacent_find(codes.begin(), codes.end()), codes.end());
}

TEST(OperatorCodes, OfBothWaysToWriteNotEqualAreOne) {
  const TokenizedText text("<> ~=");
  EXPECT_EQ(text.command().tokens()[0].code, text.command().tokens()[1].code);
}

TEST(TokenText, IsTheStringWithoutQuotesAndDoubledOnesSingle) {
  const TokenizedText text("'it''s' \"a\"\"\" '' '''' \"x''y\" Word 1.50");
  std::vector<std::string> texts;
  for (const Token& token : text.command().tokens()) texts.push_back(text.command().text(token));
  EXPECT_THAT(texts, ElementsAre("it's", "a\"", "", "'", "x''y", "Word", "1.50"));
}

TEST(TokenText, IsComparedWithoutCaseAndWithoutQuotes) {
  const TokenizedText text("'It''s' É");
  EXPECT_TRUE(text.command().textEquals(text.command().tokens()[0], "iT'S"));
  EXPECT_FALSE(text.command().textEquals(text.command().tokens()[0], "it''s"));
  EXPECT_TRUE(text.command().textEquals(text.command().tokens()[1], "é"));
}

TEST(TokenText, OfAnUnterminatedStringIsTheRestOfItsLine) {
  const TokenizedText text("A 'b ''c");
  EXPECT_EQ(text.command().text(text.command().tokens()[1]), "b 'c");
}

TEST(TokenizedCommandLine, IsTheLineOfItsFirstToken) {
  const std::string job = "* note.\n\n/* c\n*/ A\nB.\nC";
  Tokenizer tokenizer(job);
  TokenizedCommand command;
  ASSERT_TRUE(tokenizer.next(command));
  EXPECT_EQ(command.line(), 4);
  ASSERT_TRUE(tokenizer.next(command));
  EXPECT_EQ(command.line(), 6);
  EXPECT_EQ(TokenizedCommand().line(), 0);
}

struct PlacesCase {
  const char* name;
  std::string job;
  std::vector<std::string> places;
};

void PrintTo(const PlacesCase& row, std::ostream* out) { *out << row.name; }

class Places : public testing::TestWithParam<PlacesCase> {};

TEST_P(Places, CountLinesAndCharactersFromOne) {
  EXPECT_THAT(placesOf(GetParam().job), ElementsAreArray(GetParam().places));
}

const PlacesCase kPlaceCases[] = {
    {"FirstLine", "A  B", {"1:1", "1:4"}},
    {"ATabIsOneCharacter", "\tA\t\tB", {"1:2", "1:5"}},
    {"LineFeeds", "A\n B.\n\nC", {"1:1", "2:2", "4:1"}},
    {"CarriageReturnsWithLineFeeds", "A\r\n B.\r\n\r\nC", {"1:1", "2:2", "4:1"}},
    {"CarriageReturnsAlone", "A\r B.\r\rC", {"1:1", "2:2", "4:1"}},
    {"ByteOrderMarkIsNoCharacter",
     "\xEF\xBB\xBF"
     "A B\nC",
     {"1:1", "1:3", "2:1"}},
    {"CharactersNotBytes", "é 表 𝒳 B", {"1:1", "1:3", "1:5", "1:7"}},
    {"CharactersInsideTokens", "'éé' B", {"1:1", "1:6"}},
    {"InvalidBytesAreCharacters", "A \xFF\xFF B", {"1:1", "1:3", "1:4", "1:6"}},
    {"BehindACommentOfSeveralLines", "A /* x\n\n y */ B C", {"1:1", "3:7", "3:9"}},
    {"BehindALineComment", "* x\ny.\n A", {"3:2"}},
};

INSTANTIATE_TEST_SUITE_P(Tokenizer, Places, testing::ValuesIn(kPlaceCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(TokenPlaces, AreTheSameInAnyOrder) {
  std::string line;
  for (int i = 0; i < 1000; ++i) line += i % 3 == 0 ? "é " : "ab ";
  const TokenizedText text(line + "\n" + line);
  const std::vector<Token>& tokens = text.command().tokens();
  std::vector<SourcePlace> ascending;
  for (const Token& token : tokens) ascending.push_back(text.command().place(token));
  for (std::size_t i = tokens.size(); i-- > 0;) {
    EXPECT_EQ(text.command().place(tokens[i]), ascending[i]);
    EXPECT_EQ(text.command().place(tokens[i * 7919 % tokens.size()]),
              ascending[i * 7919 % tokens.size()]);
  }
  EXPECT_EQ(ascending[999], (SourcePlace{1, 2665}));
  EXPECT_EQ(ascending[1000], (SourcePlace{2, 1}));
}

class ShiftJis : public testing::Test {
 protected:
  ScopedEncoding encoding_{Encoding::find("Shift-JIS")};
};

TEST_F(ShiftJis, TrailByteOfABackslashOrBracketIsPartOfItsCharacter) {
  // Their second bytes are a backslash, "[", "]", "|" and "~".
  const std::string text =
      "\x95\x5C"
      "x \x81\x5B \x81\x5D[\x83\x7C"
      "a \x83\x7E";
  EXPECT_THAT(tokensOf(text), ElementsAre("w:\x95\x5C"
                                          "x",
                                          "w:\x81\x5B", "w:\x81\x5D", "o:[",
                                          "w:\x83\x7C"
                                          "a",
                                          "w:\x83\x7E"));
}

TEST_F(ShiftJis, TrailByteInsideAStringDoesNotEndIt) {
  EXPECT_THAT(tokensOf("'\x95\x5C' A"), ElementsAre("s:'\x95\x5C'", "w:A"));
}

TEST_F(ShiftJis, ColumnsCountCharacters) {
  EXPECT_THAT(placesOf("\x95\x5C\x95\x5C A '\x81\x5B' \xB1 B"),
              ElementsAre("1:1", "1:4", "1:6", "1:10", "1:12"));
}

TEST_F(ShiftJis, LetterOfOneByteStartsAWord) {
  EXPECT_THAT(tokensOf("\xB1\xB2 x"), ElementsAre("w:\xB1\xB2", "w:x"));
}

TEST(SingleByteEncoding, LetterStartsAWordAndAnotherCharacterDoesNot) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EXPECT_THAT(tokensOf("\xE9"
                       "a \xD7 x"),
              ElementsAre("w:\xE9"
                          "a",
                          "o:\xD7", "w:x"));
}

TEST(Gb18030, DigitInsideACharacterStartsNoNumber) {
  const ScopedEncoding encoding(Encoding::find("GB18030"));
  EXPECT_THAT(tokensOf("\x81\x30\x81\x30 5"), ElementsAre("w:\x81\x30\x81\x30", "n:5"));
}

struct ErrorsCase {
  const char* name;
  std::string job;
  std::vector<std::string> errors;
  std::vector<std::string> commands;
};

void PrintTo(const ErrorsCase& row, std::ostream* out) { *out << row.name; }

class LexicalErrors : public testing::TestWithParam<ErrorsCase> {};

TEST_P(LexicalErrors, AreToldOnceAndCostOneCommand) {
  EXPECT_THAT(errorsOf(GetParam().job), ElementsAreArray(GetParam().errors));
  EXPECT_THAT(commandsOf(GetParam().job), ElementsAreArray(GetParam().commands));
}

const ErrorsCase kErrorCases[] = {
    {"None", "A 'b'.", {}, {"A 'b'"}},
    {"StringLeftOpen", "A 'b\nc'.\nD", {"string@1:3", "string@2:2"}, {"A 'b\nc'", "D"}},
    {"StringLeftOpenWithItsPeriod", "A \"b.\nC", {"string@1:3"}, {"A \"b", "C"}},
    {"StringLeftOpenAtTheEndOfTheJob", "A '", {"string@1:3"}, {"A '"}},
    {"StringLeftOpenByADoubledQuote", "A 'b''.\nC", {"string@1:3"}, {"A 'b''", "C"}},
    {"SeveralStringsLeftOpen", "A 'b\n'c\n\nD", {"string@1:3", "string@2:1"}, {"A 'b\n'c", "D"}},
    {"CommentLeftOpen", "A /* b\nC.\nD", {"comment@1:3"}, {"A /* b\nC", "D"}},
    {"CommentLeftOpenWithItsPeriod", "A /* b.\nC.\nD", {"comment@1:3"}, {"A", "C", "D"}},
    {"CommentLeftOpenBetweenCommands", "A.\n /* b\nC.", {"comment@2:2"}, {"A", "", "C"}},
    {"CommentLeftOpenAtTheEndOfTheJob", "/*", {"comment@1:1"}, {""}},
    {"CommentLeftOpenBehindAPeriod", "A. /*", {"comment@1:4"}, {"A", ""}},
    {"NulInAStringIsKept",
     std::string("A 'b\0c'.\nD", 10),
     {"nul@1:5"},
     {std::string("A 'b\0c'", 7), "D"}},
    {"NulsAreToldOncePerCommand",
     std::string("A\0 B\0\nC\0.\nD\0", 13),
     {"nul@1:2", "nul@3:2"},
     {std::string("A\0 B\0\nC", 7), "D"}},
    {"NulAlone", std::string("\0", 1), {"nul@1:1"}, {""}},
};

INSTANTIATE_TEST_SUITE_P(Tokenizer, LexicalErrors, testing::ValuesIn(kErrorCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(TokenizerLimits, JobBeyondItsOffsetsIsRefusedBeforeItIsRead) {
  const char text[] = "A";
  EXPECT_THROW(Tokenizer(std::string_view(text, Tokenizer::kMaxJobSize + 1)), std::length_error);
}

/// Repeats `piece` to a hostile size.
std::string manyOf(const std::string& piece) {
  std::string text;
  while (text.size() < kHostileSize) text += piece;
  return text;
}

class HostileText : public testing::TestWithParam<const char*> {};

TEST_P(HostileText, IsReadWithItsPlacesInSecondsNotMinutes) {
  const std::string job = manyOf(GetParam());
  const auto start = std::chrono::steady_clock::now();
  Tokenizer tokenizer(job);
  TokenizedCommand command;
  std::size_t bytes = 0;
  while (tokenizer.next(command)) {
    int lastColumn = 0;
    for (const Token& token : command.tokens()) {
      bytes += token.length;
      lastColumn = command.place(token).column;
      ASSERT_GT(lastColumn, 0);
    }
    for (const LexicalError& error : command.errors()) {
      ASSERT_GT(command.place(error.offset, error.line).column, 0);
    }
  }
  EXPECT_LE(bytes, job.size());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

INSTANTIATE_TEST_SUITE_P(Tokenizer, HostileText,
                         testing::Values("(", "([", "/", "'", "\"", "''", "'\n", "A=", "/*", "/*\n",
                                         "./*", "a./* */", ".\n", "\n", "* ", "*/", "* */\n",
                                         "* /* */ ", "-", "5-", "5.", "5./*", "1e", "a.", ". ",
                                         "\xFF", "\xE8\xA1", "A /* */ ", "A\n", "A.\n"));

}  // namespace
}  // namespace vornwout
