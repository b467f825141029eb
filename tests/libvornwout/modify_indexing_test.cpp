// INDEXING: its styles, and what a start value of each style is as a number.
#include "libvornwout/modify/modify_indexing.h"

#include <algorithm>
#include <map>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/multibyte.h"
#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

std::string element(const std::string& type, const std::string& start) {
  return "<indexObject type=\"" + type + "\" indexStart=\"" + start + "\"/>";
}

struct IndexCase {
  const char* text;
  const char* type;
  const char* start;
};

void expectElements(std::initializer_list<IndexCase> cases) {
  for (const IndexCase& test : cases) {
    EXPECT_EQ(elementOf(std::string("/INDEXING ") + test.text), element(test.type, test.start))
        << test.text;
  }
}

TEST(ModifyIndexing, AnEmptyTextStandsForZero) {
  EXPECT_EQ(elementOf("/INDEXING INDEXTYPE=LETTERLOW INDEXSTART=''"),
            "<indexObject type=\"letter\" indexStart=\"0\"/>");
  EXPECT_EQ(elementOf("/INDEXING INDEXTYPE=ROMANCAP INDEXSTART=''"),
            "<indexObject type=\"romanCap\" indexStart=\"0\"/>");
}

TEST(ModifyIndexing, DeclaresItsSubcommand) {
  EXPECT_THAT(modifyGrammarOf("INDEXING"),
              ElementsAre("INDEXING 1 ff",
                          "INDEXTYPE 3 ft 0 {NUMBER LETTERLOW LETTERCAP ROMANLOW ROMANCAP}",
                          "INDEXSTART 2 ft 0"));
}

TEST(ModifyIndexing, WritesItsStyleAndStart) {
  expectElements({
      {"", "number", "1"},
      {"INDEXTYPE=NUMBER", "number", "1"},
      // The two capital forms differ in case, deliberately.
      {"INDEXTYPE=LETTERLOW", "letter", "1"},
      {"INDEXTYPE=LETTERCAP", "letterCAP", "1"},
      {"INDEXTYPE=ROMANLOW", "roman", "1"},
      {"INDEXTYPE=ROMANCAP", "romanCap", "1"},
      {"INDEXTYPE=romancap", "romanCap", "1"},
      {"INDEXTYPE='ROMANCAP' INDEXSTART='X'", "romanCap", "10"},
      {"INDEXSTART=X INDEXTYPE=ROMANCAP", "romanCap", "10"},
  });
  EXPECT_EQ(elementOf(""), "");
}

TEST(ModifyIndexingNumbers, AreIntegersOf32Bits) {
  expectElements({
      {"INDEXSTART=5", "number", "5"},
      {"INDEXTYPE=NUMBER INDEXSTART=012", "number", "12"},
      {"INDEXSTART=0", "number", "0"},
      {"INDEXSTART=-5", "number", "-5"},
      {"INDEXSTART=2147483647", "number", "2147483647"},
      {"INDEXSTART=-2147483648", "number", "-2147483648"},
  });
  for (const char* text : {"INDEXSTART=2.5", "INDEXSTART=2147483648", "INDEXSTART=-2147483649",
                           "INDEXSTART='5'", "INDEXSTART=a", "INDEXSTART", "INDEXSTART=1 2",
                           "INDEXSTART=(1)", "INDEXSTART=ALL", "INDEXSTART=''"}) {
    EXPECT_THAT(refusalsOf(std::string("/INDEXING ") + text),
                ElementsAre("ParamNeedInteger(INDEXSTART, INDEXING)"))
        << text;
  }
}

TEST(ModifyIndexingLetters, CountInBase26WithoutAZero) {
  expectElements({
      {"INDEXTYPE=LETTERLOW INDEXSTART=a", "letter", "1"},
      {"INDEXTYPE=LETTERLOW INDEXSTART='z'", "letter", "26"},
      {"INDEXTYPE=LETTERLOW INDEXSTART=aa", "letter", "27"},
      {"INDEXTYPE=LETTERLOW INDEXSTART=zz", "letter", "702"},
      {"INDEXTYPE=LETTERLOW INDEXSTART=aaa", "letter", "703"},
      {"INDEXTYPE=LETTERCAP INDEXSTART=A", "letterCAP", "1"},
      {"INDEXTYPE=LETTERCAP INDEXSTART=\"AB\"", "letterCAP", "28"},
      // The reserved word is letters here.
      {"INDEXTYPE=LETTERCAP INDEXSTART=ALL", "letterCAP", "1000"},
      {"INDEXTYPE=LETTERLOW INDEXSTART=all", "letter", "1000"},
      {"INDEXTYPE=LETTERLOW INDEXSTART=fxshrxw", "letter", "2147483647"},
      {"INDEXTYPE=LETTERCAP INDEXSTART=FXSHRXW", "letterCAP", "2147483647"},
  });
}

