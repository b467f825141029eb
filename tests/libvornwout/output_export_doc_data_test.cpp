// OUTPUT EXPORT /DOC: its grammar, what its keywords set, and what it refuses.
#include "libvornwout/export/output_export_doc_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/DOC DOCUMENTFILE='f' ";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    const std::string blank = test.elements.empty() ? "" : " ";
    test.elements = "<doc documentFile=\"f\"" + blank + test.elements + "/>";
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

TEST(OutputExportDOCData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("DOC"),
              ElementsAre("DOC 1 ff", "DOCUMENTFILE 2 ft 0", "NOTESCAPTIONS 3 ft 0 {YES NO}",
                          "WIDETABLES 3 ft 0 {WRAP SHRINK ASIS}",
                          "PAGESIZE 27 ft 0 (INCHES 8 ft 0 >=0) (MM 8 ft 0 >=0)",
                          "TOPMARGIN 27 ft 0 (INCHES 7 ft 0 >=0) (MM 7 ft 0 >=0)",
                          "BOTTOMMARGIN 27 ft 0 (INCHES 7 ft 0 >=0) (MM 7 ft 0 >=0)",
                          "LEFTMARGIN 27 ft 0 (INCHES 7 ft 0 >=0) (MM 7 ft 0 >=0)",
                          "RIGHTMARGIN 27 ft 0 (INCHES 7 ft 0 >=0) (MM 7 ft 0 >=0)",
                          "PAGEBREAKS 3 ft 0 {YES NO}"));
}

TEST(OutputExportDOCData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", ""},
      {"NOTESCAPTIONS=YES", "notesAndCaptions=\"true\""},
      {"NOTESCAPTIONS=no", "notesAndCaptions=\"false\""},
      {"WIDETABLES=ASIS", "wideTables=\"ASIS\""},
      {"WIDETABLES=SHRINK", "wideTables=\"SHRINK\""},
      {"WIDETABLES=WRAP", "wideTables=\"WRAP\""},
      {"PAGESIZE=INCHES(8.5 11)",
       "pageSizeWidth=\"8.5\" pageSizeWidthUnit=\"INCHES\" pageSizeHeight=\"11\" "
       "pageSizeHeightUnit=\"INCHES\""},
      {"PAGESIZE=MM(210,297)",
       "pageSizeWidth=\"210\" pageSizeWidthUnit=\"MM\" pageSizeHeight=\"297\" "
       "pageSizeHeightUnit=\"MM\""},
      {"PAGESIZE=1e1 +.5 mm",
       "pageSizeWidth=\"1e1\" pageSizeWidthUnit=\"MM\" pageSizeHeight=\"+.5\" "
       "pageSizeHeightUnit=\"MM\""},
      {"TOPMARGIN=INCHES(1)", "topMargin=\"1\" topMarginUnit=\"INCHES\""},
      {"TOPMARGIN=20.50 MM", "topMargin=\"20.50\" topMarginUnit=\"MM\""},
      {"BOTTOMMARGIN=INCHES(1)", "bottomMargin=\"1\" bottomMarginUnit=\"INCHES\""},
      {"BOTTOMMARGIN=20.50 MM", "bottomMargin=\"20.50\" bottomMarginUnit=\"MM\""},
      {"LEFTMARGIN=INCHES(1)", "leftMargin=\"1\" leftMarginUnit=\"INCHES\""},
      {"LEFTMARGIN=20.50 MM", "leftMargin=\"20.50\" leftMarginUnit=\"MM\""},
      {"RIGHTMARGIN=INCHES(1)", "rightMargin=\"1\" rightMarginUnit=\"INCHES\""},
      {"RIGHTMARGIN=20.50 MM", "rightMargin=\"20.50\" rightMarginUnit=\"MM\""},
      {"PAGEBREAKS=YES", "pageBreaks=\"true\""},
      {"PAGEBREAKS=no", "pageBreaks=\"false\""},
      {"PAGEBREAKS=NO RIGHTMARGIN=MM(1) WIDETABLES=WRAP NOTESCAPTIONS=YES",
       "notesAndCaptions=\"true\" wideTables=\"WRAP\" rightMargin=\"1\" rightMarginUnit=\"MM\" "
       "pageBreaks=\"false\""},
  }));
}

TEST(OutputExportDOCData, RefusesWithItsOwnMessage) {
  expectRefused(whole(std::vector<RefusedCase>{
      {"PAGESIZE=INCHES(8.5)",
       {"error: Parameter ^2 requrires two dimensions, width and height. (PAGESIZE)"}},
      {"PAGESIZE=INCHES(8.5 11 2)",
       {"error: Parameter ^2 requrires two dimensions, width and height. (PAGESIZE)"}},
      {"PAGESIZE=INCHES()",
       {"error: Parameter ^2 requrires two dimensions, width and height. (PAGESIZE)"}},
      {"PAGESIZE=MM('8' '11')",
       {"error: Parameter ^2 requrires two dimensions, width and height. (PAGESIZE)"}},
      {"PAGESIZE=INCHES(a 11)",
       {"error: Parameter ^2 requrires two dimensions, width and height. (PAGESIZE)"}},
      {"PAGESIZE=INCHES(0 11)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"},
       "0"},
      {"PAGESIZE=INCHES(8.5 0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"},
       "0"},
      {"PAGESIZE=MM(-1 11)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (-1, 0, MM)"},
       "-1"},
      {"PAGESIZE=MM(11 -1)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (-1, 0, MM)"},
       "-1"},
      {"PAGESIZE=MM(11 1e999)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (1e999, 0, MM)"}},
      {"PAGESIZE=8.5 11", {"InvalidParamValue(8.5 11, PAGESIZE, DOC)"}, "8.5"},
      {"TOPMARGIN=INCHES(0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"}},
      {"BOTTOMMARGIN=INCHES(0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"}},
      {"LEFTMARGIN=INCHES(0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"}},
      {"RIGHTMARGIN=INCHES(0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"}},
      {"TOPMARGIN=MM(-2)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (-2, 0, MM)"}},
      {"TOPMARGIN=MM(a)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (a, 0, MM)"}},
      {"TOPMARGIN=MM(1 2)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (1 2, 0, MM)"}},
      {"TOPMARGIN=MM()",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (, 0, MM)"}},
      {"LEFTMARGIN=2", {"InvalidParamValue(2, LEFTMARGIN, DOC)"}},
      {"TOPMARGIN=MM(0) PAGESIZE=MM(1) LEFTMARGIN=INCHES(0)",
       {"error: Parameter ^2 requrires two dimensions, width and height. (PAGESIZE)",
        "error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, MM)",
        "error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"}},
  }));
}

TEST(OutputExportDOCData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"NOTESCAPTIONS=MAYBE", {"InvalidParamValue(MAYBE, NOTESCAPTIONS, DOC)"}},
      {"WIDETABLES=CUT", {"InvalidParamValue(CUT, WIDETABLES, DOC)"}},
      {"PAGESIZE=POINTS(1 2)", {"ParamNoSubCom(POINTS)"}},
      {"PAGEBREAKS=1", {"InvalidParamValue(1, PAGEBREAKS, DOC)"}},
      {"SLIDESIZE=MM(1 1)", {"UnknownParam(SLIDESIZE, DOC)"}},
  }));
}

}  // namespace
}  // namespace vornwout
