// Contents as they are built and as they are shown.
#include "platform/pivot/cell_text.h"

#include <limits>
#include <type_traits>

#include <gtest/gtest.h>

#include "platform/pivot/bp_cell_text.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

constexpr BpFormatSpec kGeneral{BpFormatSpec::Type::kGeneral};
constexpr BpFormatSpec kCount{BpFormatSpec::Type::kCount};

TEST(RenderNumber, ShowsANumberAsItsFormatSays) {
  struct Case {
    double value;
    BpFormatSpec format;
    const char* shown;
  };
  const double infinity = std::numeric_limits<double>::infinity();
  const Case cases[] = {
      {3, kCount, "3"},
      {2.6, kCount, "3"},
      {-0.4, kCount, "0"},
      {12345678, kCount, "12345678"},
      {-7, kCount, "-7"},
      {3, kGeneral, "3"},
      {0.1, kGeneral, "0.1"},
      {3.14159265, kGeneral, "3.14159"},
      {1234567, kGeneral, "1234567"},
      {-38000000, kGeneral, "-38000000"},
      {9007199254740992, kGeneral, "9007199254740992"},
      {9007199254740994, kGeneral, "9.0072e+15"},
      {1e20, kGeneral, "1e+20"},
      {12345.678, kGeneral, "12345.7"},
      {123456.78, kGeneral, "123457"},
      {1234567.89, kGeneral, "1234568"},
      {-999999.7, kGeneral, "-1000000"},
      {999999999999999.5, kGeneral, "1000000000000000"},
      {1000000000000000.5, kGeneral, "1e+15"},
      {0.0001, kGeneral, "0.0001"},
      {0.000123456789, kGeneral, "0.000123457"},
      {0.00001, kGeneral, "1e-05"},
      {-0.0, kGeneral, "0"},
      {infinity, kCount, "."},
      {-infinity, kGeneral, "."},
      {std::numeric_limits<double>::quiet_NaN(), kGeneral, "."},
  };
  for (const Case& c : cases) EXPECT_EQ(renderNumber(c.value, c.format), c.shown) << c.value;
}

TEST(SubstitutePlaceholders, ReplacesThoseThatHaveAnArgument) {
  struct Case {
    const char* text;
    std::vector<std::string> arguments;
    const char* shown;
  };
  const Case cases[] = {
      {"", {"a"}, ""},
      {"no placeholder", {"a"}, "no placeholder"},
      {"^1 and ^2", {"a", "b"}, "a and b"},
      {"^2 before ^1, ^1 again", {"a", "b"}, "b before a, a again"},
      {"^1 and ^2", {"a"}, "a and ^2"},
      {"^1", {}, "^1"},
      {"^1", {""}, ""},
      {"^0 ^", {"a"}, "^0 ^"},
      {"^10", {"a"}, "a0"},
      {"^^1", {"a"}, "^a"},
      {"^9", {"a", "b", "c", "d", "e", "f", "g", "h", "i"}, "i"},
      {"\xC3\xA4^1\xC3\xB6", {"\xE2\x82\xAC"}, "\xC3\xA4\xE2\x82\xAC\xC3\xB6"},
  };
  for (const Case& c : cases) EXPECT_EQ(substitutePlaceholders(c.text, c.arguments), c.shown);
}

TEST(SubstitutePlaceholders, NeverLooksAtAReplacementAgain) {
  EXPECT_EQ(substitutePlaceholders("^1 ^2", {"^2", "^1"}), "^2 ^1");
  EXPECT_EQ(substitutePlaceholders("^1"
                                   "1",
                                   {"^"}),
            "^1");
}

TEST(RenderText, ShowsStringsAsTheyAre) {
  EXPECT_EQ(renderText(BpString("^1 stays", true).data()), "^1 stays");
  EXPECT_EQ(renderText(BpNumber(2, kCount).data()), "2");
}

TEST(RenderText, FillsACompositeInTheOrderOfItsArguments) {
  BpComposite composite("^1 of ^2: ^3", true);
  composite.Add(BpNumber(1.5, kGeneral)).Add(BpString("ten", false)).Finish();
  EXPECT_EQ(renderText(composite.data()), "1.5 of ten: ^3");
}

