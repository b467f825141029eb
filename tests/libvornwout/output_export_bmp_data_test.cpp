// OUTPUT EXPORT /BMP: its grammar, what its keywords set, and what it refuses.
#include "libvornwout/export/output_export_bmp_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/BMP IMAGEROOT='f' ";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    const std::string blank = test.elements.empty() ? "" : " ";
    test.elements = "<bmp imageRoot=\"f\"" + blank + test.elements + "/>";
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

TEST(OutputExportBMPData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("BMP"),
              ElementsAre("BMP 1 ff", "IMAGEROOT 4 ft 0", "PERCENTSIZE 7 ff 0 >=0 <=200",
                          "COMPRESS 3 ft 0 {YES NO}"));
}

TEST(OutputExportBMPData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", ""},
      {"COMPRESS=YES", "compress=\"true\""},
      {"COMPRESS=no", "compress=\"false\""},
      {"PERCENTSIZE=200", "percentSize=\"200\""},
      {"PERCENTSIZE=0.5", "percentSize=\"0.5\""},
      {"PERCENTSIZE=1e2", "percentSize=\"1e2\""},
      {"PERCENTSIZE=100,", "percentSize=\"100\""},
      {"PERCENTSIZE=50 COMPRESS=NO", "compress=\"false\" percentSize=\"50\""},
  }));
}

TEST(OutputExportBMPData, RefusesWithItsOwnMessage) { expectRefused(whole(percentSizeRefusals())); }

TEST(OutputExportBMPData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"COMPRESS=MAYBE", {"InvalidParamValue(MAYBE, COMPRESS, BMP)"}},
      {"PERCENTSIZE=1 2", {"UnexpectedToken(2, PERCENTSIZE)"}},
      {"DEPTH=SCREEN", {"UnknownParam(DEPTH, BMP)"}},
  }));
}

}  // namespace
}  // namespace vornwout
