// OUTPUT EXPORT /PNG: its grammar, what its keywords set, and what it refuses.
#include "libvornwout/export/output_export_png_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/PNG IMAGEROOT='f' ";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    const std::string blank = test.elements.empty() ? "" : " ";
    test.elements = "<png imageRoot=\"f\"" + blank + test.elements + "/>";
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

TEST(OutputExportPNGData, DeclaresItsGrammar) {
  EXPECT_THAT(
      exportGrammarOf("PNG"),
      ElementsAre(
          "PNG 1 ff", "IMAGEROOT 4 ft 0", "PERCENTSIZE 7 ff 0 >=0 <=200",
          "DEPTH 3 ft 0 {SCREEN BLACKWHITE GRAYS256 COLORS16 COLORS256 TRUE24BIT TRUE32BIT}"));
}

TEST(OutputExportPNGData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", ""},
      {"DEPTH=SCREEN", "depth=\"SCREEN\""},
      {"DEPTH=BLACKWHITE", "depth=\"BLACKWHITE\""},
      {"DEPTH=GRAYS256", "depth=\"GRAYS256\""},
      {"DEPTH=COLORS16", "depth=\"COLORS16\""},
      {"DEPTH=COLORS256", "depth=\"COLORS256\""},
      {"DEPTH=TRUE24BIT", "depth=\"TRUE24BIT\""},
      {"DEPTH=TRUE32BIT", "depth=\"TRUE32BIT\""},
      {"PERCENTSIZE=200", "percentSize=\"200\""},
      {"PERCENTSIZE=0.5", "percentSize=\"0.5\""},
      {"PERCENTSIZE=1e2", "percentSize=\"1e2\""},
      {"PERCENTSIZE=100,", "percentSize=\"100\""},
      {"PERCENTSIZE=200 DEPTH=TRUE32BIT", "percentSize=\"200\" depth=\"TRUE32BIT\""},
  }));
}

TEST(OutputExportPNGData, RefusesWithItsOwnMessage) { expectRefused(whole(percentSizeRefusals())); }

TEST(OutputExportPNGData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"DEPTH=TRUE16BIT", {"InvalidParamValue(TRUE16BIT, DEPTH, PNG)"}},
      {"IMAGEROOT='g'", {"ParamRepeated(IMAGEROOT, PNG)"}},
  }));
}

}  // namespace
}  // namespace vornwout