TEST(ModifyIndexing, RefusesAStartOfAnotherStyle) {
  const struct {
    const char* type;
    const char* start;
    const char* told;
  } cases[] = {
      {"LETTERCAP", "=\"ab\"", "ab"},
      {"LETTERCAP", "=Ab", "Ab"},
      {"LETTERLOW", "=aB", "aB"},
      {"LETTERLOW", "=5", "5"},
      {"LETTERLOW", "='a b'", "a b"},
      {"LETTERLOW", "='\xC3\xA4'", "\xC3\xA4"},
      {"ROMANLOW", "=XIV", "XIV"},
      {"ROMANCAP", "=xiv", "xiv"},
      {"ROMANCAP", "=XiV", "XiV"},
      {"ROMANCAP", "=XA", "XA"},
      {"ROMANCAP", "=5", "5"},
      {"ROMANLOW", "=all", "all"},
      // Not one text: told as it is written.
      {"LETTERLOW", "", ""},
      {"LETTERCAP", "=A B", "A B"},
      {"LETTERCAP", "=(A)", "(A)"},
      // Beyond any index.
      {"LETTERLOW", "=fxshrxx", "fxshrxx"},
      {"LETTERCAP", "=ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ", "ZZZZZZZZZZZZZZZZZZZZZZZZZZZZZZ"},
  };
  for (const auto& test : cases) {
    const std::string text =
        std::string("/INDEXING INDEXTYPE=") + test.type + " INDEXSTART" + test.start;
    EXPECT_THAT(refusalsOf(text),
                ElementsAre(std::string("GenericError(") + test.told + ", " + test.type + ")"))
        << text;
  }
  EXPECT_THAT(refusalTextsOf("/INDEXING INDEXTYPE=lettercap INDEXSTART=ab"),
              ElementsAre("Index start value (ab) does not match the index type (lettercap)"));
  EXPECT_THAT(refusalsOf("/INDEXING INDEXTYPE=ROMAN"),
              ElementsAre("InvalidParamValue(ROMAN, INDEXTYPE, INDEXING)"));
}

TEST(ModifyIndexingRoman, HasNumeralsOfBothCases) {
  const struct {
    const char* numeral;
    const char* number;
  } cases[] = {
      {"i", "1"},
      {"iiii", "4"},
      {"iv", "4"},
      {"xiv", "14"},
      {"ix", "9"},
      {"xl", "40"},
      {"xc", "90"},
      {"cd", "400"},
      {"cm", "900"},
      {"d", "500"},
      {"mmxxiv", "2024"},
      {"xcix", "99"},
      {"xliv", "44"},
      {"xcv", "95"},
      {"mcmxciv", "1994"},
      // L adds 500 like D, deliberately.
      {"l", "500"},
      {"lx", "510"},
      {"llll", "2000"},
      {"dl", "1000"},
      // No order is asked for but behind XC, XL, IX and IV.
      {"im", "1001"},
      {"vx", "15"},
      {"iic", "102"},
      {"ivi", ""},
      {"ixi", ""},
      {"ixv", ""},
      {"xlx", ""},
      {"xcx", ""},
      {"xcl", ""},
      {"xlxl", ""},
      {"ivix", ""},
      // Four of a letter at most, whatever stands between them.
      {"iiiii", ""},
      {"mmmmm", ""},
      {"xxxxvx", ""},
      {"xvxvxvx", "55"},
      // The letters of a pair do not count.
      {"iiiiiv", "8"},
      {"cmcm", "1800"},
      // Behind CM an M, behind CD a C, once at most.
      {"cmm", "1900"},
      {"cmmm", ""},
      {"cdc", "500"},
      {"cdcc", ""},
      {"mmmmcm", "4900"},
      {"mmmcmm", "4900"},
      {"mmmmcmm", ""},
      {"cmmcm", "2800"},
      {"cmmcmm", ""},
      {"ccccd", "700"},
      {"cccccdc", ""},
  };
  for (const auto& test : cases) {
    const std::string numeral = test.numeral;
    const std::string low = "/INDEXING INDEXTYPE=ROMANLOW INDEXSTART=" + numeral;
    const std::string cap = "/INDEXING INDEXTYPE=ROMANCAP INDEXSTART=" + toUpperCase(numeral);
    if (*test.number != '\0') {
      EXPECT_EQ(elementOf(low), element("roman", test.number)) << numeral;
      EXPECT_EQ(elementOf(cap), element("romanCap", test.number)) << numeral;
    } else {
      EXPECT_THAT(refusalsOf(low), ElementsAre("GenericError(INDEXSTART, INDEXING)")) << numeral;
      EXPECT_THAT(refusalsOf(cap), ElementsAre("GenericError(INDEXSTART, INDEXING)")) << numeral;
    }
  }
  EXPECT_THAT(
      refusalTextsOf("/INDEXING INDEXTYPE=ROMANLOW INDEXSTART=iiiii"),
      ElementsAre("Parameter INDEXSTART of subcommand INDEXING is not a valid roman numeral"));
}