TEST(RenderText, ShowsACompositeWithinAComposite) {
  BpComposite inner("<^1>", true);
  inner.Add(BpString("x", false)).Finish();
  BpComposite outer("^1^1", true);
  outer.Add(inner).Finish();
  EXPECT_EQ(renderText(outer.data()), "<x><x>");
}

TEST(RenderText, ListsASublistBehindTheText) {
  BpComposite composite("Long labels in ^1:", true);
  composite.Add(BpString("doc", false));
  composite.Sublist().Add(BpString("T1", false)).Add(BpString("T2", false)).EndSublist();
  composite.Finish();
  EXPECT_EQ(renderText(composite.data()), "Long labels in doc: T1, T2");
}

TEST(BpString, KeepsItsTextAndWhoseItIs) {
  const BpString ours("Comment", true);
  EXPECT_EQ(ours.data().kind, CellText::Kind::kString);
  EXPECT_EQ(ours.data().text, "Comment");
  EXPECT_TRUE(ours.data().translatable);
  EXPECT_FALSE(BpString("Comment", false).data().translatable);
}

TEST(BpString, IsConvertedFromTheCurrentEncodingWhenMade) {
  const ScopedEncoding scope(Encoding::find("windows-1252"));
  EXPECT_EQ(BpString("\xE4", false).data().text, "\xC3\xA4");
  EXPECT_EQ(BpComposite("\xE4^1", false).data().text, "\xC3\xA4^1");
}

TEST(BpString, ShowsAnInvalidByteAsTheReplacementCharacter) {
  EXPECT_EQ(BpString("a\xFF", false).data().text, "a\xEF\xBF\xBD");
}

TEST(BpNumber, KeepsItsValueAndFormat) {
  const BpNumber number(2.5, kCount);
  EXPECT_EQ(number.data().kind, CellText::Kind::kNumber);
  EXPECT_EQ(number.data().number, 2.5);
  EXPECT_EQ(number.data().format, kCount);
}

TEST(BpComposite, AddsToTheSublistOnlyWhileItIsOpen) {
  BpComposite composite("^1 ^2", true);
  EXPECT_FALSE(composite.data().hasSublist);
  composite.Add(BpString("a", false)).Sublist().Add(BpString("s", false)).EndSublist();
  composite.Add(BpString("b", false));
  ASSERT_EQ(composite.data().arguments.size(), 2U);
  EXPECT_EQ(composite.data().arguments[1].text, "b");
  ASSERT_EQ(composite.data().sublist.size(), 1U);
  EXPECT_EQ(composite.data().sublist[0].text, "s");
  EXPECT_TRUE(composite.data().hasSublist);
}

TEST(BpComposite, HasASublistEvenWhenNothingWasAddedToIt) {
  BpComposite composite("x", true);
  composite.Sublist().EndSublist().Finish();
  EXPECT_TRUE(composite.data().hasSublist);
}

TEST(BpComposite, EndsAnOpenSublistWhenItIsFinished) {
  BpComposite composite("^1", true);
  composite.Sublist().Finish();
  composite.Add(BpString("a", false));
  EXPECT_EQ(composite.data().arguments.size(), 1U);
  EXPECT_TRUE(composite.data().sublist.empty());
}

TEST(BpComposite, MayBeAddedToItself) {
  BpComposite composite("[^1]", true);
  composite.Add(composite).Finish();
  EXPECT_EQ(renderText(composite.data()), "[[^1]]");
}

TEST(BpCellText, LosesNothingWhenPassedByValue) {
  static_assert(sizeof(BpComposite) == sizeof(BpCellText));
  static_assert(sizeof(BpString) == sizeof(BpCellText));
  static_assert(sizeof(BpNumber) == sizeof(BpCellText));
  const auto shown = [](BpCellText text) { return renderText(text.data()); };
  BpComposite composite("<^1>", true);
  composite.Add(BpString("x", false)).Finish();
  EXPECT_EQ(shown(composite), "<x>");
}

TEST(BpCellText, ReplicatesIntoAnIndependentCopy) {
  BpComposite composite("^1", true);
  const BpCellText copy = composite.Replicate();
  composite.Add(BpString("later", false));
  EXPECT_TRUE(copy.data().arguments.empty());
  EXPECT_EQ(BpAnnotation(BpString("note", true).Replicate()).data().text, "note");
}

}  // namespace
}  // namespace vornwout
