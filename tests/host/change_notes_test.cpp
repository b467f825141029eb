// The notes about values that could not be used.
#include "host/changes/change_notes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vornwout {
namespace {

using testing::ElementsAre;

TEST(ChangeNotes, EachValueIsNotedOnce) {
  ChangeNotes notes;
  notes.invalidFormat("Q9");
  notes.invalidFont("Nowhere");
  notes.invalidFormat("Q9");
  EXPECT_THAT(notes.notes(), ElementsAre("Invalid format (Q9)", "Invalid font (Nowhere)"));
}

TEST(ChangeNotes, AValueNeitherEndsItsNoteNorMakesAnother) {
  ChangeNotes notes;
  notes.invalidFont("Foo (Bar) x");
  notes.invalidFont("Invalid format (Z) Invalid font");
  notes.invalidFormat("InvalidInvalid formatInvalid format");
  EXPECT_THAT(notes.notes(), ElementsAre("Invalid font (Foo [Bar] x)",
                                         "Invalid font (Invalid_format [Z] Invalid_font)",
                                         "Invalid format (InvalidInvalid_formatInvalid_format)"));
}

TEST(ChangeNotes, TemplatesAreCountedInWords) {
  const std::pair<std::size_t, const char*> names[] = {
      {1, "the 1st chart template"},     {2, "the 2nd chart template"},
      {3, "the 3rd chart template"},     {4, "the 4th chart template"},
      {10, "the 10th chart template"},   {11, "the 11th chart template"},
      {12, "the 12th chart template"},   {13, "the 13th chart template"},
      {21, "the 21st chart template"},   {102, "the 102nd chart template"},
      {111, "the 111th chart template"}, {123, "the 123rd chart template"}};
  for (const auto& [number, name] : names) EXPECT_EQ(chartTemplateName(number), name);
}

TEST(ChangeNotes, SentenceBecomesAClause) {
  EXPECT_EQ(clauseOf("The file is damaged."), "the file is damaged");
  EXPECT_EQ(clauseOf("line 3 is not valid"), "line 3 is not valid");
  EXPECT_EQ(clauseOf(""), "");
}

}  // namespace
}  // namespace vornwout