TEST(ModifyIndexingRoman, BeyondAnyIndexIsRefused) {
  // All but 847 of the largest index.
  constexpr std::size_t kPairs = 2386092;
  std::string numeral;
  for (std::size_t i = 0; i < kPairs; ++i) numeral += "CM";
  const std::string text = "/INDEXING INDEXTYPE=ROMANCAP INDEXSTART=" + numeral;
  EXPECT_EQ(elementOf(text), element("romanCap", "2147482800"));
  EXPECT_EQ(elementOf(text + "D"), element("romanCap", "2147483300"));
  EXPECT_EQ(refusalsOf(text + "M").size(), 1U) << "a letter goes beyond";
  EXPECT_EQ(refusalsOf(text + "CM").size(), 1U) << "a pair goes beyond";
}

/// The rule of the numerals, stated over the pieces of a whole numeral.
std::optional<int> documentedNumber(const std::string& numeral) {
  const std::map<std::string, int> added = {
      {"CM", 900}, {"CD", 400}, {"XC", 90}, {"XL", 40}, {"IX", 9}, {"IV", 4}, {"M", 1000},
      {"D", 500},  {"C", 100},  {"L", 500}, {"X", 10},  {"V", 5},  {"I", 1}};
  const std::string ascending = "IVXLCDM";
  std::vector<std::string> pieces;
  for (std::size_t i = 0; i < numeral.size(); i += pieces.back().size()) {
    const std::string two = numeral.substr(i, 2);
    pieces.push_back(added.count(two) != 0 ? two : numeral.substr(i, 1));
  }
  int sum = 0;
  for (auto piece = pieces.begin(); piece != pieces.end(); ++piece) {
    sum += added.at(*piece);
    if (std::count(pieces.begin(), pieces.end(), *piece) > 4 && piece->size() == 1) return {};
    if (*piece == "CM" && std::count(piece, pieces.end(), "M") > 1) return {};
    if (*piece == "CD" && std::count(piece, pieces.end(), "C") > 1) return {};
    if (*piece != "XC" && *piece != "XL" && *piece != "IX" && *piece != "IV") continue;
    const std::size_t smaller = ascending.find(piece->front());
    const bool ambiguous = std::any_of(piece + 1, pieces.end(), [&](const std::string& next) {
      return ascending.find(next.front()) >= smaller;
    });
    if (ambiguous) return {};
  }
  return sum;
}

TEST(ModifyIndexingRoman, IsReadByItsRuleForEveryNumeralOfUpToFiveLetters) {
  std::vector<std::string> numerals = {""};
  for (std::size_t from = 0, length = 1; length <= 5; ++length) {
    const std::size_t to = numerals.size();
    for (std::size_t i = from; i < to; ++i) {
      for (const char letter : std::string("IVXLCDM")) numerals.push_back(numerals[i] + letter);
    }
    from = to;
  }
  ASSERT_EQ(numerals.size(), 1U + 7 + 49 + 343 + 2401 + 16807);
  numerals.erase(numerals.begin());

  // One command for all that are numerals, each in a group; one for each that is none.
  std::string groups;
  std::string expected = "<modifyOutputObject documentName=\"*\">";
  for (const std::string& numeral : numerals) {
    const std::string index = " /INDEXING INDEXTYPE=ROMANCAP INDEXSTART='" + numeral + "'";
    if (const std::optional<int> number = documentedNumber(numeral)) {
      groups += "/SELECT" + index + "\n";
      expected += "<modifyEvent>" + element("romanCap", std::to_string(*number)) + "</modifyEvent>";
    } else {
      EXPECT_EQ(refusalsOf(index).size(), 1U) << numeral;
    }
  }
  EXPECT_TRUE(documentOf(groups) == expected + "</modifyOutputObject>");
}

TEST(ModifyIndexing, ForgetsItsStyleFromGroupToGroupButDeliberatelyNotItsStart) {
  const struct {
    const char* text;
    std::vector<std::string> elements;
  } cases[] = {
      {"/SELECT /INDEXING INDEXTYPE=ROMANCAP INDEXSTART=VII /SELECT /INDEXING",
       {element("romanCap", "7"), element("number", "7")}},
      {"/SELECT /INDEXING INDEXSTART=7 /SELECT /SELECT /INDEXING INDEXTYPE=LETTERLOW",
       {element("number", "7"), "", element("letter", "7")}},
      {"/SELECT /INDEXING INDEXSTART=7 /SELECT /INDEXING INDEXSTART=2 /SELECT /INDEXING",
       {element("number", "7"), element("number", "2"), element("number", "2")}},
  };
  for (const auto& test : cases) {
    std::string expected = "<modifyOutputObject documentName=\"*\">";
    for (const std::string& written : test.elements) {
      expected += "<modifyEvent>" + written + "</modifyEvent>";
    }
    EXPECT_EQ(documentOf(test.text), expected + "</modifyOutputObject>") << test.text;
  }
  EXPECT_EQ(elementOf("/INDEXING"), element("number", "1")) << "the next command starts anew";
}

}  // namespace
}  // namespace vornwout
