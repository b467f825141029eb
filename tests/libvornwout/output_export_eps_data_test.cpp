// OUTPUT EXPORT /EPS: its grammar, what its keywords set, and what it refuses.
#include "libvornwout/export/output_export_eps_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/EPS IMAGEROOT='f' ";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    const std::string blank = test.elements.empty() ? "" : " ";
    test.elements = "<eps imageRoot=\"f\"" + blank + test.elements + "/>";
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

TEST(OutputExportEPSData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("EPS"),
              ElementsAre("EPS 1 ff", "IMAGEROOT 4 ft 0",
                          "WIDTH 27 ft 0 (PERCENT 7 ft 0 >=0 <=200) (CENTIMETERS 7 ft 0 >=0) "
                          "(INCHES 7 ft 0 >=0) (POINTS 7 ft 0 >=0)",
                          "PREVIEW 3 ft 0 {YES NO}", "FONTHANDLING 3 ft 0 {REFERENCES CURVES}"));
}

TEST(OutputExportEPSData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", ""},
      {"WIDTH=PERCENT(12.50)", "width=\"12.50\" widthUnit=\"PERCENT\""},
      {"WIDTH=CENTIMETERS(12.50)", "width=\"12.50\" widthUnit=\"CENTIMETERS\""},
      {"WIDTH=INCHES(12.50)", "width=\"12.50\" widthUnit=\"INCHES\""},
      {"WIDTH=POINTS(12.50)", "width=\"12.50\" widthUnit=\"POINTS\""},
      {"WIDTH=200 percent", "width=\"200\" widthUnit=\"PERCENT\""},
      {"WIDTH=POINTS(2000)", "width=\"2000\" widthUnit=\"POINTS\""},
      {"PREVIEW=YES", "preview=\"true\""},
      {"PREVIEW=no", "preview=\"false\""},
      {"FONTHANDLING=REFERENCES", "fontHandling=\"REFERENCES\""},
      {"FONTHANDLING=CURVES", "fontHandling=\"CURVES\""},
  }));
}

TEST(OutputExportEPSData, RefusesWithItsOwnMessage) {
  expectRefused(whole(std::vector<RefusedCase>{
      {"WIDTH=PERCENT(250)",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (250, "
        "0, 200PERCENT)"}},
      {"WIDTH=PERCENT(0)",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (0, 0, "
        "200PERCENT)"}},
      {"WIDTH=PERCENT(-1)",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (-1, 0, "
        "200PERCENT)"}},
      {"WIDTH=PERCENT(200.5)",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (200.5, "
        "0, 200PERCENT)"}},
      {"WIDTH=PERCENT(a)",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (a, 0, "
        "200PERCENT)"}},
      {"WIDTH=PERCENT()",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (, 0, "
        "200PERCENT)"}},
      {"WIDTH=CENTIMETERS(0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, CENTIMETERS)"}},
      {"WIDTH=INCHES(0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, INCHES)"}},
      {"WIDTH=POINTS(0)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (0, 0, POINTS)"}},
      {"WIDTH=POINTS(-5)",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (-5, 0, POINTS)"}},
      {"WIDTH=INCHES('a')",
       {"error: Value ^1 should be greater than ^2 for parameter ^3... (a, 0, INCHES)"}},
      {"WIDTH=50", {"InvalidParamValue(50, WIDTH, EPS)"}},
  }));
}

TEST(OutputExportEPSData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"FONTHANDLING=BITMAPS", {"InvalidParamValue(BITMAPS, FONTHANDLING, EPS)"}},
      {"WIDTH=MM(1)", {"ParamNoSubCom(MM)"}},
      {"PERCENTSIZE=1", {"UnknownParam(PERCENTSIZE, EPS)"}},
  }));
}

}  // namespace
}  // namespace vornwout
