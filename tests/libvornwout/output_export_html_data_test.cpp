// OUTPUT EXPORT /HTML: its grammar, what its keywords set, and what it refuses.
#include "libvornwout/export/output_export_html_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/export_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "/HTML DOCUMENTFILE='f' ";

std::vector<SentCase> whole(std::vector<SentCase> cases) {
  for (SentCase& test : cases) {
    test.arguments = kStart + test.arguments;
    const std::string blank = test.elements.empty() ? "" : " ";
    test.elements = "<html documentFile=\"f\"" + blank + test.elements + "/>";
  }
  return cases;
}

std::vector<RefusedCase> whole(std::vector<RefusedCase> cases) {
  for (RefusedCase& test : cases) test.arguments = kStart + test.arguments;
  return cases;
}

TEST(OutputExportHTMLData, DeclaresItsGrammar) {
  EXPECT_THAT(exportGrammarOf("HTML"),
              ElementsAre("HTML 1 ff", "DOCUMENTFILE 2 ft 0", "NOTESCAPTIONS 3 ft 0 {YES NO}",
                          "IMAGEFORMAT 3 ft 0 {JPG BMP PNG}", "STYLING 3 ft 0 {YES NO}",
                          "INTERACTLAYERS 3 ft 0 {YES NO}"));
}

TEST(OutputExportHTMLData, SetsWhatIsGiven) {
  expectSent(whole(std::vector<SentCase>{
      {"", ""},
      {"NOTESCAPTIONS=YES", "notesAndCaptions=\"true\""},
      {"NOTESCAPTIONS=no", "notesAndCaptions=\"false\""},
      {"IMAGEFORMAT=JPG", "imageFormat=\"JPG\""},
      {"IMAGEFORMAT=PNG", "imageFormat=\"PNG\""},
      {"IMAGEFORMAT=BMP", "imageFormat=\"BMP\""},
      {"STYLING=YES", "styling=\"true\""},
      {"STYLING=no", "styling=\"false\""},
      {"INTERACTLAYERS=YES", "interactiveLayers=\"true\""},
      {"INTERACTLAYERS=no", "interactiveLayers=\"false\""},
      {"INTERACTLAYERS=YES IMAGEFORMAT='bmp'", "imageFormat=\"BMP\" interactiveLayers=\"true\""},
  }));
}

TEST(OutputExportHTMLData, LeavesOtherMistakesToTheParser) {
  expectNotParsed(whole(std::vector<RefusedCase>{
      {"STYLING=MAYBE", {"InvalidParamValue(MAYBE, STYLING, HTML)"}},
      {"IMAGEFORMAT=EPS", {"InvalidParamValue(EPS, IMAGEFORMAT, HTML)"}},
      {"INTERACTLAYERS", {"ParamValueRequired(INTERACTLAYERS, HTML)"}},
  }));
}

}  // namespace
}  // namespace vornwout
