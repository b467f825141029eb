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

TEST(ChangeNotes, TemplatesAreCounted) {
  EXPECT_EQ(chartTemplateName(1), "chart template 1");
  EXPECT_EQ(chartTemplateName(102), "chart template 102");
}

TEST(ChangeNotes, SentenceBecomesAClause) {
  EXPECT_EQ(clauseOf("The file is damaged."), "the file is damaged");
  EXPECT_EQ(clauseOf("line 3 is not valid"), "line 3 is not valid");
  EXPECT_EQ(clauseOf(""), "");
}

}  // namespace
}  // namespace vornwout
