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

TEST(OutputExportJPGData, RefusesWithItsOwnMessage) {
  expectRefused(whole(std::vector<RefusedCase>{
      {"PERCENTSIZE=0",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (0, 0, "
        "200PERCENTSIZE)"}},
      {"PERCENTSIZE=200.5",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (200.5, "
        "0, 200PERCENTSIZE)"}},
      {"PERCENTSIZE=-1",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (-1, 0, "
        "200PERCENTSIZE)"}},
      {"PERCENTSIZE=1e999",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (1e999, "
        "0, 200PERCENTSIZE)"}},
      {"PERCENTSIZE=BIG",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (BIG, "
        "0, 200PERCENTSIZE)"}},
      {"PERCENTSIZE='50'",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (50, 0, "
        "200PERCENTSIZE)"}},
      {"PERCENTSIZE=ALL",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (ALL, "
        "0, 200PERCENTSIZE)"}},
  }));
}

TEST(OutputExportJPGData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"GRAYSCALE=MAYBE", {"InvalidParamValue(MAYBE, GRAYSCALE, JPG)"}},
      {"PERCENTSIZE=", {"ParamValueRequired(PERCENTSIZE, JPG)"}},
  }));
}

}  // namespace
}  // namespace vornwout
