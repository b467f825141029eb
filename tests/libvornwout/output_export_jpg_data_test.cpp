// OUTPUT EXPORT /JPG: its grammar, what its keywords set, and what it refuses.
#include "libvornwout/export/output_export_jpg_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/JPG IMAGEROOT='f' ";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    const std::string blank = test.elements.empty() ? "" : " ";
    test.elements = "<jpg imageRoot=\"f\"" + blank + test.elements + "/>";
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

TEST(OutputExportJPGData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("JPG"),
              ElementsAre("JPG 1 ff", "IMAGEROOT 4 ft 0", "PERCENTSIZE 7 ff 0 >=0 <=200",
                          "GRAYSCALE 3 ft 0 {YES NO}"));
}

TEST(OutputExportJPGData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", ""},
      {"GRAYSCALE=YES", "grayscale=\"true\""},
      {"GRAYSCALE=no", "grayscale=\"false\""},
      {"PERCENTSIZE=200", "percentSize=\"200\""},
      {"PERCENTSIZE=0.5", "percentSize=\"0.5\""},
      {"PERCENTSIZE=1e2", "percentSize=\"1e2\""},
      {"PERCENTSIZE=100,", "percentSize=\"100\""},
  }));
}

TEST(OutputExportJPGData, RefusesWithItsOwnMessage) { expectRefused(whole(percentSizeRefusals())); }

TEST(OutputExportJPGData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"GRAYSCALE=MAYBE", {"InvalidParamValue(MAYBE, GRAYSCALE, JPG)"}},
      {"PERCENTSIZE=", {"ParamValueRequired(PERCENTSIZE, JPG)"}},
  }));
}

}  // namespace
}  // namespace vornwout
