// OUTPUT EXPORT /PPT: its grammar, what its keywords set, and what it refuses.
#include "libvornwout/export/output_export_ppt_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/PPT DOCUMENTFILE='f' ";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    const std::string blank = test.elements.empty() ? "" : " ";
    test.elements = "<ppt documentFile=\"f\"" + blank + test.elements + "/>";
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

TEST(OutputExportPPTData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("PPT"),
              ElementsAre("PPT 1 ff", "DOCUMENTFILE 2 ft 0", "NOTESCAPTIONS 3 ft 0 {YES NO}",
                          "SLIDETITLES 3 ft 0 {YES NO}", "WIDETABLES 3 ft 0 {WRAP SHRINK ASIS}",
                          "SLIDESIZE 27 ft 0 (INCHES 8 ft 0 >=0) (MM 8 ft 0 >=0)",
                          "TOPMARGIN 27 ft 0 (INCHES 7 ft 0 >=0) (MM 7 ft 0 >=0)",
                          "BOTTOMMARGIN 27 ft 0 (INCHES 7 ft 0 >=0) (MM 7 ft 0 >=0)",
                          "LEFTMARGIN 27 ft 0 (INCHES 7 ft 0 >=0) (MM 7 ft 0 >=0)",
                          "RIGHTMARGIN 27 ft 0 (INCHES 7 ft 0 >=0) (MM 7 ft 0 >=0)"));
}

TEST(OutputExportPPTData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", ""},
      {"NOTESCAPTIONS=YES", "notesAndCaptions=\"true\""},
      {"NOTESCAPTIONS=no", "notesAndCaptions=\"false\""},
      {"SLIDETITLES=YES", "slideTitles=\"true\""},
      {"SLIDETITLES=no", "slideTitles=\"false\""},
      {"WIDETABLES=ASIS", "wideTables=\"ASIS\""},
      {"WIDETABLES=SHRINK", "wideTables=\"SHRINK\""},
      {"WIDETABLES=WRAP", "wideTables=\"WRAP\""},
      {"SLIDESIZE=INCHES(8.5 11)",
       "slideSizeWidth=\"8.5\" slideSizeWidthUnit=\"INCHES\" slideSizeHeight=\"11\" "
       "slideSizeHeightUnit=\"INCHES\""},
      {"SLIDESIZE=MM(210,297)",
       "slideSizeWidth=\"210\" slideSizeWidthUnit=\"MM\" slideSizeHeight=\"297\" "
       "slideSizeHeightUnit=\"MM\""},
      {"SLIDESIZE=1e1 +.5 mm",
       "slideSizeWidth=\"1e1\" slideSizeWidthUnit=\"MM\" slideSizeHeight=\"+.5\" "
       "slideSizeHeightUnit=\"MM\""},
      {"TOPMARGIN=INCHES(1)", "topMargin=\"1\" topMarginUnit=\"INCHES\""},
      {"TOPMARGIN=20.50 MM", "topMargin=\"20.50\" topMarginUnit=\"MM\""},
      {"BOTTOMMARGIN=INCHES(1)", "bottomMargin=\"1\" bottomMarginUnit=\"INCHES\""},
      {"BOTTOMMARGIN=20.50 MM", "bottomMargin=\"20.50\" bottomMarginUnit=\"MM\""},
      {"LEFTMARGIN=INCHES(1)", "leftMargin=\"1\" leftMarginUnit=\"INCHES\""},
      {"LEFTMARGIN=20.50 MM", "leftMargin=\"20.50\" leftMarginUnit=\"MM\""},
      {"RIGHTMARGIN=INCHES(1)", "rightMargin=\"1\" rightMarginUnit=\"INCHES\""},
      {"RIGHTMARGIN=20.50 MM", "rightMargin=\"20.50\" rightMarginUnit=\"MM\""},
  }));
}

TEST(OutputExportPPTData, RefusesWithItsOwnMessage) {
  expectRefused(whole(std::vector<RefusedCase>{
      {"SLIDESIZE=INCHES(8.5)",
       {"error: Parameter ^2 requrires two dimensions, width and height. (SLIDESIZE)"}},
      {"SLIDESIZE=INCHES(8.5 11 2)",
       {"error: Parameter ^2 requrires two dimensions, width and height. (SLIDESIZE)"}},
      {"SLIDESIZE=INCHES()",
       {"error: Parameter ^2 requrires two dimensions, width and height. (SLIDESIZE)"}},
      {"SLIDESIZE=MM('8' '11')",
       {"error: Parameter ^2 requrires two dimensions, width and height. (SLIDESIZE)"}},
      {"SLIDESIZE=INCHES(a 11)",
       {"error: Parameter ^2 requrires two dimensions, width and height. (SLIDESIZE)"}},
      {"SLIDESIZE=INCHES(0 11)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"},
       "0"},
      {"SLIDESIZE=INCHES(8.5 0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"},
       "0"},
      {"SLIDESIZE=MM(-1 11)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (-1, 0, MM)"},
       "-1"},
      {"SLIDESIZE=MM(11 -1)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (-1, 0, MM)"},
       "-1"},
      {"SLIDESIZE=MM(11 1e999)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (1e999, 0, MM)"}},
      {"SLIDESIZE=8.5 11", {"InvalidParamValue(8.5 11, SLIDESIZE, PPT)"}, "8.5"},
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
      {"LEFTMARGIN=2", {"InvalidParamValue(2, LEFTMARGIN, PPT)"}},
      {"TOPMARGIN=MM(0) SLIDESIZE=MM(1) LEFTMARGIN=INCHES(0)",
       {"error: Parameter ^2 requrires two dimensions, width and height. (SLIDESIZE)",
        "error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, MM)",
        "error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"}},
  }));
}

TEST(OutputExportPPTData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"SLIDETITLES=MAYBE", {"InvalidParamValue(MAYBE, SLIDETITLES, PPT)"}},
      {"PAGESIZE=MM(1 1)", {"UnknownParam(PAGESIZE, PPT)"}},
      {"WIDETABLES=CUT", {"InvalidParamValue(CUT, WIDETABLES, PPT)"}},
  }));
}

}  // namespace
}  // namespace vornwout
